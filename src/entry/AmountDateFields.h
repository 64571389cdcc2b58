#pragma once

// The receipt window's amount and date fields: the amount's key filter and the remaining amount that follows
// it, the masked date keyed digit by digit, and the fiscal year and period that follow the date.

#include "entry/ReceiptForm.h"
#include "ledger/Money.h"

#include <QDate>
#include <QString>

namespace tillbook {

class AmountDateFields {
public:
    explicit AmountDateFields(Ui::frmCR& ui);
    // The paste filter of the amount and the date's keyed-only input; after the fields' key handlers.
    void connectControls();

    Money AmountOnFocus() const { return m_amountOnFocus; }
    int DatePos() const { return m_datePos; }
    bool DateTyping() const { return m_dateTyping; }
    QString DateMask() const { return m_dateMask; }

    void amountGotFocus();
    void forgetAmountOnFocus() { m_amountOnFocus = Money(); }
    void amountKeyPress(int& keyAscii);
    // The amount as left by the clerk, in an entry of kind `kind`: formatted, and the remaining amount
    // following it.
    void amountLeft(int kind);
    // The remaining amount (undistributed when `distribution`, else unapplied) after the amount changed since
    // the field took the focus, formatted for the screen.
    QString Adjust_Remaining(bool distribution) const;

    // The date of today in an emptied entry; typing starts again at its first digit.
    void resetDate(const QDate& today);
    void dateKeyPress(int& keyAscii);
    void dateKeyUp(int keyCode, int shift);
    void dateLeft();

    // The fiscal year and period lists for a date.
    void Load_FiscalYears(const QDate& date);
    void Load_FiscalPeriods(const QDate& date);

private:
    // Text pasted or dropped into the amount, keyed character by character through its key filter.
    void typeIntoAmount(const QString& text);

    Ui::frmCR& ui;
    Money m_amountOnFocus;     // the amount when its field last took the focus
    QString m_dateMask;        // the short date form with "_" for each digit
    int m_datePos = 0;         // characters of the date field filled; the caret stands after them
    bool m_dateTyping = false; // the last key in the date field was a digit, not Backspace
};

} // namespace tillbook
