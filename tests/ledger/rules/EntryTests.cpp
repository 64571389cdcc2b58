// Batches and entries: numbering, defaults, the checks of verified puts and their texts, and the lines a
// refused entry keeps staged.

#include "RulesTestSupport.h"
#include "ledger/engine/RecordAccess.h"

namespace tillbook::test {
namespace {

using EntryTest = RulesTest;
TILLBOOK_EACH_STORE(EntryTest);

QVariantHash batchKey(qint64 batch) {
    return {{"CODEPYMTYP", "CA"}, {"CNTBTCH", batch}};
}

TEST_P(EntryTest, BatchesAreNumberedAndStartOpenAndEmpty) {
    Till till(signIn());
    Session* session = &till.session();
    EXPECT_EQ(till.newBatch(), 1);
    till.field("AR0041", "CNTENTER").putWithoutVerification(9);
    EXPECT_EQ(till.newBatch(), 2);
    const auto batch = record("AR0041", batchKey(2), {"BATCHSTAT", "CNTENTER", "DATEBTCH", "BATCHDESC"});
    EXPECT_EQ(batch->value("BATCHSTAT").toInt(), 1);
    EXPECT_EQ(batch->value("CNTENTER").toInt(), 0);
    EXPECT_EQ(batch->value("DATEBTCH").toDate(), QDate(2025, 3, 14));
    EXPECT_THROW(till.field("AR0041", "IDBANK").setValue("NOBANK"), LedgerError);
    EXPECT_EQ(session->errors().at(0).description, "Bank Code \"NOBANK\" does not exist.");
    till.field("AR0041", "IDBANK").putWithoutVerification("TDOPER");
    till.view("AR0041").update();
    EXPECT_EQ(record("AR0041", batchKey(2), {"IDBANK"})->value("IDBANK").toString(), "TDOPER");
}

TEST_P(EntryTest, NewEntryTakesTheComposedBatchAndTheSessionsPeriod) {
    Till till(signIn());
    const qint64 batch = till.newBatch();
    till.view("AR0042").init();
    EXPECT_EQ(till.field("AR0042", "CNTBTCH").value().toLongLong(), batch);
    EXPECT_EQ(till.text("AR0042", "RMITTYPE"), "1");
    EXPECT_EQ(till.text("AR0042", "DOCTYPE"), "1");
    EXPECT_EQ(till.field("AR0042", "DATERMIT").value().toDate(), QDate(2025, 3, 14));
    EXPECT_EQ(till.text("AR0042", "FISCYR"), "2025");
    EXPECT_EQ(till.text("AR0042", "FISCPER"), "03");
}

TEST_P(EntryTest, VerifiedPutsRefuseWhatTheLedgerWouldNot) {
    Till till(signIn());
    Session* session = &till.session();
    till.newBatch();
    till.view("AR0042").init();
    const auto refused = [&](const char* field, const QVariant& value, const QString& text) {
        session->errors().clear();
        EXPECT_THROW(till.field("AR0042", field).setValue(value), LedgerError) << field;
        ASSERT_EQ(session->errors().count(), 1);
        EXPECT_EQ(session->errors().at(0).description, text);
        EXPECT_EQ(session->errors().at(0).priority, ErrorPriority::Error);
    };
    refused("IDCUST", "ZZZ", "Customer Number \"ZZZ\" does not exist.");
    refused("AMTRMIT", "-5", "Bank Receipt Amount \"-5.000\" cannot be below zero.");
    refused("FISCYR", "2023", "Fiscal Year \"2023\" is not active.");
    refused("FISCPER", "14", "Fiscal Period \"14\" does not exist in fiscal year 2025.");
    refused("RMITTYPE", "3",
            "Receipt Trans. Type \"3\" cannot be keyed here: use 1 (Receipt), 2 (Prepayment) or "
            "5 (Misc. Receipt).");
    till.field("AR0042", "AMTRMIT").setValue("1,250.00");
    EXPECT_EQ(money(till.field("AR0042", "AMTRMIT").value()), Money::fromWhole(1250));
    // A misc. line's code and account must exist; an account may be keyed with its hyphens.
    till.view("AR0043").init();
    till.field("AR0043", "IDACCT").setValue("4100-100");
    EXPECT_THROW(till.field("AR0043", "IDACCT").setValue("4100-999"), LedgerError);
    session->errors().clear();
    EXPECT_THROW(till.field("AR0043", "IDDISTCODE").setValue("retail"), LedgerError);
    EXPECT_EQ(session->errors().at(0).description, "Distribution Code \"retail\" does not exist.");
}

TEST_P(EntryTest, ARefusedEntryKeepsItsLinesStagedAndTakesNoNumber) {
    Till till(signIn());
    const qint64 batch = till.newBatch();
    EXPECT_FALSE(till.post(miscDraft(batch, "100", {{"", "4000", amountOf("60"), "", ""}})).PostOK);
    EXPECT_EQ(count("AR0042", {{"CNTBTCH", batch}}), 0);

    // The lines stay staged: one more line that balances, and the same entry goes in as number 1.
    till.view("AR0043").init();
    till.field("AR0043", "IDACCT").setValue("4000");
    till.field("AR0043", "AMTDIST").setValue("40");
    till.view("AR0043").insert();
    till.view("AR0042").insert();
    EXPECT_EQ(till.text("AR0042", "CNTITEM"), "1");
    EXPECT_EQ(count("AR0043", {{"CNTBTCH", batch}}), 2);
}

} // namespace
} // namespace tillbook::test
