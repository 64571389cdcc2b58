// The program as main() runs it, driven through sign-in to the receipt window and closed one way, so that a
// test can check how the process ends. The way is the first argument: "button", "menu" or "closebox".
#include "app/Start.h"
#include "ui/ComboBox.h"
#include "ui/Platform.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

using namespace tillbook;

namespace {

QWidget* topLevel(const char* name) {
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (w->objectName() == QLatin1String(name) && w->isVisible())
            return w;
    }
    return nullptr;
}

void closeReceiptWindow(const QString& way) {
    QWidget* receipts = topLevel("frmCR");
    if (!receipts) {
        QCoreApplication::exit(3);
        return;
    }
    // A customer chosen, as a clerk would before closing.
    if (auto* customers = receipts->findChild<ComboBox*>("cboCustomers");
        customers && customers->ListCount() > 0)
        customers->setListIndex(0);
    if (way == u"button")
        receipts->findChild<QPushButton*>("cmdClose")->click();
    else if (way == u"menu")
        receipts->findChild<QAction*>("mnuFileClose")->trigger();
    else
        receipts->close();
}

// Waits for the sign-in window to list the remembered user, then signs in.
void signIn(const QString& way, int triesLeft) {
    QWidget* login = topLevel("frmLogin");
    auto* user = login ? login->findChild<ComboBox*>("cboUser") : nullptr;
    if (!user || user->currentText() != u"ADMIN") {
        if (triesLeft == 0) {
            QCoreApplication::exit(2);
            return;
        }
        QTimer::singleShot(50, [way, triesLeft] { signIn(way, triesLeft - 1); });
        return;
    }
    login->findChild<QLineEdit*>("txtPassword")->setText(QStringLiteral("ADMIN"));
    QMetaObject::invokeMethod(login, "txtPassword_LostFocus");
    QMetaObject::invokeMethod(login, "cmdOK_Click");
    QTimer::singleShot(0, [way] { closeReceiptWindow(way); });
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("ORVA"));
    QApplication::setApplicationName(QStringLiteral("ORVA Tillbook"));
    const QString way = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("button");
    // A message box would wait for a clerk who is not there: tell what it says and end with a status of its
    // own.
    setMsgBoxResponder([](const MsgBoxRequest& box) {
        qWarning("message box: %s", qPrintable(box.prompt));
        QCoreApplication::exit(5);
        return vbOK;
    });
    Start_Main();
    QTimer::singleShot(0, [way] { signIn(way, 100); });
    const int status = QApplication::exec();
    End_Main();
    return status;
}
