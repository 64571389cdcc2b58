// tillbook-guide-pictures FOLDER: saves the pictures of the user's guide into FOLDER. Runs offscreen on a
// sample company and settings of its own in a temporary folder, with the date fixed, so that the pictures
// come out the same each time.
#include "Pictures.h"
#include "ledger/engine/SampleCompany.h"
#include "ui/Platform.h"

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>

using namespace tillbook;

namespace {

// The settings of a till that last signed in as ADMIN to SAMINC and saved the password.
void rememberSignIn(const QString& file) {
    QSettings settings(file, QSettings::IniFormat);
    for (const auto& [key, value] : {std::pair{"Database1/DB1", "SAMINC"},
                                     {"Database1/Users/User1", "ADMIN"},
                                     {"Database1/Users/Password1", "ADMIN"},
                                     {"ConnectInfo/Database", "1"},
                                     {"ConnectInfo/User", "1"},
                                     {"ConnectInfo/Save", "True"},
                                     {"ConnectInfo/SavedPWD", "ADMIN"}})
        settings.setValue(QString::fromLatin1(key), QString::fromLatin1(value));
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "Usage: tillbook-guide-pictures FOLDER\n");
        return 2;
    }
    const QTemporaryDir work;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("TILLBOOK_DATA", work.filePath(QStringLiteral("data")).toUtf8());
    qputenv("TILLBOOK_SETTINGS", work.filePath(QStringLiteral("settings.ini")).toUtf8());
    qputenv("TILLBOOK_PDF_DIR", work.path().toUtf8());
    qputenv("TILLBOOK_TODAY", "2026-03-15");
    qputenv("TILLBOOK_SHORT_DATE", "MM/dd/yyyy");
    qunsetenv("TILLBOOK_LEDGER_URL");

    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("ORVA"));
    QApplication::setApplicationName(QStringLiteral("ORVA Tillbook"));
    engine::SampleOptions sample;
    sample.customers = 30;
    sample.documents = 200;
    sample.seed = 7;
    engine::createSampleCompany(QStringLiteral("SAMINC"), sample, true);
    rememberSignIn(work.filePath(QStringLiteral("settings.ini")));
    // No clerk answers: an unsaved entry is not saved, any other box is acknowledged, and each is told.
    setMsgBoxResponder([](const MsgBoxRequest& box) {
        std::fprintf(stderr, "message box: %s\n", qPrintable(box.prompt));
        return box.buttons == vbYesNo ? vbNo : vbOK;
    });

    const QString folder = QString::fromLocal8Bit(argv[1]);
    QStringList saved;
    QTimer::singleShot(0, [&] {
        saved = guide::takePictures(folder);
        QApplication::closeAllWindows();
        QCoreApplication::quit();
    });
    QApplication::exec();
    for (const QString& name : saved)
        std::printf("%s.png\n", qPrintable(name));
    return 0;
}
