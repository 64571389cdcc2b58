#include "Pictures.h"

#include "Seams.h"
#include "app/Start.h"
#include "ui/FlexGrid.h"
#include "ui/frmWorking.h"

#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QTest>

namespace tillbook::guide {
namespace {

class Album {
public:
    explicit Album(const QString& folder) : m_folder(folder) {}

    void save(QWidget* window, const QString& name) {
        window->activateWindow(); // as the clerk sees it: the grid marks its current cell in an active window
        if (!QTest::qWaitForWindowActive(window))
            qWarning("%s did not become active", qPrintable(window->objectName()));
        QTest::qWait(50); // layouts and repaints settle
        if (window->grab().save(QDir(m_folder).filePath(name + QStringLiteral(".png"))))
            saved << name;
        else
            qWarning("could not save %s", qPrintable(name));
    }

    QStringList saved;

private:
    QString m_folder;
};

// The sign-in window, the about box from its Help menu, and the new database and new user dialogs.
void signInWindows(Album& album, QWidget* login) {
    album.save(login, QStringLiteral("frmLogin"));
    whenOpen(QStringLiteral("frmAbout"), [&album](QWidget* box) {
        album.save(box, QStringLiteral("frmAbout"));
        click(box, "cmdOK");
    });
    triggerMenu(login, "mnuHelpAbout");

    invoke(login, "mnuAddNewDB_Click");
    QWidget* added = shownWindow(QStringLiteral("frmNew"));
    album.save(added, QStringLiteral("frmNew-database"));
    added->close();
    QTest::qWait(50);                     // the closed dialog is gone before Add opens the next one
    invoke(login, "mnuAddNewUser_Click"); // for the remembered database
    added = shownWindow(QStringLiteral("frmNew"));
    album.save(added, QStringLiteral("frmNew-user"));
    added->close();
}

// The window that follows the reading of the customer list, two thirds of the way.
void workingWindow(Album& album) {
    frmWorking working;
    working.showNow();
    working.setProgress(2, 3);
    album.save(&working, QStringLiteral("frmWorking"));
}

// The receipt window in each mode before any batch is chosen, with a customer and its documents.
void receiptModes(Album& album, QWidget* receipts) {
    invoke(receipts, "Unlock_Entry"); // as a started entry is
    album.save(receipts, QStringLiteral("frmCR-receipt"));
    triggerMenu(receipts, "mnuCustomerFirst");
    album.save(receipts, QStringLiteral("frmCR-customer"));
    invoke(receipts, "Load_OpenDocuments");
    auto* grid = control<FlexGrid>(receipts, "MSFlexGrid1");
    grid->setRow(1);
    grid->setCol(2); // the first document's number current
    album.save(receipts, QStringLiteral("frmCR-open-documents"));
    grid->setCol(0);

    setListIndex(receipts, "cboTransType", 1);
    album.save(receipts, QStringLiteral("frmCR-prepayment"));
    // The first customer whose documents fill the grid.
    auto* customers = control<QComboBox>(receipts, "cboCustomers");
    for (int i = 0; i < customers->count(); ++i) {
        invoke(receipts, "Set_GridHeaders");
        customers->setCurrentIndex(i);
        invoke(receipts, "Load_CustomerDocuments");
        if (grid->Rows() > 1 && !grid->TextMatrix(1, 0).isEmpty())
            break;
    }
    grid->setRow(1);
    grid->setCol(0);
    album.save(receipts, QStringLiteral("frmCR-prepayment-documents"));

    // Misc. entered from receipt mode keeps the unapplied amount under the undistributed one.
    triggerMenu(receipts, "mnuTransReceipt");
    triggerMenu(receipts, "mnuTransMisc");
    album.save(receipts, QStringLiteral("frmCR-misc"));
}

// A new batch with its bank code, the finder of distribution codes for a misc. receipt's line, then a receipt
// of 4,000.00 applied to the customer's first two documents, saved and shown read-only.
void savedReceipt(Album& album, QWidget* receipts) {
    whenOpen(QStringLiteral("frmBank"), [&album](QWidget* bank) {
        album.save(bank, QStringLiteral("frmBank"));
        setListIndex(bank, "cboBank",
                     control<QComboBox>(bank, "cboBank")->findText(QStringLiteral("TDOPER")));
        click(bank, "cmdOK");
    });
    click(receipts, "cmdNewBatch");
    click(receipts, "cmdNewEntry");
    type(receipts, "txtAmount", QStringLiteral("150"), "txtEntDesc");
    invoke(receipts, "cmdNewInvoice_Click"); // a first distribution line
    whenOpen(QStringLiteral("frmFinder"), [&album](QWidget* finder) {
        album.save(finder, QStringLiteral("frmFinder"));
        finder->close();
    });
    invoke(receipts, "cmdDist_Click");

    triggerMenu(receipts, "mnuTransReceipt");
    click(receipts, "cmdNewEntry");
    setListIndex(receipts, "cboCustomers", 0);
    type(receipts, "txtEntDesc", QStringLiteral("Cheque for two invoices"), "txtAmount");
    type(receipts, "txtAmount", QStringLiteral("4000"), "txtEntDesc");
    click(receipts, "cmdSearch");
    auto* grid = control<FlexGrid>(receipts, "MSFlexGrid1");
    for (int row : {1, 2}) {
        grid->setRow(row);
        grid->setCol(0);
        invoke(receipts, "MSFlexGrid1_DblClick");
    }
    click(receipts, "cmdSave");
    album.save(receipts, QStringLiteral("frmCR-recall-receipt"));

    whenOpen(QStringLiteral("frmPrinter"), [&album](QWidget* printer) {
        album.save(printer, QStringLiteral("frmPrinter"));
        printer->close();
    });
    invoke(receipts, "mnuFileSelectPrinter_Click");
}

} // namespace

QStringList takePictures(const QString& folder) {
    Album album(folder);
    Start_Main();
    QWidget* login = shownWindow(QStringLiteral("frmLogin"));
    if (!login)
        qFatal("the sign-in window did not open");
    signInWindows(album, login);
    workingWindow(album);

    control<QLineEdit>(login, "txtPassword")->setText(QStringLiteral("ADMIN"));
    invoke(login, "txtPassword_LostFocus");
    invoke(login, "cmdOK_Click");
    QWidget* receipts = shownWindow(QStringLiteral("frmCR"));
    if (!receipts)
        qFatal("the receipt window did not open");
    receiptModes(album, receipts);
    savedReceipt(album, receipts);
    return album.saved;
}

} // namespace tillbook::guide
