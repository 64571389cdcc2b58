// The customer list's order kept by the ledger: names ordered as QCollator orders them for English (United
// States) with case ignored, read in one pass with the list's fields.
#include "ledger/LedgerError.h"
#include "ledger/engine/NameOrder.h"
#include "support/Company.h"

#include <QCollator>
#include <map>

namespace tillbook::test {
namespace {

// Case, accents, punctuation, blanks, digits and ligatures, with a blank name among them.
const QStringList Names =
    QStringLiteral(
        "b|C|a|Äpfel GmbH|apple farm|Apple Farm|Öl & Co|Orchard|Zebra Traders|smith hardware|"
        "SMITH HARDWARE|Smith-Hardware|Café Noir|cafe noir|CAFE NOIR|| Leading|O'Brien|obrien|Zoë|Zoe|"
        "10 Pins|9 Lives|Ñandú|straße|strasse|Ærø Dairy|aero dairy")
        .split(u'|');

QCollator listCollator() {
    QCollator collator(QLocale(QLocale::English, QLocale::UnitedStates));
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

int sign(int n) {
    return (n > 0) - (n < 0);
}

TEST(NameOrderKey, ComparesAsTheCollatorDoes) {
    const QCollator collator = listCollator();
    for (const QString& a : Names)
        for (const QString& b : Names) {
            const QByteArray ka = engine::nameOrderKey(a), kb = engine::nameOrderKey(b);
            EXPECT_EQ(sign(ka.compare(kb)), sign(collator.compare(a, b)))
                << a.toStdString() << " / " << b.toStdString();
        }
}

using NameOrderTest = StoreTest;

const QStringList ListFields = {"NAMECUST", "IDCUST", "TEXTSTRE1", "TEXTSTRE2", "TEXTPHON1"};

TEST_P(NameOrderTest, TheListComesInNameOrderWithItsFields) {
    auto customers = m_session->openView("AR0024", "AR");
    std::map<QString, QStringList> expected; // by number: the row the list must show
    for (int i = 0; i < Names.size(); ++i) {
        const QString id = customerNumber(i);
        expected[id] = {Names[i], id, QStringLiteral("%1 Rue Saint-Étienne").arg(i),
                        i % 2 ? QString() : QStringLiteral("Suite %1").arg(i),
                        QStringLiteral("4165550%1").arg(i)};
        customers->init();
        for (int c = 0; c < ListFields.size(); ++c)
            customers->fields().item(ListFields[c]).setValue(expected[id][c]);
        customers->insert();
    }
    auto list = signIn()->openView("AR0024", "AR");
    ASSERT_TRUE(list->fetch()); // what was fetched already makes no difference
    const TextRows rows = list->readAllText(ListFields, "NAMECUST");
    ASSERT_EQ(rows.rows(), expected.size());
    const QCollator collator = listCollator();
    for (size_t r = 0; r < rows.rows(); ++r) {
        QStringList row;
        for (int c = 0; c < rows.width(); ++c)
            row << rows.text(r, c);
        EXPECT_EQ(row, expected[row[1]]) << "row " << r;
        EXPECT_LE(collator.compare(rows.text(r == 0 ? 0 : r - 1, 0), row[0]), 0) << "row " << r;
    }
}

TEST_P(NameOrderTest, OnlyTextIsReadAndAFailedBrowseReadsNothing) {
    start(CompanyBuilder(GetParam()).customers(7));
    auto customers = m_session->openView("AR0024", "AR");
    EXPECT_EQ(customers->readAllText({"IDCUST"}).rows(), 7u); // no browse: every record, in key order
    EXPECT_EQ(customers->readAllText({"IDCUST"}).text(6, 0), customerNumber(7));
    EXPECT_THROW(customers->readAllText({"IDCUST", "CNTOPENINV"}), LedgerError);
    EXPECT_THROW(customers->readAllText({"IDCUST"}, "NAMECUST"), LedgerError); // orders by a field not read
    EXPECT_THROW(customers->browse("CNTOPENINV >", true), LedgerError);
    EXPECT_EQ(customers->readAllText({"IDCUST"}).rows(), 0u);
}

TILLBOOK_EACH_STORE(NameOrderTest);

} // namespace
} // namespace tillbook::test
