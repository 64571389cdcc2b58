// Receipts printed through a real CUPS queue, and the printer dialog on real printers: a scheduler of the
// test's own with two queues, "Receipts" (the default) and "Office".

#include "PrintedCompany.h"
#include "PrivateCups.h"
#include "printing/Printing.h"
#include "printing/frmPrinter.h"
#include "settings/Registry.h"

#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

namespace tillbook::test {
namespace {

class CupsPrinting : public PrintedCompany {
protected:
    static void SetUpTestSuite() {
        PrintedCompany::SetUpTestSuite();
        cups = new PrivateCups;
        if (cups->unavailableReason().isEmpty() && cups->addQueue("Receipts", true))
            cups->addQueue("Office", false);
    }
    static void TearDownTestSuite() {
        delete cups;
        PrintedCompany::TearDownTestSuite();
    }
    void SetUp() override {
        PrintedCompany::SetUp();
        qunsetenv("TILLBOOK_PDF_DIR");
        if (!cups->unavailableReason().isEmpty())
            GTEST_SKIP() << "no private CUPS scheduler: " << cups->unavailableReason().toStdString();
    }

    // Prints entry 1 and returns the text of the job that reached `queue`.
    QStringList problems; // of every print, in order
    QString printEntryOne(const QString& queue) {
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

    static inline PrivateCups* cups = nullptr;
};

template <typename T> T* child(QWidget& form, const char* name) {
    T* found = form.findChild<T*>(name);
    EXPECT_NE(found, nullptr) << name;
    return found;
}

TEST_F(CupsPrinting, ReceiptReachesTheDefaultQueueOrTheChosenOne) {
    const QString onDefault = printEntryOne("Receipts");
    EXPECT_EQ(onDefault.count("CHQ-1001"), 6);
    EXPECT_TRUE(onDefault.contains("File copy"));

    settings.set("Printer/Default", "False");
    settings.set("Printer/Driver", "Local Raw Printer");
    settings.set("Printer/Name", "Office");
    settings.set("Printer/Port", cups->deviceUri("Office"));
    EXPECT_TRUE(printEntryOne("Office").contains("3,976.94"));

    // Without a port the stored printer is not complete: the default printer prints.
    settings.set("Printer/Port", "");
    EXPECT_TRUE(printEntryOne("Receipts").contains("CHQ-1001"));
    EXPECT_TRUE(problems.isEmpty());
}

TEST_F(CupsPrinting, PrinterThatIsGoneIsReportedAndTheDefaultPrints) {
    settings.set("Printer/Default", "False");
    settings.set("Printer/Driver", "Old Laser");
    settings.set("Printer/Name", "Basement");
    settings.set("Printer/Port", "socket://10.0.0.9");
    EXPECT_TRUE(printEntryOne("Receipts").contains("CHQ-1001"));
    ASSERT_EQ(problems.size(), 1);
    EXPECT_TRUE(problems[0].contains("\"Basement\" is not installed"));
}

TEST_F(CupsPrinting, DialogOpensOnTheDefaultAndStoresThePlatformsOwnNames) {
    {
        frmPrinter dialog;
        EXPECT_EQ(dialog.windowTitle(), "Tillbook - Printer Selection");
        auto* names = child<QListWidget>(dialog, "lstNames");
        ASSERT_EQ(names->count(), 2);
        EXPECT_TRUE(child<QCheckBox>(dialog, "chkDefault")->isChecked());
        EXPECT_EQ(child<QLabel>(dialog, "lblPrinter")->text(), " Windows Default Printer");

        // Unticked with no printer clicked: the default printer is stored as the choice.
        child<QCheckBox>(dialog, "chkDefault")->click();
        EXPECT_EQ(child<QLabel>(dialog, "lblPrinter")->text(), "");
        child<QPushButton>(dialog, "cmdOK")->click();
        EXPECT_TRUE(dialog.isHidden());
    }
    const PrinterSettings stored = Load_PrinterSettings();
    EXPECT_FALSE(stored.useDefault);
    EXPECT_EQ(stored.name, "Receipts");
    EXPECT_EQ(stored.driver, "Local Raw Printer");
    EXPECT_EQ(stored.port, cups->deviceUri("Receipts"));
}

TEST_F(CupsPrinting, ClickedPrinterIsKeptUntilTheDefaultIsTickedAgain) {
    {
        frmPrinter dialog;
        auto* names = child<QListWidget>(dialog, "lstNames");
        const QList<QListWidgetItem*> office = names->findItems("Office", Qt::MatchExactly);
        ASSERT_EQ(office.size(), 1);
        names->setCurrentItem(office.front()); // as the arrow keys choose it
        EXPECT_EQ(child<QLabel>(dialog, "lblPrinter")->text(), "Office");
        EXPECT_TRUE(child<QCheckBox>(dialog, "chkDefault")->isChecked()); // a click does not untick it
        child<QCheckBox>(dialog, "chkDefault")->click();                  // unticked
        child<QPushButton>(dialog, "cmdOK")->click();
    }
    EXPECT_EQ(settings.raw("Printer/Default"), "False");
    EXPECT_EQ(settings.raw("Printer/Name"), "Office");
    EXPECT_EQ(settings.raw("Printer/Port"), cups->deviceUri("Office"));
    {
        frmPrinter dialog;
        EXPECT_FALSE(child<QCheckBox>(dialog, "chkDefault")->isChecked());
        EXPECT_EQ(child<QLabel>(dialog, "lblPrinter")->text(), " Office");
        auto* names = child<QListWidget>(dialog, "lstNames");
        names->setCurrentRow(0);
        emit names->itemClicked(names->item(0));
        // Ticking the box clears the list's selection; OK then stores the default and empty names.
        child<QCheckBox>(dialog, "chkDefault")->click();
        EXPECT_EQ(names->currentRow(), -1);
        EXPECT_EQ(child<QLabel>(dialog, "lblPrinter")->text(), " Windows Default Printer");
        child<QPushButton>(dialog, "cmdOK")->click();
    }
    EXPECT_EQ(settings.raw("Printer/Default"), "True");
    EXPECT_EQ(settings.raw("Printer/Driver"), "");
    EXPECT_EQ(settings.raw("Printer/Name"), "");
    EXPECT_EQ(settings.raw("Printer/Port"), "");

    // Close stores nothing.
    {
        frmPrinter dialog;
        child<QCheckBox>(dialog, "chkDefault")->click();
        child<QPushButton>(dialog, "cmdClose")->click();
    }
    EXPECT_EQ(settings.raw("Printer/Default"), "True");
}

} // namespace
} // namespace tillbook::test
