// Post_MiscReceipt against the sample company: lines by distribution code and by account with amounts keyed
// with commas, a receipt without lines, and a refused entry that leaves none of its lines behind.

#include "PostingTestSupport.h"
#include "entry/ReceiptDesk.h"

namespace tillbook::test {

using MiscReceiptPostingTest = PostingTest;

TEST_P(MiscReceiptPostingTest, LinesAreWrittenWithTheirAmountsAsPlainNumbers) {
    PostingInput input = keyed();
    input.receiptAmount = Money::fromWhole(2000);
    input.distributions = {{"RETAIL", "", "1,234.50", "Till 1", "Cash sale"},
                           {"", "4100-100", "765.50", "", "Rent"}};

    m_outcome = Post_MiscReceipt(Desk(), input);

    EXPECT_TRUE(m_outcome.PostOK);
    EXPECT_TRUE(prompts().isEmpty()) << prompts().join("\n").toStdString();
    EXPECT_EQ(entry("AR0042", {"RMITTYPE", "IDCUST", "AMTRMIT"}),
              (std::vector<QStringList>{{"5", "", "2000.000"}}));
    const auto lines = entry("AR0043", {"IDDISTCODE", "AMTDIST", "GLREF", "GLDESC", "IDACCT"});
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].mid(0, 4), (QStringList{"RETAIL", "1234.500", "Till 1", "Cash sale"}));
    EXPECT_FALSE(lines[0][4].isEmpty()); // the code's revenue account
    EXPECT_EQ(lines[1], (QStringList{"", "765.500", "", "Rent", "4100-100"}));
    EXPECT_EQ(batchFigures(), (QStringList{"1", "2000.000"}));
}

TEST_P(MiscReceiptPostingTest, WithoutLinesOnlyAZeroReceiptIsWritten) {
    PostingInput input = keyed();
    m_outcome = Post_MiscReceipt(Desk(), input);
    EXPECT_TRUE(m_outcome.PostOK);
    EXPECT_TRUE(prompts().isEmpty()) << prompts().join("\n").toStdString();
    EXPECT_EQ(inBatch("AR0042"), 1);
    EXPECT_EQ(inBatch("AR0043"), 0);
    input.receiptAmount = Money::fromWhole(100);
    m_outcome = Post_MiscReceipt(Desk(), input);
    EXPECT_FALSE(m_outcome.PostOK);
    EXPECT_EQ(prompts().size(), 1);
    EXPECT_EQ(inBatch("AR0042"), 1);
}

TEST_P(MiscReceiptPostingTest, ARefusedEntryLeavesNoneOfItsLinesBehind) {
    PostingInput input = keyed();
    input.receiptAmount = Money::fromWhole(500);
    input.distributions = {{"RETAIL", "", "100.00", "", ""}, {"", "4000", "150.00", "", ""}};

    m_outcome = Post_MiscReceipt(Desk(), input);

    EXPECT_FALSE(m_outcome.PostOK);
    ASSERT_EQ(prompts().size(), 1);
    EXPECT_TRUE(prompts()[0].startsWith("The distribution lines add up to 250.000"))
        << prompts()[0].toStdString();
    EXPECT_EQ(inBatch("AR0042"), 0);
    EXPECT_EQ(inBatch("AR0043"), 0);
    EXPECT_EQ(batchFigures(), (QStringList{"0", "0.000"}));
}

TILLBOOK_ON_EACH_STORE(MiscReceiptPostingTest);

} // namespace tillbook::test
