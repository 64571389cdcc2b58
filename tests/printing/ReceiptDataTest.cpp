// The data set a receipt prints from, read back from saved entries of each kind.

#include "printing/data/ReceiptData.h"

#include "PrintedCompany.h"

namespace tillbook::test {
namespace {

using ReceiptData = PrintedCompany;

QString value(const DataSet& data, size_t row, const char* field) {
    const int column = data.column(QLatin1String(field));
    EXPECT_GE(column, 0) << field;
    return data.rows.at(row).value(column);
}

// Every row carries the same header values, each at its own column (a line's reference aside).
void expectHeaderOnEveryRow(const DataSet& data, int firstHeaderColumn) {
    ASSERT_FALSE(data.rows.empty());
    const auto header = [&](QStringList row) {
        if (const int reference = data.column("Reference"); reference >= 0)
            row.removeAt(reference);
        return row.mid(firstHeaderColumn);
    };
    for (const QStringList& row : data.rows) {
        ASSERT_EQ(row.size(), data.fields.size());
        EXPECT_EQ(header(row), header(data.rows.front()));
    }
}

TEST_F(ReceiptData, ReceiptLinesAreTheAppliedDocumentsWithTheHeaderOnEachRow) {
    const DataSet data = Read_ReceiptData(*Desk().LedgerSession, requestFor(1, ReceiptKind::Receipt, false));
    EXPECT_EQ(
        data.fields,
        QStringList({"Invoice Number",   "Invoice Description", "Amount Paid",       "Receipt Number",
                     "Receipt Date",     "Customer Name",       "Customer Address1", "Customer Address2",
                     "Customer City",    "Customer State",      "Customer Postal",   "Company Name",
                     "Company Address",  "Company City",        "Company State",     "Company Postal",
                     "Payor Name",       "Customer ID",         "Amount Received",   "Total Applied",
                     "Unapplied Amount", "Bank Code",           "Received By",       "Saved At"}));
    ASSERT_EQ(data.rows.size(), 2u);
    EXPECT_EQ(value(data, 0, "Invoice Number"), "IN0000002");
    EXPECT_EQ(value(data, 1, "Invoice Number"), "IN0000006");
    // Amounts stay the ledger's text; only the date is formatted.
    EXPECT_EQ(value(data, 0, "Amount Paid"), "3349.750");
    EXPECT_EQ(value(data, 1, "Amount Paid"), "627.190");
    EXPECT_EQ(value(data, 1, "Receipt Number"), "CHQ-1001");
    EXPECT_EQ(value(data, 1, "Receipt Date"), "March 15, 2025");
    EXPECT_EQ(value(data, 1, "Customer Name"), "Silver Dairy Group");
    EXPECT_EQ(value(data, 1, "Customer City"), "Calgary");
    EXPECT_EQ(value(data, 1, "Customer Postal"), "T2P 1J9");
    EXPECT_EQ(value(data, 1, "Company Name"), "Northern Lights Wholesale Dairy & Cheese Distributors Ltd.");
    EXPECT_EQ(value(data, 1, "Company City"), "Toronto");
    EXPECT_EQ(value(data, 1, "Payor Name"), "Silver Dairy Group");
    EXPECT_EQ(value(data, 1, "Customer ID"), "0001");
    expectHeaderOnEveryRow(data, 3);
}

TEST_F(ReceiptData, PrepaymentNamesTheDocumentItApplesTo) {
    const DataSet data =
        Read_ReceiptData(*Desk().LedgerSession, requestFor(2, ReceiptKind::Prepayment, true));
    ASSERT_EQ(data.fields.size(), 25);
    EXPECT_EQ(data.fields.mid(0, 5), QStringList({"Apply Prepayment To", "Description", "Prepayment Number",
                                                  "Amount Applied", "Receipt Number"}));
    EXPECT_EQ(data.fields.mid(4), ReceiptFields(ReceiptKind::Receipt).mid(3));
    ASSERT_EQ(data.rows.size(), 1u);
    EXPECT_EQ(value(data, 0, "Apply Prepayment To"), "IN0000018");
    EXPECT_EQ(value(data, 0, "Prepayment Number"), "PP0000001");
    EXPECT_EQ(value(data, 0, "Amount Applied"), "1250.000");
    EXPECT_EQ(value(data, 0, "Customer ID"), "0003");
    EXPECT_EQ(value(data, 0, "Payor Name"), "Silver Dairy Inc.");
}

TEST_F(ReceiptData, MiscReceiptHasNoCustomerFieldsEvenWithACustomerSelected) {
    const DataSet data = Read_ReceiptData(*Desk().LedgerSession, requestFor(3, ReceiptKind::Misc, true));
    EXPECT_EQ(
        data.fields,
        QStringList({"Distribution Code", "Account Number", "GL Description", "Distribution Amount",
                     "Receipt Number", "Receipt Date", "Company Name", "Company Address", "Company City",
                     "Company State", "Company Postal", "Payor Name", "Reference", "Amount Received",
                     "Total Applied", "Unapplied Amount", "Bank Code", "Received By", "Saved At"}));
    ASSERT_EQ(data.rows.size(), 2u);
    EXPECT_EQ(value(data, 0, "Distribution Code"), "RETAIL");
    EXPECT_EQ(value(data, 0, "Distribution Amount"), "1234.500");
    EXPECT_EQ(value(data, 1, "Account Number"), "4100-100");
    EXPECT_EQ(value(data, 1, "GL Description"), "Freight recovered");
    EXPECT_EQ(value(data, 1, "Payor Name"), "Walk-in");
    for (const QStringList& row : data.rows)
        EXPECT_FALSE(row.contains("Silver Dairy Group"));
    expectHeaderOnEveryRow(data, 4);

    const DataSet thirty = Read_ReceiptData(*Desk().LedgerSession, requestFor(4, ReceiptKind::Misc, false));
    ASSERT_EQ(thirty.rows.size(), 30u);
    EXPECT_EQ(value(thirty, 29, "GL Description"), "Line 30 of thirty");
    // The day keeps its two digits.
    EXPECT_EQ(value(thirty, 29, "Receipt Date"), "March 05, 2025");
    expectHeaderOnEveryRow(thirty, 4);
}

TEST_F(ReceiptData, EntryWithoutLinesGivesNoRowButKeepsItsHeader) {
    const DataSet data = Read_ReceiptData(*Desk().LedgerSession, requestFor(5, ReceiptKind::Receipt, true));
    EXPECT_TRUE(data.rows.empty());
    ASSERT_EQ(data.header.size(), data.fields.size());
    EXPECT_EQ(data.header.value(data.column("Receipt Number")), "CHQ-5005");
    EXPECT_EQ(data.header.value(data.column("Customer Name")),
              "Bartholomew-Fitzgerald Agricultural Supply Cooperative");
    EXPECT_EQ(data.header.value(data.column("Invoice Number")), "");
}

TEST_F(ReceiptData, EveryKindStatesTheMoneyReceivedItsUseItsBankAndWhoTookIt) {
    struct Case {
        int entry;
        ReceiptKind kind;
        const char *received, *applied, *unapplied;
    };
    // Entry 1 keeps 23.06 of its 4,000.00 unapplied; a prepayment and a misc. receipt use all of theirs.
    for (const Case& c : {Case{1, ReceiptKind::Receipt, "4000.000", "3976.940", "23.060"},
                          Case{2, ReceiptKind::Prepayment, "1250.000", "1250.000", "0.000"},
                          Case{3, ReceiptKind::Misc, "1500.000", "1500.000", "0.000"}}) {
        const DataSet data = Read_ReceiptData(*Desk().LedgerSession, requestFor(c.entry, c.kind, true));
        ASSERT_FALSE(data.rows.empty()) << c.entry;
        EXPECT_EQ(value(data, 0, "Amount Received"), c.received) << c.entry;
        EXPECT_EQ(value(data, 0, "Total Applied"), c.applied) << c.entry;
        EXPECT_EQ(value(data, 0, "Unapplied Amount"), c.unapplied) << c.entry;
        EXPECT_EQ(value(data, 0, "Bank Code"), "TDOPER") << c.entry;
        EXPECT_EQ(value(data, 0, "Received By"), "ADMIN") << c.entry;
        EXPECT_TRUE(value(data, 0, "Saved At").contains(':')) << c.entry;
    }
    const DataSet misc = Read_ReceiptData(*Desk().LedgerSession, requestFor(3, ReceiptKind::Misc, true));
    EXPECT_FALSE(value(misc, 0, "Reference").isEmpty());
}

} // namespace
} // namespace tillbook::test
