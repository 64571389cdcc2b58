#pragma once

// Where a test's companies live: a temporary data folder for SQLite, or the throwaway PostgreSQL
// server. Either way TILLBOOK_DATA / TILLBOOK_LEDGER_URL point at it while the object lives, and never
// at the user's own data.

#include <QString>
#include <QTemporaryDir>
#include <optional>

namespace tillbook::test {

enum class StoreKind { Sqlite, Postgres };

QString storeName(StoreKind kind);

class TestStore {
public:
    explicit TestStore(StoreKind kind = StoreKind::Sqlite);
    ~TestStore();
    TestStore(const TestStore&) = delete;
    TestStore& operator=(const TestStore&) = delete;

    // Empty when the store can be used; otherwise why not (for GTEST_SKIP).
    QString unavailableReason() const { return m_unavailable; }
    QString dataFolder() const { return m_dir.path(); }
    // A company ID no other test of this run uses (PostgreSQL databases outlive a test).
    static QString uniqueId(const QString& stem);
    // A new empty company with user ADMIN / ADMIN, its administrator.
    void createEmptyCompany(const QString& id);

private:
    QTemporaryDir m_dir;
    QString m_unavailable;
    std::optional<QByteArray> m_savedData;
    std::optional<QByteArray> m_savedUrl;
};

} // namespace tillbook::test
