// The receipt window's masked date field, and the fiscal year and period that follow the date keyed.
#include "entry/AmountDateFields.h"
#include "entry/DateMask.h"
#include "entry/EntryFields.h"
#include "entry/ReceiptDesk.h"
#include "fetching/FiscalPeriods.h"
#include "fetching/ReceiptDate.h"
#include "ledger/Formats.h"
#include "ledger/LedgerError.h"
#include "ui/Events.h"
#include "ui/Platform.h"
#include "ui_frmCR.h"

#include <QRegularExpression>

namespace tillbook {

void AmountDateFields::resetDate(const QDate& today) {
    m_dateMask =
        FormatShortDate(today).replace(QRegularExpression(QStringLiteral("[0-9]")), QStringLiteral("_"));
    ui.txtDate->setText(FormatShortDate(today));
    m_datePos = 0;
    m_dateTyping = false;
    Load_FiscalYears(today);
    Load_FiscalPeriods(today);
}

void AmountDateFields::dateKeyPress(int& keyAscii) {
    QLineEdit* field = ui.txtDate;
    // A digit or Backspace over the whole date (selected as the field is entered) keys it from its start.
    const bool keyed = keyAscii == vbKeyBack || (keyAscii >= '0' && keyAscii <= '9');
    if (keyed && field->hasSelectedText() && field->selectedText().size() == field->text().size())
        m_datePos = 0;
    switch (PressDateKey(keyAscii, static_cast<int>(m_dateMask.size()), m_datePos, m_dateTyping)) {
    case DateKey::Typed:
        // The key edits where the typed part ends, wherever a click has put the caret.
        field->setCursorPosition(m_dateTyping ? m_datePos - 1 : m_datePos);
        break;
    case DateKey::Dropped:
        keyAscii = 0;
        break;
    case DateKey::Refused:
        keyAscii = 0;
        Beep();
        break;
    }
}

void AmountDateFields::dateKeyUp(int keyCode, int shift) {
    QLineEdit* field = ui.txtDate;
    const bool taken = keyCode == vbKeyBack || (keyCode >= '0' && keyCode <= '9');
    const bool aroundTheKeys = keyCode == vbKeyDelete || (shift & vbCtrlMask);
    MaskedDate date;
    if (taken)
        date = FinishDateKey(field->text(), m_dateMask, m_datePos, m_dateTyping);
    else if (!aroundTheKeys && FitsDateMask(field->text(), m_dateMask))
        return; // the Tab that enters the field, arrows and refused letters leave it as it is
    // Delete, cut, paste or a word erased at once went round the mask: its digits are laid back into it.
    if (!taken || !FitsDateMask(date.text, m_dateMask))
        date = ReshapeDate(field->text(), m_dateMask);
    m_datePos = date.pos;
    field->setText(date.text);
    field->setCursorPosition(date.pos);
}

void AmountDateFields::dateLeft() {
    const QVariant value = DateValueOf(ui.txtDate->text());
    // An impossible date finds no fiscal year or period of its own; the ledger then refuses it by name.
    const QDate date = value.typeId() == QMetaType::QDate ? value.toDate() : QDate();
    Load_FiscalYears(date);
    Load_FiscalPeriods(date);
    try {
        Put_ReceiptDate(Desk(), value);
    } catch (const LedgerError& error) {
        ReportLedgerError(QStringLiteral("The receipt date could not be taken."), error.description());
    }
}

void AmountDateFields::Load_FiscalYears(const QDate& date) {
    ui.cboYear->clear();
    if (!Desk().LedgerSession)
        return;
    try {
        const FiscalYearList list = Read_FiscalYears(*Desk().LedgerSession, date);
        ui.cboYear->addItems(list.years);
        ui.cboYear->setListIndex(list.selected);
    } catch (const LedgerError& error) {
        ReportLedgerError(QStringLiteral("The fiscal years could not be read."), error.description());
    }
}

void AmountDateFields::Load_FiscalPeriods(const QDate& date) {
    ui.cboPeriod->clear();
    if (!Desk().LedgerSession)
        return;
    try {
        const int count = Get_PeriodCount(*Desk().LedgerSession);
        ui.cboPeriod->addItems(PeriodEntries(count));
        ui.cboPeriod->setListIndex(PeriodIndexOf(date, count));
    } catch (const LedgerError& error) {
        ReportLedgerError(QStringLiteral("The fiscal periods could not be read."), error.description());
    }
}

} // namespace tillbook
