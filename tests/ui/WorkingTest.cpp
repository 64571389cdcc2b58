// The "Working..." window: its texts, and the bar that follows the customer list while it is read and sorted.
#include "fetching/CustomerList.h"
#include "ledger/Session.h"
#include "support/Grab.h"
#include "support/SampleCompany.h"
#include "ui/frmWorking.h"

#include <QLabel>
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
    void theWindowShowsItsTextsAndABar() {
        frmWorking working;
        working.showNow();
        QCOMPARE(working.windowTitle(), QString("Tillbook"));
        QCOMPARE(working.findChild<QLabel*>("Label2")->text(), QString("Working..."));
        QCOMPARE(working.findChild<QLabel*>("lblWork")->text(), QString("Sorting the Customer List."));
        auto* bar = working.findChild<QProgressBar*>("prgWork");
        working.setProgress(3, 4);
        QCOMPARE(bar->value(), 3);
        QCOMPARE(bar->maximum(), 4);
        test::grabToPng(&working, "frmWorking");
        working.setProgress(10, 0); // an unknown end: a busy bar
        QCOMPARE(bar->maximum(), 0);
    }

    void progressGoesToTheWindowOnlyWhileItIsShown() {
        QVERIFY(!frmWorking::ShownProgress());
        auto* working = new frmWorking();
        working->showNow();
        const auto progress = frmWorking::ShownProgress();
        QVERIFY(progress);
        auto* bar = working->findChild<QProgressBar*>("prgWork");

        std::vector<CustomerRecord> customers = namedCustomers(3000);
        Sort_Customers(customers, progress);
        QCOMPARE(bar->maximum(), 6000);
        QCOMPARE(bar->value(), 6000);

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
        std::vector<CustomerRecord> unsorted = customers;
        Sort_Customers(customers, record);
        const int total = static_cast<int>(2 * customers.size());
        QVERIFY(reports.size() > 3);
        for (size_t i = 1; i < reports.size(); ++i)
            QVERIFY(reports[i].done >= reports[i - 1].done);
        QCOMPARE(reports.back().done, total);
        QCOMPARE(reports.back().total, total);
        // Reporting changes nothing of the order.
        Sort_Customers(unsorted);
        for (size_t i = 0; i < customers.size(); ++i)
            QCOMPARE(customers[i].Name, unsorted[i].Name);
    }
};

QTEST_MAIN(WorkingTest)
#include "WorkingTest.moc"
