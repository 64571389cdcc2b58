// Printing saved entries into PDF files, read back with pdftotext.

#include "PrintedCompany.h"
#include "printing/Printers.h"
#include "printing/Printing.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace tillbook::test {
namespace {

using PrintReceipt = PrintedCompany;

QString printed(const PrintRequest& request) {
    const PrintOutcome outcome = Print_Receipt(request);
    EXPECT_TRUE(outcome.printed);
    EXPECT_TRUE(QFileInfo::exists(outcome.pdfFile)) << outcome.pdfFile.toStdString();
    EXPECT_EQ(QFileInfo(outcome.pdfFile).permissions() & ~(QFile::ReadUser | QFile::WriteUser),
              QFile::ReadOwner | QFile::WriteOwner); // the owner's alone
    return pdfText(outcome.pdfFile);
}

TEST_F(PrintReceipt, StoredPrinterIsUsedOnlyWhenNotDefaultAndComplete) {
    EXPECT_TRUE(Uses_DefaultPrinter(Load_PrinterSettings())); // nothing stored
    settings.set("Printer/Default", "False");
    settings.set("Printer/Driver", "HP LaserJet 4");
    settings.set("Printer/Name", "Office");
    EXPECT_TRUE(Uses_DefaultPrinter(Load_PrinterSettings())); // no port
    settings.set("Printer/Port", "socket://10.0.0.5");
    EXPECT_FALSE(Uses_DefaultPrinter(Load_PrinterSettings()));
}

TEST_F(PrintReceipt, ReceiptPrintsEveryCopyWithItsLinesAndTotal) {
    const QString two = printed(requestFor(1, ReceiptKind::Receipt, "0001", false));
    EXPECT_EQ(two.count("Customer copy"), 1);
    EXPECT_EQ(two.count("Office copy"), 1);
    EXPECT_EQ(two.count("File copy"), 0);
    EXPECT_EQ(two.count("CHQ-1001"), 2);
    EXPECT_EQ(two.count("Pharmacy IN0000006"), 2);
    EXPECT_EQ(two.count("3,349.75"), 2);
    EXPECT_EQ(two.count("3,976.94"), 2); // the total of the two lines
    EXPECT_TRUE(two.contains("March 15, 2025"));
    EXPECT_TRUE(two.contains("Silver Dairy Group (0001)"));
    EXPECT_TRUE(two.contains("2858 King St. W."));
    EXPECT_TRUE(two.contains("Northern Lights Wholesale Dairy & Cheese"));
    EXPECT_TRUE(boxes.asked.isEmpty());

    const QString three = printed(requestFor(1, ReceiptKind::Receipt, "0001", true));
    for (const char* copy : {"Customer copy", "Office copy", "File copy"})
        EXPECT_EQ(three.count(copy), 1) << copy;
    EXPECT_EQ(three.count("3,976.94"), 3);
}

TEST_F(PrintReceipt, PrepaymentAndMiscReceiptsPrintTheirOwnLines) {
    const QString prepay = printed(requestFor(2, ReceiptKind::Prepayment, "0003", true));
    EXPECT_EQ(prepay.count("PP0000001"), 3);
    EXPECT_EQ(prepay.count("IN0000018"), 6); // the document, and in the description
    EXPECT_EQ(prepay.count("1,250.00"), 6);  // line and total, three times

    const QString misc = printed(requestFor(3, ReceiptKind::Misc, "0001", false));
    EXPECT_EQ(misc.count("Freight recovered"), 2);
    EXPECT_EQ(misc.count("1,500.00"), 2);
    EXPECT_EQ(misc.count("Walk-in"), 2);
    EXPECT_FALSE(misc.contains("Silver Dairy Group"));
}

TEST_F(PrintReceipt, ThirtyLinesAndNoLinesBothFitTheirBands) {
    const QString thirty = printed(requestFor(4, ReceiptKind::Misc, QString(), true));
    EXPECT_EQ(thirty.count("Line 30 of thirty"), 3);
    EXPECT_EQ(thirty.count("465.00"), 3);
    EXPECT_EQ(thirty.count("Received by"), 3);

    const QString none = printed(requestFor(5, ReceiptKind::Receipt, "0005", false));
    EXPECT_EQ(none.count("CHQ-5005"), 2);
    EXPECT_EQ(none.count("(no lines)"), 2);
    EXPECT_TRUE(none.contains("Bartholomew-Fitzgerald Agricultural Supply"));
}

TEST_F(PrintReceipt, ReprintGetsTheNextCopyNumber) {
    const QString first = Print_Receipt(requestFor(2, ReceiptKind::Prepayment, "0003", false)).pdfFile;
    const QString second = Print_Receipt(requestFor(2, ReceiptKind::Prepayment, "0003", false)).pdfFile;
    EXPECT_EQ(QFileInfo(first).fileName(), "Receipt batch 1 entry 2.pdf");
    EXPECT_EQ(QFileInfo(second).fileName(), "Receipt batch 1 entry 2 copy 2.pdf");
    EXPECT_EQ(pdfText(first), pdfText(second));
}

TEST_F(PrintReceipt, MissingOrBrokenTemplateIsNamedAndNothingIsPrinted) {
    QTemporaryDir reports;
    PrintRequest request = requestFor(1, ReceiptKind::Receipt, "0001", true);
    request.reportFolder = reports.path();
    EXPECT_FALSE(Print_Receipt(request).printed);
    ASSERT_EQ(boxes.asked.size(), 1);
    EXPECT_TRUE(boxes.asked[0].prompt.contains(reports.filePath("Receipt_3P.html")));
    EXPECT_TRUE(boxes.asked[0].prompt.contains("missing"));

    QFile broken(reports.filePath("Receipt_3P.html"));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("<html>{{#rows}}{{Amount Paid}}</html>");
    broken.close();
    EXPECT_FALSE(Print_Receipt(request).printed);
    ASSERT_EQ(boxes.asked.size(), 2);
    EXPECT_TRUE(boxes.asked[1].prompt.contains("Receipt_3P.html"));
    EXPECT_TRUE(boxes.asked[1].prompt.contains("cannot be used"));

    // A sub-report that is missing spoils its report as well.
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly | QIODevice::Truncate));
    broken.write("<html>{{> Footer}}</html>");
    broken.close();
    EXPECT_FALSE(Print_Receipt(request).printed);
    ASSERT_EQ(boxes.asked.size(), 3);
    EXPECT_TRUE(boxes.asked[2].prompt.contains(reports.filePath("Footer.html")));
    EXPECT_TRUE(QDir(pdfs.path()).isEmpty());
}

