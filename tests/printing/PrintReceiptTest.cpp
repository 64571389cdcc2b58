// The saved entries of each kind read back into the data sets their templates print, the long ones printed;
// the copies, the printer chosen, sub-reports at any depth, and what stops a print; the report engine.

#include "SavedEntries.h"
#include "printing/Printers.h"
#include "printing/Printing.h"
#include "printing/Report.h"
#include "printing/data/ReceiptData.h"

#include <QFile>
#include <QFileInfo>

namespace tillbook::test {
namespace {

using PrintReceipt = SavedEntries;

struct DataCase {
    int entry;
    ReceiptKind kind;
    size_t rows;
    QStringList values;  // "row:Field=text" of the data set; row -1 is the header row
    QStringList printed; // "text*count": times in the three-part PDF
};

const QString Dairy = QStringLiteral("Northern Lights Wholesale Dairy & Cheese");

// The money, documents, prepayment number, distribution lines and who received it are printed by the road
// tests of the receipt window; here the rest of the data set, and the long entries. Entry 1 keeps 23.06 of
// its 4,000.00 unapplied.
const DataCase Cases[] = {
    {1,
     ReceiptKind::Receipt,
     2,
     {"0:Invoice Number=IN0000002", "1:Invoice Number=IN0000006", "0:Amount Paid=3349.750",
      "1:Amount Paid=627.190", "1:Receipt Number=CHQ-1001", "1:Receipt Date=March 15, 2025",
      "1:Customer Name=Silver Dairy Group", "1:Customer City=Calgary", "1:Customer Postal=T2P 1J9",
      "1:Company Name=" + Dairy + " Distributors Ltd.", "1:Company City=Toronto",
      "1:Payor Name=Silver Dairy Group", "1:Customer ID=0001", "0:Unapplied Amount=23.060",
      "0:Bank Code=TDOPER"},
     {}},
    {4,
     ReceiptKind::Misc,
     30,
     {"29:GL Description=Line 30 of thirty", "29:Receipt Date=March 05, 2025"},
     {"Line 30 of thirty*3", "465.00*9", "Received by*6"}},
    {5,
     ReceiptKind::Receipt,
     0,
     {"-1:Receipt Number=CHQ-5005", "-1:Customer Name=Bartholomew-Fitzgerald Agricultural Supply Cooperative",
      "-1:Invoice Number="},
     {"CHQ-5005*6", "(no lines)*3", "Bartholomew-Fitzgerald Agricultural Supply*3"}},
};

QString printed(const PrintRequest& request) {
    const PrintOutcome outcome = Print_Receipt(Desk().LedgerSession.get(), request);
    EXPECT_TRUE(outcome.printed);
    EXPECT_TRUE(outcome.problems.isEmpty()) << outcome.problems.join('\n').toStdString();
    EXPECT_EQ(QFileInfo(outcome.pdfFile).permissions() & ~(QFile::ReadUser | QFile::WriteUser),
              QFile::ReadOwner | QFile::WriteOwner); // the owner's alone
    return pdfText(outcome.pdfFile);
}

TEST_F(PrintReceipt, EachKindReadsItsEntryFromTheLedger) {
    // The window's views stay where the window put them.
    Desk().ReceiptHeaderView->browse("CNTBTCH = 1 AND CNTITEM = 4", true);
    ASSERT_TRUE(Desk().ReceiptHeaderView->fetch());
    for (const DataCase& c : Cases) {
        SCOPED_TRACE(c.entry);
        const PrintRequest request = requestFor(c.entry, c.kind, true);
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
        if (c.printed.isEmpty())
            continue;
        const QString text = printed(request);
        for (const QString& expected : c.printed)
            EXPECT_EQ(text.count(expected.section(u'*', 0, 0)), expected.section(u'*', 1).toInt())
                << expected.toStdString();
    }
    EXPECT_EQ(Desk().ReceiptHeaderView->fields().item("CNTITEM").text(), "4");
}

TEST_F(PrintReceipt, AReprintIsTheNextCopyAndAStoredPrinterNeedsAllItsNames) {
    const PrintRequest request = requestFor(2, ReceiptKind::Prepayment, false);
    const QString first = Print_Receipt(Desk().LedgerSession.get(), request).pdfFile;
    const QString second = Print_Receipt(Desk().LedgerSession.get(), request).pdfFile;
    EXPECT_EQ(QFileInfo(first).fileName(), "Receipt batch 1 entry 2.pdf");
    EXPECT_EQ(QFileInfo(second).fileName(), "Receipt batch 1 entry 2 copy 2.pdf");
    EXPECT_EQ(pdfText(first), pdfText(second));

    EXPECT_TRUE(Uses_DefaultPrinter(Load_PrinterSettings())); // nothing stored
    settings.setAll(
        {{"Printer/Default", "False"}, {"Printer/Driver", "HP LaserJet 4"}, {"Printer/Name", "Office"}});
    EXPECT_TRUE(Uses_DefaultPrinter(Load_PrinterSettings())); // no port
    settings.set("Printer/Port", "socket://10.0.0.5");
    EXPECT_FALSE(Uses_DefaultPrinter(Load_PrinterSettings()));
}

TEST_F(PrintReceipt, SubReportsAtAnyDepthPrintFromTheEntryAndWhatStopsAPrintIsNamed) {
    QTemporaryDir reports;
    const auto write = [&](const char* name, const char* text) {
        QFile file(reports.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
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

    request.threePart = true;
    const auto problemsWith = [&](const char* html) {
        if (html)
            write("Receipt_3P.html", html);
        const PrintOutcome outcome = Print_Receipt(Desk().LedgerSession.get(), request);
        EXPECT_FALSE(outcome.printed);
        return outcome.problems.join(u'\n');
    };
    const QString missing = problemsWith(nullptr);
    EXPECT_TRUE(missing.contains(reports.filePath("Receipt_3P.html")) && missing.contains("missing"));
    const QString broken = problemsWith("<html>{{#rows}}{{Amount Paid}}</html>");
    EXPECT_TRUE(broken.contains("Receipt_3P.html") && broken.contains("cannot be used"));
    // A sub-report that is missing spoils its report as well, and one that includes itself.
    EXPECT_TRUE(problemsWith("<html>{{> Footer}}</html>").contains(reports.filePath("Footer.html")));
    EXPECT_TRUE(problemsWith("<html>{{> Receipt_3P}}</html>").contains(reports.filePath("Receipt_3P.html")));
    request = requestFor(42, ReceiptKind::Receipt, true);
    EXPECT_EQ(problemsWith(nullptr), "Entry 42 of batch 1 is not in the ledger.");
    EXPECT_EQ(QDir(pdfs.path()).entryList({"*.pdf"}).size(), 1);
}

// The report engine on a template of the test's own: fields, rows, amounts, totals and copies.
TEST(Report, FieldsRowsAmountsAndTotalsRender) {
    QTemporaryDir dir;
    QFile file(dir.filePath("R.html"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<meta name=\"copies\" content=\"Customer, Office ,File\">"
               "[{{Customer Name}}]{{#Customer Address2}}<br>{{Customer Address2}}{{/Customer Address2}}"
               "{{#rows}}<{{Invoice Number}}={{#money}}{{Amount Paid}}{{/money}}>{{/rows}}"
               "{{^rows}}none{{/rows}} total {{#total}}Amount Paid{{/total}} {{copy}}");
    file.close();
    auto report = Report::open(dir.filePath("R.html"));
    EXPECT_EQ(report->copyLabels(), QStringList({"Customer", "Office", "File"}));
    auto data = std::make_shared<DataSet>();
    data->fields = {"Invoice Number", "Amount Paid", "Customer Name", "Customer Address2"};
    data->rows = {{"IN1", "1000.500", "Smith & <Sons>", ""}, {"IN2", "-0.250", "Smith & <Sons>", ""}};
    data->header = {"", "", "Smith & <Sons>", ""};
    report->setDataSource(data);
    const QString html = report->render("Office");
    // Values are escaped for HTML, and an empty field leaves out what goes with it.
    EXPECT_TRUE(html.contains("[Smith &amp; &lt;Sons&gt;]"));
    EXPECT_FALSE(html.contains("<br>"));
    EXPECT_TRUE(html.contains("<IN1=1,000.50><IN2=-0.25>"));
    EXPECT_TRUE(html.endsWith("total 1,000.25 Office"));

    data->rows.clear();
    const QString none = report->render("File");
    EXPECT_TRUE(none.contains("[Smith &amp; &lt;Sons&gt;]")); // the header still prints
    EXPECT_TRUE(none.contains("none total 0.00 File"));
}

} // namespace
} // namespace tillbook::test
