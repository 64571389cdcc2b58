// The amount's key filter and remaining amount, and the date mask's keys and caret, without a window.
#include "entry/AmountKeys.h"
#include "entry/DateMask.h"
#include "ledger/Formats.h"

#include <QDate>
#include <gtest/gtest.h>

using namespace tillbook;

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
