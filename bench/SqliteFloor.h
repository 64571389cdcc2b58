#pragma once

// The floors measured with SQLite's own C interface: a connection of its own to the run's copy of the company
// (with the name order the customers' index is made with), statements prepared once and stepped by hand.

#include "ledger/engine/NameOrder.h"

#include <QString>
#include <QVariantList>
#include <sqlite3.h>
#include <string>
#include <vector>

namespace tillbook::bench {

inline sqlite3* floorConnection(const QString& path) {
    static sqlite3* db = [&path] {
        sqlite3* opened = nullptr;
        if (sqlite3_open_v2(path.toUtf8().constData(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                            nullptr) != SQLITE_OK)
            qFatal("cannot open %s: %s", qPrintable(path), sqlite3_errmsg(opened));
        engine::registerNameOrder(opened);
        sqlite3_exec(opened, "PRAGMA busy_timeout=10000", nullptr, nullptr, nullptr);
        return opened;
    }();
    return db;
}

class CStatement {
public:
    CStatement(sqlite3* db, const QString& sql) {
        const QByteArray text = sql.toUtf8();
        if (sqlite3_prepare_v2(db, text.constData(), int(text.size()), &m_statement, nullptr) != SQLITE_OK)
            qFatal("floor statement refused: %s", sqlite3_errmsg(db));
    }
    ~CStatement() { sqlite3_finalize(m_statement); }
    CStatement(const CStatement&) = delete;
    CStatement& operator=(const CStatement&) = delete;

    // Binds text values in order, ready to step from the first row.
    void start(const std::vector<std::string>& values = {}) {
        sqlite3_reset(m_statement);
        for (size_t i = 0; i < values.size(); ++i)
            sqlite3_bind_text(m_statement, int(i + 1), values[i].data(), int(values[i].size()),
                              SQLITE_STATIC);
    }
    bool step() { return sqlite3_step(m_statement) == SQLITE_ROW; }
    sqlite3_stmt* get() const { return m_statement; }

private:
    sqlite3_stmt* m_statement = nullptr;
};

} // namespace tillbook::bench
