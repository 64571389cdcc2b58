// The receipt window's rules that need no window, as tables: applying and unapplying, the receipt number, the
// amount's key filter, the date mask's keys and caret, distribution amounts and keys, the finder's texts and
// what it hands back.
#include "entry/AmountKeys.h"
#include "entry/ApplyRules.h"
#include "entry/DateMask.h"
#include "entry/DistributionRules.h"
#include "entry/dialogs/FinderTexts.h"
#include "entry/dialogs/frmFinder.h"
#include "fetching/FinderRecords.h"
#include "ledger/Formats.h"
#include "support/QtPrinters.h"
#include "support/ReceiptWindow.h"
#include "ui/Events.h"

#include <QDate>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>
#include <tuple>

using namespace tillbook;

namespace {
Money m(const char* text) {
    return Strip_Commas(QString::fromLatin1(text));
}
Money cents(std::int64_t c) {
    return Money::fromCents(c);
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

TEST(ApplyRules, TheRecordKeepsItsOrderAndGivesBackEachRowsMark) {
    std::vector<int> keys;
    std::vector<QString> marks;
    AppliedRows rows{keys, marks};
    rows.add(0, 3, "");
    rows.add(1, 5, "Pend");
    rows.add(2, 7, "");
    // The middle one of three goes; the others keep their order and marks.
    EXPECT_EQ(rows.remove(3, 5), "Pend");
    EXPECT_EQ(keys, (std::vector<int>{3, 7}));
    EXPECT_EQ(marks, (std::vector<QString>{"", ""}));
    // The last one resets both arrays to one empty element, and still gives back its own mark.
    EXPECT_EQ(rows.remove(2, 7), "");
    marks[0] = "Pend";
    EXPECT_EQ(rows.remove(1, 3), "Pend");
    EXPECT_EQ(keys, (std::vector<int>{0}));
    EXPECT_EQ(marks, (std::vector<QString>{""}));
}

TEST(ApplyRules, ReceiptNumber) {
    EXPECT_EQ(ReceiptNumberText(12, 3, QDate(2000, 12, 1)), "0012-003-20001201");
    EXPECT_EQ(ReceiptNumberText(40123, 1042, QDate(2026, 3, 15)), "40123-1042-20260315");
}

namespace {

// Keys typed at the end of the amount field: kept ones added, Backspace erasing.
QString typeAmount(QString text, const QString& keys, bool& decimalTyped) {
    for (const QChar key : keys) {
        const int kept = FilterAmountKey(key.unicode(), text, decimalTyped);
        if (kept == 8)
            text.chop(1);
        else if (kept != 0)
            text += QChar(kept);
    }
    return text;
}

// The date field's line edit: a kept key edits where the typed part ends, then the key is finished.
QString typeDate(QString text, const QString& mask, const QString& keys, int& pos, bool& typing) {
    for (const QChar key : keys) {
        const int code = key == u'\b' ? 8 : key.unicode();
        if (PressDateKey(code, static_cast<int>(mask.size()), pos, typing) != DateKey::Typed)
            continue;
        if (typing)
            text.insert(pos - 1, key);
        else if (pos > 0)
            text.remove(pos - 1, 1);
        const MaskedDate finished = FinishDateKey(text, mask, pos, typing);
        text = finished.text;
        pos = finished.pos;
    }
    return text;
}

} // namespace

TEST(AmountKeys, OnePointTheKeysOfAnAmountAndTheRemainingAmount) {
    bool point = false;
    EXPECT_EQ(typeAmount(QString(), "1,2a-.5.0\r", point), "12.50");
    EXPECT_EQ(typeAmount("9", "%'", point), "9%'"); // let through beside the digits
    // Deleted down to one character a point is taken again; two characters are not enough.
    point = true;
    EXPECT_EQ(typeAmount("12.5", "\b\b\b.", point), "1.");
    point = true;
    EXPECT_EQ(typeAmount("12.", "\b.", point), "12");
    // 30.00 applied out of 100.00, changed to 80.00; an empty remaining amount counts as zero.
    EXPECT_EQ(AdjustedRemaining(Money::fromWhole(80), Money::fromWhole(100), Money::fromWhole(70)),
              Money::fromWhole(50));
    EXPECT_EQ(AdjustedRemaining(Strip_Commas("1,250.005"), Money(), Strip_Commas("")),
              Money::fromThousandths(1250005));
}

TEST(DateMask, DigitsBackspaceAndTheSeparators) {
    const QString mask = "__/__/____";
    int pos = 0;
    bool typing = false;
    QString text = typeDate(mask, mask, "12", pos, typing);
    EXPECT_EQ(text, "12/__/____");
    EXPECT_EQ(pos, 3); // past the separator
    text = typeDate(text, mask, "012000", pos, typing);
    EXPECT_EQ(text, "12/01/2000");
    EXPECT_EQ(PressDateKey('7', 10, pos, typing), DateKey::Dropped);
    EXPECT_EQ(PressDateKey('a', 10, pos, typing), DateKey::Refused);
    EXPECT_EQ(pos, 10);
    // Backspace just after a separator takes the digit before it; at the start it leaves the bare mask.
    text = typeDate(text, mask, "\b\b\b\b\b", pos, typing);
    EXPECT_EQ(text, "12/0_/____");
    EXPECT_EQ(pos, 4);
    EXPECT_EQ(typeDate(text, mask, "\b\b\b\b\b", pos, typing), mask);
    EXPECT_EQ(pos, 0);

    // Other separators and orders: the caret finds the mask's own.
    const QString yearFirst = "____-__-__";
    text = typeDate(yearFirst, yearFirst, "20260131\b\b\b", pos, typing);
    EXPECT_EQ(text, "2026-0_-__");
    EXPECT_EQ(typeDate(text, yearFirst, "228", pos, typing), "2026-02-28");
}

TEST(DateMask, EditsAroundTheKeysAreLaidBackIntoTheMask) {
    const QString mask = "__/__/____";
    EXPECT_TRUE(FitsDateMask("12/0_/____", mask));
    EXPECT_FALSE(FitsDateMask("12-01-2000", mask));
    EXPECT_FALSE(FitsDateMask("12/ab/2000", mask));
    EXPECT_EQ(ReshapeDate("1203 and 2026 99", mask).text, "12/03/2026");
    EXPECT_EQ(ReshapeDate("12", mask).pos, 3);
}

TEST(DistributionAmounts, WhatIsLeftLeavesOutTheLineItself) {
    EXPECT_EQ(DistLineAmount("10.545"), cents(1055)); // the cell's figure: to cents, half away from zero
    EXPECT_EQ(DistLineAmount("-2.005"), cents(-201));
    const std::vector<Money> amounts = {Money(), cents(3000), cents(5050), cents(99)};
    const Money receipt = cents(10000);
    EXPECT_EQ(DistRemaining(receipt, amounts, 3, 2), cents(6901));
    EXPECT_EQ(DistRemaining(receipt, amounts, 3, 1), cents(4851));
    EXPECT_EQ(Undistributed(receipt, amounts, 3), cents(1851));
    // Lines past the count, or past the stored amounts, do not count.
    EXPECT_EQ(Undistributed(receipt, amounts, 2), cents(1950));
    EXPECT_EQ(Undistributed(receipt, amounts, 7), cents(1851));
    EXPECT_EQ(Undistributed(cents(5000), amounts, 3), cents(-3149));
}

TEST(DistributionLines, TabIsLeftTheArrowsStopAtTheEndsAndALineFollowsOnlyAnAmount) {
    int tab = vbKeyTab;
    TabToLeft(tab);
    EXPECT_EQ(tab, vbKeyLeft);
    for (const auto& [key, col, to] : std::vector<std::tuple<int, int, int>>{{vbKeyLeft, 0, -1},
                                                                             {vbKeyLeft, 4, 3},
                                                                             {vbKeyRight, 3, 4},
                                                                             {vbKeyRight, 4, -1},
                                                                             {vbKeyUp, 2, -1}})
        EXPECT_EQ(DistKeyTarget(key, col), to) << key << ' ' << col;
    EXPECT_TRUE(CanAddDistLine(0, ""));
    EXPECT_FALSE(CanAddDistLine(1, "0.00"));
    EXPECT_TRUE(CanAddDistLine(2, "0.01"));
}

// Each case reads "given=shown".
TEST(FinderTexts, StatusComparedWithZeroAsTextAndAccountsHyphenatedByLength) {
    for (const QString c : {"1=Active", "0=Inactive", "=Inactive", "-1=Inactive", "00=00", "2=2"})
        EXPECT_EQ(AccountStatusText(c.section(u'=', 0, 0)), c.section(u'=', 1)) << c.toStdString();
    for (const QString c : {"1000=1000", "12=12", "41001=4100-1", "4100100=4100-100", "41001001=4100-100-1",
                            " 420010010 =4200-100-10", "4200100100=4200100100", "420010010099=420010010099"})
        EXPECT_EQ(HyphenatedAccount(c.section(u'=', 0, 0)), c.section(u'=', 1)) << c.toStdString();
    EXPECT_EQ(FinderDisplayRow(FinderAccounts, {"4100100", "Sales", "7", "I", "A", "", "1", "0", "2", "EA"}),
              QStringList({"4100-100", "Sales", "7", "Income", "A", "", "Yes", "No", "2", "EA"}));
    EXPECT_EQ(FinderDisplayRow(FinderDistCodes, {"OLD", "Closed", "0", "4700"}).value(2), "Inactive");
}

TEST(Finder, SelectHandsBackTheCodeOfTheRowAndItsRevenueAccount) {
    frmFinder finder(FinderDistCodes, {{"RETAIL", "Retail revenue", "1", "410010", "1200", "5000"},
                                       {"WHSALE", "Wholesale revenue", "1", "410020", "1200", "5000"}});
    finder.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&finder));
    FlexGrid* grid = test::control<FlexGrid>(&finder, "MSFlexFinder");
    // A click anywhere on a row chooses the row: its code cell becomes the current one.
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                      grid->visualRect(grid->model()->index(1, 1)).center());
    EXPECT_EQ(std::pair(grid->Row(), grid->Col()), std::pair(2, 0));
    test::control<QPushButton>(&finder, "cmdSelect")->click();
    EXPECT_EQ(finder.result(), QDialog::Accepted);
    EXPECT_EQ(finder.ChosenCode() + ' ' + finder.ChosenAccount(), "WHSALE 410020");
}

TEST(Finder, AnEmptyListHandsBackNothing) {
    frmFinder empty(FinderDistCodes, {});
    EXPECT_EQ(test::control<FlexGrid>(&empty, "MSFlexFinder")->Rows(), 1);
    EXPECT_FALSE(test::control<QPushButton>(&empty, "cmdSelect")->isEnabled());
    empty.cmdSelect_Click();
    EXPECT_EQ(empty.ChosenCode(), "");
}
