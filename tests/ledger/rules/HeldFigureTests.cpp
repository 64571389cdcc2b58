// A customer's figures move with its documents once a customer at the commit of a long transaction:
// what a view reads meanwhile, a document refused on the way and a transaction rolled back must all come
// out as the documents say.

#include "RulesTestSupport.h"
#include "ledger/engine/LedgerCheck.h"
#include "ledger/engine/Transaction.h"

namespace tillbook::test {
namespace {

using HeldFigureTest = RulesTest;
TILLBOOK_EACH_STORE(HeldFigureTest);

TEST_P(HeldFigureTest, FiguresFollowTheDocumentsThroughReadsRefusalsAndRollback) {
    auto session = signIn();
    auto documents = session->openView("AR0036");
    auto customers = session->openView("AR0024");
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
        return customers->fields().item("AMTBALDUET").text() + u'/' +
               customers->fields().item("CNTOPENINV").text();
    };
    const auto stored = [&](const char* customer) {
        const auto r = record("AR0024", {{"IDCUST", customer}}, {"AMTBALDUET", "CNTOPENINV"});
        return money(r->value("AMTBALDUET")).toLedgerString() + u'/' + r->value("CNTOPENINV").toString();
    };
    {
        auto transaction = session->beginTransaction();
        addDocument("C1", "IN5", "10", "10");
        EXPECT_THROW(addDocument("C1", "IN6", "10", "20"), LedgerError); // refused alone
        addDocument("C2", "IN7", "5", "5");
        EXPECT_EQ(seen("C1").toStdString(), "130.000/4");
        addDocument("C1", "IN8", "7", "0");
        documents->clear();
        put(*documents, "IDCUST", "C1");
        put(*documents, "IDINVC", "IN2");
        ASSERT_TRUE(documents->read());
        put(*documents, "AMTDUETC", "0");
        documents->update();
        EXPECT_EQ(seen("C1").toStdString(), "80.000/3");
        transaction->commit();
    }
    EXPECT_EQ(stored("C1").toStdString(), "80.000/3");
    EXPECT_EQ(stored("C2").toStdString(), "85.000/2");
    EXPECT_EQ(count("AR0036", {{"IDINVC", "IN6"}}), 0);
    {
        auto transaction = session->beginTransaction();
        addDocument("C1", "IN9", "1000", "1000");
        EXPECT_EQ(seen("C1").toStdString(), "1080.000/4");
    } // not committed
    EXPECT_EQ(stored("C1").toStdString(), "80.000/3");
    EXPECT_EQ(count("AR0036", {{"IDINVC", "IN9"}}), 0);
    EXPECT_EQ(engine::checkLedger(store()).violations.join(u'\n').toStdString(), "");
}

} // namespace
} // namespace tillbook::test
