// The receipt window's amount field, and the remaining amount that follows it.
#include "entry/AmountDateFields.h"
#include "entry/AmountKeys.h"
#include "entry/EntryFields.h"
#include "entry/ReceiptDesk.h"
#include "ledger/Formats.h"
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

AmountDateFields::AmountDateFields(Ui::frmCR& form) : ui(form) {}

void AmountDateFields::connectControls() {
    // Installed after the key filter, so that it sees a paste first.
    new PasteThroughKeys(ui.txtAmount, [this](const QString& text) { typeIntoAmount(text); });
    // The date is keyed only: a paste from the context menu or a drop would go round its mask.
    ui.txtDate->setContextMenuPolicy(Qt::NoContextMenu);
    ui.txtDate->setAcceptDrops(false);
}

void AmountDateFields::amountGotFocus() {
    m_amountOnFocus = Strip_Commas(ui.txtAmount->text());
}

void AmountDateFields::amountKeyPress(int& keyAscii) {
    keyAscii = FilterAmountKey(keyAscii, ui.txtAmount->text(), Desk().DecimalTyped);
    // A changed amount must be applied again before a receipt is saved; a prepayment's pick stands.
    const bool prepaymentPicked = !ui.txtPrePay->text().isEmpty();
    ui.cmdSave->setEnabled(prepaymentPicked);
    ui.mnuFileSave->setEnabled(prepaymentPicked);
}

void AmountDateFields::typeIntoAmount(const QString& text) {
    for (const QChar c : text) {
        int keyAscii = c.unicode();
        amountKeyPress(keyAscii);
        if (keyAscii != 0)
            ui.txtAmount->insert(QString(QChar(keyAscii)));
    }
}

QString AmountDateFields::Adjust_Remaining(bool distribution) const {
    const Money amount = Strip_Commas(ui.txtAmount->text());
    const Money remaining = Strip_Commas((distribution ? ui.txtDistribution : ui.txtUnapplied)->text());
    return FormatAmount(AdjustedRemaining(amount, m_amountOnFocus, remaining));
}

void AmountDateFields::amountLeft(int kind) {
    const Money amount = Strip_Commas(ui.txtAmount->text());
    Desk().ReceiptAmount = amount;
    if (kind == KindReceipt) {
        ui.txtUnapplied->setText(Adjust_Remaining(false));
        if (ui.cboCustomers->ListIndex() >= 0)
            ui.cmdSearch->setEnabled(true);
    } else if (kind == KindMisc) {
        ui.txtDistribution->setText(Adjust_Remaining(true));
        ui.cmdNewInvoice->setEnabled(true);
    }
    ui.txtAmount->setText(FormatAmount(amount));
    if (ui.txtAmount->text() == u"0.00" || ui.txtAmount->text().isEmpty()) {
        ui.txtAmount->setText(QStringLiteral("0.00"));
        ui.cmdSave->setEnabled(false);
        ui.mnuFileSave->setEnabled(false);
        ui.cmdNewInvoice->setEnabled(false);
        ui.cmdSearch->setEnabled(false);
    }
}

} // namespace tillbook
