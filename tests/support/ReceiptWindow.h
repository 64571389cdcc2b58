#pragma once

// The receipt window as the clerk gets it after signing in as ADMIN to company SAMINC (database slot 1), with
// its settings in a temporary file, and its controls found by name.

#include "entry/ReceiptDesk.h"
#include "entry/ReceiptWindowParts.h"
#include "entry/frmCR.h"
#include "support/TempSettings.h"
#include "ui/ComboBox.h"
#include "ui/FlexGrid.h"

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

    TempSettings settings;
    QPointer<frmCR> form;
};

} // namespace tillbook::test
