#pragma once

// A company's SQLite file on disk, before and around SQLite: what its first bytes say, whether this
// till may write it, and the owner-only file a new company is built in before it takes its name.

#include <QString>

namespace tillbook::engine {

struct CompanyFileState {
    bool empty = false;  // 0 bytes: never a company
    bool sqlite = false; // begins with SQLite's header
    bool wal = false;    // already in write-ahead-log mode
};
CompanyFileState inspectCompanyFile(const QString& path);

// The file and its folder (SQLite's -wal, -shm and journal files live beside it) are writable.
bool canWriteCompanyFile(const QString& path);
bool canWriteFolderOf(const QString& path);

// A new empty file readable and writable by its owner only, in the folder of `companyPath`, for a new
// company to be built in. Throws LedgerError when it cannot be made.
QString createBuildingFile(const QString& companyPath);

// Puts the built file in the company's place in one step, replacing an existing company. The -wal and
// -shm files of the one replaced are removed first: they belong to it and must never be read with the
// new file.
void moveIntoPlace(const QString& builtPath, const QString& companyPath);

// The file and SQLite's files beside it; for a build that did not finish.
void removeCompanyFiles(const QString& path);

} // namespace tillbook::engine
