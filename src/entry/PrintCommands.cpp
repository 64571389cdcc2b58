// The receipt window's print commands: the receipt of the entry on show, its style, and the printer.

#include "entry/frmCR.h"
#include "printing/Printing.h"
#include "printing/frmPrinter.h"
#include "ui/Platform.h"
#include "ui_frmCR.h"

#include <QEvent>

namespace tillbook {

namespace {

// Keeps the File menu's Print item enabled exactly when the Print button is, whichever code enables the one.
class FollowEnabled : public QObject {
public:
    FollowEnabled(QWidget* leader, QAction* follower) : QObject(leader), m_follower(follower) {
        m_follower->setEnabled(leader->isEnabled());
        leader->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::EnabledChange)
            m_follower->setEnabled(static_cast<QWidget*>(watched)->isEnabled());
        return false;
    }

private:
    QAction* m_follower;
};

} // namespace

void frmCR::connectPrinting() {
    new FollowEnabled(ui->cmdPrint, ui->mnuFilePrint);
    connect(ui->cmdPrint, &QPushButton::clicked, this, &frmCR::cmdPrint_Click);
    connect(ui->mnuFilePrint, &QAction::triggered, this, &frmCR::mnuFilePrint_Click);
    connect(ui->mnuFileReceipt2V, &QAction::triggered, this, &frmCR::mnuFileReceipt2V_Click);
    connect(ui->mnuFileReceipt3V, &QAction::triggered, this, &frmCR::mnuFileReceipt3V_Click);
    connect(ui->mnuFileSelectPrinter, &QAction::triggered, this, &frmCR::mnuFileSelectPrinter_Click);
}

void frmCR::cmdPrint_Click() {
    PrintRequest request;
    request.batch = ui->cboBatch->currentText().toInt();
    request.entry = ui->cboEntry->currentText().toInt();
    const int kind = ui->cboTransType->ListIndex();
    request.kind = kind == 1 ? ReceiptKind::Prepayment : kind == 2 ? ReceiptKind::Misc : ReceiptKind::Receipt;
    request.threePart = ui->mnuFileReceipt3V->isChecked();
    for (const QString& problem : Print_Receipt(Desk().LedgerSession.get(), request).problems)
        MsgBox(problem);
}

void frmCR::mnuFilePrint_Click() {
    cmdPrint_Click();
}

// The two styles are a pair: a click ticks its own item, also when it was ticked, and unticks the other.
void frmCR::mnuFileReceipt2V_Click() {
    ui->mnuFileReceipt2V->setChecked(true);
    ui->mnuFileReceipt3V->setChecked(false);
}

void frmCR::mnuFileReceipt3V_Click() {
    ui->mnuFileReceipt3V->setChecked(true);
    ui->mnuFileReceipt2V->setChecked(false);
}

void frmCR::mnuFileSelectPrinter_Click() {
    frmPrinter dialog(this);
    dialog.exec();
}

} // namespace tillbook
