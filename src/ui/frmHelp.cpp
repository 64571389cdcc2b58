#include "ui/frmHelp.h"

#include "ui/Forms.h"
#include "ui_frmHelp.h"

#include <QFileInfo>
#include <QPointer>
#include <QUrl>

namespace tillbook {

frmHelp::frmHelp(const QString& indexFile, QWidget* parent)
    : QWidget(parent), ui(std::make_unique<Ui::frmHelp>()) {
    ui->setupUi(this);
    setObjectName(QStringLiteral("frmHelp"));
    setAttribute(Qt::WA_DeleteOnClose);
    ui->txtGuide->setSearchPaths({QFileInfo(indexFile).absolutePath()});
    ui->txtGuide->setSource(QUrl::fromLocalFile(indexFile));
    if (!ui->txtGuide->documentTitle().isEmpty())
        setWindowTitle(ui->txtGuide->documentTitle());
}

frmHelp::~frmHelp() = default;

frmHelp* frmHelp::Show(const QString& indexFile) {
    static QPointer<frmHelp> shown;
    if (!shown) {
        shown = new frmHelp(indexFile);
        CentreForm(shown);
    }
    shown->show();
    shown->raise();
    shown->activateWindow();
    return shown;
}

} // namespace tillbook
