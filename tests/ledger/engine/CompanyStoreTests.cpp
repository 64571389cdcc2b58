// Companies as a whole: making them all or nothing, what is no company, who may read their files, how
// passwords are kept, and numbers taken by several tills at once.
#include "ledger/LedgerError.h"
#include "ledger/engine/CompanyLocation.h"
#include "ledger/engine/CompanyStore.h"
#include "ledger/engine/PasswordHash.h"
#include "ledger/engine/StoreFailure.h"
#include "ledger/engine/StoredRow.h"
#include "support/Company.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <set>
#include <sys/stat.h>

namespace tillbook::test {
namespace {

using engine::CompanyStore;
using engine::PasswordHash;

void addAdmin(CompanyStore& store) {
    store.setUser(QStringLiteral("ADMIN"), QStringLiteral("ADMIN"));
}

using CompanyTest = StoreTest;

TEST_P(CompanyTest, AFailedCreationLeavesNoCompanyAndTheOldOneAsItWas) {
    const auto failHalfway = [](CompanyStore& store) {
        addAdmin(store);
        throw engine::storeFailure(QStringLiteral("stopped halfway"));
    };
    const QString id = TestStore::uniqueId(QStringLiteral("NEW"));
    EXPECT_THROW(CompanyStore::create(id, false, failHalfway), LedgerError);
    EXPECT_FALSE(CompanyStore::exists(id));

    CompanyStore::open(m_id)->setUser(QStringLiteral("CLERK"), QStringLiteral("Secret1"));
    EXPECT_THROW(CompanyStore::create(m_id, true, failHalfway), LedgerError);
    Session clerk;
    clerk.open(QStringLiteral("CLERK"), QStringLiteral("Secret1"), m_id, QDate(2025, 3, 14));
    EXPECT_TRUE(clerk.isOpen());

    EXPECT_EQ(CompanyStore::create(id, false, addAdmin)->location().companyId, id.toUpper());
    EXPECT_THROW(CompanyStore::create(id, false, addAdmin), LedgerError);
    if (GetParam() == StoreKind::Sqlite) {
        const QStringList files = QDir(m_company->dataFolder()).entryList(QDir::Files | QDir::Hidden);
        EXPECT_TRUE(files.filter(QStringLiteral(".new-")).isEmpty()) << files.join(u' ').toStdString();
    }
}

// PBKDF2-HMAC-SHA256 of "passwd" with salt "salt" and one round (RFC 7914's test vector, first 32 bytes).
const QString OneRoundHash = QStringLiteral(
    "pbkdf2-sha256$1$73616c74$55ac046e56e3089fec1691c22544b605f94185216dde0465e68b9d57c20dacbc");

// SHA-256 iterated over salt and password, as earlier versions stored passwords.
PasswordHash iteratedSha256(const QByteArray& salt, const QString& password, int rounds) {
    PasswordHash old;
    old.algorithm = PasswordHash::Algorithm::IteratedSha256;
    old.salt = salt;
    old.rounds = rounds;
    old.hash = QCryptographicHash::hash(salt + password.toUtf8(), QCryptographicHash::Sha256);
    for (int i = 1; i < rounds; ++i)
        old.hash = QCryptographicHash::hash(old.hash + salt, QCryptographicHash::Sha256);
    return old;
}

TEST_P(CompanyTest, OlderHashesAreReplacedAtTheNextGoodSignIn) {
    if (GetParam() != StoreKind::Sqlite)
        GTEST_SKIP() << "On PostgreSQL the server checks passwords: the company keeps no hash";
    auto store = CompanyStore::open(m_id);
    store->setUserHash(QStringLiteral("OLD"),
                       iteratedSha256("0123456789abcdef", QStringLiteral("Secret1"), 20));
    store->setUserHash(QStringLiteral("CHEAP"), PasswordHash::fromStored(QString(), 0, OneRoundHash));
    const auto signIn = [&](const char* user, const char* password) {
        Session().open(user, password, m_id, QDate(2025, 3, 14));
    };
    EXPECT_THROW(signIn("OLD", "secret1"), LedgerError);
    EXPECT_TRUE(store->userHash(QStringLiteral("OLD"))->isOutdated());
    for (int round = 0; round < 2; ++round) { // the second time, with the replaced hashes
        EXPECT_NO_THROW(signIn("OLD", "Secret1"));
        EXPECT_NO_THROW(signIn("CHEAP", "passwd"));
        EXPECT_THROW(signIn("CHEAP", "Passwd"), LedgerError);
        for (const char* user : {"OLD", "CHEAP"}) {
            EXPECT_EQ(store->userHash(user)->algorithm, PasswordHash::Algorithm::Pbkdf2Sha256) << user;
            EXPECT_EQ(store->userHash(user)->rounds, PasswordHash::currentRounds());
        }
    }
    EXPECT_FALSE(store->userHash(QStringLiteral("NOBODY")).has_value());
}

TEST(PasswordHashTest, AHashIsSaltedAndAnUnreadableOneMatchesNothing) {
    EXPECT_NE(PasswordHash::make("Secret1").storedHash(), PasswordHash::make("Secret1").storedHash());
    for (const char* unreadable :
         {"pbkdf2-sha256$many$00$00", "pbkdf2-sha256$0$00$00", "pbkdf2-sha256$5", ""})
        EXPECT_FALSE(
            PasswordHash::fromStored(QString(), 0, QString::fromLatin1(unreadable)).matches(QString()))
            << unreadable;
    EXPECT_FALSE(PasswordHash::standIn().matches(QString()));
}

TEST(CompanyIdTest, ABadIdOrLedgerAddressIsToldWithoutItsPassword) {
    const QString longId(33, u'A');
    const LedgerError tooLong =
        expectFailure([&] { engine::locateCompany(longId); }, "at most 32 characters");
    EXPECT_FALSE(tooLong.description().contains("letters"));
    EXPECT_NO_THROW(engine::locateCompany(longId.left(32)));
    EXPECT_THROW(engine::locateCompany(QStringLiteral("AB-C")), LedgerError);

    for (const auto& [url, told] :
         {std::pair{"postgresql://clerk:Hush42@db:99999/tillbook_{id}", "port (1 to 65535)"},
          std::pair{"mysql://clerk:Hush42@db/tillbook_{id}", "not a postgresql:// address"}}) {
        const ScopedEnv ledger("TILLBOOK_LEDGER_URL", url);
        const LedgerError e = expectFailure([] { engine::locateCompany(QStringLiteral("SAMINC")); }, told);
        EXPECT_FALSE(e.description().contains("Hush42")) << e.description().toStdString();
    }
}

// A company and its log files are the owner's only.
TEST(CompanyFileTest, ACompanysFilesAreTheOwnersOnly) {
    const Company store;              // SQLite, in a folder of its own
    const mode_t previous = umask(0); // anything made without explicit permissions would be open to all
    auto company = CompanyStore::create(QStringLiteral("PRIVATE"), false, addAdmin);
    company->setUser(QStringLiteral("CLERK"), QStringLiteral("Secret1")); // a write: the -wal and -shm
    umask(previous);
    const QString own = company->location().sqlitePath;
    for (const QString& file : {own, own + QStringLiteral("-wal"), own + QStringLiteral("-shm")})
        EXPECT_EQ(QFile::permissions(file),
                  QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser)
            << file.toStdString();
}

// A file that is not a company is refused and left as it was, not taken over.
TEST(CompanyFileTest, AnEmptyOrForeignFileIsNoCompanyAndStaysAsItWas) {
    const Company store;
    const QString path = QDir(store.dataFolder()).filePath(QStringLiteral("EMPTY.sqlite"));
    for (const QByteArray& content : {QByteArray(), QByteArray("id,name\n1,Anna\n")}) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(content) >= 0);
        file.close();
        expectFailure([] { CompanyStore::open(QStringLiteral("EMPTY")); }, "is not a Tillbook company");
        EXPECT_EQ(QFileInfo(path).size(), content.size());
    }
}

