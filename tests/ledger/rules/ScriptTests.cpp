// The run scripts under scripts/ give their expected output, on the sample company, through the tool.

#include "support/Company.h"

#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>

namespace tillbook::test {
namespace {

const QString Scripts = QStringLiteral(TILLBOOK_SOURCE_DIR "/tests/ledger/rules/scripts/");

QString tool(const QStringList& arguments, int expectedExit) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TILLBOOK_TODAY"), QStringLiteral("2025-03-15"));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(TILLBOOK_LEDGER_TOOL), arguments);
    EXPECT_TRUE(process.waitForFinished(120000));
    EXPECT_EQ(process.exitCode(), expectedExit) << process.readAllStandardError().toStdString();
    return QString::fromUtf8(process.readAllStandardOutput());
}

QString expected(const QString& name) {
    QFile file(Scripts + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly | QIODevice::Text)) << name.toStdString();
    return QString::fromUtf8(file.readAll());
}

TEST(RunScripts, ReceiptPrepaymentAndMiscReceiptThenPosting) {
    const Company store; // SQLite in a temporary folder
    tool({"create", "DEMO", "--sample", "--customers", "20", "--documents", "120"}, 0);
    EXPECT_EQ(tool({"run", "DEMO", Scripts + "receipts.script", "--date", "2025-03-15"}, 1).toStdString(),
              expected("receipts.expected").toStdString());
    QString posted = tool({"post-batch", "DEMO", "1", "--date", "2025-03-15"}, 0);
    tool({"post-batch", "DEMO", "1"}, 1);
    posted += tool({"run", "DEMO", Scripts + "post-batch.script", "--date", "2025-03-15"}, 1);
    EXPECT_EQ(posted.toStdString(), expected("post-batch.expected").toStdString());
}

// Generic operations against saved entries, amounts at the edge of their fields, customers and documents
// changed by hand, and batches and entries keyed through the receipt views: the same refusals and the same
// ledger afterwards on both stores, and a ledger that holds after each.
class StoreScripts : public ::testing::TestWithParam<StoreKind> {};
TILLBOOK_EACH_STORE(StoreScripts);

TEST_P(StoreScripts, SavedEntriesAndAmountsStayWithinTheRules) {
    const Company store{CompanyBuilder(GetParam())};
    TILLBOOK_SKIP_UNLESS_READY(store);
    for (const QString name : {"saved-entries", "amounts", "documents", "new-receipts", "entries"}) {
        const QString id = TestStore::uniqueId(QStringLiteral("S"));
        tool({"create", id, "--sample", "--customers", "20", "--documents", "120"}, 0);
        EXPECT_EQ(tool({"run", id, Scripts + name + ".script", "--date", "2025-03-15"}, 1).toStdString(),
                  expected(name + ".expected").toStdString());
        tool({"check", id}, 0);
    }
}

} // namespace
} // namespace tillbook::test
