// The open-document list a receipt is applied through: what it lists and reads, what other unposted entries
// hold, and applications another till has made stale meanwhile.

#include "RulesTestSupport.h"

namespace tillbook::test {
namespace {

using ApplicationTest = RulesTest;
TILLBOOK_EACH_STORE(ApplicationTest);

// A read shows the document's own values in every field, whatever the record held before: another
// document of the list, or values of other types put by the caller.
TEST_P(ApplicationTest, ListHoldsDocumentsWithAmountDueAndEachReadShowsItsOwnValues) {
    Till till(signIn());
    till.newBatch();
    View& list = till.view("AR0061");
    const auto shown = [&list] {
        QStringList texts;
        for (int i = 0; i < list.fields().count(); ++i)
            texts << list.fields().at(i).name() + u'=' + list.fields().at(i).text();
        return texts;
    };
    const auto readKey = [&](int key) {
        list.fields().item("CNTKEY").putWithoutVerification(key);
        return list.read();
    };
    ASSERT_TRUE(till.openDocument("C1", 2));
    EXPECT_EQ(till.text("AR0061", "IDINVC"), "IN1");
    EXPECT_EQ(money(till.field("AR0061", "OBSDISCAMT").value()), Money::fromWhole(2)); // before 2025-03-20
    EXPECT_EQ(till.text("AR0061", "APPLY"), "N");
    const QStringList invoice = shown();
    ASSERT_TRUE(readKey(1));
    EXPECT_EQ(till.text("AR0061", "IDINVC"), "CN1");
    EXPECT_NE(shown(), invoice);
    till.field("AR0061", "IDINVC").putWithoutVerification(7);
    till.field("AR0061", "AMTDUE").putWithoutVerification("12.5");
    till.field("AR0061", "CNTBTCH").putWithoutVerification("9");
    ASSERT_TRUE(readKey(2));
    EXPECT_EQ(shown(), invoice);
    ASSERT_TRUE(readKey(3));
    EXPECT_EQ(till.text("AR0061", "IDINVC"), "IN2");
    EXPECT_FALSE(readKey(4)); // the paid IN0 is not listed
}

TEST_P(ApplicationTest, OtherUnpostedEntriesShowAsPendingInAnotherTillsList) {
    Till till(signIn());
    const qint64 batch = till.newBatch();
    ASSERT_TRUE(till.post(receiptDraft(batch, 1, "C1", "60", {2})).PostOK);

    Till second(signIn());
    ASSERT_TRUE(second.openDocument("C1", 2));
    EXPECT_EQ(second.text("AR0061", "APPLY"), "X");
    EXPECT_EQ(money(second.field("AR0061", "PNDPAYTOT").value()), Money::fromWhole(60));
    EXPECT_EQ(money(second.field("AR0061", "PENDNGBAL").value()), Money::fromWhole(40));
}

// The second till builds its list of C1's documents for a receipt of 100 in `batch`, then the first till
// saves `firstReceipt`; the second applies to `apply` (CNTKEYs) from its list, which is stale by then.
bool savesFromAStaleList(Till& first, Till& second, qint64 batch, const char* firstReceipt,
                         std::vector<int> firstKeys, std::vector<int> apply) {
    second.field("AR0042", "CNTITEM").putWithoutVerification("0");
    second.field("AR0041", "CNTBTCH").putWithoutVerification(QString::number(batch));
    second.view("AR0041").read();
    second.view("AR0042").init();
    second.field("AR0042", "IDCUST").setValue("C1");
    second.field("AR0042", "AMTRMIT").setValue(100);
    second.field("AR0061", "IDCUST").putWithoutVerification("C1");
    second.field("AR0061", "AMTRMIT").putWithoutVerification(100);
    second.view("AR0061").process();
    EXPECT_TRUE(first.post(receiptDraft(batch, 1, "C1", firstReceipt, firstKeys)).PostOK);
    for (int key : apply) {
        second.field("AR0061", "CNTKEY").putWithoutVerification(QString::number(key));
        EXPECT_TRUE(second.view("AR0061").read());
        second.field("AR0061", "APPLY").setValue("Y");
        second.view("AR0061").update();
    }
    try {
        second.view("AR0042").insert();
        return true;
    } catch (const LedgerError&) {
        return false;
    }
}

TEST_P(ApplicationTest, ApplicationsMadeStaleByAnotherTillAreRefusedWhole) {
    Till till(signIn());
    const qint64 batch = till.newBatch();
    Till second(signIn());
    // IN1 paid in full by the first till meanwhile.
    EXPECT_FALSE(savesFromAStaleList(till, second, batch, "100", {2}, {2}));
    EXPECT_EQ(count("AR0042", {{"CNTBTCH", batch}}), 1);
    EXPECT_EQ(
        record("AR0041", {{"CODEPYMTYP", "CA"}, {"CNTBTCH", batch}}, {"CNTENTER"})->value("CNTENTER").toInt(),
        1);
}

TEST_P(ApplicationTest, ACreditNoteUsedUpByAnotherTillIsNotTakenAgain) {
    Till till(signIn());
    const qint64 batch = till.newBatch();
    Till second(signIn());
    // CN1's -30 taken by the first till meanwhile; the second's CN1 and IN2 would otherwise be accepted.
    ASSERT_FALSE(savesFromAStaleList(till, second, batch, "70", {1, 2}, {1, 3}));
    const ErrorList& errors = second.session().errors();
    ASSERT_GT(errors.count(), 0);
    EXPECT_TRUE(errors.at(errors.count() - 1).description.contains("CN1"));
    EXPECT_EQ(count("AR0042", {{"CNTBTCH", batch}}), 1);
}

} // namespace
} // namespace tillbook::test