// A company made before a field was added to its view gets the field's column when this program opens it.
TEST_P(CompanyTest, AnOlderCompanyGetsTheColumnsOfNewFields) {
    for (const char* column : {"AUDTDATE", "AUDTTIME"})
        CompanyStore::open(m_id)->execute(
            QStringLiteral("ALTER TABLE \"ARTCR\" DROP COLUMN \"%1\"").arg(column));
    EXPECT_NO_THROW(CompanyStore::open(m_id)->execute(
        QStringLiteral("SELECT \"AUDTDATE\", \"AUDTTIME\" FROM \"ARTCR\"")));
}

TEST_P(CompanyTest, TillsTakingNumbersAtOnceNeverShareOne) {
    constexpr int Tills = 3;
    constexpr int Each = 40;
    std::vector<std::vector<qint64>> taken(Tills);
    std::vector<std::unique_ptr<QThread>> threads;
    for (int t = 0; t < Tills; ++t) {
        threads.emplace_back(QThread::create([&, t] {
            // Each till has its own connection, as separate programs would.
            auto store = engine::CompanyStore::open(m_id);
            for (int i = 0; i < Each; ++i)
                taken[size_t(t)].push_back(store->nextNumber("BATCH"));
        }));
        threads.back()->start();
    }
    for (auto& thread : threads)
        thread->wait();
    std::set<qint64> all;
    for (const auto& numbers : taken)
        all.insert(numbers.begin(), numbers.end());
    EXPECT_EQ(all.size(), size_t(Tills * Each));
    EXPECT_EQ(*all.begin(), 1);
    EXPECT_EQ(*all.rbegin(), Tills * Each);
}

// Text read over strings kept from an earlier read (longer, or holding other text): plain ASCII written where
// the string stands, anything else decoded, blank text blank and not null.
TEST_P(CompanyTest, TextReadOverKeptStringsIsTheTextRead) {
    std::vector<QString> kept{"an earlier, longer text", "plain", "not blank"}; // each a string of its own
    CompanyStore::open(m_id)->readEach(QString::fromUtf8("SELECT 'IN1', 'Café Été', ''"), {},
                                       [&](const engine::StoredRow& row) {
                                           for (int i = 0; i < 3; ++i)
                                               row.textInto(i, kept[size_t(i)]);
                                       });
    EXPECT_EQ(kept, (std::vector<QString>{"IN1", QString::fromUtf8("Café Été"), ""}));
    EXPECT_FALSE(kept[2].isNull());
}

TILLBOOK_EACH_STORE(CompanyTest);

} // namespace
} // namespace tillbook::test
