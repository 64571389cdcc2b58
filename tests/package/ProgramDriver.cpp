// Drives the installed program as a clerk would, from inside it: loaded into /usr/bin/tillbook with
// LD_PRELOAD, it opens the about box from the sign-in window, signs in, opens the user's guide, shows entry 1
// of batch 1 on the receipt window and prints it, then ends the program. It reaches the windows only by their
// controls' names, so it needs nothing of the program but Qt. It prints the version lines of the sign-in
// window and of the about box on standard output; a message box, or a step that does not come within a
// minute, ends the program with status 3.

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>
#include <cstdio>
#include <cstdlib>

namespace {

enum class Step { Login, About, Print, AwaitPdf };

QWidget* visibleWindow(const char* name) {
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->objectName() == QLatin1String(name) && window->isVisible())
            return window;
    return nullptr;
}

template <typename T> T* control(QWidget* window, const char* name) {
    return window ? window->findChild<T*>(QLatin1String(name)) : nullptr;
}

// Ends the program at once: a message box's own event loop would keep a gentler end waiting.
void fail(const QString& why) {
    std::fprintf(stderr, "driver: %s\n", qPrintable(why));
    std::fflush(stderr);
    std::_Exit(3);
}

// Runs a clerk's action after the driver's tick has returned, so that a message box the action opens runs
// its event loop outside the tick, and the next tick sees it.
template <typename Action> void later(Action action) {
    QTimer::singleShot(0, qApp, action);
}

class Driver : public QObject {
public:
    Driver() : QObject(qApp) {
        m_clock.start();
        QObject::connect(&m_timer, &QTimer::timeout, this, [this] { tick(); });
        m_timer.start(100);
    }

private:
    void tick() {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (auto* box = qobject_cast<QMessageBox*>(window); box && box->isVisible())
                return fail(QStringLiteral("message box \"%1\": %2").arg(box->windowTitle(), box->text()));
        if (m_clock.elapsed() > 60000)
            return fail(QStringLiteral("no progress at step %1").arg(int(m_step)));
        switch (m_step) {
        case Step::Login:
            return login();
        case Step::About:
            return aboutAndSignIn();
        case Step::Print:
            return print();
        case Step::AwaitPdf:
            if (!QDir(qEnvironmentVariable("TILLBOOK_PDF_DIR"))
                     .entryList({QStringLiteral("*.pdf")})
                     .isEmpty()) {
                m_timer.stop();
                QCoreApplication::quit();
            }
            return;
        }
    }

    void login() {
        QWidget* login = visibleWindow("frmLogin");
        auto* user = control<QComboBox>(login, "cboUser");
        if (!user || user->currentIndex() < 0)
            return; // the stored sign-in is not loaded yet
        printVersion(login);
        m_step = Step::About;
        later([login] { QMetaObject::invokeMethod(login, "mnuHelpAbout_Click"); });
    }

    void aboutAndSignIn() {
        QWidget* about = visibleWindow("frmAbout");
        if (!about)
            return;
        printVersion(about);
        m_step = Step::Print;
        later([about] { control<QAbstractButton>(about, "cmdOK")->click(); });
        later([login = visibleWindow("frmLogin")] {
            control<QLineEdit>(login, "txtPassword")->setText(QStringLiteral("ADMIN"));
            QMetaObject::invokeMethod(login, "txtPassword_LostFocus");
            QMetaObject::invokeMethod(login, "mnuHelpLogin_Click");
            QMetaObject::invokeMethod(login, "cmdOK_Click");
        });
    }

    void print() {
        QWidget* receipts = visibleWindow("frmCR");
        auto* batch = control<QComboBox>(receipts, "cboBatch");
        if (!batch || batch->findText(QStringLiteral("1")) < 0)
            return;
        m_step = Step::AwaitPdf;
        later([receipts, batch] {
            batch->setProperty("ListIndex", batch->findText(QStringLiteral("1")));
            control<QComboBox>(receipts, "cboEntry")->setProperty("ListIndex", 0);
            auto* print = control<QAbstractButton>(receipts, "cmdPrint");
            if (!print->isEnabled())
                return fail(QStringLiteral("entry 1 of batch 1 shown, but printing is not enabled"));
            print->click();
        });
    }

    static void printVersion(QWidget* window) {
        std::printf("%s\n", qPrintable(control<QLabel>(window, "lblVersion")->text()));
        std::fflush(stdout);
    }

    QTimer m_timer;
    QElapsedTimer m_clock;
    Step m_step = Step::Login;
};

void startDriver() {
    // Once the program's event loop runs; the driver lives as long as the application.
    QTimer::singleShot(0, qApp, [] { new Driver(); });
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(startDriver)
