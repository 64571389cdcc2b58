// Batches and entries: numbering, defaults, the checks of verified puts and their texts, prepayments,
// miscellaneous lines, and inserts that fail leaving nothing behind.

#include "RulesTestSupport.h"
#include "ledger/engine/RecordAccess.h"

namespace tillbook::test {
namespace {

using EntryTest = RulesTest;
TILLBOOK_ON_EACH_STORE(EntryTest);

QVariantHash batchKey(qint64 batch) {
    return {{"CODEPYMTYP", "CA"}, {"CNTBTCH", batch}};
}

TEST_P(EntryTest, BatchesAreNumberedAndStartOpenAndEmpty) {
    auto session = signIn();
    Till till(*session);
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
    auto session = signIn();
    Till till(*session);
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
    auto session = signIn();
    Till till(*session);
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
    till.field("AR0042", "AMTRMIT").setValue("99.95");
    EXPECT_EQ(money(till.field("AR0042", "AMTRMIT").value()), Money::fromCents(9995));
}

TEST_P(EntryTest, DateOutsideItsPeriodWarnsAndTheEntryIsWritten) {
    auto session = signIn();
    Till till(*session);
    const qint64 batch = till.newBatch();
    till.view("AR0042").init();
    till.field("AR0042", "IDCUST").setValue("C2");
    till.field("AR0042", "DATERMIT").setValue(QDate(2025, 5, 2));
    till.field("AR0042", "AMTRMIT").setValue(10);
    const Warnings warnings = till.view("AR0042").insert();
    ASSERT_EQ(warnings.entries.size(), 1);
    EXPECT_EQ(warnings.first().priority, ErrorPriority::Warning);
    ASSERT_EQ(session->errors().count(), 1);
    EXPECT_EQ(session->errors().at(0).priority, ErrorPriority::Warning);
    EXPECT_EQ(session->errors().at(0).description,
              "Receipt date 2025-05-02 is outside fiscal period 03 of 2025.");
    EXPECT_EQ(count("AR0042", {{"CNTBTCH", batch}}), 1);
}

TEST_P(EntryTest, PrepaymentGetsANumberTheDetailViewShows) {
    auto session = signIn();
    Till till(*session);
    const qint64 batch = till.newBatch();
    till.postPrepayment(batch, "C2", "1,250.00", "IN3");
    EXPECT_EQ(till.text("AR0044", "IDINVC"), "PP0000001");
    till.postPrepayment(batch, "C2", "5.00", "IN3");
    EXPECT_EQ(till.text("AR0044", "IDINVC"), "PP0000002");
    const auto detail =
        record("AR0044", {{"CODEPAYM", "CA"}, {"CNTBTCH", batch}, {"CNTITEM", 1}, {"CNTLINE", 1}},
               {"IDINVC", "IDDOCMTCH", "AMTPAYM", "IDCUST"});
    ASSERT_TRUE(detail);
    EXPECT_EQ(detail->value("IDDOCMTCH").toString(), "IN3");
    EXPECT_EQ(money(detail->value("AMTPAYM")), Money::fromWhole(1250));
    EXPECT_EQ(detail->value("IDCUST").toString(), "C2");
    const auto totals = record("AR0041", batchKey(batch), {"CNTENTER", "AMTENTER", "CNTLASTITM"});
    EXPECT_EQ(totals->value("CNTENTER").toInt(), 2);
    EXPECT_EQ(money(totals->value("AMTENTER")), Money::fromWhole(1255));
    EXPECT_EQ(totals->value("CNTLASTITM").toInt(), 2);
}

TEST_P(EntryTest, MiscLinesTakeAccountsFromCodesOrHyphenatedNumbers) {
    auto session = signIn();
    Till till(*session);
    const qint64 batch = till.newBatch();
    till.postMiscReceipt(batch, 1500.0, {{"RETAIL", "", "1234.5"}, {"", "4100-100", "265.5"}});
    EXPECT_EQ(session->errors().count(), 0);
    const auto first =
        record("AR0043", {{"CODEPAYM", "CA"}, {"CNTBTCH", batch}, {"CNTITEM", 1}, {"CNTLINE", 1}},
               {"IDACCT", "AMTDIST"});
    const auto second = record(
        "AR0043", {{"CODEPAYM", "CA"}, {"CNTBTCH", batch}, {"CNTITEM", 1}, {"CNTLINE", 2}}, {"IDACCT"});
    EXPECT_EQ(first->value("IDACCT").toString(), "4000");
    EXPECT_EQ(money(first->value("AMTDIST")), Money::fromCents(123450));
    EXPECT_EQ(second->value("IDACCT").toString(), "4100-100");
    EXPECT_THROW(till.field("AR0043", "IDACCT").setValue("4100-999"), LedgerError);
    EXPECT_THROW(till.field("AR0043", "IDDISTCODE").setValue("retail"), LedgerError);
    EXPECT_EQ(session->errors().at(1).description, "Distribution Code \"retail\" does not exist.");
}

TEST_P(EntryTest, FailedInsertLeavesNothingBehindAndTakesNoNumber) {
    auto session = signIn();
    Till till(*session);
    const qint64 batch = till.newBatch();
    EXPECT_THROW(till.postMiscReceipt(batch, 100.0, {{"", "4000", "60"}}), LedgerError);
    EXPECT_TRUE(
        session->errors().at(0).description.startsWith("The distribution lines add up to 60.000, not to "
                                                       "the receipt amount 100.000"));
    EXPECT_EQ(count("AR0042", {{"CNTBTCH", batch}}), 0);
    EXPECT_EQ(count("AR0043", {{"CNTBTCH", batch}}), 0);
    auto totals = record("AR0041", batchKey(batch), {"CNTENTER", "AMTENTER"});
    EXPECT_EQ(totals->value("CNTENTER").toInt(), 0);
    EXPECT_EQ(money(totals->value("AMTENTER")), Money());

    // The lines stay staged: one more line that balances, and the same entry goes in as number 1.
    till.view("AR0043").init();
    till.field("AR0043", "IDACCT").setValue("4000");
    till.field("AR0043", "AMTDIST").setValue("40");
    till.view("AR0043").insert();
    till.view("AR0042").insert();
    EXPECT_EQ(till.text("AR0042", "CNTITEM"), "1");
    EXPECT_EQ(count("AR0043", {{"CNTBTCH", batch}}), 2);
}

TEST_P(EntryTest, EntriesGoOnlyIntoOpenBatches) {
    auto session = signIn();
    Till till(*session);
    const qint64 batch = till.newBatch();
    engine::updateRecord(store(), QStringLiteral("AR0041"), batchKey(batch), {{"BATCHSTAT", 3}});
    till.view("AR0042").init();
    till.field("AR0042", "IDCUST").setValue("C2");
    EXPECT_THROW(till.view("AR0042").insert(), LedgerError);
    EXPECT_EQ(session->errors().at(0).description,
              "Batch 1 is not open (Posted); entries can be added only to an open batch.");
}

} // namespace
} // namespace tillbook::test
