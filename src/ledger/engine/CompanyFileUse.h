#pragma once

// SQLite's locks on a company file are POSIX record locks, and a process loses every one of them on a file
// the moment it closes any descriptor of that file, its own connections' locks included. The file's first
// bytes are therefore read (an open and a close of their own) only while this process has no connection
// to it; the connections that follow take what the first one found.

#include "ledger/engine/CompanyFile.h"

#include <mutex>

namespace tillbook::engine {

class CompanyFileUse {
public:
    // Inspects the file at `path` unless a connection of this process has it open. Until this object goes,
    // no other connection of the process is counted or inspects the file.
    explicit CompanyFileUse(const QString& path);
    CompanyFileUse(const CompanyFileUse&) = delete;
    CompanyFileUse& operator=(const CompanyFileUse&) = delete;

    const CompanyFileState& state() const { return m_state; }
    bool firstConnection() const { return m_first; }
    // The connection is open: it counts as a user of the file until closed() is called for it.
    void opened();
    static void closed(const QString& path);

private:
    std::unique_lock<std::mutex> m_lock;
    QString m_key;
    CompanyFileState m_state;
    bool m_first = true;
};

} // namespace tillbook::engine
