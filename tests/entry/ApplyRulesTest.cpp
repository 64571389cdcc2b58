// The arithmetic of applying and unapplying, the record of applied rows, and the receipt number.
#include "entry/ApplyRules.h"

#include "ledger/Formats.h"

#include <gtest/gtest.h>

using namespace tillbook;

namespace {
Money m(const char* text) {
    return Strip_Commas(QString::fromLatin1(text));
}
// What is left of the receipt, what the document gets and what is left of it, as text.
QStringList figures(const Application& a) {
    return {FormatAmount(a.unapplied), FormatAmount(a.applied), FormatAmount(a.net)};
}
} // namespace

TEST(ApplyRules, WholeAndPartialApplicationsAndTheirUndoing) {
    // Equality falls on the partial side with the same figures.
    EXPECT_EQ(figures(ApplyToDocument(m("100.00"), m("100.00"))), QStringList({"0.00", "100.00", "0.00"}));
    // 250.00 against 100.00 and then 400.00: the first is covered, the second takes what is left.
    const Application first = ApplyToDocument(m("250.00"), m("100.00"));
    EXPECT_EQ(figures(first), QStringList({"150.00", "100.00", "0.00"}));
    const Application second = ApplyToDocument(first.unapplied, m("400.00"));
    EXPECT_EQ(figures(second), QStringList({"0.00", "150.00", "250.00"}));
    const Application undone = UnapplyFromDocument(second.unapplied, second.applied, second.net);
    EXPECT_EQ(figures(undone), QStringList({"150.00", "0.00", "400.00"}));
    EXPECT_EQ(FormatPlain(undone.net), "400");
    EXPECT_EQ(FormatPlain(m("1,234.50")), "1234.5");
    // Thousandths never drift: 0.1 + 0.2 applied is exactly 0.3.
    EXPECT_EQ(ApplyToDocument(m("0.30"), m("0.10")).unapplied, m("0.2"));
}

TEST(ApplyRules, TheRecordGrowsKeepsItsOrderAndGivesBackEachRowsMark) {
    std::vector<int> keys;
    std::vector<QString> marks;
    AppliedRows rows{keys, marks};
    rows.add(0, 3, "");
    rows.add(1, 5, "Pend");
    rows.add(2, 7, "");
    EXPECT_EQ(keys, (std::vector<int>{3, 5, 7}));

    // The middle one of three goes; the others keep their order and marks.
    EXPECT_EQ(rows.remove(3, 5), "Pend");
    EXPECT_EQ(keys, (std::vector<int>{3, 7}));
    EXPECT_EQ(marks, (std::vector<QString>{"", ""}));
    EXPECT_EQ(rows.remove(2, 7), "");
    EXPECT_EQ(keys, (std::vector<int>{3}));

    // The last one resets both arrays to one empty element, and still gives back its own mark.
    marks[0] = "Pend";
    EXPECT_EQ(rows.remove(1, 3), "Pend");
    EXPECT_EQ(keys, (std::vector<int>{0}));
    EXPECT_EQ(marks, (std::vector<QString>{""}));
}

TEST(ApplyRules, ReceiptNumber) {
    EXPECT_EQ(ReceiptNumberText(12, 3, QDate(2000, 12, 1)), "0012-003-20001201");
    EXPECT_EQ(ReceiptNumberText(40123, 1042, QDate(2026, 3, 15)), "40123-1042-20260315");
}
