#include "ui/Help.h"

#include "ui/Forms.h"
#include "ui/Platform.h"

#include <QDesktopServices>
#include <QUrl>

namespace tillbook {

void ShowHelp() {
#ifdef Q_OS_WIN
    Shell(QStringLiteral("hh.exe ") + ProgramFolder().replace(u'/', u'\\') +
          QStringLiteral("\\Tillbook Help.chm"));
#else
    QDesktopServices::openUrl(QUrl::fromLocalFile(ProgramFolder() + QStringLiteral("/help/index.html")));
#endif
}

} // namespace tillbook
