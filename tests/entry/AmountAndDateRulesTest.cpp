// The amount field's key filter and remaining amount, and the date mask's keys and caret, without a window.
#include "entry/AmountKeys.h"
#include "entry/DateMask.h"
#include "ledger/Formats.h"

#include <QDate>
#include <gtest/gtest.h>

using namespace tillbook;

namespace {

// Types keys into a text the way the amount field does: a key the filter keeps is added, Backspace erases.
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

// A line edit's part of the date field: the character a kept key types goes in where the typed part ends
// (Backspace erases the one before it), then the key is finished. Returns the text; `pos` follows.
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

TEST(AmountKeys, OneDecimalPointAndOnlyTheKeysOfAnAmount) {
    bool decimalTyped = false;
    const QString typed = typeAmount(QString(), "12.5.0", decimalTyped);
    EXPECT_EQ(typed, "12.50");
    EXPECT_EQ(FormatAmount(Strip_Commas(typed)), "12.50");

    // Letters, signs, commas, blanks and Enter are dropped; "%" and "'" are let through.
    decimalTyped = false;
    EXPECT_EQ(typeAmount("1", "a-+, \r9%'", decimalTyped), "19%'");
    EXPECT_EQ(Strip_Commas("19%'"), Money::fromWhole(19));
}

TEST(AmountKeys, ShortTextAllowsAPointAgain) {
    bool decimalTyped = true;
    // Deleted down to one character: a point is taken again.
    EXPECT_EQ(typeAmount("12.5", "\b\b\b.", decimalTyped), "1.");
    EXPECT_TRUE(decimalTyped);
    // An empty field too; a lone "." keeps the flag, so a second point is still dropped.
    decimalTyped = true;
    EXPECT_EQ(typeAmount(QString(), "..", decimalTyped), ".");
    // Two characters left are not enough: the flag stays as it was.
    decimalTyped = true;
    EXPECT_EQ(typeAmount("12.", "\b.", decimalTyped), "12");
}

TEST(AmountKeys, RemainingAmountFollowsTheChange) {
    // 30.00 applied out of 100.00, the amount changed to 80.00.
    EXPECT_EQ(AdjustedRemaining(Money::fromWhole(80), Money::fromWhole(100), Money::fromWhole(70)),
              Money::fromWhole(50));
    // Raised by 50.00 whatever was distributed; from an empty field.
    EXPECT_EQ(AdjustedRemaining(Money::fromWhole(150), Money::fromWhole(100), Money::fromCents(-2500)),
              Money::fromWhole(25));
    EXPECT_EQ(AdjustedRemaining(Strip_Commas("1,250.005"), Money(), Money()),
              Money::fromThousandths(1250005));
}

TEST(DateMask, DigitsFillTheMaskAndTheCaretJumpsTheSeparators) {
    const QString mask = "__/__/____";
    int pos = 0;
    bool typing = false;
    QString text = typeDate(mask, mask, "12", pos, typing);
    EXPECT_EQ(text, "12/__/____");
    EXPECT_EQ(pos, 3);
    text = typeDate(text, mask, "012000", pos, typing);
    EXPECT_EQ(text, "12/01/2000");
    EXPECT_EQ(pos, 10);
    // A ninth digit is dropped and the field never grows.
    EXPECT_EQ(PressDateKey('7', 10, pos, typing), DateKey::Dropped);
    EXPECT_EQ(pos, 10);
    // Letters and other keys are refused and change nothing.
    EXPECT_EQ(PressDateKey('a', 10, pos, typing), DateKey::Refused);
    EXPECT_EQ(PressDateKey('/', 10, pos, typing), DateKey::Refused);
    EXPECT_EQ(pos, 10);
    EXPECT_TRUE(typing);
}

TEST(DateMask, BackspaceErasesDigitsAndStepsOverSeparators) {
    const QString mask = "__/__/____";
    int pos = 6;
    bool typing = true;
    // Just after the second separator: the digit before it goes, "_" in its place.
    QString text = typeDate("12/01/____", mask, "\b", pos, typing);
    EXPECT_EQ(text, "12/0_/____");
    EXPECT_EQ(pos, 4);
    text = typeDate(text, mask, "\b", pos, typing);
    EXPECT_EQ(text, "12/__/____");
    EXPECT_EQ(pos, 3);
    text = typeDate(text, mask, "\b", pos, typing);
    EXPECT_EQ(text, "1_/__/____");
    EXPECT_EQ(pos, 1);
    // At the start Backspace leaves the bare mask.
    text = typeDate(text, mask, "\b\b", pos, typing);
    EXPECT_EQ(text, mask);
    EXPECT_EQ(pos, 0);
    // Typing goes on from there.
    EXPECT_EQ(typeDate(text, mask, "0", pos, typing), "0_/__/____");
}

TEST(DateMask, OtherSeparatorsAndOrders) {
    // A day-first form with points: the caret finds the mask's own separators.
    QString mask = "__.__.____";
    int pos = 0;
    bool typing = false;
    QString text = typeDate(mask, mask, "31012026", pos, typing);
    EXPECT_EQ(text, "31.01.2026");
    text = typeDate(text, mask, "\b\b\b\b\b", pos, typing);
    EXPECT_EQ(text, "31.0_.____");
    EXPECT_EQ(typeDate(text, mask, "22026", pos, typing), "31.02.2026");

    // A year-first form with hyphens.
    mask = "____-__-__";
    pos = 0;
    text = typeDate(mask, mask, "20260131", pos, typing);
    EXPECT_EQ(text, "2026-01-31");
    text = typeDate(text, mask, "\b\b\b", pos, typing);
    EXPECT_EQ(text, "2026-0_-__");
    EXPECT_EQ(typeDate(text, mask, "228", pos, typing), "2026-02-28");
}

TEST(DateMask, EditsAroundTheKeysAreLaidBackIntoTheMask) {
    const QString mask = "__/__/____";
    EXPECT_TRUE(FitsDateMask("12/0_/____", mask));
    EXPECT_FALSE(FitsDateMask("1/01/2000", mask));  // a digit deleted
    EXPECT_FALSE(FitsDateMask("12-01-2000", mask)); // separators moved
    EXPECT_FALSE(FitsDateMask("12/ab/2000", mask));
    // Deleted inside: the later digits move up; the caret follows the last digit, past a separator.
    MaskedDate date = ReshapeDate("1/01/2000", mask);
    EXPECT_EQ(date.text, "10/12/000_");
    EXPECT_EQ(date.pos, 9);
    date = ReshapeDate("2026-03-1", mask);
    EXPECT_EQ(date.text, "20/26/031_");
    date = ReshapeDate("1203 and more 2026 99", mask);
    EXPECT_EQ(date.text, "12/03/2026");
    EXPECT_EQ(date.pos, 10);
    date = ReshapeDate("12", mask);
    EXPECT_EQ(date.text, "12/__/____");
    EXPECT_EQ(date.pos, 3);
    EXPECT_EQ(ReshapeDate("", mask).pos, 0);
}

TEST(DateMask, TheLedgerGetsADateOrTheTextAsTyped) {
    qputenv("TILLBOOK_SHORT_DATE", "dd/MM/yyyy");
    EXPECT_EQ(DateValueOf("31/01/2026"), QVariant(QDate(2026, 1, 31)));
    for (const QString& impossible : {QString("31/02/2026"), QString("00/00/0000"), QString("3_/__/____")}) {
        const QVariant value = DateValueOf(impossible);
        EXPECT_EQ(value.typeId(), QMetaType::QString);
        EXPECT_EQ(value.toString(), impossible);
    }
    qunsetenv("TILLBOOK_SHORT_DATE");
}
