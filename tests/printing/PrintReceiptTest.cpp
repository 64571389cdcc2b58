// The saved entries of each kind read back into their data sets and printed into PDF files, read back with
// pdftotext; and what stops a print or is said on the way.

#include "PrintedCompany.h"
#include "printing/Printers.h"
#include "printing/Printing.h"
#include "printing/data/ReceiptData.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace tillbook::test {
namespace {

using PrintReceipt = PrintedCompany;

struct PrintCase {
    int entry;
    ReceiptKind kind;
    bool threePart;
    size_t rows;
    QStringList values;  // "row:Field=text" of the data set; row -1 is the header row
    QStringList printed; // "text*count" times in the PDF, "text" at least once, "text*0" never
};

const QString Dairy = QStringLiteral("Northern Lights Wholesale Dairy & Cheese");

// Entry 1 keeps 23.06 of its 4,000.00 unapplied; a prepayment and a misc. receipt use all of theirs.
const PrintCase Cases[] = {
    {1,
     ReceiptKind::Receipt,
     false,
     2,
     {"0:Invoice Number=IN0000002", "1:Invoice Number=IN0000006", "0:Amount Paid=3349.750",
      "1:Amount Paid=627.190", "1:Receipt Number=CHQ-1001", "1:Receipt Date=March 15, 2025",
      "1:Customer Name=Silver Dairy Group", "1:Customer City=Calgary", "1:Customer Postal=T2P 1J9",
      "1:Company Name=" + Dairy + " Distributors Ltd.", "1:Company City=Toronto",
      "1:Payor Name=Silver Dairy Group", "1:Customer ID=0001", "0:Amount Received=4000.000",
      "0:Total Applied=3976.940", "0:Unapplied Amount=23.060", "0:Bank Code=TDOPER", "0:Received By=ADMIN"},
     {"Customer copy*1", "Office copy*1", "File copy*0", "CHQ-1001*4", "Pharmacy IN0000006*2", "3,349.75*2",
      "3,976.94*4", "March 15, 2025", "Silver Dairy Group (0001)", "2858 King St. W.", Dairy}},
    {1, ReceiptKind::Receipt, true, 2, {}, {"Customer copy*1", "Office copy*1", "File copy*1", "3,976.94*6"}},
    {2,
     ReceiptKind::Prepayment,
     true,
     1,
     {"0:Apply Prepayment To=IN0000018", "0:Prepayment Number=PP0000001", "0:Amount Applied=1250.000",
      "0:Customer ID=0003", "0:Payor Name=Silver Dairy Inc.", "0:Amount Received=1250.000",
      "0:Total Applied=1250.000", "0:Unapplied Amount=0.000"},
     {"PP0000001*3", "IN0000018*6", "1,250.00*12"}},
    {3,
     ReceiptKind::Misc,
     false,
     2,
     {"0:Distribution Code=RETAIL", "0:Distribution Amount=1234.500", "1:Account Number=4100-100",
      "1:GL Description=Freight recovered", "1:Payor Name=Walk-in", "0:Amount Received=1500.000",
      "0:Total Applied=1500.000", "0:Unapplied Amount=0.000"},
     {"Freight recovered*2", "1,500.00*6", "Walk-in*2", "Silver Dairy Group*0"}},
    {4,
     ReceiptKind::Misc,
     true,
     30,
     {"29:GL Description=Line 30 of thirty", "29:Receipt Date=March 05, 2025"},
     {"Line 30 of thirty*3", "465.00*9", "Received by*6"}},
    {5,
     ReceiptKind::Receipt,
     false,
     0,
     {"-1:Receipt Number=CHQ-5005", "-1:Customer Name=Bartholomew-Fitzgerald Agricultural Supply Cooperative",
      "-1:Invoice Number="},
     {"CHQ-5005*4", "(no lines)*2", "Bartholomew-Fitzgerald Agricultural Supply"}},
};

QString printed(const PrintRequest& request) {
    const PrintOutcome outcome = Print_Receipt(Desk().LedgerSession.get(), request);
    EXPECT_TRUE(outcome.printed);
    EXPECT_TRUE(outcome.problems.isEmpty()) << outcome.problems.join('\n').toStdString();
    EXPECT_EQ(QFileInfo(outcome.pdfFile).permissions() & ~(QFile::ReadUser | QFile::WriteUser),
              QFile::ReadOwner | QFile::WriteOwner); // the owner's alone
    return pdfText(outcome.pdfFile);
}

TEST_F(PrintReceipt, EachKindPrintsItsEntryFromTheLedger) {
    // The window's views stay where the window put them.
    Desk().ReceiptHeaderView->browse("CNTBTCH = 1 AND CNTITEM = 4", true);
    ASSERT_TRUE(Desk().ReceiptHeaderView->fetch());
    for (const PrintCase& c : Cases) {
        SCOPED_TRACE(c.entry);
        const PrintRequest request = requestFor(c.entry, c.kind, c.threePart);
        const DataSet data = Read_ReceiptData(*Desk().LedgerSession, request);
        EXPECT_EQ(data.fields, ReceiptFields(c.kind));
        ASSERT_EQ(data.rows.size(), c.rows);
        ASSERT_EQ(data.header.size(), data.fields.size());
        for (const QString& value : c.values) {
            const int row = value.section(u':', 0, 0).toInt();
            const QString field = value.section(u':', 1).section(u'=', 0, 0);
            const QStringList& cells = row < 0 ? data.header : data.rows.at(size_t(row));
            EXPECT_EQ(cells.value(data.column(field)), value.section(u'=', 1)) << field.toStdString();
        }
        // Every row repeats the header's values (a misc. line's reference aside).
        for (const QStringList& row : data.rows) {
            for (int i = 0; i < data.fields.size(); ++i) {
                if (!data.header[i].isEmpty() && data.fields[i] != u"Reference") {
                    EXPECT_EQ(row[i], data.header[i]) << data.fields[i].toStdString();
                }
            }
        }
        EXPECT_TRUE(data.header.value(data.column("Saved At")).contains(u':'));
        EXPECT_EQ(c.kind == ReceiptKind::Misc && data.rows[0].value(data.column("Reference")).isEmpty(),
                  false);

        const QString text = printed(request);
        for (const QString& expected : c.printed) {
            const QString what = expected.section(u'*', 0, 0);
            const int times = expected.contains(u'*') ? expected.section(u'*', 1).toInt() : -1;
            EXPECT_TRUE(times < 0 ? text.contains(what) : text.count(what) == times) << what.toStdString();
        }
    }
    EXPECT_EQ(Desk().ReceiptHeaderView->fields().item("CNTITEM").text(), "4");
}

TEST_F(PrintReceipt, FieldSetsAreTheTemplatesNames) {
    EXPECT_EQ(
        ReceiptFields(ReceiptKind::Receipt),
        QStringList({"Invoice Number",   "Invoice Description", "Amount Paid",       "Receipt Number",
                     "Receipt Date",     "Customer Name",       "Customer Address1", "Customer Address2",
                     "Customer City",    "Customer State",      "Customer Postal",   "Company Name",
                     "Company Address",  "Company City",        "Company State",     "Company Postal",
                     "Payor Name",       "Customer ID",         "Amount Received",   "Total Applied",
                     "Unapplied Amount", "Bank Code",           "Received By",       "Saved At"}));
    EXPECT_EQ(ReceiptFields(ReceiptKind::Prepayment),
              QStringList({"Apply Prepayment To", "Description", "Prepayment Number", "Amount Applied"}) +
                  ReceiptFields(ReceiptKind::Receipt).mid(3));
    EXPECT_EQ(
        ReceiptFields(ReceiptKind::Misc),
        QStringList({"Distribution Code", "Account Number", "GL Description", "Distribution Amount",
                     "Receipt Number", "Receipt Date", "Company Name", "Company Address", "Company City",
                     "Company State", "Company Postal", "Payor Name", "Reference", "Amount Received",
                     "Total Applied", "Unapplied Amount", "Bank Code", "Received By", "Saved At"}));
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

TEST_F(PrintReceipt, ReprintGetsTheNextCopyNumber) {
    const PrintRequest request = requestFor(2, ReceiptKind::Prepayment, false);
    const QString first = Print_Receipt(Desk().LedgerSession.get(), request).pdfFile;
    const QString second = Print_Receipt(Desk().LedgerSession.get(), request).pdfFile;
    EXPECT_EQ(QFileInfo(first).fileName(), "Receipt batch 1 entry 2.pdf");
    EXPECT_EQ(QFileInfo(second).fileName(), "Receipt batch 1 entry 2 copy 2.pdf");
    EXPECT_EQ(pdfText(first), pdfText(second));
}

TEST_F(PrintReceipt, WhatStopsAPrintIsNamedAndNothingIsPrinted) {
    QTemporaryDir reports;
    PrintRequest request = requestFor(1, ReceiptKind::Receipt, true);
    request.reportFolder = reports.path();
    const auto problemsWith = [&](const char* html) {
        if (html) {
            QFile file(reports.filePath("Receipt_3P.html"));
            EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            file.write(html);
        }
        const PrintOutcome outcome = Print_Receipt(Desk().LedgerSession.get(), request);
        EXPECT_FALSE(outcome.printed);
        return outcome.problems.join(u'\n');
    };
    const QString missing = problemsWith(nullptr);
    EXPECT_TRUE(missing.contains(reports.filePath("Receipt_3P.html")) && missing.contains("missing"));
    const QString broken = problemsWith("<html>{{#rows}}{{Amount Paid}}</html>");
    EXPECT_TRUE(broken.contains("Receipt_3P.html") && broken.contains("cannot be used"));
    // A sub-report that is missing spoils its report as well.
    EXPECT_TRUE(problemsWith("<html>{{> Footer}}</html>").contains(reports.filePath("Footer.html")));
    request = requestFor(42, ReceiptKind::Receipt, true);
    EXPECT_EQ(problemsWith(nullptr), "Entry 42 of batch 1 is not in the ledger.");
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
    EXPECT_TRUE(text.contains("(Customer)") && text.contains("(Office)"));
}

} // namespace
} // namespace tillbook::test
