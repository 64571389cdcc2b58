// The Help menu's way out to the guide, on a machine without an opener and with one that cannot start: the
// guide is shown in the program's own window; and the "Working..." window's bar, which follows the customer
// list while it is read.
#include "fetching/CustomerList.h"
#include "support/Company.h"
#include "support/ExpectBox.h"
#include "ui/Help.h"
#include "ui/frmAbout.h"
#include "ui/frmHelp.h"
#include "ui/frmWorking.h"

#include <QApplication>
#include <QFile>
#include <QProgressBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBrowser>

using namespace tillbook;

class HelpAndWorkingTest : public QObject {
    Q_OBJECT

    QTemporaryDir bin; // the only folder on PATH
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

    void withoutAWorkingOpenerTheGuideIsShownInTheProgramsOwnWindow() {
        test::ExpectBox boxes;
        ShowHelp();
        QVERIFY(boxes.asked.isEmpty() && shownHelp());
        const auto* guide = shownHelp()->findChild<QTextBrowser*>("txtGuide");
        QCOMPARE(guide->source(), QUrl::fromLocalFile(HelpIndexFile()));
        QVERIFY(guide->toPlainText().contains("Tillbook"));
        shownHelp()->close();
        // An opener that cannot start says so, and the guide is shown all the same.
        QFile opener(bin.filePath("xdg-open"));
        QVERIFY(opener.open(QIODevice::WriteOnly));
        opener.write("#!/no/such/interpreter\n");
        opener.close();
        opener.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        ShowHelp();
        QVERIFY(
            boxes(1,
                  "The desktop could not open the user's guide (xdg-open failed). It is shown in Tillbook's "
                  "own help window instead.",
                  vbOKOnly + vbInformation, "Tillbook"));
        QVERIFY(shownHelp());
    }

    void systemInformationStartsAnInstalledProgramOrSaysItIsUnavailable() {
        QStringList started;
        setShellRecorder([&started](const QString& line) { started << line; });
        test::ExpectBox answers;
        frmAbout box;
        box.cmdSysInfo_Click();
        QVERIFY(answers(1, "System Information Is Unavailable At This Time"));
        QFile program(bin.filePath("hardinfo"));
        QVERIFY(program.open(QIODevice::WriteOnly) &&
                program.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
        box.cmdSysInfo_Click();
        setShellRecorder({});
        QCOMPARE(answers.asked.size(), 1);
        QCOMPARE(started, QStringList{'"' + bin.filePath("hardinfo") + '"'});
    }

    void theBarFollowsTheReadingOnlyWhileTheWindowIsShown() {
        QVERIFY(!frmWorking::ShownProgress());
        auto* working = new frmWorking();
        working->showNow();
        const TaskProgress progress = frmWorking::ShownProgress();
        QVERIFY(progress);
        auto* bar = working->findChild<QProgressBar*>("prgWork");
        progress(10, 0); // an end not known yet: a busy bar
        const int busy = bar->maximum();
        progress(6000, 6000);
        QCOMPARE(QPoint(busy, bar->maximum() + bar->value()), QPoint(0, 12000));
        working->close();
        QVERIFY(!frmWorking::ShownProgress());
        delete working;
        progress(1, 2); // a task still holding the callback does no harm once the window is gone

        // Reading the customers tells the start, whose end is not known, and the end.
        QList<QPoint> reports;
        const test::Company company{test::CompanyBuilder().sample(30, 60)};
        const auto session = company.signIn(QDate::currentDate());
        const CustomerList customers =
            Read_Customers(*session, [&reports](int done, int total) { reports << QPoint(done, total); });
        const int read = int(customers.size());
        QCOMPARE(reports, (QList<QPoint>{{reports.value(0).x(), 0}, {read, read}}));
    }
};

QTEST_MAIN(HelpAndWorkingTest)
#include "HelpAndWorkingTest.moc"
