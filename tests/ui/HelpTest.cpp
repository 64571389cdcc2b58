// Help > Contents on a machine without the desktop's opener, and with one that cannot be started.
#include "ui/Help.h"

#include "support/AnswerMessageBoxes.h"
#include "ui/frmHelp.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBrowser>

using namespace tillbook;

class HelpTest : public QObject {
    Q_OBJECT

    QTemporaryDir bin;
    QByteArray path;

    static frmHelp* shownHelp() {
        for (QWidget* top : QApplication::topLevelWidgets())
            if (auto* help = qobject_cast<frmHelp*>(top); help && help->isVisible())
                return help;
        return nullptr;
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

    void withoutAnOpenerTheGuideIsShownInTheProgramsOwnWindow() {
        test::AnswerMessageBoxes boxes;
        ShowHelp();
        QVERIFY(boxes.asked.isEmpty());
        frmHelp* help = shownHelp();
        QVERIFY(help);
        const auto* guide = help->findChild<QTextBrowser*>("txtGuide");
        QCOMPARE(guide->source(), QUrl::fromLocalFile(HelpIndexFile()));
        QVERIFY(guide->toPlainText().contains("Tillbook"));
    }

    void anOpenerThatCannotStartSaysSoAndTheGuideIsShownAllTheSame() {
        QFile opener(bin.filePath("xdg-open"));
        QVERIFY(opener.open(QIODevice::WriteOnly));
        opener.write("#!/no/such/interpreter\n");
        opener.close();
        opener.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        test::AnswerMessageBoxes boxes;
        ShowHelp();
        QCOMPARE(boxes.asked.size(), 1);
        QVERIFY(boxes.asked[0].prompt.contains("xdg-open"));
        QVERIFY(shownHelp());
    }
};

QTEST_MAIN(HelpTest)
#include "HelpTest.moc"
