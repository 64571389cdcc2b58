// Post_MiscReceipt against the sample company: lines by distribution code and by account, amounts keyed with
// commas, a receipt without lines, and a refused entry that leaves none of its lines behind.

#include "PostingTestSupport.h"
#include "fetching/ReceiptRecall.h"
#include "ledger/Formats.h"
#include "settings/Globals.h"

namespace tillbook::test {

using MiscReceiptPostingTest = PostingTest;

TEST_P(MiscReceiptPostingTest, LinesAreWrittenWithTheirAmountsAsPlainNumbers) {
    PostingInput input = keyed();
    input.receiptAmount = Strip_Commas(QStringLiteral("2,000.00"));
    input.distributions = {{"RETAIL", "", "1,234.50", "Till 1", "Cash sale"},
                           {"", "4100-100", "765.50", "", "Rent"}};

    Post_MiscReceipt(input);

    EXPECT_TRUE(PostOK);
    EXPECT_TRUE(prompts().isEmpty()) << prompts().join("\n").toStdString();
    EXPECT_EQ(Distributions[1][2], "1234.5");
    const auto header =
        records(QStringLiteral("AR0042"), EntryFilter(m_batch, "1"), {"RMITTYPE", "IDCUST", "AMTRMIT"});
    EXPECT_EQ(header, (std::vector<QStringList>{{"5", "", "2000.000"}}));
    auto lines = records(QStringLiteral("AR0043"), EntryFilter(m_batch, "1"),
                         {"IDDISTCODE", "IDACCT", "AMTDIST", "GLREF", "GLDESC"});
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0][0], "RETAIL");
    EXPECT_FALSE(lines[0][1].isEmpty()); // the code's revenue account
    EXPECT_EQ(lines[0].mid(2), (QStringList{"1234.500", "Till 1", "Cash sale"}));
    EXPECT_EQ(lines[1], (QStringList{"", "4100-100", "765.500", "", "Rent"}));
    EXPECT_EQ(batchFigures(), (QStringList{"1", "2000.000"}));
}

TEST_P(MiscReceiptPostingTest, WithoutLinesOnlyAZeroReceiptIsWritten) {
    PostingInput input = keyed();
    Post_MiscReceipt(input);
    EXPECT_TRUE(PostOK);
    EXPECT_TRUE(prompts().isEmpty()) << prompts().join("\n").toStdString();
    EXPECT_EQ(entries(), 1);
    EXPECT_EQ(lines("AR0043"), 0);

    // An amount with nothing to spread it over: the ledger refuses the entry.
    PostOK = true;
    input.receiptAmount = Money::fromWhole(100);
    Post_MiscReceipt(input);
    EXPECT_FALSE(PostOK);
    ASSERT_EQ(prompts().size(), 1);
    EXPECT_TRUE(prompts()[0].startsWith("The distribution lines add up to 0.000"))
        << prompts()[0].toStdString();
    EXPECT_EQ(entries(), 1);
}

TEST_P(MiscReceiptPostingTest, ARefusedEntryLeavesNoneOfItsLinesBehind) {
    PostingInput input = keyed();
    input.receiptAmount = Money::fromWhole(500);
    input.distributions = {{"RETAIL", "", "100.00", "", ""}, {"", "4000", "150.00", "", ""}};

    Post_MiscReceipt(input);

    EXPECT_FALSE(PostOK);
    ASSERT_EQ(prompts().size(), 1);
    EXPECT_TRUE(prompts()[0].startsWith("The distribution lines add up to 250.000"))
        << prompts()[0].toStdString();
    EXPECT_EQ(entries(), 0);
    EXPECT_EQ(lines("AR0043"), 0);
    EXPECT_EQ(batchFigures(), (QStringList{"0", "0.000"}));
}

TEST_P(MiscReceiptPostingTest, AnUnknownCodeStopsThePostingAtThatLine) {
    PostingInput input = keyed();
    input.receiptAmount = Money::fromWhole(20);
    input.distributions = {{"NOCODE", "", "10.00", "", ""}, {"", "NOACCT", "10.00", "", ""}};

    Post_MiscReceipt(input);

    EXPECT_FALSE(PostOK);
    ASSERT_EQ(prompts().size(), 1);
    EXPECT_TRUE(prompts()[0].contains("\"NOCODE\" does not exist")) << prompts()[0].toStdString();
    EXPECT_EQ(entries(), 0);
}

TILLBOOK_ON_EACH_STORE(MiscReceiptPostingTest);

} // namespace tillbook::test
