#include "EngineTestSupport.h"
#include "ledger/Money.h"

#include <map>

namespace tillbook::test {
namespace {

// Puts need no store beyond the view's own; SQLite is enough.
class FieldPutTest : public EngineTest {};

struct Put {
    const char* view;
    const char* field;
    QVariant value;
    const char* kept; // the field's value as text afterwards; nullptr: refused, the field left as it was
};

void expectPuts(Session& session, std::initializer_list<Put> puts, bool verified) {
    std::map<std::string, std::unique_ptr<View>> views; // one per view, so that a refusal meets a kept value
    for (const Put& p : puts) {
        auto& view = views[p.view];
        if (!view)
            view = session.openView(QString::fromLatin1(p.view), QString::fromLatin1(p.view).left(2));
        Field& field = view->fields().item(QString::fromLatin1(p.field));
        const QVariant before = field.value();
        bool refused = false;
        try {
            verified ? field.setValue(p.value) : field.putWithoutVerification(p.value);
        } catch (const LedgerError&) {
            refused = true;
        }
        const std::string what = std::string(p.field) + " <- " + p.value.toString().toStdString();
        EXPECT_EQ(refused, p.kept == nullptr) << what;
        EXPECT_EQ(field.value().toString(), p.kept ? QString::fromUtf8(p.kept) : before.toString()) << what;
    }
}

TEST_P(FieldPutTest, VerifiedPutsKeepWhatFitsAndRefuseTheRest) {
    m_company->addRecords(customerRecords(2));
    expectPuts(*m_session,
               {
                   {"AR0024", "IDCUST", "ACME01   ", "ACME01"}, // trailing blanks are not kept
                   {"AR0024", "IDCUST", "THIRTEENCHARS", nullptr},
                   {"AR0024", "AMTCRLIMT", "1,250.50", "1250.500"}, // BCD*10.3
                   {"AR0024", "AMTCRLIMT", "1.2345", nullptr},
                   {"AR0024", "AMTCRLIMT", "12abc", nullptr},
                   {"AR0024", "CNTOPENINV", "1,024", "1024"}, // BCD*4.0
                   {"AR0024", "CNTOPENINV", "2.5", nullptr},
                   {"AR0024", "SWACTV", 1, "1"}, // Integer with a list 0/1
                   {"AR0024", "SWACTV", 5, nullptr},
                   {"AR0024", "SWACTV", "yes", nullptr},
                   {"GL0001", "ALLOCTOT", "1.25", "1.2500000"}, // BCD*8.7
                   {"GL0001", "ACCTTYPE", "X", nullptr},
                   {"GL0001", "ACCTTYPE", "B", "B"},
                   {"AR0024", "DATESTART", "2024-02-29", "2024-02-29"},
                   {"AR0024", "DATESTART", "20250131", "2025-01-31"},
                   {"AR0024", "DATESTART", QDate(2023, 12, 1), "2023-12-01"},
                   {"AR0024", "DATESTART", "2023-02-29", nullptr},
                   {"AR0024", "DATESTART", "tomorrow", nullptr},
                   {"AR0024", "DATESTART", "", ""},
                   {"AR0042", "IDCUST", "C0002", "C0002"}, // codes must exist
                   {"AR0042", "IDCUST", "", ""},           // not chosen yet
                   {"AR0042", "IDBANK", "NOBANK", nullptr},
                   {"AR0042", "FISCYR", "2025", nullptr},
               },
               true);
}

TEST_P(FieldPutTest, UnverifiedPutsAreMadeToFit) {
    expectPuts(*m_session,
               {
                   {"AR0024", "IDCUST", "THIRTEENCHARS", "THIRTEENCHAR"},
                   {"AR0024", "AMTCRLIMT", "1.2345", "1.235"}, // rounded half away from zero
                   {"AR0024", "AMTCRLIMT", "-1.2345", "-1.235"},
                   {"AR0024", "AMTCRLIMT", "abc", "0.000"},
                   {"AR0024", "SWACTV", 5, "5"}, // as given, without the list
                   {"AR0024", "DATESTART", "garbage", ""},
                   {"AR0042", "IDCUST", "ZZZ", "ZZZ"},
               },
               false);
    auto customers = m_session->openView("AR0024", "AR");
    EXPECT_EQ(customers->fields().item("CNTOPENINV").value().metaType().id(), QMetaType::LongLong);
    EXPECT_EQ(customers->fields().item("SWACTV").value().metaType().id(), QMetaType::Int);
}

TEST_P(FieldPutTest, AnAmountGoesInExactAndNeverAsABinaryFraction) {
    auto customers = m_session->openView("AR0024", "AR");
    Field& limit = customers->fields().item("AMTCRLIMT");
    limit.setValue(QVariant::fromValue(Money::fromThousandths(-5)));
    EXPECT_EQ(limit.value().value<Money>(), Money::fromThousandths(-5));
    EXPECT_FALSE(limit.value().canConvert<double>());
    EXPECT_THROW(limit.setValue(12.25), ProgrammingError);
    EXPECT_THROW(limit.putWithoutVerification(12.25f), ProgrammingError);
    EXPECT_EQ(limit.value().toString(), "-0.005");
}

TEST_P(FieldPutTest, ARefusedCodeIsListedAndPeriodsBelongToTheirYear) {
    auto receipts = m_session->openView("AR0042", "AR");
    m_session->errors().clear();
    expectFailure([&] { receipts->fields().item("IDCUST").setValue("ZZZ"); },
                  "Customer Number \"ZZZ\" does not exist.");
    ASSERT_EQ(m_session->errors().count(), 1);
    EXPECT_EQ(m_session->errors().at(0).priority, ErrorPriority::Error);

    auto calendars = m_session->openView("CS0002", "CS");
    calendars->init();
    calendars->fields().item("FSCYEAR").setValue("2025");
    calendars->fields().item("PERIODS").setValue(12);
    calendars->fields().item("ACTIVE").setValue(true);
    calendars->insert();
    receipts->fields().item("FISCYR").setValue("2025");
    receipts->fields().item("FISCPER").setValue("12");
    expectFailure([&] { receipts->fields().item("FISCPER").setValue("13"); },
                  "Fiscal Period \"13\" does not exist in fiscal year 2025.");
}

INSTANTIATE_TEST_SUITE_P(Stores, FieldPutTest, ::testing::Values(StoreKind::Sqlite), storeTestName);

} // namespace
} // namespace tillbook::test
