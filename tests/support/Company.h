#pragma once

// The one way a test gets a company, on either store. A builder says what the company holds: nothing but
// user ADMIN (password ADMIN), the generated sample, the small company of known records, records of known
// values, more users, or receipts saved by a script of the ledger tool; a Company makes it inside a temporary
// data folder (SQLite) or on the throwaway PostgreSQL server, and points the program there while it lives.
//
//   test::Company company{test::CompanyBuilder().sample(5, 20).user("CLERK", "PW2")};
//   test::Company company{test::CompanyBuilder(GetParam()).record("AR0024", {{"IDCUST", "C1"}})};

#include "ledger/LedgerError.h"
#include "ledger/Money.h"
#include "ledger/Session.h"
#include "ledger/engine/CompanyStore.h"

#include <QDate>
#include <QList>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariantHash>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace tillbook::test {

enum class StoreKind { Sqlite, Postgres };

QString storeName(StoreKind kind);

// An environment variable set, or unset when given no value, for the life of the object.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const std::optional<QByteArray>& value);
    ~ScopedEnv();
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    const char* m_name;
    std::optional<QByteArray> m_old;
};

// Where a test's companies live: a temporary data folder for SQLite, or the throwaway PostgreSQL server.
// Either way TILLBOOK_DATA / TILLBOOK_LEDGER_URL point at it while the object lives, and never at the user's
// own data.
class TestStore {
public:
    explicit TestStore(StoreKind kind = StoreKind::Sqlite);
    TestStore(const TestStore&) = delete;
    TestStore& operator=(const TestStore&) = delete;

    // Empty when the store can be used; otherwise why not (for GTEST_SKIP).
    QString unavailableReason() const { return m_unavailable; }
    QString dataFolder() const { return m_dir.path(); }
    // A company ID no other test of this run uses (PostgreSQL databases outlive a test).
    static QString uniqueId(const QString& stem);

private:
    QTemporaryDir m_dir;
    QString m_unavailable;
    ScopedEnv m_data;
    ScopedEnv m_url;
};

// One ordinary receipt of an open batch, paying one document.
struct Payment {
    QString customer;
    QString document;
    Money amount;
};

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
    CompanyBuilder& record(const QString& viewId, const QStringList& fields, const QVariantList& values);
    // A script of view operations run by tillbook-ledger on the made company, dated yyyy-mm-dd.
    CompanyBuilder& script(const QString& path, const QString& date);

    // The company receipts are keyed into, of known records. Customer C1: in its list's CNTKEY order CN1
    // -30.00, IN1 100.00 (discount 2.00 until 2025-03-20), IN2 50.00, and IN0 paid; customer C2: IN3 80.00.
    // Year 2025 active, 2023 not; distribution code RETAIL -> account 4000; accounts 4000 and 4100100
    // (4100-100); bank TDOPER.
    CompanyBuilder& known();
    // Customers C0001.. (customerNumber) with names, short names in reverse order, and every third one
    // without open documents; their figures as posting keeps them.
    CompanyBuilder& customers(int count);
    // Customer `customer` with documents "<customer>-1".."<customer>-<count>", each invoiced and due `each`.
    CompanyBuilder& documents(const QString& customer, int count, Money each);
    // Open batch `batch` with one ordinary receipt per payment, numbered from 1, as the views leave them.
    CompanyBuilder& batch(qint64 batch, const std::vector<Payment>& payments);

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

QString customerNumber(int i);                      // C0001
QString documentOf(const QString& customer, int n); // the builder's documents: "Z-2"

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
    // What the store holds, read past every view: the records that match `equal`, in the order of `order`
    // (their key when empty), each as the texts of its `fields` joined by blanks, an amount as the ledger's
    // text ("120.000"); one record's field; how many match.
    QStringList records(const QString& viewId, const QVariantHash& equal, const QStringList& fields,
                        QStringList order = {}) const;
    QString value(const QString& viewId, const QVariantHash& key, const QString& field) const {
        return records(viewId, key, {field}).value(0);
    }
    int count(const QString& viewId, const QVariantHash& equal) const {
        return int(records(viewId, equal, {}).size());
    }
    // Runs a script of view operations with the ledger tool on the company as it is now, as a builder's
    // script is run on a made company; for a company made again after the builder's work.
    void script(const QString& path, const QString& date) const;

private:
    TestStore m_store; // first: the company is made inside its folder
    QString m_id;
};

// A path under the source tree, for scripts and examples.
QString sourceFile(const QString& relative);

// "SQLite" / "PostgreSQL" as a test parameter's name.
std::string storeTestName(const ::testing::TestParamInfo<StoreKind>& info);

// A test on each store with a company of its own, signed in as ADMIN on 2025-03-14; empty unless SetUp or
// the test starts one.
class StoreTest : public ::testing::TestWithParam<StoreKind> {
protected:
    void SetUp() override { start(CompanyBuilder(GetParam())); }
    // The test's company made anew from `builder`; the test is skipped where its store cannot run.
    void start(const CompanyBuilder& builder);
    std::unique_ptr<Session> signIn() const { return m_company->signIn(QDate(2025, 3, 14)); }

    std::unique_ptr<Company> m_company;
    QString m_id;
    std::unique_ptr<Session> m_session;
};

// Runs `operation`, expecting a LedgerError whose text contains `fragment`; returns the error.
template <typename Op> LedgerError expectFailure(Op operation, const QString& fragment) {
    try {
        operation();
    } catch (const LedgerError& e) {
        EXPECT_TRUE(e.description().contains(fragment)) << e.description().toStdString();
        return e;
    }
    ADD_FAILURE() << "no LedgerError for " << fragment.toStdString();
    return LedgerError(QString());
}

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
