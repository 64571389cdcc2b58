// Post_Prepayment against the sample company: the keyed amount text reaching the ledger, the document
// number the ledger assigns handed back, and the trap going on after the insert's warning.

#include "PostingTestSupport.h"
#include "entry/ReceiptDesk.h"

namespace tillbook::test {

using PrepaymentPostingTest = PostingTest;

TEST_P(PrepaymentPostingTest, TheAmountReachesTheLedgerAsKeyedWithItsCommas) {
    PostingInput input = keyed(1);
    input.txtAmount = QStringLiteral("1,250.00");
    input.txtPrePay = m_invoices[0].number;
    input.row = 3;

    m_outcome = Post_Prepayment(Desk(), input);

    const QString docNo = m_outcome.prepaymentNumber;

    EXPECT_TRUE(m_outcome.PostOK);
    EXPECT_TRUE(prompts().isEmpty()) << prompts().join("\n").toStdString();
    EXPECT_EQ(Save_ReceiptHeader(input)[3], "1,250.00");
    EXPECT_EQ(entry("AR0042", {"RMITTYPE", "IDCUST", "AMTRMIT", "DOCNBR", "FISCYR", "FISCPER", "DATERMIT"}),
              (std::vector<QStringList>{
                  {"2", input.customer, "1250.000", m_invoices[0].number, "2026", "03", "2026-03-14"}}));
    EXPECT_TRUE(docNo.startsWith("PP")) << docNo.toStdString();
    EXPECT_EQ(entry("AR0044", {"IDINVC", "CNTLINE", "AMTPAYM"}),
              (std::vector<QStringList>{{docNo, "3", "1250.000"}}));
    EXPECT_EQ(batchFigures(), (QStringList{"1", "1250.000"}));
}

TEST_P(PrepaymentPostingTest, AWarningOfTheInsertIsShownAndTheNumberStillHandedBack) {
    PostingInput input = keyed(1);
    input.txtAmount = QStringLiteral("40");
    input.cboPeriod = QStringLiteral("05"); // the date lies in period 03

    m_outcome = Post_Prepayment(Desk(), input);

    const QString docNo = m_outcome.prepaymentNumber;

    EXPECT_TRUE(m_outcome.PostOK);
    EXPECT_EQ(prompts(), QStringList{"Receipt date 2026-03-14 is outside fiscal period 05 of 2026."});
    EXPECT_TRUE(docNo.startsWith("PP")) << docNo.toStdString();
    EXPECT_EQ(entry("AR0042", {"DOCNBR", "AMTRMIT"}), (std::vector<QStringList>{{"", "40.000"}}));
}

TILLBOOK_ON_EACH_STORE(PrepaymentPostingTest);

} // namespace tillbook::test
