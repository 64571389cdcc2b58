#include "ui/Help.h"

#include "ui/Forms.h"
#include "ui/Platform.h"
#include "ui/ProgramData.h"

namespace tillbook {

QString HelpCommandLine() {
#ifdef Q_OS_WIN
    return QStringLiteral("hh.exe ") + ProgramFolder().replace(u'/', u'\\') +
           QStringLiteral("\\Tillbook Help.chm");
#else
    // The desktop's opener shows the user's guide in the browser; the path is quoted, as it may hold blanks.
    // The guide stands beside the program in a build tree, in the data folder once installed.
    return QStringLiteral("xdg-open \"") + ProgramDataFolder(QStringLiteral("help")) +
           QStringLiteral("/index.html\"");
#endif
}

void ShowHelp() {
    Shell(HelpCommandLine());
}

} // namespace tillbook
