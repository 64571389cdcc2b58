#include "ToolProcess.h"
#include "ledger/Session.h"
#include "ledger/engine/CompanyStore.h"
#include "support/Company.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSqlQuery>
#include <QThread>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tillbook::test {
namespace {

// A receipt of 100 for customer 0001 in a new cash batch.
const QByteArray OneReceipt =
    "open b AR0041\nopen h AR0042\ncompose b h\ncompose h b\n"
    "put-unverified b CODEPYMTYP CA\ninsert b\ninit h\nput h IDCUST 0001 AMTRMIT 100\n"
    "insert h\n";
const QByteArray NewCustomerQ1 = "open c AR0024\ninit c\nput c IDCUST Q1 NAMECUST Q\ninsert c\n";

class LedgerToolTest : public ::testing::Test {
protected:
    void SetUp() override { m_company = std::make_unique<Company>(CompanyBuilder().sample(40, 300)); }
    QString companyFile() const { return QDir(m_company->dataFolder()).filePath("SAMINC.sqlite"); }
    // A value the store gives for `sql`, read past every view.
    QVariant valueOf(const QString& sql) const {
        const auto store = m_company->store();
        QSqlQuery query = store->prepare(sql);
        store->run(query);
        return query.next() ? query.value(0) : QVariant();
    }

