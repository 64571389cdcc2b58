#pragma once

// Documents (AR0036) inserted or changed through the view, as an import or a script does: what is due on
// a document decides its other figures (the amount due in functional currency, the paid switch) and its
// customer's (balance, open and paid counts), which follow every insert and update in the same
// transaction. A document may not be brought below what unposted entries apply to it, nor due beyond its
// amount; the documents posting makes (unapplied cash, prepayments) and its payment count are posting's.

#include "ledger/Money.h"
#include "ledger/engine/ViewRules.h"

namespace tillbook::engine {

class DocumentRules final : public ViewRules {
public:
    void beforeInsert(ViewCore& view) override;
    void afterInsert(ViewCore& view) override;
    void beforeUpdate(ViewCore& view) override;
    void afterUpdate(ViewCore& view) override;

private:
    Money m_dueBefore; // the amount due as stored before an update
};

} // namespace tillbook::engine
