#pragma once

// The receipt window as the clerk gets it after signing in as ADMIN to a builder's company (database slot 1),
// with its settings in a temporary file, its controls found by name, and its printed receipts as text.

#include "entry/ReceiptDesk.h"
#include "entry/ReceiptWindowParts.h"
#include "entry/frmCR.h"
#include "support/BankDialog.h"
#include "support/Company.h"
#include "support/TempSettings.h"
#include "ui/ComboBox.h"
#include "ui/FlexGrid.h"

#include <QAction>
#include <QDir>
#include <QLineEdit>
#include <QPointer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace tillbook::test {

template <typename T> T* control(QWidget* form, const char* name) {
    T* found = form->findChild<T*>(name);
    if (!found)
        qFatal("no control %s", name);
    return found;
}

// The text of a PDF as pdftotext reads it, every run of blanks and line ends made one blank.
inline QString pdfText(const QString& file) {
    QProcess process;
    process.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), file, QStringLiteral("-")});
    if (!process.waitForFinished(60000))
        return {};
    return QString::fromUtf8(process.readAllStandardOutput()).simplified();
}

class ReceiptWindow {
public:
    explicit ReceiptWindow(const Company& company) {
        ResetDesk(); // every window starts from a fresh desk
        Desk().SignInDatabaseID = company.id();
        Desk().SignInUser = QStringLiteral("ADMIN");
        Desk().CurrentDatabase = 1;
        qputenv("TILLBOOK_PDF_DIR", pdfs.path().toUtf8());
    }
    ~ReceiptWindow() {
        close();
        qunsetenv("TILLBOOK_PDF_DIR");
    }
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
    QAction* action(const char* name) const { return control<QAction>(form, name); }
    QString text(const char* name) const { return edit(name)->text(); }
    // The texts of several fields, joined by "|".
    QString texts(std::initializer_list<const char*> names) const {
        QStringList all;
        for (const char* name : names)
            all << text(name);
        return all.join(u'|');
    }
    FlexGrid* grid() const { return control<FlexGrid>(form, "MSFlexGrid1"); }
    bool shown(const char* name) const { return control<QWidget>(form, name)->isVisibleTo(form); }
    bool enabled(const char* name) const { return control<QWidget>(form, name)->isEnabled(); }
    bool saveEnabled() const { return enabled("cmdSave") && action("mnuFileSave")->isEnabled(); }

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
    // Runs a print command and returns the text of the receipt it wrote; empty when it wrote none.
    QString print(const char* command = "mnuFilePrint") {
        const QDir folder(pdfs.path());
        const QStringList before = folder.entryList({QStringLiteral("*.pdf")});
        action(command)->trigger();
        for (const QString& file : folder.entryList({QStringLiteral("*.pdf")}))
            if (!before.contains(file))
                return pdfText(folder.filePath(file));
        return {};
    }

    TempSettings settings;
    QTemporaryDir pdfs;
    QPointer<frmCR> form;
};

} // namespace tillbook::test
