// Batches and entries: numbering and defaults, the lines a refused entry keeps staged, and what generic
// operations cannot do beyond what the run scripts show: change an entry of a posted batch, stage lines an
// entry of its kind does not have, or change the figures of saved lines, documents and customers by hand.
// Each is refused, and the ledger stays as it was.

#include "Till.h"
#include "ledger/engine/BatchPosting.h"

namespace tillbook::test {
namespace {

using EntryTest = KnownCompanyTest;
TILLBOOK_EACH_STORE(EntryTest);

QVariantHash batchKey(qint64 batch) {
    return {{"CODEPYMTYP", "CA"}, {"CNTBTCH", batch}};
}

TEST_P(EntryTest, BatchesAreNumberedAndStartOpenAndEmptyAndEntriesTakeTheSessionsPeriod) {
    Till till(*m_company);
    EXPECT_EQ(till.newBatch(), 1);
    till.field("AR0041", "CNTENTER").putWithoutVerification(9);
    EXPECT_EQ(till.newBatch(), 2);
    EXPECT_EQ(m_company->records("AR0041", batchKey(2), {"BATCHSTAT", "CNTENTER", "DATEBTCH"}),
              QStringList("1 0 2025-03-14"));
    expectFailure([&] { till.field("AR0041", "IDBANK").setValue("NOBANK"); },
                  "Bank Code \"NOBANK\" does not exist.");
    till.field("AR0041", "IDBANK").putWithoutVerification("TDOPER");
    till.view("AR0041").update();
    EXPECT_EQ(m_company->value("AR0041", batchKey(2), "IDBANK"), "TDOPER");

    till.view("AR0042").init();
    QStringList entry;
    for (const char* field : {"CNTBTCH", "RMITTYPE", "DOCTYPE", "DATERMIT", "FISCYR", "FISCPER"})
        entry << till.text("AR0042", field);
    EXPECT_EQ(entry.join(u' '), "2 1 1 2025-03-14 2025 03");
}

TEST_P(EntryTest, ARefusedEntryKeepsItsLinesStagedAndTakesNoNumber) {
    Till till(*m_company);
    const qint64 batch = till.newBatch();
    EXPECT_FALSE(till.post(misc(batch, "100", {{"", "4000", Money::fromWhole(60), "", ""}})).PostOK);
    // The lines stay staged: one more line that balances, and the same entry goes in as number 1.
    till.view("AR0043").init();
    till.field("AR0043", "IDACCT").setValue("4000");
    till.field("AR0043", "AMTDIST").setValue("40");
    till.view("AR0043").insert();
    till.view("AR0042").insert();
    EXPECT_EQ(till.text("AR0042", "CNTITEM"), "1");
    EXPECT_EQ(m_company->count("AR0043", {{"CNTBTCH", batch}}), 2);
}

TEST_P(EntryTest, EntryOfAPostedBatchChangesNoMoreAndLinesMustBeOfTheEntrysKind) {
    Till till(*m_company);
    Session& session = till.session();
    const qint64 batch = till.newBatch();
    // Applied documents come from the open-document list, not from lines inserted by hand.
    till.view("AR0042").init();
    till.field("AR0042", "IDCUST").setValue("C1");
    till.field("AR0042", "AMTRMIT").setValue(50);
    till.view("AR0044").init();
    till.field("AR0044", "IDINVC").putWithoutVerification("IN2");
    till.field("AR0044", "AMTPAYM").putWithoutVerification(50);
    till.view("AR0044").insert(); // held with the new entry
    expectFailure([&] { till.view("AR0042").insert(); },
                  "Documents are applied through the open-document list");
    till.view("AR0042").init();
    till.view("AR0043").init();
    till.field("AR0043", "IDACCT").setValue("4000");
    till.view("AR0043").insert();
    expectFailure([&] { till.view("AR0042").insert(); }, "Only a miscellaneous receipt");
    EXPECT_EQ(
        m_company->count("AR0042", {}) + m_company->count("AR0043", {}) + m_company->count("AR0044", {}), 0);

    ASSERT_TRUE(till.post(receipt(batch, 1, "C1", "120", {2})).PostOK);
    engine::postBatch(*m_company->store(), session.errors(), batch, QDate(2025, 3, 15));
    till.field("AR0042", "TEXTPAYOR").setValue("Later");
    expectFailure([&] { till.view("AR0042").update(); },
                  "Batch 1 is Posted: entry 1 of batch 1 can no longer be changed.");
}

TEST_P(EntryTest, SavedLinesDocumentsAndCustomersKeepTheirFigures) {
    Till till(*m_company);
    Session& session = till.session();
    const qint64 batch = till.newBatch();
    ASSERT_TRUE(till.post(receipt(batch, 1, "C1", "100", {3})).PostOK); // IN2 50
    ASSERT_TRUE(till.post(misc(batch, "10", {{"RETAIL", "", Money::fromWhole(10), "", ""}})).PostOK);
    const auto changeFirst = [&](const char* viewId, const char* filter, const char* field,
                                 const QVariant& value) {
        auto view = session.openView(viewId, "AR");
        view->browse(QLatin1String(filter), true);
        EXPECT_TRUE(view->fetch());
        view->fields().item(field).putWithoutVerification(value);
        view->update();
    };
    const std::tuple<const char*, const char*, const char*, QVariant, const char*> refused[] = {
        {"AR0044", "CNTBTCH = 1", "AMTPAYM", 5,
         "Cust. Receipt Amount of saved line 1 of entry 1 of batch 1 cannot be changed"},
        {"AR0044", "CNTBTCH = 1", "IDINVC", "IN1", "cannot be changed (from \"IN2\" to \"IN1\")"},
        {"AR0043", "CNTBTCH = 1", "AMTDIST", 999, "of saved line 1 of entry 2 of batch 1 cannot be changed"},
        {"AR0024", "IDCUST = C1", "AMTBALDUET", 0,
         "Balance Due in Cust. Curr. of Customers record \"C1\" is kept by posting and cannot be put by hand "
         "(it is 120.000)."},
        {"AR0036", "IDINVC = IN2", "AMTDUETC", 10,
         "Document IN2 of customer C1 cannot be due 10.000: receipts not yet posted apply 50.000 to it "
         "(entry 1 of batch 1 applies 50.000)."},
    };
    for (const auto& [viewId, filter, field, value, words] : refused)
        expectFailure([&] { changeFirst(viewId, filter, field, value); }, words);
    changeFirst("AR0043", "CNTBTCH = 1", "GLDESC", "Corrected"); // descriptions may change
    changeFirst("AR0036", "IDINVC = IN2", "AMTDUETC", 50);       // down to what is applied, no further
    changeFirst("AR0036", "IDINVC = IN1", "AMTDUETC", 40);       // paid in the books: the customer follows
    changeFirst("AR0024", "IDCUST = C1", "NAMECUST", "First and Sons");
    EXPECT_EQ(m_company->value("AR0044",
                               {{"CODEPAYM", "CA"}, {"CNTBTCH", batch}, {"CNTITEM", 1}, {"CNTLINE", 1}},
                               "AMTPAYM"),
              "50.000");
    EXPECT_EQ(m_company->value("AR0036", {{"IDCUST", "C1"}, {"IDINVC", "IN1"}}, "AMTDUEHC"), "40.000");
    EXPECT_EQ(m_company->value("AR0024", {{"IDCUST", "C1"}}, "AMTBALDUET"), "60.000");
}

} // namespace
} // namespace tillbook::test
