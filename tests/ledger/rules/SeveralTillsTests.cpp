// Several tills at once: separate processes insert entries into one batch, and new batches, at the
// same moment. Every number is taken once and the batch's count and total stay exact.

#include "RulesTestSupport.h"
#include "ledger/engine/RecordAccess.h"

#include <QProcess>
#include <QTemporaryFile>
#include <QTextStream>

namespace tillbook::test {
namespace {

using SeveralTillsTest = RulesTest;
TILLBOOK_ON_EACH_STORE(SeveralTillsTest);

constexpr int Tills = 4;
constexpr int EntriesEach = 200;
constexpr int BatchesEach = 5;

// Till t's script: new batches, then entries into batch 1 of 1.00 + t/100 + i/10000... in cents.
Money writeScript(QTextStream& out, int till) {
    out << "open nb AR0041\nopen batch AR0041\nopen header AR0042\ncompose batch header\ncompose header "
           "batch\n"
           "stop-on-error\n";
    for (int b = 0; b < BatchesEach; ++b)
        out << "put-unverified nb CODEPYMTYP CA CNTBTCH 0\ninsert nb\n";
    out << "put-unverified batch CODEPYMTYP CA CNTBTCH 1\nread batch\n";
    Money total;
    for (int i = 1; i <= EntriesEach; ++i) {
        const Money amount = Money::fromCents(100 * till + i);
        total += amount;
        out << "init header\nput header IDCUST C2 AMTRMIT " << amount.toPlainString(2) << "\ninsert header\n";
    }
    return total;
}

TEST_P(SeveralTillsTest, EntriesAndBatchesFromFourProcessesGetEveryNumberOnce) {
    {
        auto session = signIn();
        Till till(*session);
        ASSERT_EQ(till.newBatch(), 1);
    }
    Money expectedTotal;
    std::vector<std::unique_ptr<QTemporaryFile>> scripts;
    std::vector<std::unique_ptr<QProcess>> processes;
    for (int t = 1; t <= Tills; ++t) {
        auto script = std::make_unique<QTemporaryFile>();
        ASSERT_TRUE(script->open());
        QTextStream out(script.get());
        expectedTotal += writeScript(out, t);
        out.flush();
        script->close();
        auto process = std::make_unique<QProcess>();
        process->start(QStringLiteral(TILLBOOK_LEDGER_TOOL),
                       {"run", m_id, script->fileName(), "--date", "2025-03-14"});
        scripts.push_back(std::move(script));
        processes.push_back(std::move(process));
    }
    for (auto& process : processes) {
        ASSERT_TRUE(process->waitForFinished(300000));
        EXPECT_EQ(process->exitCode(), 0) << process->readAllStandardOutput().toStdString();
    }

    const auto entries = engine::readRecords(store(), "AR0042", {{"CODEPYMTYP", "CA"}, {"CNTBTCH", 1}},
                                             {"CNTITEM", "AMTRMIT"}, {"CNTITEM"});
    ASSERT_EQ(int(entries.size()), Tills * EntriesEach);
    Money sum;
    for (size_t i = 0; i < entries.size(); ++i) {
        EXPECT_EQ(entries[i].value("CNTITEM").toLongLong(), qint64(i + 1));
        sum += money(entries[i].value("AMTRMIT"));
    }
    EXPECT_EQ(sum, expectedTotal);
    const auto batch =
        record("AR0041", {{"CODEPYMTYP", "CA"}, {"CNTBTCH", 1}}, {"CNTENTER", "AMTENTER", "CNTLASTITM"});
    EXPECT_EQ(batch->value("CNTENTER").toInt(), Tills * EntriesEach);
    EXPECT_EQ(batch->value("CNTLASTITM").toInt(), Tills * EntriesEach);
    EXPECT_EQ(money(batch->value("AMTENTER")), expectedTotal);

    const auto batches = engine::readRecords(store(), "AR0041", {}, {"CNTBTCH"}, {"CNTBTCH"});
    ASSERT_EQ(int(batches.size()), 1 + Tills * BatchesEach);
    for (size_t i = 0; i < batches.size(); ++i)
        EXPECT_EQ(batches[i].value("CNTBTCH").toLongLong(), qint64(i + 1));
}

} // namespace
} // namespace tillbook::test
