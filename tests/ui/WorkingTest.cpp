// The "Working..." window's bar, which follows the customer list while it is read.
#include "fetching/CustomerList.h"
#include "support/Company.h"
#include "ui/frmWorking.h"

#include <QProgressBar>
#include <QTest>

using namespace tillbook;

class WorkingTest : public QObject {
    Q_OBJECT

private slots:
    void theBarFollowsTheReadingOnlyWhileTheWindowIsShown() {
        QVERIFY(!frmWorking::ShownProgress());
        auto* working = new frmWorking();
        working->showNow();
        const TaskProgress progress = frmWorking::ShownProgress();
        QVERIFY(progress);
        auto* bar = working->findChild<QProgressBar*>("prgWork");
        progress(10, 0); // an end not known yet: a busy bar
        const int busy = bar->maximum();
        progress(6000, 6000);
        QCOMPARE(QPoint(busy, bar->maximum() + bar->value()), QPoint(0, 12000));
        working->close();
        QVERIFY(!frmWorking::ShownProgress());
        delete working;
        progress(1, 2); // a task still holding the callback does no harm once the window is gone

        // Reading the customers tells the start, whose end is not known, and the end.
        QList<QPoint> reports;
        const test::Company company{test::CompanyBuilder().sample(30, 60)};
        const auto session = company.signIn(QDate::currentDate());
        const CustomerList customers =
            Read_Customers(*session, [&reports](int done, int total) { reports << QPoint(done, total); });
        const int read = int(customers.size());
        QCOMPARE(reports, (QList<QPoint>{{reports.value(0).x(), 0}, {read, read}}));
    }
};

QTEST_MAIN(WorkingTest)
#include "WorkingTest.moc"
