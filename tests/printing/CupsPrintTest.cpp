// Receipts printed through a real CUPS queue, and the printer dialog on real printers: a scheduler of the
// test's own with two queues, "Receipts" (the default) and "Office".

#include "PrivateCups.h"
#include "SavedEntries.h"
#include "printing/Printing.h"
#include "printing/frmPrinter.h"
#include "settings/Registry.h"

#include <QCheckBox>
#include <QListWidget>
#include <QPushButton>
#include <functional>

namespace tillbook::test {
namespace {

class CupsPrinting : public SavedEntries {
protected:
    static void SetUpTestSuite() {
        SavedEntries::SetUpTestSuite();
        cups = new PrivateCups;
        if (cups->unavailableReason().isEmpty() && cups->addQueue("Receipts", true))
            cups->addQueue("Office", false);
    }
    static void TearDownTestSuite() {
        delete cups;
        SavedEntries::TearDownTestSuite();
    }
    void SetUp() override {
        SavedEntries::SetUp();
        qunsetenv("TILLBOOK_PDF_DIR");
        if (!cups->unavailableReason().isEmpty())
            GTEST_SKIP() << "no private CUPS scheduler: " << cups->unavailableReason().toStdString();
    }

    // Prints entry 1 with the stored printer settings and returns the text of the job that reached `queue`.
    QString printEntryOne(const QString& queue, const QString& name, const QString& port) {
        settings.setAll({{"Printer/Default", name.isEmpty() ? "True" : "False"},
                         {"Printer/Driver", "Local Raw Printer"},
                         {"Printer/Name", name},
                         {"Printer/Port", port}});
        const int before = int(cups->jobFiles(queue).size());
        const PrintOutcome outcome =
            Print_Receipt(Desk().LedgerSession.get(), requestFor(1, ReceiptKind::Receipt, true));
        EXPECT_TRUE(outcome.printed);
        EXPECT_EQ(outcome.printer, queue);
        problems << outcome.problems;
        if (!cups->waitForJobs(queue, before + 1))
            return {};
        return pdfText(cups->jobFiles(queue).last());
    }
    template <typename T> static T* child(QWidget& form, const char* name) { return control<T>(&form, name); }
    // Opens the dialog, lets `act` work it, and returns the settings it stored: default, driver, name, port.
    QStringList dialog(const std::function<void(frmPrinter&)>& act) {
        {
            frmPrinter form;
            act(form);
        }
        return settings.raws({"Printer/Default", "Printer/Driver", "Printer/Name", "Printer/Port"})
            .split(u'|');
    }

    QStringList problems; // of every print, in order
    static inline PrivateCups* cups = nullptr;
};

TEST_F(CupsPrinting, ReceiptReachesTheDefaultQueueOrTheChosenOne) {
    EXPECT_EQ(printEntryOne("Receipts", "", "").count("CHQ-1001"), 6);
    EXPECT_TRUE(printEntryOne("Office", "Office", cups->deviceUri("Office")).contains("3,976.94"));
    EXPECT_TRUE(problems.isEmpty());
    // Without a port the stored printer is not complete; a printer that is gone is said so. The default
    // printer prints.
    EXPECT_TRUE(printEntryOne("Receipts", "Office", "").contains("CHQ-1001"));
    EXPECT_TRUE(printEntryOne("Receipts", "Basement", "socket://10.0.0.9").contains("CHQ-1001"));
    ASSERT_EQ(problems.size(), 1);
    EXPECT_TRUE(problems[0].contains("\"Basement\" is not installed"));
}

TEST_F(CupsPrinting, DialogStoresThePlatformsOwnNamesOfTheChosenPrinter) {
    // It opens on the default; unticked with no printer clicked, the default printer is stored as the choice.
    EXPECT_EQ(dialog([](frmPrinter& form) {
                  EXPECT_EQ(child<QListWidget>(form, "lstNames")->count(), 2);
                  EXPECT_TRUE(child<QCheckBox>(form, "chkDefault")->isChecked());
                  child<QCheckBox>(form, "chkDefault")->click();
                  child<QPushButton>(form, "cmdOK")->click();
              }),
              (QStringList{"False", "Local Raw Printer", "Receipts", cups->deviceUri("Receipts")}));
    // A printer chosen by the arrow keys, then unticked: stored.
    settings.set("Printer/Default", "True");
    EXPECT_EQ(dialog([](frmPrinter& form) {
                  auto* names = child<QListWidget>(form, "lstNames");
                  names->setCurrentItem(names->findItems("Office", Qt::MatchExactly).value(0));
                  EXPECT_TRUE(
                      child<QCheckBox>(form, "chkDefault")->isChecked()); // a click does not untick it
                  child<QCheckBox>(form, "chkDefault")->click();
                  child<QPushButton>(form, "cmdOK")->click();
              }),
              (QStringList{"False", "Local Raw Printer", "Office", cups->deviceUri("Office")}));
    // Opened on the stored printer; ticking the default clears the list's choice and OK stores no names.
    EXPECT_EQ(dialog([](frmPrinter& form) {
                  EXPECT_FALSE(child<QCheckBox>(form, "chkDefault")->isChecked());
                  auto* names = child<QListWidget>(form, "lstNames");
                  names->setCurrentRow(0);
                  emit names->itemClicked(names->item(0));
                  child<QCheckBox>(form, "chkDefault")->click();
                  EXPECT_EQ(names->currentRow(), -1);
                  child<QPushButton>(form, "cmdOK")->click();
              }),
              (QStringList{"True", "", "", ""}));
}

} // namespace
} // namespace tillbook::test
