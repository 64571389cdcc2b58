#include "ui/Help.h"

#include "ui/Forms.h"
#include "ui/Platform.h"
#include "ui/ProgramData.h"
#include "ui/frmHelp.h"

#include <QFileInfo>
#include <QStandardPaths>

namespace tillbook {

QString HelpCommandLine() {
#ifdef Q_OS_WIN
    return QStringLiteral("hh.exe ") + ProgramFolder().replace(u'/', u'\\') +
           QStringLiteral("\\Tillbook Help.chm");
#else
    // The desktop's opener shows the user's guide in the browser; the path is quoted, as it may hold blanks.
    // The guide stands beside the program in a build tree, in the data folder once installed.
    return QStringLiteral("xdg-open \"") + HelpIndexFile() + QStringLiteral("\"");
#endif
}

QString HelpIndexFile() {
    return ProgramDataFolder(QStringLiteral("help")) + QStringLiteral("/index.html");
}

void ShowHelp() {
#ifdef Q_OS_WIN
    if (!Shell(HelpCommandLine()))
        MsgBox(QStringLiteral("The help viewer could not be started: %1").arg(HelpCommandLine()),
               vbOKOnly + vbExclamation);
#else
    const QString index = HelpIndexFile();
    if (!QFileInfo::exists(index)) {
        MsgBox(QStringLiteral("The user's guide is not installed: %1 is missing.").arg(index),
               vbOKOnly + vbExclamation);
        return;
    }
    // Without a desktop opener (a bare machine) the guide is shown in the program's own window; an opener
    // that fails, at once or when it finds nothing to open the page with, says so and hands over to it.
    if (QStandardPaths::findExecutable(QStringLiteral("xdg-open")).isEmpty()) {
        frmHelp::Show(index);
        return;
    }
    const auto fallBack = [index] {
        MsgBox(QStringLiteral("The desktop could not open the user's guide (xdg-open failed). It is shown in "
                              "Tillbook's own help window instead."),
               vbOKOnly + vbInformation);
        frmHelp::Show(index);
    };
    if (!Shell(HelpCommandLine(), fallBack))
        fallBack();
#endif
}

} // namespace tillbook
