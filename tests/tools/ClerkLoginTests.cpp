// On PostgreSQL every user of a company signs in as a database login of their own: what a clerk who has the
// server's address and their password can and cannot do with it directly, the server's check of a sign-in,
// and the owner that replacing a company takes.

#include "ToolProcess.h"
#include "ledger/LedgerError.h"
#include "ledger/Session.h"
#include "ledger/engine/CompanyLocation.h"
#include "ledger/engine/CompanyStore.h"
#include "support/Company.h"
#include "support/PostgresServer.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <gtest/gtest.h>

namespace tillbook::test {
namespace {

const QString Company = QStringLiteral("SHOP1");
const QString ClerkPassword = QStringLiteral("Clerk-Pw1");

class ClerkLoginTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!m_store.unavailableReason().isEmpty())
            GTEST_SKIP() << "PostgreSQL is not available: " << m_store.unavailableReason().toStdString();
        const ToolResult created =
            runTool({"create", Company, "--force", "--sample", "--customers", "5", "--documents", "30"});
        ASSERT_EQ(created.exitCode, 0) << created.err.toStdString();
        const ToolResult added = runTool({"user", Company, "CLERK", ClerkPassword});
        ASSERT_EQ(added.exitCode, 0) << added.err.toStdString();
    }
    void TearDown() override {
        for (const QString& name : QSqlDatabase::connectionNames())
            QSqlDatabase::removeDatabase(name);
    }

    // A connection straight to the company's database, as psql would make it.
    static QSqlDatabase connectAs(const QString& login, const QString& password) {
        const engine::CompanyLocation location = engine::locateCompany(Company);
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), login + password);
        db.setHostName(location.host);
        db.setPort(location.port);
        db.setDatabaseName(location.database);
        db.setUserName(login);
        db.setPassword(password);
        return db;
    }
    static ToolResult asClerk(const QStringList& arguments, const QByteArray& input = {}) {
        return runTool(arguments + QStringList{"--user", "CLERK", "--password", ClerkPassword}, input);
    }

    ScopedEnv m_today{"TILLBOOK_TODAY", QByteArray("2025-03-14")};
    TestStore m_store{StoreKind::Postgres};
};

TEST_F(ClerkLoginTest, AClerksLoginReadsNoSecretAndChangesNothingButWhatTheTillsWrite) {
    QSqlDatabase db = connectAs(Company + QStringLiteral(".CLERK"), ClerkPassword);
    ASSERT_TRUE(db.open()) << db.lastError().text().toStdString();
    QSqlQuery query(db);
    const std::pair<const char*, bool> statements[] = {
        {"SELECT rolpassword FROM pg_authid", false},
        {"SELECT \"HASH\" FROM \"TB_USERS\"", false},
        {"UPDATE \"TB_USERS\" SET \"ADMIN\" = 1", false},
        {"UPDATE \"TB_AUDIT\" SET \"AMOUNT\" = 0", false},
        {"DELETE FROM \"TB_AUDIT\"", false},
        {"TRUNCATE \"TB_AUDIT\"", false},
        {"UPDATE \"GLAMF\" SET \"ACCTID\" = \"ACCTID\"", false},
        {"UPDATE \"CSFSC\" SET \"ACTIVE\" = 1", false},
        {"DROP TABLE \"ARBTA\"", false},
        {"ALTER TABLE \"ARCUS\" ADD COLUMN \"X\" INTEGER", false},
        {"CREATE TABLE \"X\" (\"A\" INTEGER)", false},
        {"DROP DATABASE tillbook_shop1", false},
        {"SELECT \"NAME\", \"ADMIN\" FROM \"TB_USERS\"", true},
        {"UPDATE \"ARCUS\" SET \"NAMECUST\" = \"NAMECUST\"", true},
        {"UPDATE \"ARBTA\" SET \"AMTENTER\" = \"AMTENTER\"", true},
        {"INSERT INTO \"TB_AUDIT\" VALUES ('2000-01-01', 'ADMIN', 'by hand', '', 0, 0, 0)", true},
    };
    for (const auto& [sql, allowed] : statements)
        EXPECT_EQ(query.exec(QString::fromLatin1(sql)), allowed)
            << sql << query.lastError().text().toStdString();
    // A row added by hand is the clerk's, whoever it names, and stamped with the server's time.
    ASSERT_TRUE(query.exec("SELECT \"WHO\", \"AT\" FROM \"TB_AUDIT\" WHERE \"WHAT\" = 'by hand'") &&
                query.next());
    EXPECT_EQ(query.value(0).toString(), "SHOP1.CLERK");
    EXPECT_NE(query.value(1).toString(), "2000-01-01");
    // The company keeps no password or hash of its users.
    QSqlDatabase owner = connectAs(QStringLiteral("postgres"), QString());
    ASSERT_TRUE(owner.open());
    QSqlQuery secrets(owner);
    ASSERT_TRUE(secrets.exec("SELECT COUNT(*) FROM \"TB_USERS\" WHERE \"HASH\" <> '' OR \"SALT\" <> ''") &&
                secrets.next());
    EXPECT_EQ(secrets.value(0).toInt(), 0);
}

