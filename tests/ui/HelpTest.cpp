// The Help menu's ways out to other programs, on a machine without them and with one that cannot start:
// the guide (shown in the program's own window) and the system information of the about box.
#include "ui/Help.h"

#include "support/ExpectBox.h"
#include "ui/Platform.h"
#include "ui/frmAbout.h"
#include "ui/frmHelp.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBrowser>

using namespace tillbook;

class HelpTest : public QObject {
    Q_OBJECT

    QTemporaryDir bin; // the only folder on PATH
    QByteArray path;

    static frmHelp* shownHelp() {
        for (QWidget* top : QApplication::topLevelWidgets())
            if (auto* help = qobject_cast<frmHelp*>(top); help && help->isVisible())
                return help;
        return nullptr;
    }
    void install(const QString& name, const QByteArray& text) {
        QFile program(bin.filePath(name));
        QVERIFY(program.open(QIODevice::WriteOnly));
        program.write(text);
        program.close();
        program.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    }

private slots:
    void init() {
        path = qgetenv("PATH");
        qputenv("PATH", bin.path().toUtf8());
    }
    void cleanup() {
        qputenv("PATH", path);
        if (frmHelp* help = shownHelp())
            help->close();
    }

    void withoutAWorkingOpenerTheGuideIsShownInTheProgramsOwnWindow() {
        test::ExpectBox boxes;
        ShowHelp();
        QVERIFY(boxes.asked.isEmpty() && shownHelp());
        const auto* guide = shownHelp()->findChild<QTextBrowser*>("txtGuide");
        QCOMPARE(guide->source(), QUrl::fromLocalFile(HelpIndexFile()));
        QVERIFY(guide->toPlainText().contains("Tillbook"));
        shownHelp()->close();
        // An opener that cannot start says so, and the guide is shown all the same.
        install("xdg-open", "#!/no/such/interpreter\n");
        ShowHelp();
        QCOMPARE(boxes.asked.size(), 1);
        QVERIFY(boxes.asked[0].prompt.contains("xdg-open"));
        QVERIFY(shownHelp());
    }

    void systemInformationStartsAnInstalledProgramOrSaysItIsUnavailable() {
        QStringList started;
        setShellRecorder([&started](const QString& line) { started << line; });
        test::ExpectBox answers;
        frmAbout box;
        box.cmdSysInfo_Click();
        QVERIFY(answers(1, "System Information Is Unavailable At This Time"));
        install("hardinfo", "#!/bin/sh\n");
        box.cmdSysInfo_Click();
        setShellRecorder({});
        QCOMPARE(answers.asked.size(), 1);
        QCOMPARE(started, QStringList{'"' + bin.filePath("hardinfo") + '"'});
    }
};

QTEST_MAIN(HelpTest)
#include "HelpTest.moc"
