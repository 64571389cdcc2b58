#pragma once

// A till keying receipts into a company of the builder's (support/Company.h): the receipt views opened and
// composed on its own session as the receipt window opens them, posting through the program's own posting
// procedures; and the drafts such a till keys.

#include "fetching/ReceiptViews.h"
#include "posting/Posting.h"
#include "support/Company.h"

namespace tillbook::test {

class Till {
public:
    explicit Till(const Company& company); // signed in as ADMIN on 2025-03-14
    ~Till();

    Session& session() { return *m_views.LedgerSession; }
    View& view(const QString& id);
    Field& field(const QString& viewId, const QString& name) { return view(viewId).fields().item(name); }
    QString text(const QString& viewId, const QString& name) { return field(viewId, name).text(); }

    qint64 newBatch();
    // Posts the draft by its kind.
    PostingOutcome post(const ReceiptDraft& draft);
    // Builds the customer's list as the apply grid does and reads document `key`.
    bool openDocument(const QString& customer, int key);

private:
    ReceiptViews m_views;
};

// A test on each store with the builder's company of known records.
class KnownCompanyTest : public StoreTest {
protected:
    void SetUp() override { start(CompanyBuilder(GetParam()).known()); }
};

// Drafts keyed on 2025-03-12 in period 03 of 2025 by " Ann Payer " with receipt number " CHQ " and
// description "  Receipt ": an ordinary receipt applied to the customer's documents `keys` (CNTKEYs of its
// list), a prepayment on document `applyTo` picked on grid line `line`, a misc. receipt with its lines.
ReceiptDraft receipt(qint64 batch, int entry, const QString& customer, const char* amount,
                     const std::vector<int>& keys = {});
ReceiptDraft prepayment(qint64 batch, const QString& customer, const char* amount, const QString& applyTo,
                        int line = 1, int period = 3);
ReceiptDraft misc(qint64 batch, const char* amount, const std::vector<DistributionLine>& lines);

} // namespace tillbook::test
