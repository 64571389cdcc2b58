// Post_Prepayment against the sample company: the keyed amount text reaching the ledger, the document
// number the ledger assigns handed back, and the trap going on after the insert's warning.

#include "PostingTestSupport.h"
#include "fetching/ReceiptRecall.h"
#include "settings/Globals.h"

namespace tillbook::test {

using PrepaymentPostingTest = PostingTest;

TEST_P(PrepaymentPostingTest, TheAmountReachesTheLedgerAsKeyedWithItsCommas) {
    std::vector<OpenInvoice> invoices;
    PostingInput input = keyed();
    input.customer = customerWithInvoices(1, invoices);
    input.txtAmount = QStringLiteral("1,250.00");
    input.receiptAmount = Money::fromWhole(1250);
    input.txtPrePay = invoices[0].number;
    input.row = 3;
    QString docNo = QStringLiteral("before");

    Post_Prepayment(input, docNo);

    EXPECT_TRUE(PostOK);
    EXPECT_TRUE(prompts().isEmpty()) << prompts().join("\n").toStdString();
    EXPECT_EQ(ReceiptHeader[3], "1,250.00");
    const auto header = records(QStringLiteral("AR0042"), EntryFilter(m_batch, "1"),
                                {"RMITTYPE", "IDCUST", "AMTRMIT", "DOCNBR", "FISCYR", "FISCPER", "DATERMIT"});
    ASSERT_EQ(header.size(), 1u);
    EXPECT_EQ(header[0],
              (QStringList{"2", input.customer, "1250.000", invoices[0].number, "2026", "03", "2026-03-14"}));
    EXPECT_TRUE(docNo.startsWith("PP")) << docNo.toStdString();
    const auto line =
        records(QStringLiteral("AR0044"), EntryFilter(m_batch, "1"), {"IDINVC", "CNTLINE", "AMTPAYM"});
    ASSERT_EQ(line.size(), 1u);
    EXPECT_EQ(line[0], (QStringList{docNo, "3", "1250.000"}));
    EXPECT_EQ(batchFigures(), (QStringList{"1", "1250.000"}));
}

TEST_P(PrepaymentPostingTest, AnAmountThatIsNoNumberIsRefusedAndNothingIsWritten) {
    std::vector<OpenInvoice> invoices;
    PostingInput input = keyed();
    input.customer = customerWithInvoices(1, invoices);
    input.txtAmount = QStringLiteral("12abc");
    QString docNo = QStringLiteral("untouched");

    Post_Prepayment(input, docNo);

    EXPECT_FALSE(PostOK);
    ASSERT_EQ(prompts().size(), 1);
    EXPECT_TRUE(prompts()[0].contains("12abc")) << prompts()[0].toStdString();
    EXPECT_EQ(docNo, "untouched");
    EXPECT_EQ(entries(), 0);
    EXPECT_EQ(batchFigures(), (QStringList{"0", "0.000"}));
}

TEST_P(PrepaymentPostingTest, AWarningOfTheInsertIsShownAndTheNumberStillHandedBack) {
    std::vector<OpenInvoice> invoices;
    PostingInput input = keyed();
    input.customer = customerWithInvoices(1, invoices);
    input.txtAmount = QStringLiteral("40");
    input.cboPeriod = QStringLiteral("05"); // the date lies in period 03
    input.txtPrePay.clear();                // no document named: the ledger accepts it
    QString docNo;

    Post_Prepayment(input, docNo);

    EXPECT_TRUE(PostOK);
    EXPECT_EQ(prompts(), QStringList{"Receipt date 2026-03-14 is outside fiscal period 05 of 2026."});
    EXPECT_TRUE(docNo.startsWith("PP")) << docNo.toStdString();
    EXPECT_EQ(records(QStringLiteral("AR0042"), EntryFilter(m_batch, "1"), {"DOCNBR", "AMTRMIT"}),
              (std::vector<QStringList>{{"", "40.000"}}));
}

TILLBOOK_ON_EACH_STORE(PrepaymentPostingTest);

} // namespace tillbook::test
