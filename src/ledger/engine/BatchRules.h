#pragma once

// Receipt batches (AR0041): a new batch takes the next batch number when its number is 0, starts Open
// (or Ready To Post) with the payment code "CA", today's date and no entries. Entry inserts keep its
// count, total and last entry number, and only posting marks it Posted: none of these is put by hand.

#include "ledger/engine/ViewRules.h"

namespace tillbook::engine {

class BatchRules final : public ViewRules {
public:
    void initRecord(ViewCore& view) override;
    void checkPut(ViewCore& view, int field, const QVariant& value) override;
    void beforeInsert(ViewCore& view) override;
    void afterInsert(ViewCore& view) override;
    void beforeUpdate(ViewCore& view) override;
};

// Batch statuses as stored in BATCHSTAT.
enum BatchStatus { BatchOpen = 1, BatchPosted = 3, BatchDeleted = 4, BatchPosting = 5, BatchReady = 7 };

// "Open", "Posted", ... as a clerk reads a batch status.
QString batchStatusName(int status);

// The counter that numbers entries of one batch; shared by entry inserts and batch posting.
QString entryCounter(const QString& paymentCode, qint64 batch);

} // namespace tillbook::engine
