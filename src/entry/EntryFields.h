#pragma once

// The entry on show in the receipt window: its kind (0 receipt, 1 prepayment, 2 miscellaneous receipt), the
// fields that show it, whether they are locked (a saved entry on show) and whether it may be saved.

#include "entry/ReceiptForm.h"

#include <QString>
#include <functional>

namespace tillbook {

// The window's kinds of entry, as the list cboTransType offers them.
constexpr int KindReceipt = 0;
constexpr int KindPrepayment = 1;
constexpr int KindMisc = 2;

// Shows a ledger failure to the clerk and clears the session's error list.
void ReportLedgerError(const QString& what, const QString& description);

class EntryFields {
public:
    EntryFields(QWidget& window, Ui::frmCR& ui, AmountDateFields& amountDate);

    int TransType() const { return m_transType; }
    bool EntryLocked() const { return m_entryLocked; }

    // The entry's fields emptied, the date set to today with its fiscal year and period.
    void Clear_Entry();
    // The unsaved-entry question; `save` runs on Yes. Returns the answer (vbYes, vbNo), or 0 when there was
    // nothing to ask.
    int Prompt_SaveEntry(const std::function<void()>& save);
    // The window turned over to a new kind of entry, emptied.
    void switchKind(int kind);

    void Lock_Entry();
    void Unlock_Entry();
    // The entry fields locked, with nothing to print, until an entry is started or chosen.
    void lockUntilEntryChosen();
    void setSaveEnabled(bool enabled);
    void setNewEntryEnabled(bool enabled);

private:
    void setModeControls(int mode);
    void setEntryFieldsEnabled(bool enabled);

    QWidget& m_window;
    Ui::frmCR& ui;
    AmountDateFields& m_amountDate;
    int m_transType = KindReceipt;
    bool m_entryLocked = false;
};

} // namespace tillbook
