// The receipt window: the amount field, and the remaining amount that follows it.
#include "entry/AmountKeys.h"
#include "entry/ReceiptDesk.h"
#include "entry/frmCR.h"
#include "ledger/Formats.h"
#include "ui/Events.h"
#include "ui_frmCR.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>

namespace tillbook {

namespace {

// Hands text pasted (Ctrl+V, Shift+Insert, the context menu's Paste) or dropped into a field to `type`, which
// keys it character by character, instead of letting the field take it past its key filter.
class PasteThroughKeys : public QObject {
public:
    PasteThroughKeys(QLineEdit* field, std::function<void(const QString&)> type)
        : QObject(field), m_field(field), m_type(std::move(type)) {
        field->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        switch (event->type()) {
        case QEvent::KeyPress:
            if (!static_cast<QKeyEvent*>(event)->matches(QKeySequence::Paste))
                return false;
            m_type(QGuiApplication::clipboard()->text());
            return true;
        case QEvent::Drop: {
            auto* drop = static_cast<QDropEvent*>(event);
            if (drop->mimeData()->hasText())
                m_type(drop->mimeData()->text());
            drop->acceptProposedAction();
            return true;
        }
        case QEvent::ContextMenu: {
            const std::unique_ptr<QMenu> menu(m_field->createStandardContextMenu());
            if (QAction* paste = menu->findChild<QAction*>(QStringLiteral("edit-paste"))) {
                paste->disconnect();
                connect(paste, &QAction::triggered, this,
                        [this] { m_type(QGuiApplication::clipboard()->text()); });
            }
            menu->exec(static_cast<QContextMenuEvent*>(event)->globalPos());
            return true;
        }
        default:
            return false;
        }
    }

private:
    QLineEdit* m_field;
    std::function<void(const QString&)> m_type;
};

} // namespace

void frmCR::connectAmountAndDate() {
    onGotFocus(ui->txtAmount, [this] { txtAmount_GotFocus(); });
    onKeyPress(ui->txtAmount, [this](int& keyAscii) { txtAmount_KeyPress(keyAscii); });
    // Installed after the key filter, so that it sees a paste first.
    new PasteThroughKeys(ui->txtAmount, [this](const QString& text) { typeIntoAmount(text); });
    onLostFocus(ui->txtAmount, [this] { txtAmount_LostFocus(); });

    // The date is keyed only: a paste from the context menu or a drop would go round its mask.
    ui->txtDate->setContextMenuPolicy(Qt::NoContextMenu);
    ui->txtDate->setAcceptDrops(false);
    onGotFocus(ui->txtDate, [this] { txtDate_GotFocus(); });
    connect(ui->txtDate, &QLineEdit::textChanged, this, &frmCR::txtDate_Change);
    onKeyPress(ui->txtDate, [this](int& keyAscii) { txtDate_KeyPress(keyAscii); });
    onKeyUp(ui->txtDate, [this](int keyCode, int shift) { txtDate_KeyUp(keyCode, shift); });
    onLostFocus(ui->txtDate, [this] { txtDate_LostFocus(); });
}

void frmCR::txtAmount_GotFocus() {
    m_amountOnFocus = Strip_Commas(ui->txtAmount->text());
}

void frmCR::txtAmount_KeyPress(int& keyAscii) {
    keyAscii = FilterAmountKey(keyAscii, ui->txtAmount->text(), Desk().DecimalTyped);
    // A changed amount must be applied again before a receipt is saved; a prepayment's pick stands.
    const bool prepaymentPicked = !ui->txtPrePay->text().isEmpty();
    ui->cmdSave->setEnabled(prepaymentPicked);
    ui->mnuFileSave->setEnabled(prepaymentPicked);
}

void frmCR::typeIntoAmount(const QString& text) {
    for (const QChar c : text) {
        int keyAscii = c.unicode();
        txtAmount_KeyPress(keyAscii);
        if (keyAscii != 0)
            ui->txtAmount->insert(QString(QChar(keyAscii)));
    }
}

QString frmCR::Adjust_Remaining(bool distribution) {
    const Money amount = Strip_Commas(ui->txtAmount->text());
    const Money remaining = Strip_Commas((distribution ? ui->txtDistribution : ui->txtUnapplied)->text());
    return FormatAmount(AdjustedRemaining(amount, m_amountOnFocus, remaining));
}

void frmCR::txtAmount_LostFocus() {
    const Money amount = Strip_Commas(ui->txtAmount->text());
    Desk().ReceiptAmount = amount;
    if (m_transType == 0) {
        ui->txtUnapplied->setText(Adjust_Remaining(false));
        if (ui->cboCustomers->ListIndex() >= 0)
            ui->cmdSearch->setEnabled(true);
    } else if (m_transType == 2) {
        ui->txtDistribution->setText(Adjust_Remaining(true));
        ui->cmdNewInvoice->setEnabled(true);
    }
    ui->txtAmount->setText(FormatAmount(amount));
    if (ui->txtAmount->text() == u"0.00" || ui->txtAmount->text().isEmpty()) {
        ui->txtAmount->setText(QStringLiteral("0.00"));
        ui->cmdSave->setEnabled(false);
        ui->mnuFileSave->setEnabled(false);
        ui->cmdNewInvoice->setEnabled(false);
        ui->cmdSearch->setEnabled(false);
    }
}

} // namespace tillbook
