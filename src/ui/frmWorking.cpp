#include "ui/frmWorking.h"

#include "ui/Forms.h"
#include "ui_frmWorking.h"

#include <QCoreApplication>

namespace tillbook {

frmWorking::frmWorking(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      ui(std::make_unique<Ui::frmWorking>()) {
    ui->setupUi(this);
    setObjectName(QStringLiteral("frmWorking"));
    setFixedSize(size());
    CentreForm(this);
}

frmWorking::~frmWorking() = default;

void frmWorking::showNow() {
    show();
    raise();
    repaint();
    // Let the window system map and paint the window; the clerk's input waits for the task.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    repaint();
}

} // namespace tillbook
