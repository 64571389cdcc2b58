#include "ui/Help.h"

#include "ui/Forms.h"
#include "ui/Platform.h"

namespace tillbook {

QString HelpCommandLine() {
#ifdef Q_OS_WIN
    return QStringLiteral("hh.exe ") + ProgramFolder().replace(u'/', u'\\') +
           QStringLiteral("\\Tillbook Help.chm");
#else
    // The desktop's opener shows the user's guide in the browser; the path is quoted, as it may hold blanks.
    return QStringLiteral("xdg-open \"") + ProgramFolder() + QStringLiteral("/help/index.html\"");
#endif
}

void ShowHelp() {
    Shell(HelpCommandLine());
}

} // namespace tillbook