    ScopedEnv m_today{"TILLBOOK_TODAY", QByteArray("2025-03-14")};
    std::unique_ptr<Company> m_company; // after the date: made with it, gone before it
};

TEST_F(LedgerToolTest, BrowseWritesCsvInKeyOrderEitherWayQuotingWhereNeeded) {
    const auto browse = [](const QString& more) {
        return runTool(QStringList{"browse", "SAMINC", "AR0024", "CNTOPENINV>0", "--fields",
                                   "IDCUST,NAMECUST,AMTBALDUEH,DATELASTIV"} +
                       (more.isEmpty() ? QStringList() : QStringList{more}))
            .out.split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    };
    QStringList lines = browse({});
    ASSERT_GT(lines.size(), 5);
    EXPECT_EQ(lines.takeFirst(), "IDCUST,NAMECUST,AMTBALDUEH,DATELASTIV");
    QStringList descending = browse("--descending").mid(1);
    std::reverse(descending.begin(), descending.end());
    EXPECT_EQ(descending, lines);
    for (int i = 0; i < lines.size(); ++i) {
        EXPECT_TRUE(i == 0 || lines[i].section(u',', 0, 0) > lines[i - 1].section(u',', 0, 0));
        EXPECT_TRUE(lines[i].contains(QRegularExpression(",-?\\d+\\.\\d{3},(\\d{4}-\\d\\d-\\d\\d)?$")))
            << lines[i].toStdString();
    }
    ASSERT_EQ(runTool({"run", "SAMINC", "-"},
                      "open c AR0024\ninit c\nput c IDCUST Q1 NAMECUST 'Smith, \"Jr.\" "
                      "& Co'\ninsert c\ninit c\nput c IDCUST Q2 NAMECUST 'A, B'\ninsert c\n")
                  .exitCode,
              0);
    EXPECT_EQ(runTool({"browse", "SAMINC", "AR0024", "IDCUST >= Q1", "--fields", "IDCUST,NAMECUST"}).out,
              "IDCUST,NAMECUST\r\nQ1,\"Smith, \"\"Jr.\"\" & Co\"\r\nQ2,\"A, B\"\r\n");
}

// A warned operation is done: it is printed and the script goes on, also when it stops on errors.
TEST_F(LedgerToolTest, AWarnedOperationIsPrintedAndCountsAsDone) {
    const ToolResult warned =
        runTool({"run", "SAMINC", "-", "--stop-on-error"},
                "open b AR0041\nopen h AR0042\ncompose b h\ncompose h b\n"
                "put-unverified b CODEPYMTYP CA CNTBTCH 0\ninsert b\ninit h\n"
                "put h IDCUST 0001 DATERMIT 2025-05-02 AMTRMIT 10\ninsert h\necho written\n");
    EXPECT_EQ(warned.exitCode, 0) << warned.out.toStdString();
    EXPECT_TRUE(
        warned.out.endsWith("! Warning (1): Receipt date 2025-05-02 is outside fiscal period 03 of 2025.\n"
                            "written\n"))
        << warned.out.toStdString();
}

// A customer added and one renamed by a script take their places in the customer list of the next sign-in.
TEST_F(LedgerToolTest, ScriptedCustomersTakeTheirPlaceInTheNameOrder) {
    const auto listed = [] {
        Session session;
        session.open("ADMIN", "ADMIN", "SAMINC", QDate(2025, 3, 14));
        auto customers = session.openView("AR0024", "AR");
        customers->browse("CNTOPENINV>0", true);
        return customers->readAllText({"NAMECUST", "IDCUST"}, "NAMECUST");
    };
    const TextRows before = listed();
    ASSERT_GT(before.rows(), 2u);
    const QString renamed = before.text(0, 1); // the first, to be the last
    const ToolResult result =
        runTool({"run", "SAMINC", "-", "--stop-on-error"},
                "open c AR0024\ninit c\nput c IDCUST ZNEW1 NAMECUST 'áardvark & co' TEXTSTRE1 '1 Main "
                "St.'\ninsert c\n"
                "open d AR0036\ninit d\nput d IDCUST ZNEW1 IDINVC ZINV-1 TRXTYPETXT 1 TRXTYPEID 11 AMTINVCTC "
                "5 AMTDUETC 5\n"
                "insert d\nput c IDCUST " +
                    renamed.toUtf8() + "\nread c\nput c NAMECUST 'zzyzx last'\nupdate c\n");
    ASSERT_EQ(result.exitCode, 0) << result.out.toStdString() << result.err.toStdString();
    const TextRows after = listed();
    ASSERT_EQ(after.rows(), before.rows() + 1);
    EXPECT_EQ(after.text(0, 0) + '|' + after.text(0, 1), "áardvark & co|ZNEW1");
    EXPECT_EQ(after.text(after.rows() - 1, 0) + '|' + after.text(after.rows() - 1, 1),
              "zzyzx last|" + renamed);
    for (size_t i = 1; i + 1 < after.rows(); ++i) // everyone else keeps their order
        EXPECT_EQ(after.text(i, 1), before.text(i, 1));
}

TEST_F(LedgerToolTest, BadInputIsRefusedClearly) {
    const struct {
        QStringList arguments;
        QByteArray script;
        int exitCode;
        const char* told; // on standard error, or for a script that stops on standard output
    } cases[] = {
        {{"create", "SAMINC"}, {}, 1, "already exists"},
        {{"frobnicate"}, {}, 2, ""},
        {{"browse", "SAMINC"}, {}, 2, ""},
        {{"browse", "SAMINC", "AR0024", "--colour"}, {}, 2, ""},
        {{"browse", "NOSUCH", "AR0024"}, {}, 1, "does not exist"},
        {{"run", "SAMINC", "-"}, "open c AR0024\nfly c\n", 2, "line 2"},
        {{"run", "SAMINC", "-"}, "echo \"unclosed\n", 2, ""},
        {{"run", "SAMINC", "-", "--stop-on-error"},
         "open c AR0024\nput c SWACTV 7\necho not reached\n",
         1,
         "stopped at line 2"},
    };
    for (const auto& c : cases) {
        const ToolResult result = runTool(c.arguments, c.script);
        EXPECT_EQ(result.exitCode, c.exitCode) << c.arguments.join(' ').toStdString();
        EXPECT_TRUE((result.err + result.out).contains(c.told)) << result.err.toStdString();
        EXPECT_FALSE(result.out.contains("not reached"));
    }
    for (const char* command : {"create", "user", "browse", "run"})
        EXPECT_TRUE(runTool({command, "--help"}).out.startsWith("Usage: tillbook-ledger")) << command;
}

// Who may change which password: an administrator anyone's, a clerk only their own.
TEST_F(LedgerToolTest, OnlyAnAdministratorAddsUsersOrChangesAnothersPassword) {
    ASSERT_EQ(runTool({"user", "SAMINC", "clerk", "Secret1"}).exitCode, 0);
    const struct {
        QStringList words;
        int exitCode;
        const char* told; // on standard error
    } cases[] = {
        {{"ADMIN", "Taken", "--user", "CLERK", "--password", "Secret1"}, 1, "change another user's password"},
        {{"CLERK2", "x", "--user", "CLERK", "--password", "Secret1"}, 1, "may not add users"},
        {{"CLERK", "x", "--admin", "--user", "CLERK", "--password", "Secret1"}, 1, "make administrators"},
        {{"ADMIN", "Taken", "--user", "ADMIN", "--password", "wrong"}, 1, "password"},
        {{"ADMIN", "Taken", "--user", "CLERK", "--password", "secret1"}, 1, "password"},
        {{"CLERK", "Secret2", "--user", "CLERK", "--password", "Secret1"}, 0, ""},
        {{"BOSS", "Boss1", "--admin"}, 0, ""},
        {{"CLERK", "Secret3", "--user", "BOSS", "--password", "Boss1"}, 0, ""},
    };
    for (const auto& c : cases) {
        const ToolResult result = runTool(QStringList{"user", "SAMINC"} + c.words);
        EXPECT_EQ(result.exitCode, c.exitCode) << c.words.join(' ').toStdString();
        EXPECT_TRUE(result.err.contains(c.told)) << result.err.toStdString();
    }
    EXPECT_EQ(runTool({"browse", "SAMINC", "BK0001", "--user", "CLERK", "--password", "Secret3"}).exitCode,
              0);
}

TEST_F(LedgerToolTest, AReadOnlyCompanyCanBeBrowsedButNotChanged) {
    // Root writes anything, so the tool runs as another user, who owns the folder but may not write it.
    const bool root = geteuid() == 0;
    const QByteArray folder = QFile::encodeName(m_company->dataFolder());
    const QByteArray file = QFile::encodeName(companyFile());
    if (root) {
        ASSERT_EQ(chown(folder.constData(), Nobody, Nobody) | chown(file.constData(), Nobody, Nobody), 0);
    }
    ASSERT_EQ(chmod(file.constData(), 0400) | chmod(folder.constData(), 0500), 0);
    const ToolResult browsed = runTool({"browse", "SAMINC", "BK0001", "--fields", "BANK"}, {}, root);
    EXPECT_EQ(browsed.exitCode, 0) << browsed.err.toStdString();
    EXPECT_GT(browsed.out.count(u'\n'), 1);
    const ToolResult changed = runTool({"run", "SAMINC", "-"}, NewCustomerQ1, root);
    EXPECT_EQ(changed.exitCode, 1);
    EXPECT_TRUE(changed.out.contains("can only be read here")) << changed.out.toStdString();
    chmod(folder.constData(), 0700);
}

// Overwrites the end of a customers' index's root page, where its cells lie: the rows stay readable, the
// index no longer matches them.
TEST_F(LedgerToolTest, ADamagedStoreIsReportedAndNotWritten) {
    const qint64 page = valueOf("PRAGMA page_size").toLongLong();
    const qint64 root = valueOf("SELECT i.rootpage FROM sqlite_master i JOIN sqlite_master t ON t.name = "
                                "i.tbl_name WHERE i.type = 'index' AND t.sql LIKE '%\"NAMECUST\"%' LIMIT 1")
                            .toLongLong();
    ASSERT_GT(page * root, 0);
    QFile file(companyFile());
    ASSERT_TRUE(file.open(QIODevice::ReadWrite) && file.seek(root * page - 300));
    file.write(QByteArray(300, '\x7f'));
    file.close();
    const ToolResult checked = runTool({"check", "SAMINC"});
    EXPECT_EQ(checked.exitCode, 1);
    EXPECT_TRUE(checked.out.contains("Storage damaged: ")) << checked.out.toStdString();
    const ToolResult changed = runTool({"run", "SAMINC", "-"}, NewCustomerQ1);
    EXPECT_EQ(changed.exitCode, 1);
    EXPECT_TRUE(changed.out.contains("is damaged in its storage")) << changed.out.toStdString();
}

// A receipt's amount and its batch's total changed together by hand still add up; the audit trail of
// what the till saved does not.
TEST_F(LedgerToolTest, CheckHoldsBatchesAgainstTheAuditTrail) {
    const ToolResult saved = runTool({"run", "SAMINC", "-"}, OneReceipt);
    ASSERT_EQ(saved.exitCode, 0) << saved.out.toStdString();
    ASSERT_EQ(runTool({"post-batch", "SAMINC", "1"}).exitCode, 0);
    ASSERT_EQ(runTool({"check", "SAMINC"}).exitCode, 0);
    m_company->store()->execute("UPDATE ARTCR SET AMTRMIT = 1000000, AMTRMITTC = 1000000, AMTRMITHC = "
                                "1000000, REMUNAPLTC = 1000000");
    m_company->store()->execute("UPDATE ARBTA SET AMTENTER = 1000000");
    EXPECT_EQ(valueOf("SELECT WHO || ' ' || WHAT FROM TB_AUDIT ORDER BY AT DESC LIMIT 1").toString(),
              "ADMIN batch posted");
    const ToolResult checked = runTool({"check", "SAMINC"});
    EXPECT_EQ(checked.exitCode, 1);
    EXPECT_TRUE(checked.out.contains("its audit trail saved 1 of 100.000")) << checked.out.toStdString();
}

TEST_F(LedgerToolTest, AKilledCreationLeavesNoCompany) {
    QProcess process;
    process.start(QStringLiteral(TILLBOOK_LEDGER_TOOL),
                  {"create", "BIG", "--sample", "--customers", "20000", "--documents", "400000"});
    ASSERT_TRUE(process.waitForStarted());
    QThread::msleep(1500);
    ASSERT_EQ(process.state(), QProcess::Running) << "finished before it could be killed";
    process.kill();
    process.waitForFinished();
    const ToolResult browsed = runTool({"browse", "BIG", "BK0001"});
    EXPECT_EQ(browsed.exitCode, 1);
    EXPECT_TRUE(browsed.err.contains("does not exist")) << browsed.err.toStdString();
    EXPECT_EQ(runTool({"create", "BIG", "--sample", "--customers", "5", "--documents", "5"}).exitCode, 0);
}

// SQLite's locks belong to the process: opening a second connection here must leave the first one's in
// place, or a till closing elsewhere takes itself for the company's last user and folds the log away under
// this one's feet.
TEST_F(LedgerToolTest, ASecondConnectionKeepsTheFirstOnesLocks) {
    const auto first = engine::CompanyStore::open("SAMINC");
    const auto second = engine::CompanyStore::open("SAMINC");
    const QString log = engine::locateCompany("SAMINC").sqlitePath + "-wal";
    ASSERT_TRUE(QFile::exists(log));
    const ToolResult browsed = runTool({"browse", "SAMINC", "AR0024", "IDCUST = \"0001\""});
    ASSERT_EQ(browsed.exitCode, 0) << browsed.err.toStdString();
    EXPECT_TRUE(QFile::exists(log)) << "another process found the company unused";
}

} // namespace
} // namespace tillbook::test
