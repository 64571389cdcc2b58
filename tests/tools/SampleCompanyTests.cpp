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

} // namespace
} // namespace tillbook::test
