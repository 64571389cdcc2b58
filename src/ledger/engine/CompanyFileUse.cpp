#include "ledger/engine/CompanyFileUse.h"

#include <QFileInfo>
#include <QHash>

namespace tillbook::engine {

namespace {

struct FileInUse {
    int connections = 0;
    CompanyFileState state;
};

std::mutex& useLock() {
    static std::mutex lock;
    return lock;
}

// Guarded by useLock().
QHash<QString, FileInUse>& filesInUse() {
    static QHash<QString, FileInUse> files;
    return files;
}

QString keyOf(const QString& path) {
    return QFileInfo(path).absoluteFilePath();
}

} // namespace

CompanyFileUse::CompanyFileUse(const QString& path) : m_lock(useLock()), m_key(keyOf(path)) {
    const auto found = filesInUse().constFind(m_key);
    m_first = found == filesInUse().constEnd();
    m_state = m_first ? inspectCompanyFile(path) : found->state;
}

void CompanyFileUse::opened() {
    FileInUse& use = filesInUse()[m_key];
    if (use.connections++ == 0)
        use.state = m_state;
}

void CompanyFileUse::closed(const QString& path) {
    const std::lock_guard<std::mutex> lock(useLock());
    const auto found = filesInUse().find(keyOf(path));
    if (found != filesInUse().end() && --found->connections <= 0)
        filesInUse().erase(found);
}

} // namespace tillbook::engine
