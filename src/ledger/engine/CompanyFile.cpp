#include "ledger/engine/CompanyFile.h"

#include "ledger/engine/StoreFailure.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>
#include <filesystem>
#include <system_error>

namespace tillbook::engine {

namespace {

const QStringList SideFileSuffixes{QStringLiteral("-wal"), QStringLiteral("-shm"),
                                   QStringLiteral("-journal")};

} // namespace

CompanyFileState inspectCompanyFile(const QString& path) {
    CompanyFileState state;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return state;
    const QByteArray header = file.read(100);
    state.empty = header.isEmpty();
    state.sqlite = header.size() == 100 && header.startsWith(QByteArrayLiteral("SQLite format 3\0"));
    // Bytes 18 and 19 are the file format's write and read versions: 2 for write-ahead logging.
    state.wal = state.sqlite && header[18] == 2 && header[19] == 2;
    return state;
}

bool canWriteFolderOf(const QString& path) {
    return QFileInfo(QFileInfo(path).absolutePath()).isWritable();
}

bool canWriteCompanyFile(const QString& path) {
    return QFileInfo(path).isWritable() && canWriteFolderOf(path);
}

QString createBuildingFile(const QString& companyPath) {
    const QFileInfo target(companyPath);
    QDir().mkpath(target.absolutePath());
    // QTemporaryFile makes the file owner-only; SQLite gives its -wal and -shm the file's permissions.
    QTemporaryFile file(target.absolutePath() + QStringLiteral("/.") + target.fileName() +
                        QStringLiteral(".new-XXXXXX"));
    file.setAutoRemove(false);
    if (!file.open())
        throw storeFailure(
            QStringLiteral("Cannot create a file in %1: %2").arg(target.absolutePath(), file.errorString()));
    const QString path = file.fileName();
    file.close();
    return path;
}

void moveIntoPlace(const QString& builtPath, const QString& companyPath) {
    for (const QString& suffix : SideFileSuffixes)
        QFile::remove(companyPath + suffix);
    // rename() replaces the target in one step: a reader sees the old company or the new, never a part.
    std::error_code error;
    std::filesystem::rename(std::filesystem::path(builtPath.toStdU16String()),
                            std::filesystem::path(companyPath.toStdU16String()), error);
    if (error)
        throw storeFailure(QStringLiteral("Cannot put the new company in place at %1: %2")
                               .arg(companyPath, QString::fromStdString(error.message())));
}

void removeCompanyFiles(const QString& path) {
    QFile::remove(path);
    for (const QString& suffix : SideFileSuffixes)
        QFile::remove(path + suffix);
}

} // namespace tillbook::engine
