#include "ToolProcess.h"
#include "ledger/Session.h"
#include "ledger/engine/CompanyStore.h"
#include "support/Company.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryFile>
#include <QThread>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tillbook::test {
namespace {

class LedgerToolTest : public ::testing::Test {
protected:
    void SetUp() override {
        qputenv("TILLBOOK_TODAY", "2025-03-14");
        m_company = std::make_unique<Company>(CompanyBuilder().sample(40, 300));
    }
    void TearDown() override {
        m_company.reset();
        qunsetenv("TILLBOOK_TODAY");
    }
    QString companyFile() const { return QDir(m_company->dataFolder()).filePath("SAMINC.sqlite"); }

    std::unique_ptr<Company> m_company;
};

TEST_F(LedgerToolTest, BrowseWritesCsvInKeyOrderEitherWay) {
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
}

TEST_F(LedgerToolTest, BrowseQuotesFieldsThatNeedIt) {
    const QByteArray script = "open c AR0024\n"
                              "read c\n"
                              "put c IDCUST \"Q1\"\n"
                              "init c\n"
                              "put c IDCUST Q1 NAMECUST 'Smith, \"Jr.\" & Co'\n"
                              "insert c\n";
    ASSERT_EQ(runTool({"run", "SAMINC", "-"}, script).exitCode, 0);
    const ToolResult result =
        runTool({"browse", "SAMINC", "AR0024", "IDCUST = Q1", "--fields", "IDCUST,NAMECUST"});
    EXPECT_EQ(result.out, "IDCUST,NAMECUST\r\nQ1,\"Smith, \"\"Jr.\"\" & Co\"\r\n");
}

TEST_F(LedgerToolTest, RunScriptPrintsResultsAndErrors) {
    const QByteArray script = "# a receipt for a customer that does not exist, then one that does\n"
                              "open customers AR0024\n"
                              "browse customers \"CNTOPENINV>0\"\n"
                              "fetch customers\n"
                              "get customers idcust\n"
                              "open receipts AR0042   # comment after an operation\n"
                              "put receipts IDCUST ZZZ\n"
                              "put-unverified receipts IDCUST ZZZ\n"
                              "get receipts IDCUST\n"
                              "errors\n"
                              "clear-errors\n"
                              "errors\n"
                              "open nothing AR9999\n"
                              "browse customers \"CNTOPENINV >\"\n" // a failed browse leaves nothing to list
                              "list customers IDCUST\n";
    const ToolResult result = runTool({"run", "SAMINC", "-"}, script);
    EXPECT_EQ(result.exitCode, 1); // some operations failed
    const QStringList lines = result.out.split(u'\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 10) << result.out.toStdString();
    EXPECT_EQ(lines[0], "fetch customers: true");
    EXPECT_TRUE(lines[1].startsWith("customers.IDCUST = 00"));
    EXPECT_EQ(lines[2], "! Error (0): Customer Number \"ZZZ\" does not exist.");
    EXPECT_EQ(lines[3], "receipts.IDCUST = ZZZ");
    EXPECT_EQ(lines[4], "errors: 1");
    EXPECT_EQ(lines[6], "errors: 0");
    EXPECT_EQ(lines[7], "! Error (0): View \"AR9999\" does not exist in this company.");
    EXPECT_EQ(lines[9], "list customers: 0 records");
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
    const QByteArray script =
        "open c AR0024\n"
        "init c\n"
        "put c IDCUST ZNEW1 NAMECUST 'áardvark & co' TEXTSTRE1 '1 Main St.'\n"
        "insert c\n"
        "open d AR0036\n"
        "init d\n"
        "put d IDCUST ZNEW1 IDINVC ZINV-1 TRXTYPETXT 1 TRXTYPEID 11 AMTINVCTC 5 AMTDUETC 5\n"
        "insert d\n"
        "put c IDCUST " +
        renamed.toUtf8() +
        "\n"
        "read c\n"
        "put c NAMECUST 'zzyzx last'\n"
        "update c\n";
    const ToolResult result = runTool({"run", "SAMINC", "-", "--stop-on-error"}, script);
    ASSERT_EQ(result.exitCode, 0) << result.out.toStdString() << result.err.toStdString();
    const TextRows after = listed();
    ASSERT_EQ(after.rows(), before.rows() + 1);
    EXPECT_EQ(after.text(0, 0), "áardvark & co");
    EXPECT_EQ(after.text(0, 1), "ZNEW1");
    EXPECT_EQ(after.text(after.rows() - 1, 0), "zzyzx last");
    EXPECT_EQ(after.text(after.rows() - 1, 1), renamed);
    for (size_t i = 1; i + 1 < after.rows(); ++i) // everyone else keeps their order
        EXPECT_EQ(after.text(i, 1), before.text(i, 1));
}

TEST_F(LedgerToolTest, AWarnedOperationIsPrintedAndCountsAsDone) {
    const ToolResult result = runTool({"run", "SAMINC", "-", "--stop-on-error"}, R"(open b AR0041
open h AR0042
compose b h
compose h b
put-unverified b CODEPYMTYP CA CNTBTCH 0
insert b
init h
put h IDCUST 0001 DATERMIT 2025-05-02 AMTRMIT 10
insert h
echo written
)");
    EXPECT_EQ(result.exitCode, 0) << result.out.toStdString();
    EXPECT_TRUE(
        result.out.endsWith("! Warning (1): Receipt date 2025-05-02 is outside fiscal period 03 of 2025.\n"
                            "written\n"))
        << result.out.toStdString();
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
    EXPECT_EQ(runTool({"browse", "SAMINC", "BK0001", "--user", "ADMIN", "--password", "ADMIN"}).exitCode, 0);
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
    const ToolResult changed = runTool({"run", "SAMINC", "-"},
                                       "open c AR0024\ninit c\nput c IDCUST Q1 NAMECUST Q\ninsert c\n", root);
    EXPECT_EQ(changed.exitCode, 1);
    EXPECT_TRUE(changed.out.contains("can only be read here")) << changed.out.toStdString();
    chmod(folder.constData(), 0700);
}

// Overwrites the end of a customers' index's root page, where its cells lie: the rows stay readable, the
// index no longer matches them.
void damageAnIndex(const QString& path) {
    int page = 0, root = 0;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("damage"));
        db.setDatabaseName(path);
        ASSERT_TRUE(db.open());
        QSqlQuery query(db);
        ASSERT_TRUE(query.exec("PRAGMA page_size") && query.next());
        page = query.value(0).toInt();
        ASSERT_TRUE(query.exec("SELECT i.rootpage FROM sqlite_master i JOIN sqlite_master t ON t.name = "
                               "i.tbl_name WHERE i.type = 'index' AND t.sql LIKE '%\"NAMECUST\"%' LIMIT 1") &&
                    query.next());
        root = query.value(0).toInt();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("damage"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.seek(qint64(root) * page - 300);
    file.write(QByteArray(300, '\x7f'));
}

TEST_F(LedgerToolTest, ADamagedStoreIsReportedAndNotWritten) {
    damageAnIndex(companyFile());
    const ToolResult checked = runTool({"check", "SAMINC"});
    EXPECT_EQ(checked.exitCode, 1);
    EXPECT_TRUE(checked.out.contains("Storage damaged: ")) << checked.out.toStdString();
    const ToolResult changed =
        runTool({"run", "SAMINC", "-"}, "open c AR0024\ninit c\nput c IDCUST Q1 NAMECUST Q\ninsert c\n");
    EXPECT_EQ(changed.exitCode, 1);
    EXPECT_TRUE(changed.out.contains("is damaged in its storage")) << changed.out.toStdString();
}

// A receipt's amount and its batch's total changed together by hand still add up; the audit trail of
// what the till saved does not.
TEST_F(LedgerToolTest, CheckHoldsBatchesAgainstTheAuditTrail) {
    const ToolResult saved =
        runTool({"run", "SAMINC", "-"}, "open b AR0041\nopen h AR0042\ncompose b h\n"
                                        "compose h b\nput-unverified b CODEPYMTYP CA\n"
                                        "insert b\ninit h\nput h IDCUST 0001 AMTRMIT 100\n"
                                        "insert h\n");
    ASSERT_EQ(saved.exitCode, 0) << saved.out.toStdString();
    ASSERT_EQ(runTool({"post-batch", "SAMINC", "1"}).exitCode, 0);
    ASSERT_EQ(runTool({"check", "SAMINC"}).exitCode, 0);
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("tamper"));
        db.setDatabaseName(companyFile());
        ASSERT_TRUE(db.open());
        QSqlQuery query(db);
        for (const char* sql :
             {"UPDATE ARTCR SET AMTRMIT = 1000000, AMTRMITTC = 1000000, AMTRMITHC = 1000000, "
              "REMUNAPLTC = 1000000",
              "UPDATE ARBTA SET AMTENTER = 1000000"})
            ASSERT_TRUE(query.exec(sql)) << sql;
        ASSERT_TRUE(query.exec("SELECT WHO, WHAT FROM TB_AUDIT ORDER BY AT") && query.last());
        EXPECT_EQ(query.value(0).toString() + ' ' + query.value(1).toString(), "ADMIN batch posted");
    }
    QSqlDatabase::removeDatabase(QStringLiteral("tamper"));
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
