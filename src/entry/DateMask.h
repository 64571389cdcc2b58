#pragma once

// The masked date field's rules that need no widget. The field always shows the whole pattern of the short
// date form: the digits typed so far, then "_" in the places still to type, with the separators fixed. The
// position is the number of characters filled; the caret stands after them.

#include <QString>
#include <QVariant>

namespace tillbook {

// What a typed character does to the date field.
enum class DateKey {
    Typed,   // goes into the field (a digit, or Backspace)
    Dropped, // a digit past the end of the pattern: the field never grows
    Refused, // anything else: dropped with a beep
};

// Takes one typed character: digits move the position on and mark typing, Backspace marks erasing.
DateKey PressDateKey(int keyAscii, int maskLength, int& datePos, bool& dateTyping);

struct MaskedDate {
    QString text;
    int pos = 0; // the new position; the caret goes there
};

// Finishes a key once the field has taken it: the text is rebuilt from what is typed and the mask. After a
// digit the caret jumps a separator that follows it; after Backspace just behind a separator, the digit
// before the separator goes too. Separators are whatever the mask holds besides "_".
MaskedDate FinishDateKey(const QString& text, const QString& mask, int datePos, bool dateTyping);

// True when the text has the mask's shape: its length, its separators in place, digits or "_" elsewhere.
bool FitsDateMask(const QString& text, const QString& mask);

// Lays the digits of a text that lost the mask's shape (a Delete, a cut or a paste) into the mask's places in
// their order; the position follows the last of them, past a separator after it.
MaskedDate ReshapeDate(const QString& text, const QString& mask);

// The value handed to the ledger for the date field's text: the date, when the text is one in the short date
// form; otherwise the text as typed, which the ledger refuses in its own words.
QVariant DateValueOf(const QString& text);

} // namespace tillbook
