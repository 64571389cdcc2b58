#include "entry/frmCR.h"

#include "ui/Forms.h"
#include "ui_frmCR.h"

namespace tillbook {

frmCR::frmCR(QWidget* parent) : QMainWindow(parent), ui(std::make_unique<Ui::frmCR>()) {
    ui->setupUi(this);
    setObjectName(QStringLiteral("frmCR"));
    CentreForm(this);
}

frmCR::~frmCR() = default;

} // namespace tillbook
