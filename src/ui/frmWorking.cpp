#include "ui/frmWorking.h"

#include "ui/Forms.h"
#include "ui_frmWorking.h"

#include <QCoreApplication>
#include <QPointer>

namespace tillbook {

namespace {

// The window shown now, if any: one long task runs at a time.
QPointer<frmWorking>& shownWindow() {
    static QPointer<frmWorking> window;
    return window;
}

constexpr qint64 PaintIntervalMs = 50;

void paintNow(QWidget* window) {
    window->repaint();
    // Let the window system map and paint the window; the clerk's input waits for the task.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

} // namespace

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
    shownWindow() = this;
    repaint();
    paintNow(this);
    m_sincePaint.start();
}

void frmWorking::setProgress(int done, int total) {
    if (total <= 0) {
        ui->prgWork->setRange(0, 0);
    } else {
        ui->prgWork->setRange(0, total);
        ui->prgWork->setValue(done);
    }
    if (!m_sincePaint.isValid() || m_sincePaint.elapsed() >= PaintIntervalMs) {
        paintNow(this);
        m_sincePaint.start();
    }
}

std::function<void(int, int)> frmWorking::ShownProgress() {
    QPointer<frmWorking> window = shownWindow();
    if (!window)
        return {};
    return [window](int done, int total) {
        if (window)
            window->setProgress(done, total);
    };
}

void frmWorking::hideEvent(QHideEvent* event) {
    if (shownWindow() == this)
        shownWindow() = nullptr;
    QDialog::hideEvent(event);
}

} // namespace tillbook
