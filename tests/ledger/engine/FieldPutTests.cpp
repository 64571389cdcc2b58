#include "EngineTestSupport.h"
#include "ledger/LedgerError.h"
#include "ledger/Money.h"

namespace tillbook::test {
namespace {

// Puts need no store beyond the view's own; SQLite is enough.
class FieldPutTest : public EngineTest {};

bool putFails(Field& field, const QVariant& value) {
    try {
        field.setValue(value);
    } catch (const LedgerError&) {
        return true;
    }
    return false;
}

TEST_P(FieldPutTest, TextFitsOrIsRefused) {
    auto customers = m_session->openView("AR0024", "AR");
    Field& id = customers->fields().item("IDCUST");
    id.setValue("ACME01   ");
    EXPECT_EQ(id.value().toString(), "ACME01"); // trailing blanks are not kept
    EXPECT_TRUE(putFails(id, "THIRTEENCHARS"));
    EXPECT_EQ(id.value().toString(), "ACME01"); // a refused put changes nothing
    id.putWithoutVerification("THIRTEENCHARS");
    EXPECT_EQ(id.value().toString(), "THIRTEENCHAR");
    ASSERT_GE(m_session->errors().count(), 1);
    EXPECT_EQ(m_session->errors().at(0).description,
              "Customer Number \"THIRTEENCHARS\" is longer than 12 characters.");
}

TEST_P(FieldPutTest, NumbersTakeCommasAndKeepTheirScale) {
    auto customers = m_session->openView("AR0024", "AR");
    Field& limit = customers->fields().item("AMTCRLIMT"); // BCD*10.3
    limit.setValue("1,250.50");
    EXPECT_EQ(limit.value().value<Money>(), Money::fromCents(125050));
    EXPECT_EQ(limit.value().toString(), "1250.500");
    EXPECT_FALSE(limit.value().canConvert<double>()); // an amount never becomes a binary fraction
    limit.setValue(QVariant::fromValue(Money::fromThousandths(-5)));
    EXPECT_EQ(limit.value().toString(), "-0.005");
    // An amount goes in exact: a binary fraction is refused, put either way, and changes nothing.
    EXPECT_THROW(limit.setValue(12.25), ProgrammingError);
    EXPECT_THROW(limit.putWithoutVerification(12.25f), ProgrammingError);
    EXPECT_EQ(limit.value().toString(), "-0.005");
    EXPECT_TRUE(putFails(limit, "1.2345"));
    EXPECT_TRUE(putFails(limit, "12abc"));
    limit.putWithoutVerification("1.2345");
    EXPECT_EQ(limit.value().toString(), "1.235"); // made to fit: rounded half away from zero
    limit.putWithoutVerification("-1.2345");
    EXPECT_EQ(limit.value().toString(), "-1.235");
    limit.putWithoutVerification("abc");
    EXPECT_EQ(limit.value().toString(), "0.000");

    Field& count = customers->fields().item("CNTOPENINV"); // BCD*4.0
    count.setValue("1,024");
    EXPECT_EQ(count.value().metaType().id(), QMetaType::LongLong);
    EXPECT_EQ(count.value().toLongLong(), 1024);
    EXPECT_TRUE(putFails(count, "2.5"));

    Field& active = customers->fields().item("SWACTV"); // Integer with a list 0/1
    active.setValue(1);
    EXPECT_EQ(active.value().metaType().id(), QMetaType::Int);
    EXPECT_TRUE(putFails(active, 5));
    EXPECT_TRUE(putFails(active, "yes"));
    active.putWithoutVerification(5); // as given, without the list
    EXPECT_EQ(active.value().toInt(), 5);
}

TEST_P(FieldPutTest, RatesKeepAllTheirDecimalsAsText) {
    auto accounts = m_session->openView("GL0001", "GL");
    Field& rate = accounts->fields().item("ALLOCTOT"); // BCD*8.7
    rate.setValue("1.25");
    EXPECT_EQ(rate.value().toString(), "1.2500000");
    EXPECT_EQ(accounts->fields().item("ACCTTYPE").allowedValues().size(), 3);
    EXPECT_TRUE(putFails(accounts->fields().item("ACCTTYPE"), "X"));
    accounts->fields().item("ACCTTYPE").setValue("B");
}

TEST_P(FieldPutTest, DatesFromTextOrQDate) {
    auto customers = m_session->openView("AR0024", "AR");
    Field& start = customers->fields().item("DATESTART");
    EXPECT_TRUE(start.value().toDate().isNull());
    start.setValue("2024-02-29");
    EXPECT_EQ(start.value().toDate(), QDate(2024, 2, 29));
    start.setValue("20250131");
    EXPECT_EQ(start.value().toDate(), QDate(2025, 1, 31));
    start.setValue(QDate(2023, 12, 1));
    EXPECT_EQ(start.value().toDate(), QDate(2023, 12, 1));
    EXPECT_TRUE(putFails(start, "2023-02-29"));
    EXPECT_TRUE(putFails(start, "tomorrow"));
    start.setValue("");
    EXPECT_TRUE(start.value().toDate().isNull());
    start.putWithoutVerification("garbage");
    EXPECT_TRUE(start.value().toDate().isNull());
}

TEST_P(FieldPutTest, CodesMustExist) {
    addCustomers(2);
    auto receipts = m_session->openView("AR0042", "AR");
    Field& customer = receipts->fields().item("IDCUST");
    m_session->errors().clear();
    try {
        customer.setValue("ZZZ");
        FAIL() << "a customer that does not exist was accepted";
    } catch (const LedgerError& e) {
        EXPECT_EQ(e.description(), "Customer Number \"ZZZ\" does not exist.");
    }
    ASSERT_EQ(m_session->errors().count(), 1);
    EXPECT_EQ(m_session->errors().at(0).priority, ErrorPriority::Error);
    customer.setValue(customerNumber(2));
    customer.setValue(""); // not chosen yet
    customer.putWithoutVerification("ZZZ");
    EXPECT_EQ(customer.value().toString(), "ZZZ");
    EXPECT_TRUE(putFails(receipts->fields().item("IDBANK"), "NOBANK"));
    EXPECT_TRUE(putFails(receipts->fields().item("FISCYR"), "2025"));
}

TEST_P(FieldPutTest, FiscalPeriodsBelongToTheirYear) {
    auto calendars = m_session->openView("CS0002", "CS");
    calendars->init();
    calendars->fields().item("FSCYEAR").setValue("2025");
    calendars->fields().item("PERIODS").setValue(12);
    calendars->fields().item("ACTIVE").setValue(true);
    calendars->insert();
    auto receipts = m_session->openView("AR0042", "AR");
    receipts->fields().item("FISCYR").setValue("2025");
    receipts->fields().item("FISCPER").setValue("12");
    try {
        receipts->fields().item("FISCPER").setValue("13");
        FAIL() << "period 13 of a 12-period year was accepted";
    } catch (const LedgerError& e) {
        EXPECT_EQ(e.description(), "Fiscal Period \"13\" does not exist in fiscal year 2025.");
    }
}

INSTANTIATE_TEST_SUITE_P(Stores, FieldPutTest, ::testing::Values(StoreKind::Sqlite), storeParamName);

} // namespace
} // namespace tillbook::test
