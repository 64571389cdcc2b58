// import, export and receipts: a company's data in and out as CSV files, on both stores.

#include "ToolProcess.h"
#include "ledger/Money.h"
#include "ledger/engine/CompanyStore.h"
#include "support/Company.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

namespace tillbook::test {
namespace {

const QString Example = sourceFile("examples/company");
const QString Scripts = sourceFile("tests/ledger/rules/scripts/");

QMap<QString, QByteArray> filesIn(const QString& folder) {
    QMap<QString, QByteArray> files;
    for (const QString& name : QDir(folder).entryList(QDir::Files)) {
        QFile file(QDir(folder).filePath(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        files.insert(name, file.readAll());
    }
    return files;
}

void writeFiles(const QString& folder, const QMap<QString, QByteArray>& files) {
    QDir().mkpath(folder);
    for (auto it = files.constBegin(); it != files.constEnd(); ++it) {
        QFile file(QDir(folder).filePath(it.key()));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(it.value());
    }
}

class ImportTest : public ::testing::TestWithParam<StoreKind> {
protected:
    void SetUp() override {
        m_store = std::make_unique<TestStore>(GetParam());
        if (!m_store->unavailableReason().isEmpty())
            GTEST_SKIP() << "PostgreSQL is not available: " << m_store->unavailableReason().toStdString();
    }

    QString company(const QStringList& createArguments = {}) {
        const QString id = TestStore::uniqueId(QStringLiteral("I"));
        const ToolResult created = runTool(QStringList{"create", id} + createArguments);
        EXPECT_EQ(created.exitCode, 0) << created.err.toStdString();
        return id;
    }
    QString folder(const QString& name) const { return m_dir.filePath(name); }

    ScopedEnv m_today{"TILLBOOK_TODAY", QByteArray("2025-03-15")};
    std::unique_ptr<TestStore> m_store;
    QTemporaryDir m_dir;
};

TILLBOOK_EACH_STORE(ImportTest);

TEST_P(ImportTest, AnExportedCompanyLoadsIntoANewOneAsItWasAndASecondImportChangesNothing) {
    // An ID short enough for the profile's ORGID (six characters), which the sample makes of it.
    const QString sample = QStringLiteral("RTRIP");
    const ToolResult made =
        runTool({"create", sample, "--force", "--sample", "--customers", "30", "--documents", "200"});
    ASSERT_EQ(made.exitCode, 0);
    EXPECT_EQ(made.err.toStdString(), ""); // no notice of the server's
    const ToolResult exportedTool = runTool({"export", sample, folder("a")});
    ASSERT_EQ(exportedTool.exitCode, 0) << exportedTool.err.toStdString();
    auto exported = filesIn(folder("a"));
    ASSERT_EQ(exported.size(), 7);
    // As a spreadsheet saves it: with a byte-order mark.
    QMap<QString, QByteArray> withMark = exported;
    withMark["AR0024.csv"].prepend("\xEF\xBB\xBF");
    writeFiles(folder("marked"), withMark);

    const QString copy = company();
    const ToolResult imported = runTool({"import", copy, folder("marked")});
    ASSERT_EQ(imported.exitCode, 0) << imported.err.toStdString();
    EXPECT_TRUE(imported.out.contains("AR0036.csv: 200 added, 0 changed, 0 unchanged"))
        << imported.out.toStdString();
    ASSERT_EQ(runTool({"export", copy, folder("b")}).exitCode, 0);
    const auto again = filesIn(folder("b"));
    for (auto it = exported.constBegin(); it != exported.constEnd(); ++it)
        EXPECT_EQ(again.value(it.key()).toStdString(), it.value().toStdString()) << it.key().toStdString();

    const ToolResult second = runTool({"import", copy, folder("a")});
    ASSERT_EQ(second.exitCode, 0) << second.err.toStdString();
    EXPECT_FALSE(second.out.contains(QRegularExpression(QStringLiteral("[1-9]\\d* (added|changed)"))))
        << second.out.toStdString();
    EXPECT_EQ(runTool({"check", copy}).exitCode, 0);
}

TEST_P(ImportTest, CustomerFiguresAreThoseOfTheDocumentsLoaded) {
    const QString id = company();
    const ToolResult imported = runTool({"import", id, Example});
    ASSERT_EQ(imported.exitCode, 0) << imported.err.toStdString();
    EXPECT_EQ(
        runTool({"browse", id, "AR0024", "--fields", "IDCUST,AMTBALDUET,AMTBALDUEH,CNTOPENINV,CNTINVPAID"})
            .out.toStdString(),
        "IDCUST,AMTBALDUET,AMTBALDUEH,CNTOPENINV,CNTINVPAID\r\n"
        "C100,510.250,510.250,2,0\r\n"
        "C200,1200.000,1200.000,2,0\r\n"
        "C300,0.000,0.000,0,1\r\n");
    EXPECT_EQ(runTool({"browse", id, "AR0024", "CNTOPENINV>0", "--fields", "IDCUST"}).out,
              "IDCUST\r\nC100\r\nC200\r\n");
    EXPECT_EQ(runTool({"check", id}).exitCode, 0);
    // The audit trail has the import: the views it loaded and how many lines.
    const auto store = engine::CompanyStore::open(id);
    QSqlQuery audit = store->prepare(QStringLiteral(
        "SELECT \"CODE\", \"ENTRY\" FROM \"TB_AUDIT\" WHERE \"WHAT\" = 'master data imported'"));
    store->run(audit);
    ASSERT_TRUE(audit.next());
    EXPECT_EQ(audit.value(0).toString(), "CS0001,CS0002,GL0001,BK0001,AR0015,AR0024,AR0036");
    EXPECT_GT(audit.value(1).toInt(), 7);
}

// A bad line in any file refuses the whole import, naming file, line and field; every problem of a file
// is listed. The company stays as it was: empty.
TEST_P(ImportTest, ABadLineInAnyFileRefusesTheWholeImport) {
    struct Case {
        const char* file;
        const char*
            added; // lines appended to the example's file, or the whole file when it starts with a header
        std::vector<const char*> expected;
        int exitCode = 2;
    };
    const std::vector<Case> cases = {
        {"CS0001.csv",
         "OTHER,Other Co.,1 Main St.,Halifax,NS,B3J 1S9,Canada,1,12,3,CAD\r\n",
         {"CS0001.csv line 3, field ORGID: the company has a profile already"}},
        {"CS0002.csv", "2028,14,3,1,1,1,,,,,,,,,,,,,,,,,,,,,,,,\r\n", {"CS0002.csv line 5, field PERIODS: "}},
        {"GL0001.csv", "5000,5000,Cost of Goods,Z,1,1\r\n", {"GL0001.csv line 7, field ACCTTYPE: "}},
        {"BK0001.csv",
         "SAVE,Savings,9999,6100,CAD,0\r\n",
         {"BK0001.csv line 3, field IDACCT: Bank Account \"9999\" does not exist."}},
        {"AR0015.csv", "RENT,Rent,1,7777\r\n", {"AR0015.csv line 4, field IDACCTREV: "}},
        {"AR0024.csv",
         "C100,Bluenose again,,,Halifax,NS,,1,CAD\r\n",
         {"AR0024.csv line 5: the key \"C100\" is on line 2 already."}},
        {"AR0024.csv",
         "IDCUST,NAMECUST,AMTBALDUET,COLOUR\r\nC100,Bluenose,5\r\n",
         {"AR0024.csv line 1, field COLOUR: view AR0024 (Customers) has no such field."}},
        {"AR0024.csv",
         "IDCUST,NAMECUST,AMTBALDUET\r\nC100,Bluenose,5\r\n",
         {"AR0024.csv line 2, field AMTBALDUET: the file states 5, but the ledger keeps"}},
        {"AR0036.csv",
         "C999,IN-9,11,1,2026-10-02,2026-11-01,Unknown,1,1,1\r\n"
         "C100,IN-\"9,11,1,2026-10-02,2026-11-01,Stray quote,1,1,1\r\n"
         "C100,IN-10,11,1,2026-02-30,2026-11-01,No such day,1,1,1\r\n",
         {"AR0036.csv line 7, field IDCUST: Customer Number \"C999\" does not exist.",
          "AR0036.csv line 8: the line is not well-formed CSV", "AR0036.csv line 9, field DATEINVC: "}},
        // Refused by the ledger half-way through its write: the lines before and after it stand as they were.
        {"AR0036.csv",
         "C100,IN-9,11,1,2026-10-02,2026-11-01,Beyond its amount,1,1,5\r\n"
         "C100,IN-10,11,1,2026-10-02,2026-11-01,Fine,1,1,1\r\n",
         {"AR0036.csv line 7: Document IN-9 of customer C100 cannot be due 5.000",
          "Nothing was imported: 1 problem."},
         1},
    };
    const QString id = company();
    const auto example = filesIn(Example);
    for (const Case& c : cases) {
        auto files = example;
        const QByteArray added(c.added);
        files[c.file] = added.startsWith("IDCUST") ? added : files[c.file] + added;
        const QString where = folder(QStringLiteral("bad%1").arg(&c - cases.data()));
        writeFiles(where, files);
        const ToolResult result = runTool({"import", id, where});
        EXPECT_EQ(result.exitCode, c.exitCode) << c.file;
        for (const char* expected : c.expected)
            EXPECT_TRUE(result.err.contains(QLatin1String(expected)))
                << c.file << " wants: " << expected << "\n got: " << result.err.toStdString();
        EXPECT_TRUE(result.err.contains("Nothing was imported")) << result.err.toStdString();
    }
    EXPECT_EQ(runTool({"browse", id, "AR0024"}).out.count("\r\n"), 1); // the header line alone
    EXPECT_EQ(runTool({"browse", id, "CS0001"}).out.count("\r\n"), 1);
}

// The nightly import of the books' open documents, while the tills' receipts are not posted yet; and those
// receipts handed on, line by line.
TEST_P(ImportTest, KeepingInStepWithReceiptsNotYetPosted) {
    const QString id = company({"--sample", "--customers", "20", "--documents", "120"});
    runTool({"run", id, Scripts + "receipts.script", "--date", "2025-03-15"});
    writeFiles(folder("below"), {{"AR0036.csv", "IDCUST,IDINVC,AMTDUETC\r\n0001,IN0000002,100\r\n"}});
    const ToolResult below = runTool({"import", id, folder("below")});
    EXPECT_EQ(below.exitCode, 1);
    EXPECT_TRUE(
        below.err.contains("AR0036.csv line 2: Document IN0000002 of customer 0001 cannot be due 100.000: "
                           "receipts not yet posted apply 3349.750 to it (entry 1 of batch 1 applies "
                           "3349.750)."))
        << below.err.toStdString();
    writeFiles(folder("down"), {{"AR0036.csv", "IDCUST,IDINVC,AMTDUETC\r\n0001,IN0000002,3349.75\r\n"}});
    EXPECT_EQ(runTool({"import", id, folder("down")}).exitCode, 0);
    EXPECT_EQ(runTool({"check", id}).exitCode, 0);

    const ToolResult receipts = runTool({"receipts", id, "--batch", "1"});
    ASSERT_EQ(receipts.exitCode, 0) << receipts.err.toStdString();
    QMap<QString, Money> left; // per entry: its amount less unapplied, less each line
    QStringList lines = receipts.out.split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.takeFirst().split(u',').size(), 19);
    for (const QString& line : lines) {
        const QStringList f = line.split(u',');
        ASSERT_EQ(f.size(), 19) << line.toStdString();
        const QString entry = f[0] + u'/' + f[1];
        if (!left.contains(entry))
            left[entry] = *Money::parse(f[11]) - *Money::parse(f[12]);
        left[entry] -= *Money::parse(f[16]);
    }
    EXPECT_EQ(left.size(), 3);
    for (auto it = left.constBegin(); it != left.constEnd(); ++it)
        EXPECT_TRUE(it.value().isZero()) << it.key().toStdString();
}

} // namespace
} // namespace tillbook::test
