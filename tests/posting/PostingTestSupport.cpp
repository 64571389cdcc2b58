#include "PostingTestSupport.h"

#include "entry/ReceiptDesk.h"
#include "fetching/Batches.h"
#include "fetching/OpenDocuments.h"
#include "fetching/ReceiptRecall.h"
#include "ledger/Formats.h"
#include "support/LedgerRecords.h"

namespace tillbook::test {

namespace {

const QDate Today(2026, 3, 14);

void restoreEnv(const char* name, const QByteArray& saved) {
    if (saved.isNull())
        qunsetenv(name);
    else
        qputenv(name, saved);
}

// A customer whose open-document list starts with `count` invoices, and those invoices.
QString customerWithInvoices(int count, std::vector<OpenInvoice>& invoices) {
    const auto customers = Desk().LedgerSession->openView(QStringLiteral("AR0024"), QStringLiteral("AR"));
    customers->browse(QStringLiteral("CNTOPENINV>0"), true);
    while (customers->fetch()) {
        const QString customer = customers->fields().item(QStringLiteral("IDCUST")).value().toString();
        invoices.clear();
        bool invoicesFirst = true;
        Read_OpenDocuments(Desk(), customer, {"CNTKEY", "IDINVC", "AMTDUE", "TRXTYPE"},
                           [&](const QStringList& row) {
                               if (int(invoices.size()) >= count)
                                   return;
                               const Money due = Strip_Commas(row[2]);
                               invoicesFirst = invoicesFirst && row[3] == u"1" && due > Money();
                               invoices.push_back({row[0].toInt(), row[1], due});
                           });
        if (invoicesFirst && int(invoices.size()) == count)
            return customer;
    }
    ADD_FAILURE() << "no customer of the sample has " << count << " invoices first in its list";
    return {};
}

} // namespace

void PostingTest::SetUp() {
    m_savedShortDate = qgetenv("TILLBOOK_SHORT_DATE");
    m_savedToday = qgetenv("TILLBOOK_TODAY");
    qputenv("TILLBOOK_SHORT_DATE", "MM/dd/yyyy");
    qputenv("TILLBOOK_TODAY", "2026-03-14");
    m_company =
        std::make_unique<SampleCompany>(TestStore::uniqueId(QStringLiteral("POST")), 30, 200, GetParam());
    if (!m_company->unavailableReason().isEmpty())
        GTEST_SKIP() << "PostgreSQL is not available: " << m_company->unavailableReason().toStdString();
    Desk().LedgerSession = std::make_unique<Session>();
    Desk().LedgerSession->open(QStringLiteral("ADMIN"), QStringLiteral("ADMIN"), m_company->id(), Today);
    Open_ReceiptViews(Desk());
    m_batch = QString::number(Create_Batch(Desk(), Today));
}

void PostingTest::TearDown() {
    Close_Ledger(Desk());
    m_company.reset();
    restoreEnv("TILLBOOK_SHORT_DATE", m_savedShortDate);
    restoreEnv("TILLBOOK_TODAY", m_savedToday);
}

PostingInput PostingTest::keyed(int invoices) {
    PostingInput input;
    input.batch = m_batch;
    input.entry = QStringLiteral("1");
    input.txtEntDesc = QStringLiteral("  Counter receipt  ");
    input.txtDate = QStringLiteral("03/14/2026");
    input.txtReceiptNum = QStringLiteral(" CHQ-1001 ");
    input.cboPeriod = QStringLiteral("03 ");
    input.cboYear = QStringLiteral(" 2026");
    input.txtPayer = QStringLiteral(" Ann Payer ");
    if (invoices > 0)
        input.customer = customerWithInvoices(invoices, m_invoices);
    return input;
}

std::vector<QStringList> PostingTest::records(const QString& viewId, const QString& filter,
                                              const QStringList& fields) {
    return ledgerRecords(viewId, filter, fields);
}

std::vector<QStringList> PostingTest::entry(const QString& viewId, const QStringList& fields) {
    return records(viewId, EntryFilter(m_batch, QStringLiteral("1")), fields);
}

QStringList PostingTest::batchFigures() {
    return records(QStringLiteral("AR0041"), QStringLiteral("CNTBTCH=") + m_batch, {"CNTENTER", "AMTENTER"})
        .at(0);
}

int PostingTest::inBatch(const QString& viewId) {
    return int(records(viewId, QStringLiteral("CNTBTCH=") + m_batch, {}).size());
}

QStringList PostingTest::prompts() const {
    QStringList shown;
    for (const PostingProblem& problem : m_outcome.problems)
        shown << problem.error.description;
    return shown;
}

} // namespace tillbook::test
