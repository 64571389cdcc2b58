// A customer's figures move with its documents, at the commit of a long transaction: what a view reads
// meanwhile, a document refused on the way and a transaction rolled back all come out as the documents
// say. A sum beyond its field that the run scripts do not reach: a posting that would take a customer's
// balance too far is refused before anything is written.

#include "Till.h"
#include "ledger/engine/BatchPosting.h"
#include "ledger/engine/LedgerCheck.h"
#include "ledger/engine/RecordAccess.h"
#include "ledger/engine/Transaction.h"

namespace tillbook::test {
namespace {

using FigureTest = KnownCompanyTest;
TILLBOOK_EACH_STORE(FigureTest);

TEST_P(FigureTest, FiguresFollowTheDocumentsThroughReadsRefusalsAndRollback) {
    auto documents = m_session->openView("AR0036");
    auto customers = m_session->openView("AR0024");
    const auto put = [](View& view, const QString& field, const QString& value) {
        view.fields().item(field).setValue(value);
    };
    const auto addDocument = [&](const char* customer, const char* number, const char* amount,
                                 const char* due) {
        documents->init();
        for (const auto& [field, value] : {std::pair{"IDCUST", customer},
                                           {"IDINVC", number},
                                           {"TRXTYPETXT", "1"},
                                           {"TRXTYPEID", "11"},
                                           {"AMTINVCTC", amount},
                                           {"AMTDUETC", due}})
            put(*documents, field, value);
        documents->insert();
    };
    // Balance and open documents as the session sees them, and as another connection does.
    const auto seen = [&](const char* customer) {
        customers->clear();
        put(*customers, "IDCUST", customer);
        EXPECT_TRUE(customers->read());
        return customers->fields().item("AMTBALDUET").text() + u' ' +
               customers->fields().item("CNTOPENINV").text();
    };
    const auto stored = [&](const char* customer) {
        return m_company->records("AR0024", {{"IDCUST", customer}}, {"AMTBALDUET", "CNTOPENINV"}).value(0);
    };
    {
        auto transaction = m_session->beginTransaction();
        addDocument("C1", "IN5", "10", "10");
        EXPECT_THROW(addDocument("C1", "IN6", "10", "20"), LedgerError); // refused alone
        addDocument("C2", "IN7", "5", "5");
        EXPECT_EQ(seen("C1"), "130.000 4");
        addDocument("C1", "IN8", "7", "0");
        documents->clear();
        put(*documents, "IDCUST", "C1");
        put(*documents, "IDINVC", "IN2");
        ASSERT_TRUE(documents->read());
        put(*documents, "AMTDUETC", "0");
        documents->update();
        EXPECT_EQ(seen("C1"), "80.000 3");
        transaction->commit();
    }
    EXPECT_EQ(stored("C1"), "80.000 3");
    EXPECT_EQ(stored("C2"), "85.000 2");
    EXPECT_EQ(m_company->count("AR0036", {{"IDINVC", "IN6"}}), 0);
    {
        auto transaction = m_session->beginTransaction();
        addDocument("C1", "IN9", "1000", "1000");
        EXPECT_EQ(seen("C1"), "1080.000 4");
    } // not committed
    EXPECT_EQ(stored("C1"), "80.000 3");
    EXPECT_EQ(m_company->count("AR0036", {{"IDINVC", "IN9"}}), 0);
    EXPECT_EQ(engine::checkLedger(*m_company->store()).violations.join(u'\n'), "");
}

TEST_P(FigureTest, PostingThatWouldTakeABalanceBeyondItsFieldChangesNothing) {
    Till till(*m_company);
    const qint64 batch = till.newBatch();
    const Money largest = Money::fromThousandths(999'999'999'999'999'999); // BCD*10.3
    engine::updateRecord(
        *m_company->store(), "AR0024", {{"IDCUST", "C2"}},
        {{"AMTBALDUET", QVariant::fromValue(-largest)}, {"AMTBALDUEH", QVariant::fromValue(-largest)}});
    ASSERT_TRUE(till.post(receipt(batch, 1, "C1", "100", {2})).PostOK); // pays IN1 in full
    // 0.001 unapplied: C2's balance would go beyond.
    ASSERT_TRUE(till.post(receipt(batch, 2, "C2", "0.001")).PostOK);
    expectFailure(
        [&] { engine::postBatch(*m_company->store(), m_session->errors(), batch, QDate(2025, 3, 15)); },
        "Balance Due in Cust. Curr. \"-1000000000000000.000\" is too large: it holds at most "
        "999999999999999.999.");
    EXPECT_EQ(m_company->value("AR0041", {{"CODEPYMTYP", "CA"}, {"CNTBTCH", batch}}, "BATCHSTAT"), "1");
    EXPECT_EQ(m_company->value("AR0024", {{"IDCUST", "C1"}}, "AMTBALDUET"), "120.000");
    EXPECT_EQ(m_company->value("AR0036", {{"IDCUST", "C1"}, {"IDINVC", "IN1"}}, "AMTDUETC"), "100.000");
}

} // namespace
} // namespace tillbook::test
