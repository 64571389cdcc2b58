#include "entry/dialogs/frmFinder.h"

#include "entry/dialogs/FinderTexts.h"
#include "fetching/FinderRecords.h"
#include "ui/Forms.h"
#include "ui_frmFinder.h"

namespace tillbook {

frmFinder::frmFinder(int finderKind, const std::vector<QStringList>& records, QWidget* parent)
    : QDialog(parent), ui(std::make_unique<Ui::frmFinder>()), m_kind(finderKind) {
    ui->setupUi(this);
    setObjectName(QStringLiteral("frmFinder"));
    CentreForm(this);
    setWindowTitle(FinderCaption(finderKind));

    FlexGrid* grid = ui->MSFlexFinder;
    grid->setRows(1);
    grid->setFormatString(FinderFormat(finderKind));
    std::vector<QStringList> rows;
    rows.reserve(records.size());
    for (const QStringList& record : records)
        rows.push_back(FinderDisplayRow(finderKind, record));
    grid->AddRows(rows);
    if (grid->Rows() > 1) {
        grid->setRow(1);
        grid->setCol(0);
    }
    ui->cmdSelect->setEnabled(grid->Rows() > 1);

    connect(ui->cmdSelect, &QPushButton::clicked, this, &frmFinder::cmdSelect_Click);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &frmFinder::cmdCancel_Click);
    connect(grid, &FlexGrid::EnterCell, this, &frmFinder::MSFlexFinder_EnterCell);
    connect(grid, &FlexGrid::DblClick, this, &frmFinder::cmdSelect_Click);
}

frmFinder::~frmFinder() = default;

void frmFinder::MSFlexFinder_EnterCell() {
    // A row is chosen as a whole: its code cell is the current one.
    if (ui->MSFlexFinder->Col() != 0)
        ui->MSFlexFinder->setCol(0);
}

void frmFinder::cmdSelect_Click() {
    FlexGrid* grid = ui->MSFlexFinder;
    if (grid->Row() < 1)
        return;
    m_code = grid->Text();
    if (m_kind == FinderDistCodes)
        m_account = grid->TextMatrix(grid->Row(), 3);
    accept();
}

void frmFinder::cmdCancel_Click() {
    reject();
}

} // namespace tillbook