TEST_F(ClerkLoginTest, TheServerChecksASignInAndTheLedgerSaysSoInItsOwnWords) {
    for (const auto& [user, password] :
         {std::pair{"CLERK", "clerk-pw1"}, std::pair{"NOBODY", "Clerk-Pw1"}, std::pair{"CLERK", ""}}) {
        Session session;
        expectFailure([&] { session.open(user, password, Company, QDate(2025, 3, 14)); },
                      "user name or password is not correct");
    }
    EXPECT_FALSE(connectAs(Company + QStringLiteral(".CLERK"), QStringLiteral("wrong")).open());
    Session session;
    session.open(QStringLiteral("clerk"), ClerkPassword, Company, QDate(2025, 3, 14));
    EXPECT_TRUE(session.isOpen());
    // The clerk's tool writes and posts what a till does, and checks the company.
    const ToolResult saved =
        asClerk({"run", Company, "-"}, "open b AR0041\nopen h AR0042\ncompose b h\ncompose h b\n"
                                       "put-unverified b CODEPYMTYP CA\ninsert b\ninit h\n"
                                       "put h IDCUST 0001 AMTRMIT 100\ninsert h\n");
    EXPECT_EQ(saved.exitCode, 0) << saved.out.toStdString();
    EXPECT_EQ(asClerk({"post-batch", Company, "1"}).exitCode, 0);
    EXPECT_EQ(asClerk({"check", Company}).exitCode, 0);
    // Another company's login does not reach this one.
    ASSERT_EQ(runTool({"create", "SHOP2", "--force"}).exitCode, 0);
    EXPECT_FALSE(connectAs(QStringLiteral("SHOP2.ADMIN"), QStringLiteral("ADMIN")).open());
}

TEST_F(ClerkLoginTest, ReplacingACompanyTakesItsOwnerAndEndsTheLoginsOfTheOldOne) {
    const QByteArray ownerUrl = qgetenv("TILLBOOK_LEDGER_URL");
    qputenv(
        "TILLBOOK_LEDGER_URL",
        PostgresServer::shared().urlTemplateAs(Company + QStringLiteral(".CLERK"), ClerkPassword).toUtf8());
    const ToolResult replaced = runTool({"create", Company, "--force"});
    qputenv("TILLBOOK_LEDGER_URL", ownerUrl);
    EXPECT_NE(replaced.exitCode, 0);
    EXPECT_EQ(asClerk({"browse", Company, "AR0024", "--fields", "IDCUST"}).out.count("\r\n"), 6);

    ASSERT_EQ(runTool({"create", Company, "--force"}).exitCode, 0);
    EXPECT_FALSE(connectAs(Company + QStringLiteral(".CLERK"), ClerkPassword).open());
    EXPECT_EQ(runTool({"check", Company}).exitCode, 0);
}

// A company made before its users had logins: its administrator's first `user` is checked against the
// table's hash, and gives the company its roles and the user a login.
TEST_F(ClerkLoginTest, ACompanyWhoseUsersHaveNoLoginsYetGetsThemFromItsAdministrator) {
    {
        QSqlDatabase owner = connectAs(QStringLiteral("postgres"), QString());
        ASSERT_TRUE(owner.open());
        QSqlQuery query(owner);
        for (const char* sql : {"DROP OWNED BY \"tillbook_clerks_shop1\", \"tillbook_admins_shop1\"",
                                "DROP ROLE \"SHOP1.ADMIN\"", "DROP ROLE \"SHOP1.CLERK\"",
                                "DROP ROLE \"tillbook_admins_shop1\"", "DROP ROLE \"tillbook_clerks_shop1\""})
            ASSERT_TRUE(query.exec(QString::fromLatin1(sql)))
                << sql << query.lastError().text().toStdString();
    }
    engine::CompanyStore::open(Company)->setUserHash(QStringLiteral("ADMIN"),
                                                     engine::PasswordHash::make(QStringLiteral("Old-Pw1")));
    EXPECT_NE(runTool({"user", Company, "ADMIN", "New-Pw1", "--password", "wrong"}).exitCode, 0);
    const ToolResult changed = runTool({"user", Company, "ADMIN", "New-Pw1", "--password", "Old-Pw1"});
    ASSERT_EQ(changed.exitCode, 0) << changed.err.toStdString();
    EXPECT_TRUE(connectAs(Company + QStringLiteral(".ADMIN"), QStringLiteral("New-Pw1")).open());
    EXPECT_EQ(runTool({"check", Company, "--password", "New-Pw1"}).exitCode, 0);
    EXPECT_FALSE(engine::CompanyStore::open(Company)->userHash(QStringLiteral("ADMIN"))->matches("Old-Pw1"));
}

} // namespace
} // namespace tillbook::test
