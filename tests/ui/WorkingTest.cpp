// The "Working..." window's bar, which follows the customer list while it is read.
#include "fetching/CustomerList.h"
#include "ledger/Session.h"
#include "support/Grab.h"
#include "support/SampleCompany.h"
#include "ui/frmWorking.h"

#include <QProgressBar>
#include <QTest>

using namespace tillbook;

namespace {

struct Report {
    int done, total;
};

} // namespace

class WorkingTest : public QObject {
    Q_OBJECT

private slots:
    void theBarFollowsTheTaskOnlyWhileTheWindowIsShown() {
        QVERIFY(!frmWorking::ShownProgress());
        auto* working = new frmWorking();
        working->showNow();
        const auto progress = frmWorking::ShownProgress();
        QVERIFY(progress);
        auto* bar = working->findChild<QProgressBar*>("prgWork");
        progress(10, 0); // an end not known yet: a busy bar
        QCOMPARE(bar->maximum(), 0);

        progress(6000, 6000);
        QCOMPARE(bar->maximum(), 6000);
        QCOMPARE(bar->value(), 6000);
        working->setProgress(2, 3);
        test::grabToPng(working, "frmWorking");

        working->close();
        QVERIFY(!frmWorking::ShownProgress());
        delete working;
        progress(1, 2); // a task still holding the callback does no harm once the window is gone
    }

    void readingTellsTheStartAndTheEnd() {
        std::vector<Report> reports;
        const TaskProgress record = [&reports](int done, int total) { reports.push_back({done, total}); };
        test::SampleCompany company(QStringLiteral("SAMINC"), 300, 600);
        Session session;
        session.open("ADMIN", "ADMIN", company.id(), QDate::currentDate());
        const CustomerList customers = Read_Customers(session, record);
        QVERIFY(!customers.empty());
        QCOMPARE(reports.size(), size_t(2));
        QCOMPARE(reports[0].total, 0); // the number is not known before the list is read
        QCOMPARE(reports[1].done, int(customers.size()));
        QCOMPARE(reports[1].total, int(customers.size()));
    }
};

QTEST_MAIN(WorkingTest)
#include "WorkingTest.moc"
