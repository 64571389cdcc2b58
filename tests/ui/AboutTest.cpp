// The about box: its texts, both Help menus that open it, and the way to the system information with its
// fall-back when no such program is installed.
#include "app/frmLogin.h"
#include "support/AnswerMessageBoxes.h"
#include "support/Grab.h"
#include "support/ReceiptWindow.h"
#include "support/SampleCompany.h"
#include "support/TempSettings.h"
#include "ui/Platform.h"
#include "ui/SysInfo.h"
#include "ui/frmAbout.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace tillbook;

namespace {

// Opens the about box through the action and returns its caption; the box is closed by its OK button.
QString captionOfAboutFrom(QAction* action) {
    QString caption;
    QTimer::singleShot(0, [&caption] {
        auto* box = qobject_cast<frmAbout*>(QApplication::activeModalWidget());
        if (!box)
            return;
        caption = box->windowTitle();
        QTest::mouseClick(box->findChild<QPushButton*>("cmdOK"), Qt::LeftButton);
    });
    action->trigger();
    return caption;
}

// Runs with PATH set to the given folder only.
struct PathOnly {
    QByteArray saved = qgetenv("PATH");
    explicit PathOnly(const QString& folder) { qputenv("PATH", folder.toUtf8()); }
    ~PathOnly() { qputenv("PATH", saved); }
};

} // namespace

class AboutTest : public QObject {
    Q_OBJECT

private slots:
    void theBoxShowsTheProgramsTexts() {
        frmAbout box;
        box.show();
        QCOMPARE(box.objectName(), QString("frmAbout"));
        QCOMPARE(box.windowTitle(), QString("About ORVA Tillbook"));
        QCOMPARE(box.findChild<QLabel*>("lblTitle")->text(), QString("ORVA Tillbook"));
        QCOMPARE(box.findChild<QLabel*>("lblVersion")->text(), QString("Version  1.0.0"));
        const QStringList description = box.findChild<QLabel*>("lblDescription")->text().split('\n');
        QCOMPARE(description.size(), 4); // the description and three notices
        QVERIFY(description[0].contains("receipt"));
        QVERIFY(box.findChild<QLabel*>("lblDisclaimer")->text().contains("without warranty"));
        QVERIFY(!box.findChild<QLabel*>("picIcon")->pixmap().isNull());
        QVERIFY(box.findChild<QWidget*>("Line1"));
        auto* cmdOK = box.findChild<QPushButton*>("cmdOK");
        auto* cmdSysInfo = box.findChild<QPushButton*>("cmdSysInfo");
        QCOMPARE(cmdOK->text(), QString("&OK"));
        QCOMPARE(cmdOK->toolTip(), QString("Click OK to close this dialog and return to the program."));
        QCOMPARE(cmdSysInfo->text(), QString("&System Info..."));
        QCOMPARE(cmdSysInfo->toolTip(), QString("Click System Information and if a system information "
                                                "application is registered it will be opened."));
        test::grabToPng(&box, "frmAbout");
        QTest::mouseClick(cmdOK, Qt::LeftButton);
        QVERIFY(!box.isVisible());
    }

    void bothHelpMenusOpenTheBox() {
        test::SampleCompany company;
        {
            test::TempSettings settings;
            frmLogin login;
            QCOMPARE(captionOfAboutFrom(login.findChild<QAction*>("mnuHelpAbout")),
                     QString("About ORVA Tillbook"));
        }
        test::ReceiptWindow window;
        QVERIFY(window.open());
        QCOMPARE(captionOfAboutFrom(window.form->findChild<QAction*>("mnuHelpAbout")),
                 QString("About ORVA Tillbook"));
    }

    void systemInformationStartsAnInstalledProgramOrSaysItIsUnavailable() {
#ifndef Q_OS_WIN
        QTemporaryDir bin;
        QStringList started;
        setShellRecorder([&started](const QString& line) { started << line; });
        test::AnswerMessageBoxes answers;
        frmAbout box;
        {
            PathOnly path(bin.path());
            QCOMPARE(SysInfoCommandLine(), QString());
            box.cmdSysInfo_Click();
        }
        QCOMPARE(answers.asked.size(), 1);
        QCOMPARE(answers.asked[0].prompt, QString("System Information Is Unavailable At This Time"));
        QCOMPARE(answers.asked[0].buttons, vbOKOnly);
        QCOMPARE(answers.asked[0].icon, 0);
        QVERIFY(started.isEmpty());

        QFile program(bin.filePath("hardinfo"));
        QVERIFY(program.open(QIODevice::WriteOnly));
        program.write("#!/bin/sh\n");
        program.close();
        program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        {
            PathOnly path(bin.path());
            box.cmdSysInfo_Click();
        }
        setShellRecorder({});
        QCOMPARE(answers.asked.size(), 1);
        QCOMPARE(started, QStringList{'"' + bin.filePath("hardinfo") + '"'});
#endif
    }
};

QTEST_MAIN(AboutTest)
#include "AboutTest.moc"
