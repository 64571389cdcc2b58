// The customer list's order kept by the ledger: names ordered as QCollator orders them for English (United
// States) with case ignored, read in one pass with the list's fields.
#include "ledger/LedgerError.h"
#include "ledger/engine/NameOrder.h"
#include "support/Company.h"

#include <QCollator>

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

// Each name with its number and a street, inserted through the view; listed by another till.
TEST_P(NameOrderTest, TheListComesInNameOrderWithItsFields) {
    auto customers = m_session->openView("AR0024", "AR");
    const auto street = [](int i) { return QStringLiteral("%1 Rue Saint-Étienne").arg(i); };
    for (int i = 0; i < Names.size(); ++i) {
        customers->init();
        for (const auto& [field, value] :
             {std::pair{"IDCUST", customerNumber(i)}, {"NAMECUST", Names[i]}, {"TEXTSTRE1", street(i)}})
            customers->fields().item(field).setValue(value);
        customers->insert();
    }
    auto list = signIn()->openView("AR0024", "AR");
    ASSERT_TRUE(list->fetch()); // what was fetched already makes no difference
    const TextRows rows = list->readAllText({"NAMECUST", "IDCUST", "TEXTSTRE1"}, "NAMECUST");
    ASSERT_EQ(rows.rows(), size_t(Names.size()));
    const QCollator collator = listCollator();
    for (size_t r = 0; r < rows.rows(); ++r) {
        const int i = rows.text(r, 1).mid(1).toInt();
        EXPECT_EQ(QStringList({rows.text(r, 0), rows.text(r, 2)}), QStringList({Names[i], street(i)})) << r;
        EXPECT_LE(collator.compare(rows.text(r == 0 ? 0 : r - 1, 0), rows.text(r, 0)), 0) << "row " << r;
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
