// The "Working..." window's bar, which follows the customer list while it is read and sorted.
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

std::vector<CustomerRecord> namedCustomers(int count) {
    std::vector<CustomerRecord> customers;
    for (int i = 0; i < count; ++i)
        customers.push_back({QString("Customer %1").arg((i * 7919) % count), QString::number(i), {}, {}, {}});
    return customers;
}

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

        std::vector<CustomerRecord> customers = namedCustomers(3000);
        Sort_Customers(customers, progress);
        QCOMPARE(bar->maximum(), 6000);
        QCOMPARE(bar->value(), 6000);
        working->setProgress(2, 3);
        test::grabToPng(working, "frmWorking");

        working->close();
        QVERIFY(!frmWorking::ShownProgress());
        delete working;
        progress(1, 2); // a task still holding the callback does no harm once the window is gone
    }

    void readingAndSortingReportForwardToTheEnd() {
        std::vector<Report> reports;
        const TaskProgress record = [&reports](int done, int total) { reports.push_back({done, total}); };

        test::SampleCompany company(QStringLiteral("SAMINC"), 1500, 3000);
        Session session;
        session.open("ADMIN", "ADMIN", company.id(), QDate::currentDate());
        std::vector<CustomerRecord> customers = Read_Customers(session, record);
        QVERIFY(customers.size() >= ProgressStep);
        QVERIFY(!reports.empty());
        for (size_t i = 0; i < reports.size(); ++i) {
            QCOMPARE(reports[i].total, 0); // the number is not known while reading
            QCOMPARE(reports[i].done, static_cast<int>((i + 1) * ProgressStep));
        }

        reports.clear();
        Sort_Customers(customers, record);
        const int total = static_cast<int>(2 * customers.size());
        QVERIFY(reports.size() > 3);
        for (size_t i = 1; i < reports.size(); ++i)
            QVERIFY(reports[i].done >= reports[i - 1].done);
        QCOMPARE(reports.back().done, total);
        QCOMPARE(reports.back().total, total);
    }
};

QTEST_MAIN(WorkingTest)
#include "WorkingTest.moc"
