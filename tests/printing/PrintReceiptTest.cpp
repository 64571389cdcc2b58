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
    const PrintOutcome outcome = Print_Receipt(Desk().LedgerSession.get(), request);
    EXPECT_TRUE(outcome.printed);
    EXPECT_TRUE(outcome.problems.isEmpty()) << outcome.problems.join('\n').toStdString();
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
    const QString two = printed(requestFor(1, ReceiptKind::Receipt, false));
    EXPECT_EQ(two.count("Customer copy"), 1);
    EXPECT_EQ(two.count("Office copy"), 1);
    EXPECT_EQ(two.count("File copy"), 0);
    EXPECT_EQ(two.count("CHQ-1001"), 4); // heading and payment block, twice
    EXPECT_EQ(two.count("Pharmacy IN0000006"), 2);
    EXPECT_EQ(two.count("3,349.75"), 2);
    EXPECT_EQ(two.count("3,976.94"), 4); // the total of the two lines, and what was applied
    EXPECT_TRUE(two.contains("March 15, 2025"));
    EXPECT_TRUE(two.contains("Silver Dairy Group (0001)"));
    EXPECT_TRUE(two.contains("2858 King St. W."));
    EXPECT_TRUE(two.contains("Northern Lights Wholesale Dairy & Cheese"));

    const QString three = printed(requestFor(1, ReceiptKind::Receipt, true));
    for (const char* copy : {"Customer copy", "Office copy", "File copy"})
        EXPECT_EQ(three.count(copy), 1) << copy;
    EXPECT_EQ(three.count("3,976.94"), 6);
}

TEST_F(PrintReceipt, PrepaymentAndMiscReceiptsPrintTheirOwnLines) {
    const QString prepay = printed(requestFor(2, ReceiptKind::Prepayment, true));
    EXPECT_EQ(prepay.count("PP0000001"), 3);
    EXPECT_EQ(prepay.count("IN0000018"), 6); // the document, and in the description
    EXPECT_EQ(prepay.count("1,250.00"), 12); // line, total, received and applied, three times

    const QString misc = printed(requestFor(3, ReceiptKind::Misc, false));
    EXPECT_EQ(misc.count("Freight recovered"), 2);
    EXPECT_EQ(misc.count("1,500.00"), 6);
    EXPECT_EQ(misc.count("Walk-in"), 2);
    EXPECT_FALSE(misc.contains("Silver Dairy Group"));
}

TEST_F(PrintReceipt, ThirtyLinesAndNoLinesBothFitTheirBands) {
    const QString thirty = printed(requestFor(4, ReceiptKind::Misc, true));
    EXPECT_EQ(thirty.count("Line 30 of thirty"), 3);
    EXPECT_EQ(thirty.count("465.00"), 9);
    EXPECT_EQ(thirty.count("Received by"), 6); // the clerk and the signature

    const QString none = printed(requestFor(5, ReceiptKind::Receipt, false));
    EXPECT_EQ(none.count("CHQ-5005"), 4);
    EXPECT_EQ(none.count("(no lines)"), 2);
    EXPECT_TRUE(none.contains("Bartholomew-Fitzgerald Agricultural Supply"));
}

TEST_F(PrintReceipt, ReprintGetsTheNextCopyNumber) {
    const QString first =
        Print_Receipt(Desk().LedgerSession.get(), requestFor(2, ReceiptKind::Prepayment, false)).pdfFile;
    const QString second =
        Print_Receipt(Desk().LedgerSession.get(), requestFor(2, ReceiptKind::Prepayment, false)).pdfFile;
    EXPECT_EQ(QFileInfo(first).fileName(), "Receipt batch 1 entry 2.pdf");
    EXPECT_EQ(QFileInfo(second).fileName(), "Receipt batch 1 entry 2 copy 2.pdf");
    EXPECT_EQ(pdfText(first), pdfText(second));
}

TEST_F(PrintReceipt, MissingOrBrokenTemplateIsNamedAndNothingIsPrinted) {
    QTemporaryDir reports;
    PrintRequest request = requestFor(1, ReceiptKind::Receipt, true);
    request.reportFolder = reports.path();
    PrintOutcome outcome = Print_Receipt(Desk().LedgerSession.get(), request);
    EXPECT_FALSE(outcome.printed);
    ASSERT_EQ(outcome.problems.size(), 1);
    EXPECT_TRUE(outcome.problems[0].contains(reports.filePath("Receipt_3P.html")));
    EXPECT_TRUE(outcome.problems[0].contains("missing"));

    QFile broken(reports.filePath("Receipt_3P.html"));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("<html>{{#rows}}{{Amount Paid}}</html>");
    broken.close();
    outcome = Print_Receipt(Desk().LedgerSession.get(), request);
    EXPECT_FALSE(outcome.printed);
    ASSERT_EQ(outcome.problems.size(), 1);
    EXPECT_TRUE(outcome.problems[0].contains("Receipt_3P.html"));
    EXPECT_TRUE(outcome.problems[0].contains("cannot be used"));

    // A sub-report that is missing spoils its report as well.
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly | QIODevice::Truncate));
    broken.write("<html>{{> Footer}}</html>");
    broken.close();
    outcome = Print_Receipt(Desk().LedgerSession.get(), request);
    EXPECT_FALSE(outcome.printed);
    ASSERT_EQ(outcome.problems.size(), 1);
    EXPECT_TRUE(outcome.problems[0].contains(reports.filePath("Footer.html")));
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
    PrintRequest request = requestFor(1, ReceiptKind::Receipt, false);
    request.reportFolder = reports.path();
    const QString text = printed(request);
    EXPECT_EQ(text.count("Head CHQ-1001 for Silver Dairy Group"), 2);
    EXPECT_EQ(text.count("Lines IN0000002 IN0000006 Total 3,976.94"), 2);
    // Without copies of its own, a two-part template prints the customer's and the office's.
    EXPECT_TRUE(text.contains("(Customer)"));
    EXPECT_TRUE(text.contains("(Office)"));
}

TEST_F(PrintReceipt, UnknownEntryIsReportedAndNotPrinted) {
    const PrintOutcome outcome =
        Print_Receipt(Desk().LedgerSession.get(), requestFor(42, ReceiptKind::Receipt, true));
    EXPECT_FALSE(outcome.printed);
    EXPECT_EQ(outcome.problems, QStringList{"Entry 42 of batch 1 is not in the ledger."});
    EXPECT_TRUE(QDir(pdfs.path()).isEmpty());
}

} // namespace
} // namespace tillbook::test
