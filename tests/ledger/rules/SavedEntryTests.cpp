// What generic operations cannot do beyond what the run scripts show: change an entry of a posted
// batch, stage lines an entry of its kind does not have, or change the figures of saved lines, documents
// and customers by hand. Each is refused, and the ledger stays as it was.

#include "RulesTestSupport.h"
#include "ledger/engine/BatchPosting.h"

namespace tillbook::test {
namespace {

using SavedEntryTest = RulesTest;
TILLBOOK_EACH_STORE(SavedEntryTest);

// Runs `operation`, which must fail with an error whose text contains `words`.
template <typename Operation>
void expectRefused(Session& session, Operation operation, const QString& words) {
    session.errors().clear();
    EXPECT_THROW(operation(), LedgerError) << words.toStdString();
    ASSERT_GE(session.errors().count(), 1) << words.toStdString();
    EXPECT_TRUE(session.errors().at(0).description.contains(words))
        << session.errors().at(0).description.toStdString();
    session.errors().clear();
}

TEST_P(SavedEntryTest, EntryOfAPostedBatchChangesNoMore) {
    Till till(signIn());
    Session* session = &till.session();
    const qint64 batch = till.newBatch();
    ASSERT_TRUE(till.post(receiptDraft(batch, 1, "C1", "120", {2})).PostOK);
    engine::postBatch(store(), session->errors(), batch, QDate(2025, 3, 15));
    till.field("AR0042", "TEXTPAYOR").setValue("Later");
    expectRefused(
        *session, [&] { till.view("AR0042").update(); },
        "Batch 1 is Posted: entry 1 of batch 1 can no longer be changed.");
}

TEST_P(SavedEntryTest, StagedLinesMustBeOfTheEntrysKind) {
    Till till(signIn());
    Session* session = &till.session();
    till.newBatch();
    // Applied documents come from the open-document list, not from lines inserted by hand.
    till.view("AR0042").init();
    till.field("AR0042", "IDCUST").setValue("C1");
    till.field("AR0042", "AMTRMIT").setValue(50);
    till.view("AR0044").init();
    till.field("AR0044", "IDINVC").putWithoutVerification("IN2");
    till.field("AR0044", "AMTPAYM").putWithoutVerification(50);
    till.view("AR0044").insert(); // held with the new entry
    expectRefused(
        *session, [&] { till.view("AR0042").insert(); },
        "Documents are applied through the open-document list");
    till.view("AR0042").init();
    till.view("AR0043").init();
    till.field("AR0043", "IDACCT").setValue("4000");
    till.view("AR0043").insert();
    expectRefused(
        *session, [&] { till.view("AR0042").insert(); }, "Only a miscellaneous receipt");
    EXPECT_EQ(count("AR0042", {}) + count("AR0043", {}) + count("AR0044", {}), 0);
}

TEST_P(SavedEntryTest, SavedLinesDocumentsAndCustomersKeepTheirFigures) {
    Till till(signIn());
    Session* session = &till.session();
    const qint64 batch = till.newBatch();
    ASSERT_TRUE(till.post(receiptDraft(batch, 1, "C1", "100", {3})).PostOK); // IN2 50
    ASSERT_TRUE(till.post(miscDraft(batch, "10", {{"RETAIL", "", amountOf("10"), "", ""}})).PostOK);
    const auto changeFirst = [&](const char* viewId, const char* filter, const char* field,
                                 const QVariant& value) {
        auto view = session->openView(viewId, "AR");
        view->browse(QLatin1String(filter), true);
        EXPECT_TRUE(view->fetch());
        view->fields().item(field).putWithoutVerification(value);
        view->update();
    };
    expectRefused(
        *session, [&] { changeFirst("AR0044", "CNTBTCH = 1", "AMTPAYM", 5); },
        "Cust. Receipt Amount of saved line 1 of entry 1 of batch 1 cannot be changed");
    expectRefused(
        *session, [&] { changeFirst("AR0044", "CNTBTCH = 1", "IDINVC", "IN1"); },
        "cannot be changed (from \"IN2\" to \"IN1\")");
    expectRefused(
        *session, [&] { changeFirst("AR0043", "CNTBTCH = 1", "AMTDIST", 999); },
        "of saved line 1 of entry 2 of batch 1 cannot be changed");
    changeFirst("AR0043", "CNTBTCH = 1", "GLDESC", "Corrected"); // descriptions may change
    expectRefused(
        *session, [&] { changeFirst("AR0024", "IDCUST = C1", "AMTBALDUET", 0); },
        "Balance Due in Cust. Curr. of Customers record \"C1\" is kept by posting and cannot be put "
        "by hand (it is 120.000).");
    expectRefused(
        *session, [&] { changeFirst("AR0036", "IDINVC = IN2", "AMTDUETC", 10); },
        "Document IN2 of customer C1 cannot be due 10.000: receipts not yet posted apply 50.000 to it "
        "(entry 1 of batch 1 applies 50.000).");
    changeFirst("AR0036", "IDINVC = IN2", "AMTDUETC", 50); // down to what is applied, no further
    changeFirst("AR0036", "IDINVC = IN1", "AMTDUETC", 40); // paid in the books: the customer follows
    changeFirst("AR0024", "IDCUST = C1", "NAMECUST", "First and Sons");
    EXPECT_EQ(money(record("AR0044", {{"CODEPAYM", "CA"}, {"CNTBTCH", batch}, {"CNTITEM", 1}, {"CNTLINE", 1}},
                           {"AMTPAYM"})
                        ->value("AMTPAYM")),
              Money::fromWhole(50));
    const auto in1 = record("AR0036", {{"IDCUST", "C1"}, {"IDINVC", "IN1"}}, {"AMTDUEHC", "SWPAID"});
    EXPECT_EQ(money(in1->value("AMTDUEHC")), Money::fromWhole(40));
    EXPECT_EQ(money(record("AR0024", {{"IDCUST", "C1"}}, {"AMTBALDUET"})->value("AMTBALDUET")),
              Money::fromWhole(60));
}

} // namespace
} // namespace tillbook::test
