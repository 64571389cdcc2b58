// Amounts and totals at the edge of their fields: refused with the field's name before anything is
// written, on both stores alike, and never stored as anything but an exact whole number of thousandths.

#include "RulesTestSupport.h"
#include "ledger/engine/BatchPosting.h"
#include "ledger/engine/FieldRangeError.h"
#include "ledger/engine/RecordAccess.h"

namespace tillbook::test {
namespace {

using AmountRangeTest = RulesTest;
TILLBOOK_ON_EACH_STORE(AmountRangeTest);

const Money Largest = Money::fromThousandths(999'999'999'999'999'999); // BCD*10.3

QVariantHash batchKey(qint64 batch) {
    return {{"CODEPYMTYP", "CA"}, {"CNTBTCH", batch}};
}

TEST_P(AmountRangeTest, AmountBeyondItsFieldIsRefusedPutEitherWay) {
    auto session = signIn();
    Till till(*session);
    till.view("AR0042").init();
    Field& amount = till.field("AR0042", "AMTRMIT");
    amount.setValue("999,999,999,999,999.999");
    EXPECT_EQ(money(amount.value()), Largest);
    const QString tooLarge =
        "Bank Receipt Amount \"1000000000000000.000\" is too large: it holds at most 999999999999999.999.";
    for (const QVariant& value :
         {QVariant("1000000000000000"), QVariant(1e15), QVariant("99999999999999999999"),
          QVariant::fromValue(Largest + Money::fromThousandths(1))}) {
        for (bool verified : {true, false}) {
            session->errors().clear();
            EXPECT_THROW(verified ? amount.setValue(value) : amount.putWithoutVerification(value),
                         LedgerError);
            ASSERT_EQ(session->errors().count(), 1);
            EXPECT_TRUE(session->errors().at(0).description.contains("is too large: it holds at most "
                                                                     "999999999999999.999."))
                << session->errors().at(0).description.toStdString();
        }
    }
    session->errors().clear();
    EXPECT_THROW(amount.setValue("1000000000000000"), LedgerError);
    EXPECT_EQ(session->errors().at(0).description, tooLarge);
    EXPECT_EQ(money(amount.value()), Largest); // a refused put changes nothing
}

TEST_P(AmountRangeTest, BatchTotalBeyondItsFieldRefusesTheEntryWhole) {
    auto session = signIn();
    Till till(*session);
    const qint64 batch = till.newBatch();
    till.postReceipt(batch, 1, "C1", 0, {});
    const auto receipt = [&](const QString& customer, const Money& amount) {
        till.view("AR0042").init();
        till.field("AR0042", "IDCUST").setValue(customer);
        till.field("AR0042", "AMTRMIT").setValue(QVariant::fromValue(amount));
        till.view("AR0042").insert();
    };
    receipt("C1", Largest);
    session->errors().clear();
    EXPECT_THROW(receipt("C2", Money::fromThousandths(1)), LedgerError);
    ASSERT_EQ(session->errors().count(), 1);
    EXPECT_EQ(session->errors().at(0).description,
              "Batch Total \"1000000000000000.000\" is too large: it holds at most 999999999999999.999.");
    EXPECT_EQ(count("AR0042", {{"CNTBTCH", batch}}), 2); // the refused entry left nothing behind
    const auto stored = record("AR0041", batchKey(batch), {"CNTENTER", "AMTENTER", "CNTLASTITM"});
    EXPECT_EQ(stored->value("CNTENTER").toInt(), 2);
    EXPECT_EQ(money(stored->value("AMTENTER")), Largest);
    EXPECT_EQ(stored->value("CNTLASTITM").toInt(), 2);

    // The batch still takes what fits, and the next entry has the next number.
    session->errors().clear();
    till.postReceipt(batch, 3, "C2", 0, {});
    EXPECT_EQ(till.text("AR0042", "CNTITEM"), "3");
}

TEST_P(AmountRangeTest, PostingThatWouldTakeABalanceBeyondItsFieldChangesNothing) {
    auto session = signIn();
    Till till(*session);
    const qint64 batch = till.newBatch();
    engine::updateRecord(
        store(), "AR0024", {{"IDCUST", "C2"}},
        {{"AMTBALDUET", QVariant::fromValue(-Largest)}, {"AMTBALDUEH", QVariant::fromValue(-Largest)}});
    till.postReceipt(batch, 1, "C1", 100.0, {2}); // pays IN1 in full
    till.postReceipt(batch, 2, "C2", 0.001, {});  // 0.001 unapplied: C2's balance would go beyond
    try {
        engine::postBatch(store(), session->errors(), batch, QDate(2025, 3, 15));
        ADD_FAILURE() << "the posting went through";
    } catch (const engine::FieldRangeError& e) {
        EXPECT_EQ(e.message().toStdString(),
                  "Balance Due in Cust. Curr. \"-1000000000000000.000\" is too large: it holds at most "
                  "999999999999999.999.");
    }
    EXPECT_EQ(record("AR0041", batchKey(batch), {"BATCHSTAT"})->value("BATCHSTAT").toInt(), 1);
    EXPECT_EQ(money(record("AR0024", {{"IDCUST", "C2"}}, {"AMTBALDUET"})->value("AMTBALDUET")), -Largest);
    EXPECT_EQ(money(record("AR0024", {{"IDCUST", "C1"}}, {"AMTBALDUET"})->value("AMTBALDUET")),
              Money::fromWhole(120));
    EXPECT_EQ(money(record("AR0036", {{"IDCUST", "C1"}, {"IDINVC", "IN1"}}, {"AMTDUETC"})->value("AMTDUETC")),
              Money::fromWhole(100));
}

TEST_P(AmountRangeTest, MiscLinesThatCannotBeAddedUpAreRefused) {
    auto session = signIn();
    Till till(*session);
    const qint64 batch = till.newBatch();
    session->errors().clear();
    EXPECT_THROW(till.postMiscReceipt(batch, 1.0,
                                      {{"RETAIL", "", "999999999999999.999"},
                                       {"RETAIL", "", "999999999999999.999"},
                                       {"RETAIL", "", "999999999999999.999"},
                                       {"RETAIL", "", "999999999999999.999"},
                                       {"RETAIL", "", "999999999999999.999"},
                                       {"RETAIL", "", "999999999999999.999"},
                                       {"RETAIL", "", "999999999999999.999"},
                                       {"RETAIL", "", "999999999999999.999"},
                                       {"RETAIL", "", "999999999999999.999"},
                                       {"RETAIL", "", "999999999999999.999"}}),
                 LedgerError);
    ASSERT_GE(session->errors().count(), 1);
    EXPECT_TRUE(session->errors().at(0).description.contains("too large"))
        << session->errors().at(0).description.toStdString();
    EXPECT_EQ(count("AR0043", {}), 0);
    EXPECT_EQ(count("AR0042", {}), 0);
}

} // namespace
} // namespace tillbook::test
