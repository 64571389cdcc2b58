// The receipt window's print commands: the entry on show printed in the ticked style, and the style pair.

#include "PrintedCompany.h"
#include "support/ReceiptWindow.h"

#include <QAction>
#include <QDir>
#include <QPushButton>

namespace tillbook::test {
namespace {

class PrintCommands : public PrintedCompany {
protected:
    void SetUp() override {
        ASSERT_TRUE(pdfs.isValid());
        qputenv("TILLBOOK_PDF_DIR", pdfs.path().toUtf8());
        qputenv("TILLBOOK_SHORT_DATE", "MM/dd/yyyy");
        window = std::make_unique<ReceiptWindow>();
        ASSERT_TRUE(window->open());
        window->combo("cboBatch")->setListIndex(window->combo("cboBatch")->findText("1"));
    }
    void TearDown() override {
        window.reset();
        qunsetenv("TILLBOOK_PDF_DIR");
    }

    QAction* action(const char* name) { return control<QAction>(window->form, name); }
    // The text of every receipt printed so far, in the order printed.
    QStringList printedTexts() {
        QStringList texts;
        for (const QFileInfo& file :
             QDir(pdfs.path()).entryInfoList({"*.pdf"}, QDir::Files, QDir::Time | QDir::Reversed))
            texts << pdfText(file.filePath());
        return texts;
    }

    std::unique_ptr<ReceiptWindow> window;
};

TEST_F(PrintCommands, StylesAreAPairWithExactlyOneTicked) {
    // With nothing stored the three-part style is ticked; clicking it again keeps it ticked.
    EXPECT_TRUE(action("mnuFileReceipt3V")->isChecked());
    action("mnuFileReceipt3V")->trigger();
    EXPECT_TRUE(action("mnuFileReceipt3V")->isChecked());
    EXPECT_FALSE(action("mnuFileReceipt2V")->isChecked());
    action("mnuFileReceipt2V")->trigger();
    EXPECT_TRUE(action("mnuFileReceipt2V")->isChecked());
    EXPECT_FALSE(action("mnuFileReceipt3V")->isChecked());
    action("mnuFileReceipt2V")->trigger();
    EXPECT_TRUE(action("mnuFileReceipt2V")->isChecked());
    EXPECT_FALSE(action("mnuFileReceipt3V")->isChecked());
}

TEST_F(PrintCommands, EntryOnShowPrintsInTheTickedStyle) {
    EXPECT_FALSE(action("mnuFilePrint")->isEnabled());
    window->combo("cboEntry")->setListIndex(0); // the receipt of customer 0001, 23.06 of it unapplied
    action("mnuCustomerNext")->trigger();       // the ledger's customer prints, whatever the window shows
    action("mnuFilePrint")->trigger();
    window->combo("cboEntry")->setListIndex(1); // the prepayment of customer 0003
    ASSERT_TRUE(window->enabled("cmdPrint"));
    EXPECT_TRUE(action("mnuFilePrint")->isEnabled());
    control<QPushButton>(window->form, "cmdPrint")->click();
    action("mnuFileReceipt2V")->trigger();
    window->combo("cboEntry")->setListIndex(2); // the miscellaneous receipt
    action("mnuFilePrint")->trigger();

    const QStringList texts = printedTexts();
    ASSERT_EQ(texts.size(), 3);
    for (const char* shown :
         {"Silver Dairy Group (0001)", "Amount received", "4,000.00", "3,976.94", "23.06", "TDOPER", "ADMIN"})
        EXPECT_TRUE(texts[0].contains(shown)) << shown;
    EXPECT_EQ(texts[1].count("PP0000001"), 3);
    EXPECT_TRUE(texts[1].contains("Silver Dairy Inc.") && texts[1].contains("File copy"));
    EXPECT_EQ(texts[2].count("Freight recovered"), 2);
    EXPECT_FALSE(texts[2].contains("File copy"));
    EXPECT_TRUE(boxes.asked.isEmpty());

    // A new entry has nothing to print, from the button or the menu.
    control<QPushButton>(window->form, "cmdNewEntry")->click();
    EXPECT_FALSE(window->enabled("cmdPrint"));
    EXPECT_FALSE(action("mnuFilePrint")->isEnabled());
}

} // namespace
} // namespace tillbook::test
