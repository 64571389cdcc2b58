#include "entry/dialogs/frmBank.h"

#include "ledger/LedgerError.h"
#include "ui/Forms.h"
#include "ui/Platform.h"
#include "ui_frmBank.h"

#include <QCoreApplication>

namespace tillbook {

frmBank::frmBank(const QString& batchNumber, const QStringList& bankCodes, BankCodeWriter writeBankCode,
                 QWidget* parent)
    : QDialog(parent), ui(std::make_unique<Ui::frmBank>()), m_write(std::move(writeBankCode)) {
    ui->setupUi(this);
    setObjectName(QStringLiteral("frmBank"));
    // A title only: the dialog closes by OK, so it shows no minimise, maximise or close button that would do
    // nothing.
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    setFixedSize(size());
    CentreForm(this);
    ui->txtBatchNum->setText(batchNumber);
    ui->cboBank->addItems(bankCodes);
    ui->cboBank->setListIndex(-1);
    ui->cmdOK->setEnabled(false);
    connect(ui->cboBank, &ComboBox::Click, this, &frmBank::cboBank_Click);
    connect(ui->cmdOK, &QPushButton::clicked, this, &frmBank::cmdOK_Click);
}

frmBank::~frmBank() = default;

void frmBank::cboBank_Click() {
    if (ui->cboBank->ListIndex() >= 0)
        ui->cmdOK->setEnabled(true);
}

void frmBank::cmdOK_Click() {
    if (ui->cboBank->ListIndex() < 0)
        return;
    QCoreApplication::processEvents();
    const QString code = ui->cboBank->currentText();
    try {
        m_write(code);
    } catch (const LedgerError& error) {
        m_writeFailed = true;
        MsgBox(QStringLiteral("The bank code %1 could not be written to batch %2.")
                       .arg(code, ui->txtBatchNum->text()) +
                   u'\n' + error.description() + u'\n' + QStringLiteral("Choose the bank code again."),
               vbOKOnly + vbExclamation, QStringLiteral("Tillbook - Bank"));
        return;
    }
    m_bankCode = code;
    accept();
}

void frmBank::reject() {
    // Without a cancel the dialog only closes by OK; once writing has failed the clerk may give up.
    if (m_writeFailed)
        QDialog::reject();
}

} // namespace tillbook
