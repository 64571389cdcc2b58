#include "ledger/Money.h"
#include "ledger/Session.h"
#include "ledger/engine/SampleCompany.h"
#include "support/TestCompany.h"

#include <QSet>
#include <gtest/gtest.h>

namespace tillbook::test {
namespace {

class SampleCompanyTest : public ::testing::Test {
protected:
    void SetUp() override {
        engine::SampleOptions options;
        options.customers = 60;
        options.documents = 500;
        options.seed = 7;
        options.today = QDate(2025, 3, 14);
        summary = engine::createSampleCompany("SAMPLE", options, false);
        session.open("ADMIN", "ADMIN", "SAMPLE", QDate(2025, 3, 14));
    }

    TestStore m_store;
    engine::SampleSummary summary;
    Session session;
};

TEST_F(SampleCompanyTest, BalancesAgreeWithTheDocuments) {
    EXPECT_EQ(summary.customers, 60);
    EXPECT_EQ(summary.documents, 500);
    auto customers = session.openView("AR0024", "AR");
    auto documents = session.openView("AR0036", "AR");
    QSet<QString> loweredNames;
    bool namesDifferOnlyInCase = false;
    QSet<int> phoneLengths;
    while (customers->fetch()) {
        const QString id = customers->fields().item("IDCUST").value().toString();
        const QString name = customers->fields().item("NAMECUST").value().toString();
        namesDifferOnlyInCase |= loweredNames.contains(name.toLower()) && name != name.toLower();
        loweredNames.insert(name.toLower());
        phoneLengths.insert(customers->fields().item("TEXTPHON1").value().toString().size());
        Money balance;
        qlonglong open = 0;
        documents->browse(QStringLiteral("IDCUST = \"%1\"").arg(id), true);
        while (documents->fetch()) {
            const Money due = documents->fields().item("AMTDUEHC").value().value<Money>();
            balance += due;
            open += due.isZero() ? 0 : 1;
            EXPECT_EQ(documents->fields().item("SWPAID").value().toInt(), due.isZero() ? 1 : 0);
            EXPECT_GT(documents->fields().item("DATEDUE").value().toDate(),
                      documents->fields().item("DATEINVC").value().toDate());
        }
        EXPECT_EQ(customers->fields().item("AMTBALDUEH").value().value<Money>(), balance) << id.toStdString();
        EXPECT_EQ(customers->fields().item("CNTOPENINV").value().toLongLong(), open) << id.toStdString();
    }
    EXPECT_TRUE(namesDifferOnlyInCase);
    EXPECT_TRUE(phoneLengths.contains(3) && phoneLengths.contains(10));
}

TEST_F(SampleCompanyTest, CodesAndCalendarsAreThere) {
    EXPECT_EQ(session.companyId(), "SAMPLE");
    int codes = 0;
    auto dist = session.openView("AR0015", "AR");
    auto accounts = session.openView("GL0001", "GL");
    while (dist->fetch()) {
        ++codes;
        accounts->fields().item("ACCTID").setValue(dist->fields().item("IDACCTREV").value());
        EXPECT_TRUE(accounts->read()) << dist->fields().item("IDACCTREV").value().toString().toStdString();
    }
    EXPECT_GE(codes, 20);
    accounts->browse("ACCTFMTTD LIKE \"%-%\"", true);
    EXPECT_TRUE(accounts->fetch()); // formatted account numbers exist
    auto calendars = session.openView("CS0002", "CS");
    calendars->browse("ACTIVE = 1", true);
    int active = 0;
    while (calendars->fetch()) {
        ++active;
        EXPECT_EQ(calendars->fields().item("PERIODS").value().toInt(), 12);
        const int year = calendars->fields().item("FSCYEAR").value().toInt();
        EXPECT_EQ(calendars->fields().item("ENDDATE12").value().toDate(), QDate(year, 12, 31));
    }
    EXPECT_GE(active, 2);
    // A verified put finds what the sample made.
    auto receipts = session.openView("AR0042", "AR");
    receipts->fields().item("IDBANK").setValue("TDOPER");
    receipts->fields().item("FISCYR").setValue("2025");
    receipts->fields().item("FISCPER").setValue("3");
}

TEST_F(SampleCompanyTest, TheSameSeedMakesTheSameCompany) {
    const auto firstCustomers = [&] {
        QStringList rows;
        auto customers = session.openView("AR0024", "AR");
        while (customers->fetch())
            rows << customers->fields().item("NAMECUST").text() +
                        customers->fields().item("AMTBALDUEH").text();
        return rows;
    };
    const QStringList before = firstCustomers();
    session.close();
    engine::SampleOptions options;
    options.customers = 60;
    options.documents = 500;
    options.seed = 7;
    options.today = QDate(2025, 3, 14);
    engine::createSampleCompany("SAMPLE", options, true);
    session.open("ADMIN", "ADMIN", "SAMPLE", QDate(2025, 3, 14));
    EXPECT_EQ(firstCustomers(), before);
}

} // namespace
} // namespace tillbook::test
