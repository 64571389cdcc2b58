#include "EngineTestSupport.h"
#include "ledger/Money.h"

namespace tillbook::test {
namespace {

using WriteTest = EngineTest;

TEST_P(WriteTest, InsertedAndUpdatedRecordsReadBackExactly) {
    auto banks = m_session->openView("BK0001", "BK");
    banks->init();
    banks->fields().item("BANK").setValue("TDBANK");
    banks->fields().item("NAME").setValue("Toronto-Dominion");
    banks->fields().item("ERRSPREAD").setValue("99,999,999.999");
    banks->fields().item("LSTMNTND").setValue("2025-03-14");
    banks->insert();

    banks->fields().item("NAME").setValue("TD Canada Trust");
    banks->update();

    auto again = signIn()->openView("BK0001", "BK");
    again->fields().item("BANK").setValue("TDBANK");
    ASSERT_TRUE(again->read());
    EXPECT_EQ(again->fields().item("NAME").value().toString(), "TD Canada Trust");
    EXPECT_EQ(again->fields().item("ERRSPREAD").value().value<Money>(), Money::fromThousandths(99999999999));
    EXPECT_EQ(again->fields().item("LSTMNTND").value().toDate(), QDate(2025, 3, 14));
}

// Two tills change different fields of one customer; neither undoes the other.
TEST_P(WriteTest, UpdateWritesOnlyWhatChangedAndDuplicateOrMissingRecordsAreRefused) {
    addCustomers(1);
    auto till1 = m_session->openView("AR0024", "AR");
    auto till2 = signIn()->openView("AR0024", "AR");
    for (View* view : {till1.get(), till2.get()}) {
        view->fields().item("IDCUST").setValue(customerNumber(1));
        ASSERT_TRUE(view->read());
    }
    till1->fields().item("NAMECUST").setValue("Renamed");
    till1->update();
    till2->fields().item("TEXTPHON1").setValue("5551234");
    till2->update();
    ASSERT_TRUE(till1->read());
    EXPECT_EQ(till1->fields().item("NAMECUST").value().toString(), "Renamed");
    EXPECT_EQ(till1->fields().item("TEXTPHON1").value().toString(), "5551234");

    till1->init();
    till1->fields().item("IDCUST").setValue(customerNumber(1));
    m_session->errors().clear();
    expectFailure([&] { till1->insert(); }, "Customers record \"C0001\" already exists.");
    EXPECT_EQ(m_session->errors().count(), 1);
    till1->init();
    EXPECT_THROW(till1->update(), LedgerError); // nothing read
}

TILLBOOK_ON_EACH_STORE(WriteTest);

} // namespace
} // namespace tillbook::test
