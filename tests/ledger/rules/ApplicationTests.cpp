// Applying a receipt to the open-document list: how much each document takes, credit notes, what other
// unposted entries hold, and the details the entry writes.

#include "RulesTestSupport.h"

namespace tillbook::test {
namespace {

using ApplicationTest = RulesTest;
TILLBOOK_ON_EACH_STORE(ApplicationTest);

QVariantHash line(int entry, int number) {
    return {{"CODEPAYM", "CA"}, {"CNTBTCH", 1}, {"CNTITEM", entry}, {"CNTLINE", number}};
}

TEST_P(ApplicationTest, ListHoldsDocumentsWithAmountDueInNumberOrder) {
    auto session = signIn();
    Till till(*session);
    till.newBatch();
    ASSERT_TRUE(till.openDocument("C1", 1));
    EXPECT_EQ(till.text("AR0061", "IDINVC"), "CN1");
    ASSERT_TRUE(till.openDocument("C1", 2));
    EXPECT_EQ(till.text("AR0061", "IDINVC"), "IN1");
    EXPECT_EQ(money(till.field("AR0061", "OBSDISCAMT").value()), Money::fromWhole(2)); // before 2025-03-20
    EXPECT_EQ(till.text("AR0061", "APPLY"), "N");
    ASSERT_TRUE(till.openDocument("C1", 3));
    EXPECT_EQ(till.text("AR0061", "IDINVC"), "IN2");
    EXPECT_FALSE(till.openDocument("C1", 4)); // the paid IN0 is not listed
}

// A read shows the document's own values in every field, whatever the record held before: another
// document of the list, or values of other types put by the caller.
TEST_P(ApplicationTest, EachReadShowsTheDocumentsOwnValuesInEveryField) {
    auto session = signIn();
    Till till(*session);
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
    const QStringList invoice = shown();
    ASSERT_TRUE(readKey(1));
    EXPECT_EQ(till.text("AR0061", "IDINVC"), "CN1");
    EXPECT_NE(shown(), invoice);
    till.field("AR0061", "IDINVC").putWithoutVerification(7);
    till.field("AR0061", "AMTDUE").putWithoutVerification("12.5");
    till.field("AR0061", "CNTBTCH").putWithoutVerification("9");
    ASSERT_TRUE(readKey(2));
    EXPECT_EQ(shown(), invoice);
}

TEST_P(ApplicationTest, ReceiptPaysWholeThenPartAndLeavesNothingUnapplied) {
    auto session = signIn();
    Till till(*session);
    const qint64 batch = till.newBatch();
    till.postReceipt(batch, 1, "C1", 120.0, {2, 3});
    EXPECT_EQ(till.text("AR0042", "CNTITEM"), "1");
    EXPECT_EQ(money(till.field("AR0042", "REMUNAPLTC").value()), Money());
    const auto first = record("AR0044", line(1, 1), {"IDINVC", "AMTPAYM", "IDCUST"});
    const auto second = record("AR0044", line(1, 2), {"IDINVC", "AMTPAYM"});
    ASSERT_TRUE(first && second);
    EXPECT_EQ(first->value("IDINVC").toString(), "IN1");
    EXPECT_EQ(money(first->value("AMTPAYM")), Money::fromWhole(100));
    EXPECT_EQ(first->value("IDCUST").toString(), "C1");
    EXPECT_EQ(second->value("IDINVC").toString(), "IN2");
    EXPECT_EQ(money(second->value("AMTPAYM")), Money::fromWhole(20));
    EXPECT_EQ(session->errors().count(), 0);
}

TEST_P(ApplicationTest, CreditNoteAddsToWhatIsLeftToApply) {
    auto session = signIn();
    Till till(*session);
    const qint64 batch = till.newBatch();
    till.postReceipt(batch, 1, "C1", 70.0, {1, 2, 3}); // CN1 -30, then IN1 takes 100, IN2 nothing
    EXPECT_EQ(money(record("AR0044", line(1, 1), {"AMTPAYM"})->value("AMTPAYM")), Money::fromWhole(-30));
    EXPECT_EQ(money(record("AR0044", line(1, 2), {"AMTPAYM"})->value("AMTPAYM")), Money::fromWhole(100));
    EXPECT_FALSE(record("AR0044", line(1, 3), {"AMTPAYM"}));
    EXPECT_EQ(money(till.field("AR0042", "AMTPAYMTC").value()), Money::fromWhole(70));
    ASSERT_EQ(session->errors().count(), 1); // nothing was left for IN2
    EXPECT_EQ(session->errors().at(0).priority, ErrorPriority::Warning);
    EXPECT_TRUE(session->errors().at(0).description.contains("IN2"));
}

TEST_P(ApplicationTest, OtherUnpostedEntriesShowAsPendingAndLimitTheNextApplication) {
    auto session = signIn();
    Till till(*session);
    const qint64 batch = till.newBatch();
    till.postReceipt(batch, 1, "C1", 60.0, {2});

    auto other = signIn(); // a second till
    Till second(*other);
    ASSERT_TRUE(second.openDocument("C1", 2));
    EXPECT_EQ(second.text("AR0061", "APPLY"), "X");
    EXPECT_EQ(money(second.field("AR0061", "PNDPAYTOT").value()), Money::fromWhole(60));
    EXPECT_EQ(money(second.field("AR0061", "PENDNGBAL").value()), Money::fromWhole(40));
    second.postReceipt(batch, 2, "C1", 100.0, {2});
    EXPECT_EQ(money(record("AR0044", line(2, 1), {"AMTPAYM"})->value("AMTPAYM")), Money::fromWhole(40));
    EXPECT_EQ(money(second.field("AR0042", "REMUNAPLTC").value()), Money::fromWhole(60));
}

TEST_P(ApplicationTest, WarningSaysWhetherTheReceiptOrTheDocumentIsUsedUp) {
    auto session = signIn();
    Till till(*session);
    const qint64 batch = till.newBatch();
    till.postReceipt(batch, 1, "C1", 50.0, {3}); // IN2 taken up by an unposted entry
    till.postReceipt(batch, 2, "C1", 100.0, {3, 2});
    till.postReceipt(batch, 3, "C2", 0.0, {1}); // a receipt of nothing
    ASSERT_EQ(session->errors().count(), 2);
    EXPECT_EQ(session->errors().at(0).description,
              "Document IN2 has nothing left to pay: its balance is taken up by payments, discounts and "
              "adjustments already applied.");
    EXPECT_EQ(session->errors().at(1).description,
              "Nothing is left of the receipt amount to apply to document IN3.");
}

// The second till builds its list of C1's documents for a receipt of 100 in `batch`, then the first till
// saves `firstReceipt`; the second applies to `apply` (CNTKEYs) from its list, which is stale by then.
bool savesFromAStaleList(Till& first, Till& second, qint64 batch, double firstReceipt,
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
    first.postReceipt(batch, 1, "C1", firstReceipt, firstKeys);
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
    auto session = signIn();
    Till till(*session);
    const qint64 batch = till.newBatch();
    auto other = signIn();
    Till second(*other);
    // IN1 paid in full by the first till meanwhile.
    EXPECT_FALSE(savesFromAStaleList(till, second, batch, 100.0, {2}, {2}));
    EXPECT_EQ(count("AR0042", {{"CNTBTCH", batch}}), 1);
    EXPECT_EQ(
        record("AR0041", {{"CODEPYMTYP", "CA"}, {"CNTBTCH", batch}}, {"CNTENTER"})->value("CNTENTER").toInt(),
        1);
}

TEST_P(ApplicationTest, ACreditNoteUsedUpByAnotherTillIsNotTakenAgain) {
    auto session = signIn();
    Till till(*session);
    const qint64 batch = till.newBatch();
    auto other = signIn();
    Till second(*other);
    // CN1's -30 taken by the first till meanwhile; the second's CN1 and IN2 would otherwise be accepted.
    ASSERT_FALSE(savesFromAStaleList(till, second, batch, 70.0, {1, 2}, {1, 3}));
    ASSERT_GT(other->errors().count(), 0);
    EXPECT_TRUE(other->errors().at(other->errors().count() - 1).description.contains("CN1"));
    EXPECT_EQ(count("AR0042", {{"CNTBTCH", batch}}), 1);
}

} // namespace
} // namespace tillbook::test
