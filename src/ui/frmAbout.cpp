#include "ui/frmAbout.h"

#include "ui/Forms.h"
#include "ui/ProgramIcon.h"
#include "ui/SysInfo.h"
#include "ui_frmAbout.h"

namespace tillbook {

namespace {

// The program's own texts of the about box.
const char* const Caption = "About ORVA Tillbook";
const char* const Title = "ORVA Tillbook";
const char* const VersionPrefix = "Version  ";
const char* const Description =
    "Keys customer receipts into the receipt batches of a ledger company and prints the customer's receipt.";
const char* const Notices[] = {
    "Made by ORVA.",
    "For the clerks and the administrators of the tills it is installed on.",
    "Built with Qt 6; the ledger is kept in SQLite or on a PostgreSQL server.",
};
const char* const Disclaimer =
    "This program is provided as it is, without warranty of any kind. Check every receipt before you hand "
    "it to the customer: the maker is not liable for any loss that comes from its use.";

} // namespace

frmAbout::frmAbout(QWidget* parent) : QDialog(parent), ui(std::make_unique<Ui::frmAbout>()) {
    ui->setupUi(this);
    setObjectName(QStringLiteral("frmAbout"));
    connect(ui->cmdOK, &QPushButton::clicked, this, &frmAbout::cmdOK_Click);
    connect(ui->cmdSysInfo, &QPushButton::clicked, this, &frmAbout::cmdSysInfo_Click);
    Form_Load();
}

frmAbout::~frmAbout() = default;

void frmAbout::Form_Load() {
    setWindowTitle(QString::fromLatin1(Caption));
    ui->picIcon->setPixmap(ProgramIcon().pixmap(ui->picIcon->size()));
    ui->lblTitle->setText(QString::fromLatin1(Title));
    ui->lblVersion->setText(QString::fromLatin1(VersionPrefix) + QStringLiteral("%1.%2.%3")
                                                                     .arg(TILLBOOK_VERSION_MAJOR)
                                                                     .arg(TILLBOOK_VERSION_MINOR)
                                                                     .arg(TILLBOOK_VERSION_PATCH));
    QString description = QString::fromLatin1(Description);
    for (const char* notice : Notices)
        description += u'\n' + QString::fromLatin1(notice);
    ui->lblDescription->setText(description);
    ui->lblDisclaimer->setText(QString::fromLatin1(Disclaimer));
    ui->cmdOK->setText(QStringLiteral("&OK"));
    ui->cmdOK->setToolTip(QStringLiteral("Click OK to close this dialog and return to the program."));
    ui->cmdSysInfo->setText(QStringLiteral("&System Info..."));
    ui->cmdSysInfo->setToolTip(QStringLiteral("Click System Information and if a system information "
                                              "application is registered it will be opened."));
    setFixedSize(size());
    CentreForm(this);
}

void frmAbout::cmdOK_Click() {
    accept();
}

void frmAbout::cmdSysInfo_Click() {
    StartSysInfo();
}

void ShowAbout(QWidget* parent) {
    frmAbout box(parent);
    box.exec();
}

} // namespace tillbook
