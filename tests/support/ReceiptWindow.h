#pragma once

// The receipt window as the clerk gets it after signing in as ADMIN to company SAMINC (database slot 1), with
// its settings in a temporary file, and its controls found by name.

#include "entry/ReceiptDesk.h"
#include "entry/ReceiptWindowParts.h"
#include "entry/frmCR.h"
#include "support/BankDialog.h"
#include "support/TempSettings.h"
#include "ui/ComboBox.h"
#include "ui/FlexGrid.h"

#include <QAction>
#include <QLineEdit>
#include <QPointer>
#include <QTest>

namespace tillbook::test {

template <typename T> T* control(QWidget* form, const char* name) {
    T* found = form->findChild<T*>(name);
    if (!found)
        qFatal("no control %s", name);
    return found;
}

class ReceiptWindow {
public:
    ReceiptWindow() {
        ResetDesk(); // every window starts from a fresh desk
        Desk().SignInDatabaseID = QStringLiteral("SAMINC");
        Desk().SignInUser = QStringLiteral("ADMIN");
        Desk().CurrentDatabase = 1;
    }
    ~ReceiptWindow() { close(); }
    ReceiptWindow(const ReceiptWindow&) = delete;
    ReceiptWindow& operator=(const ReceiptWindow&) = delete;

    // Loads and shows the window; false when the company could not be opened.
    bool open() {
        form = new frmCR();
        if (!form->Form_Load(QStringLiteral("ADMIN")))
            return false;
        form->show();
        return QTest::qWaitForWindowExposed(form);
    }
    void close() {
        delete form;
        Close_Ledger(Desk());
    }

    ComboBox* combo(const char* name) const { return control<ComboBox>(form, name); }
    QLineEdit* edit(const char* name) const { return control<QLineEdit>(form, name); }
    QString text(const char* name) const { return edit(name)->text(); }
    FlexGrid* grid() const { return control<FlexGrid>(form, "MSFlexGrid1"); }
    bool shown(const char* name) const { return control<QWidget>(form, name)->isVisibleTo(form); }
    bool enabled(const char* name) const { return control<QWidget>(form, name)->isEnabled(); }
    bool saveEnabled() const {
        return enabled("cmdSave") && control<QAction>(form, "mnuFileSave")->isEnabled();
    }

    // Tabs into a field, which selects its text, types the keys and, when asked, tabs out to the description.
    QLineEdit* type(const char* name, const QString& keys, bool leave = true) {
        form->activateWindow();
        if (!QTest::qWaitForWindowActive(form))
            qFatal("the receipt window does not become active");
        QLineEdit* field = edit(name);
        field->setFocus(Qt::TabFocusReason);
        QTest::keyClicks(field, keys);
        if (leave)
            edit("txtEntDesc")->setFocus(Qt::TabFocusReason);
        return field;
    }
    // Double-clicks the grid's cell.
    void dblClick(int row, int col) {
        grid()->setRow(row);
        grid()->setCol(col);
        form->MSFlexGrid1_DblClick();
    }
    // A new batch with the first bank code, and a new entry in it.
    void newBatchAndEntry() {
        answerBankDialog(0);
        form->cmdNewBatch_Click();
        form->cmdNewEntry_Click();
    }

    TempSettings settings;
    QPointer<frmCR> form;
};

} // namespace tillbook::test
