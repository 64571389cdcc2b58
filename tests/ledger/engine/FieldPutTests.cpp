// Putting values into fields, verified or not: what is kept, what is refused and what a refusal says.
#include "ledger/engine/ValueCodec.h"
#include "support/Company.h"

#include <map>

namespace tillbook::test {
namespace {

// Puts need no store beyond the view's own; SQLite is enough. The company of known records has the codes.
class FieldPutTest : public StoreTest {
protected:
    void SetUp() override { start(CompanyBuilder(GetParam()).known()); }
};

struct Put {
    const char* view;
    const char* field;
    QVariant value;
    const char* kept; // the field's value as text afterwards; nullptr: refused, the field left as it was
    const char* said = nullptr; // a refusal's text, listed alone as an error
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
        if (p.said) {
            ASSERT_EQ(session.errors().count(), 1) << what;
            EXPECT_EQ(session.errors().at(0).description, p.said);
            EXPECT_EQ(session.errors().at(0).priority, ErrorPriority::Error);
        }
        session.errors().clear();
        EXPECT_EQ(field.value().toString(), p.kept ? QString::fromUtf8(p.kept) : before.toString()) << what;
    }
}

TEST_P(FieldPutTest, VerifiedPutsKeepWhatFitsAndRefuseTheRest) {
    expectPuts(
        *m_session,
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
            {"AR0042", "IDCUST", "C2", "C2"}, // codes must exist
            {"AR0042", "IDCUST", "", ""},     // not chosen yet
            {"AR0042", "IDCUST", "ZZZ", nullptr, "Customer Number \"ZZZ\" does not exist."},
            {"AR0042", "IDBANK", "NOBANK", nullptr},
            {"AR0042", "AMTRMIT", "-5", nullptr, "Bank Receipt Amount \"-5.000\" cannot be below zero."},
            {"AR0042", "AMTRMIT", "1,250.00", "1250.000"},
            {"AR0042", "FISCYR", "2023", nullptr, "Fiscal Year \"2023\" is not active."},
            {"AR0042", "FISCYR", "2024", nullptr},
            {"AR0042", "FISCYR", "2025", "2025"},
            {"AR0042", "FISCPER", "12", "12"}, // periods belong to their year
            {"AR0042", "FISCPER", "13", nullptr, "Fiscal Period \"13\" does not exist in fiscal year 2025."},
            {"AR0042", "RMITTYPE", "3", nullptr,
             "Receipt Trans. Type \"3\" cannot be keyed here: use 1 (Receipt), 2 (Prepayment) or 5 (Misc. "
             "Receipt)."},
            {"AR0043", "IDACCT", "4100-100", "4100-100"}, // an account may be keyed with its hyphens
            {"AR0043", "IDACCT", "4100-999", nullptr},
            {"AR0043", "IDDISTCODE", "retail", nullptr, "Distribution Code \"retail\" does not exist."},
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
                   {"AR0024", "SWACTV", 5, "5"},     // as given, without the list
                   {"AR0024", "SWACTV", 40000, "0"}, // beyond the 32767 an Integer holds
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
// A date column holds yyyymmdd: every day of four centuries reads back as the calendar has it, and a number
// that is no day of it as no date.
TEST(StoredDateTest, EveryDayOfTheCalendarAndNoOther) {
    for (QDate day(1899, 12, 31); day <= QDate(2300, 1, 1); day = day.addDays(1))
        ASSERT_EQ(engine::storedDate(day.year() * 10000 + day.month() * 100 + day.day()), day);
    for (qint64 none : {0, -20250101, 101, 20250229, 19000229, 20251301, 20250100, 20250431, 20250001})
        EXPECT_FALSE(engine::storedDate(none).isValid()) << none;
}

INSTANTIATE_TEST_SUITE_P(Stores, FieldPutTest, ::testing::Values(StoreKind::Sqlite), storeTestName);

} // namespace
} // namespace tillbook::test
