#include "printing/frmPrinter.h"

#include "printing/Printers.h"
#include "settings/Registry.h"
#include "ui/Forms.h"
#include "ui_frmPrinter.h"

#include <QCloseEvent>

namespace tillbook {

namespace {

// The program's current printer: made current in the dialog, kept from one opening to the next.
QPrinterInfo& currentPrinter() {
    static QPrinterInfo printer;
    return printer;
}

} // namespace

frmPrinter::frmPrinter(QWidget* parent) : QDialog(parent), ui(std::make_unique<Ui::frmPrinter>()) {
    ui->setupUi(this);
    setObjectName(QStringLiteral("frmPrinter"));
    setFixedSize(size());
    connect(ui->chkDefault, &QCheckBox::clicked, this, &frmPrinter::chkDefault_Click);
    // A printer chosen with the mouse or the arrow keys.
    connect(ui->lstNames, &QListWidget::itemClicked, this, &frmPrinter::lstNames_Click);
    connect(ui->lstNames, &QListWidget::currentRowChanged, this, &frmPrinter::lstNames_Click);
    connect(ui->cmdOK, &QPushButton::clicked, this, &frmPrinter::cmdOK_Click);
    connect(ui->cmdClose, &QPushButton::clicked, this, &frmPrinter::cmdClose_Click);
    Form_Load();
}

frmPrinter::~frmPrinter() = default;

void frmPrinter::Form_Load() {
    CentreForm(this);
    List_Printers();
    Load_PrinterSettings();
}

void frmPrinter::List_Printers() {
    ui->lstNames->clear();
    ui->lstNames->addItems(Installed_Printers());
}

void frmPrinter::Load_PrinterSettings() {
    const PrinterSettings stored = tillbook::Load_PrinterSettings();
    ui->chkDefault->setChecked(stored.useDefault);
    if (stored.useDefault)
        chkDefault_Click();
    if (!stored.name.trimmed().isEmpty())
        ui->lblPrinter->setText(u' ' + stored.name);
}

void frmPrinter::Save_PrinterSettings() {
    PrinterSettings chosen;
    if (!ui->chkDefault->isChecked()) {
        const QPrinterInfo& current = currentPrinter();
        chosen = Printer_Identity(current.isNull() ? QPrinterInfo::defaultPrinter() : current);
        chosen.useDefault = false;
    }
    tillbook::Save_PrinterSettings(chosen);
}

void frmPrinter::chkDefault_Click() {
    if (ui->chkDefault->isChecked()) {
        ui->lblPrinter->setText(QStringLiteral(" Windows Default Printer"));
        ui->lstNames->setCurrentRow(-1);
        ui->lstNames->clearSelection();
    } else {
        ui->lblPrinter->clear();
    }
}

void frmPrinter::lstNames_Click() {
    const int row = ui->lstNames->currentRow();
    if (row < 0)
        return;
    const QList<QPrinterInfo> printers = QPrinterInfo::availablePrinters();
    const QString name = ui->lstNames->item(row)->text();
    for (const QPrinterInfo& printer : printers)
        if (printer.printerName() == name)
            currentPrinter() = printer;
    ui->lblPrinter->setText(currentPrinter().printerName());
}

void frmPrinter::cmdOK_Click() {
    Save_PrinterSettings();
    cmdClose_Click();
}

void frmPrinter::cmdClose_Click() {
    m_closing = true;
    hide();
    if (parentWidget())
        parentWidget()->show();
    done(QDialog::Accepted);
}

void frmPrinter::closeEvent(QCloseEvent* event) {
    if (!m_closing) {
        event->ignore();
        cmdClose_Click();
        return;
    }
    QDialog::closeEvent(event);
}

void frmPrinter::reject() {
    // Escape closes as the Close button does.
    cmdClose_Click();
}

} // namespace tillbook
