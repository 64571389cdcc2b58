#pragma once

// The one way a test gets a company, on either store. A builder says what the company holds: nothing but
// user ADMIN (password ADMIN), the generated sample, records of known values, more users, or receipts saved
// by a script of the ledger tool; a Company makes it inside a temporary data folder (SQLite) or on the
// throwaway PostgreSQL server, and points the program there while it lives.
//
//   test::Company company{test::CompanyBuilder().sample(5, 20).user("CLERK", "PW2")};
//   test::Company company{test::CompanyBuilder(GetParam()).record("AR0024", {{"IDCUST", "C1"}})};

#include "ledger/Session.h"
#include "ledger/engine/CompanyStore.h"
#include "support/TestCompany.h"

#include <QDate>
#include <QList>
#include <QStringList>
#include <QVariantHash>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <utility>

namespace tillbook::test {

class CompanyBuilder {
public:
    explicit CompanyBuilder(StoreKind kind = StoreKind::Sqlite) : m_kind(kind) {}

    // The database ID; by default SAMINC on SQLite and one of its own on PostgreSQL, where companies
    // outlive the test.
    CompanyBuilder& id(const QString& databaseId);
    // The generated sample company (seed 7), its dates counted from `today` (invalid: TILLBOOK_TODAY).
    CompanyBuilder& sample(int customers = 30, int documents = 200, const QDate& today = {});
    CompanyBuilder& user(const QString& name, const QString& password);
    // One record written as given, with no rule of its view applied; all of them in one transaction.
    CompanyBuilder& record(const QString& viewId, const QVariantHash& values);
    // A script of view operations run by tillbook-ledger on the made company, dated yyyy-mm-dd.
    CompanyBuilder& script(const QString& path, const QString& date);

private:
    friend class Company;
    StoreKind m_kind;
    QString m_id;
    std::optional<std::pair<int, int>> m_sample;
    QDate m_sampleToday;
    QList<std::pair<QString, QString>> m_users;
    QList<std::pair<QString, QVariantHash>> m_records;
    QList<std::pair<QString, QString>> m_scripts;
};

class Company {
public:
    explicit Company(const CompanyBuilder& builder = CompanyBuilder());
    Company(const Company&) = delete;
    Company& operator=(const Company&) = delete;

    QString id() const { return m_id; }
    QString dataFolder() const { return m_store.dataFolder(); }
    // Empty when the company was made; otherwise why its store cannot be used here (for a skip).
    QString unavailableReason() const { return m_store.unavailableReason(); }
    bool ready() const { return unavailableReason().isEmpty(); }

    std::unique_ptr<Session> signIn(const QDate& date, const QString& user = QStringLiteral("ADMIN"),
                                    const QString& password = QStringLiteral("ADMIN")) const;
    // The company's store itself, for writes no view allows.
    std::unique_ptr<engine::CompanyStore> store() const { return engine::CompanyStore::open(m_id); }
    void addUser(const QString& name, const QString& password) const;
    void addRecords(const QList<std::pair<QString, QVariantHash>>& records) const;

private:
    TestStore m_store; // first: the company is made inside its folder
    QString m_id;

public:
    // Runs a script of view operations with the ledger tool on the company as it is now, as a builder's
    // script is run on a made company; for a company made again after the builder's work.
    void script(const QString& path, const QString& date) const;
};

// A path under the source tree, for scripts and examples.
QString sourceFile(const QString& relative);

// "SQLite" / "PostgreSQL" as a test parameter's name.
std::string storeTestName(const ::testing::TestParamInfo<StoreKind>& info);

} // namespace tillbook::test

// Runs a suite whose parameter is the store on each of them.
#define TILLBOOK_EACH_STORE(Suite)                                                                           \
    INSTANTIATE_TEST_SUITE_P(                                                                                \
        Stores, Suite,                                                                                       \
        ::testing::Values(::tillbook::test::StoreKind::Sqlite, ::tillbook::test::StoreKind::Postgres),       \
        ::tillbook::test::storeTestName)

// Skips the test (from SetUp or the body) when the company's store cannot run here.
#define TILLBOOK_SKIP_UNLESS_READY(company)                                                                  \
    if (!(company).ready())                                                                                  \
    GTEST_SKIP() << "PostgreSQL is not available: " << (company).unavailableReason().toStdString()
