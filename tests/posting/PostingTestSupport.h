#pragma once

// A till ready to post: the sample company on one store, the ledger session and the kept receipt views
// opened as the receipt window opens them, a new batch, and the outcome of the last posting.

#include "ledger/engine/EngineTestSupport.h" // storeParamName, TILLBOOK_ON_EACH_STORE
#include "posting/Posting.h"
#include "support/SampleCompany.h"

#include <QStringList>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace tillbook::test {

struct OpenInvoice {
    int key = 0; // CNTKEY in the customer's open-document list
    QString number;
    Money due;
};

class PostingTest : public ::testing::TestWithParam<StoreKind> {
protected:
    void SetUp() override;
    void TearDown() override;

    // The header fields a clerk keys, dated today in the current fiscal period; with `invoices`, for a
    // customer whose open-document list starts with that many invoices (kept in m_invoices).
    PostingInput keyed(int invoices = 0);

    // What the ledger holds, read through views of their own: the fields of entry 1 of the batch, of its
    // lines in a detail view, the batch's entry count and total, and how many records of a view the batch
    // has.
    std::vector<QStringList> entry(const QString& viewId, const QStringList& fields);
    QStringList batchFigures();
    int inBatch(const QString& viewId);

    QStringList prompts() const; // the problems the last posting met, in order

    std::unique_ptr<SampleCompany> m_company;
    PostingOutcome m_outcome; // of the last posting
    QString m_batch;
    std::vector<OpenInvoice> m_invoices;
    QByteArray m_savedShortDate, m_savedToday;

private:
    std::vector<QStringList> records(const QString& viewId, const QString& filter, const QStringList& fields);
};

} // namespace tillbook::test
