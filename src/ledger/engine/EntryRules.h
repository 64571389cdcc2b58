#pragma once

// Receipt entries (AR0042). A new entry belongs to the batch its view is composed with and starts as an
// ordinary receipt dated the session's date, in that date's fiscal period. Its insert, in one
// transaction: adds it to the batch's count and total, takes the batch's next entry number, writes the
// details of its kind (documents applied, the prepayment, or the staged miscellaneous lines, which must
// add up to the receipt amount) and keeps the customer's unapplied amount of the receipt. A saved entry
// keeps its amounts, kind, customer and place: only its descriptive fields change, in an open batch.

#include "ledger/engine/ViewRules.h"

#include <QVariantHash>
#include <vector>

namespace tillbook::engine {

// Receipt types as stored in RMITTYPE.
enum ReceiptType { OrdinaryReceipt = 1, Prepayment = 2, MiscellaneousReceipt = 5 };

class EntryRules final : public ViewRules {
public:
    void initRecord(ViewCore& view) override;
    void checkPut(ViewCore& view, int field, const QVariant& value) override;
    void beforeInsert(ViewCore& view) override;
    void afterInsert(ViewCore& view) override;
    void beforeUpdate(ViewCore& view) override;

private:
    void refuseStrayLines(ViewCore& view);
    void joinBatch(ViewCore& view);
    void checkCustomer(ViewCore& view);
    void applyDocuments(ViewCore& view);
    void addPrepayment(ViewCore& view);

    std::vector<QVariantHash> m_lines; // AR0044 records to write with the entry
};

} // namespace tillbook::engine
