#pragma once

// A till ready to post: the sample company on one store, the ledger session and the kept receipt views
// opened as the receipt window opens them, a new batch, PostOK set as Save sets it, and message boxes
// answered and remembered.

#include "ledger/engine/EngineTestSupport.h" // storeParamName, TILLBOOK_ON_EACH_STORE
#include "posting/Posting.h"
#include "support/AnswerMessageBoxes.h"
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

    // The header fields a clerk keys, dated today in the current fiscal period.
    PostingInput keyed() const;
    // A customer whose open-document list starts with at least `count` invoices, and those invoices.
    QString customerWithInvoices(int count, std::vector<OpenInvoice>& invoices);

    // What the ledger holds, read through views of their own: the named fields of each matching record.
    std::vector<QStringList> records(const QString& viewId, const QString& filter, const QStringList& fields);
    // The batch's entries, lines of each kind, entry count and total as stored.
    int entries();
    int lines(const QString& viewId);
    QStringList batchFigures(); // CNTENTER, AMTENTER

    QStringList prompts() const; // the message boxes shown, in order

    std::unique_ptr<SampleCompany> m_company;
    std::unique_ptr<AnswerMessageBoxes> m_boxes;
    QString m_batch;
    QByteArray m_savedShortDate, m_savedToday;
};

} // namespace tillbook::test
