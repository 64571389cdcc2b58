#include "ui/ProgramData.h"

#include "ui/Forms.h"

#include <QDir>
#include <QFileInfo>

namespace tillbook {

QString ProgramDataFolder(const QString& name) {
    const QDir program(ProgramFolder());
    const QString beside = program.filePath(name);
    if (QFileInfo(beside).isDir())
        return beside;
    // TILLBOOK_DATA_FROM_PROGRAM: the data folder relative to the programs' folder, as installed.
    const QString installed =
        QDir::cleanPath(program.filePath(QStringLiteral(TILLBOOK_DATA_FROM_PROGRAM "/") + name));
    return QFileInfo(installed).isDir() ? installed : beside;
}

} // namespace tillbook
