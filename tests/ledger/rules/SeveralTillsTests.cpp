// Several tills at once, each a process of its own: eight tills key receipts into one batch, applied to
// the documents of customers that two postings running at the same time are paying, and make new
// batches meanwhile. Afterwards every number is taken once and the ledger holds together.

#include "Till.h"
#include "ledger/engine/RecordAccess.h"

#include <QProcess>
#include <QTemporaryFile>
#include <QTextStream>

namespace tillbook::test {
namespace {

using SeveralTillsTest = KnownCompanyTest;
TILLBOOK_EACH_STORE(SeveralTillsTest);

constexpr int Tills = 8;
constexpr int ReceiptsEach = 100;
constexpr int BatchesEach = 2;
constexpr int PaymentsPerPostedBatch = 150;
const QStringList Customers{"K1", "K2", "K3", "K4"};

// Till t's script: new batches, then receipts into batch 1; most are applied to a document of K1..K4,
// every tenth stays unapplied with customer C2.
Money writeScript(QTextStream& out, int till) {
    out << "open nb AR0041\nopen batch AR0041\nopen header AR0042\nopen detail AR0044\nopen misc AR0043\n"
           "open post AR0061\ncompose batch header\ncompose header batch misc detail\ncompose detail header\n"
           "compose misc header\ncompose post batch header misc detail\nstop-on-error\n";
    for (int b = 0; b < BatchesEach; ++b)
        out << "put-unverified nb CODEPYMTYP CA CNTBTCH 0\ninsert nb\n";
    out << "put-unverified batch CODEPYMTYP CA CNTBTCH 1\nread batch\n";
    Money total;
    for (int i = 1; i <= ReceiptsEach; ++i) {
        const Money amount = Money::fromCents(100 * till + i);
        const QString text = amount.toPlainString(2);
        total += amount;
        if (i % 10 == 0) {
            out << "init header\nput header IDCUST C2 AMTRMIT " << text << "\ninsert header\n";
            continue;
        }
        const QString customer = Customers[(till + i) % Customers.size()];
        out << "init header\nput header IDCUST " << customer << " AMTRMIT " << text << '\n'
            << "put-unverified post PAYMTYPE CA CNTBTCH 1 CNTITEM 0 IDCUST " << customer << " AMTRMIT "
            << text << "\nprocess post\nput-unverified post CNTKEY " << 1 + i % 3
            << "\nread post\nput post APPLY Y\nupdate post\ninsert header\n";
    }
    return total;
}

// Every till signs in as the clerk, on PostgreSQL with the clerk's own login and its grants only.
std::unique_ptr<QProcess> startTool(const QStringList& arguments) {
    auto process = std::make_unique<QProcess>();
    process->setProcessChannelMode(QProcess::MergedChannels);
    process->start(QStringLiteral(TILLBOOK_LEDGER_TOOL),
                   arguments + QStringList{"--user", "CLERK", "--password", "Till-Pw1"});
    return process;
}

TEST_P(SeveralTillsTest, EightTillsAndTwoPostingsAtOnceKeepTheLedgerWhole) {
    CompanyBuilder builder = CompanyBuilder(GetParam()).known().user("CLERK", "Till-Pw1");
    for (const QString& customer : Customers)
        builder.documents(customer, 3, Money::fromWhole(100000));
    for (qint64 batch : {2, 3}) {
        std::vector<Payment> payments;
        for (int n = 0; n < PaymentsPerPostedBatch; ++n) {
            const QString& customer = Customers[n % Customers.size()];
            payments.push_back({customer, documentOf(customer, 1 + n % 3), Money::fromWhole(10)});
        }
        builder.batch(batch, payments);
    }
    start(builder);
    ASSERT_EQ(Till(*m_company).newBatch(), 1);

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
        processes.push_back(startTool({"run", m_id, script->fileName(), "--date", "2025-03-14"}));
        scripts.push_back(std::move(script));
    }
    for (const char* batch : {"2", "3"})
        processes.push_back(startTool({"post-batch", m_id, batch, "--entries-per-step", "25"}));
    for (auto& process : processes) {
        ASSERT_TRUE(process->waitForFinished(300000));
        EXPECT_EQ(process->exitCode(), 0) << process->readAll().right(2000).toStdString();
    }

    const auto check = startTool({"check", m_id});
    ASSERT_TRUE(check->waitForFinished(60000));
    EXPECT_EQ(check->exitCode(), 0) << check->readAll().left(4000).toStdString();

    const QVariantHash first{{"CODEPYMTYP", "CA"}, {"CNTBTCH", 1}};
    EXPECT_EQ(m_company->value("AR0041", first, "CNTENTER"), QString::number(Tills * ReceiptsEach));
    EXPECT_EQ(m_company->value("AR0041", first, "AMTENTER"), expectedTotal.toLedgerString());
    const auto batches =
        engine::readRecords(*m_company->store(), "AR0041", {}, {"CNTBTCH", "BATCHSTAT"}, {"CNTBTCH"});
    ASSERT_EQ(int(batches.size()), 3 + Tills * BatchesEach);
    for (size_t i = 0; i < batches.size(); ++i) {
        EXPECT_EQ(batches[i].value("CNTBTCH").toLongLong(), qint64(i + 1));
        EXPECT_EQ(batches[i].value("BATCHSTAT").toInt(), i == 1 || i == 2 ? 3 : 1) << i + 1;
    }
    // Each K customer's documents paid 10.00 per posted payment, nothing lost between the two postings.
    const int paymentsToK1 = (PaymentsPerPostedBatch + 3) / 4; // every fourth, from the first
    EXPECT_EQ(m_company->value("AR0024", {{"IDCUST", "K1"}}, "AMTBALDUET"),
              Money::fromWhole(300000 - 2 * 10 * paymentsToK1).toLedgerString());
}

} // namespace
} // namespace tillbook::test
