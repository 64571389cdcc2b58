#pragma once

// A small company of known records on each store, and a till that posts into it as the receipt window does.

#include "fetching/ReceiptViews.h"
#include "ledger/Money.h"
#include "ledger/engine/CompanyStore.h"
#include "ledger/engine/EngineTestSupport.h"
#include "posting/Posting.h"

#include <optional>

namespace tillbook::test {

// Customer C1: IN1 100.00 (discount 2.00 until 2025-03-20), IN2 50.00, CN1 -30.00, IN0 paid.
// Customer C2: IN3 80.00. Year 2025 active, 2023 inactive; distribution code RETAIL -> 4000;
// accounts 4000 and 4100100 (4100-100); bank TDOPER. The session date is 2025-03-14.
CompanyBuilder rulesCompany(StoreKind kind);

class RulesTest : public EngineTest {
protected:
    void SetUp() override { start(rulesCompany(GetParam())); }
    // The same company anew, in a store of its own.
    void startAfresh() {
        m_open.reset();
        start(rulesCompany(GetParam()));
    }

    engine::CompanyStore& store();
    std::optional<QVariantHash> record(const QString& viewId, const QVariantHash& key,
                                       const QStringList& fields);
    int count(const QString& viewId, const QVariantHash& equal);

private:
    std::unique_ptr<engine::CompanyStore> m_open; // the company's store, once a test asks for it
};

// A till: the receipt views opened and composed on its own session as the receipt window opens them,
// posting through the program's own posting procedures.
class Till {
public:
    explicit Till(std::unique_ptr<Session> session);
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

// Drafts keyed on 2025-03-12 in period 03 of 2025, by " Ann Payer " with receipt number " CHQ " and
// description "  Receipt ": an ordinary receipt applied to the customer's documents `keys` (CNTKEYs of its
// list), a prepayment on document `applyTo`, a misc. receipt.
ReceiptDraft receiptDraft(qint64 batch, int entry, const QString& customer, const char* amount,
                          const std::vector<int>& keys = {});
ReceiptDraft prepaymentDraft(qint64 batch, const QString& customer, const char* amount,
                             const QString& applyTo);
ReceiptDraft miscDraft(qint64 batch, const char* amount, const std::vector<DistributionLine>& lines);
Money amountOf(const char* text); // "1,250.00"

// The problems a posting met, by their texts.
QStringList messages(const PostingOutcome& outcome);

Money money(const QVariant& v);

} // namespace tillbook::test