TEST_F(PrintReceipt, EverySubReportAtAnyDepthPrintsFromTheEntry) {
    QTemporaryDir reports;
    const auto write = [&](const char* name, const char* text) {
        QFile file(reports.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    };
    write("Receipt_2P.html", "<p>{{> Head}}</p><p>{{> Lines}}</p>");
    write("Head.html", "Head {{Receipt Number}} for {{Customer Name}} ({{copy}})");
    write("Lines.html", "Lines {{#rows}}{{Invoice Number}} {{/rows}}{{> Total}}");
    write("Total.html", "Total {{#total}}Amount Paid{{/total}}");
    PrintRequest request = requestFor(1, ReceiptKind::Receipt, "0001", false);
    request.reportFolder = reports.path();
    const QString text = printed(request);
    EXPECT_EQ(text.count("Head CHQ-1001 for Silver Dairy Group"), 2);
    EXPECT_EQ(text.count("Lines IN0000002 IN0000006 Total 3,976.94"), 2);
    // Without copies of its own, a two-part template prints the customer's and the office's.
    EXPECT_TRUE(text.contains("(Customer)"));
    EXPECT_TRUE(text.contains("(Office)"));
}

TEST_F(PrintReceipt, UnknownEntryIsReportedAndNotPrinted) {
    EXPECT_FALSE(Print_Receipt(requestFor(42, ReceiptKind::Receipt, "0001", true)).printed);
    ASSERT_EQ(boxes.asked.size(), 1);
    EXPECT_EQ(boxes.asked[0].prompt, "Entry 42 of batch 1 is not in the ledger.");
    EXPECT_TRUE(QDir(pdfs.path()).isEmpty());
}

} // namespace
} // namespace tillbook::test
