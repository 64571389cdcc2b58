#pragma once

// Documents (AR0036) and customers (AR0024) keep figures that only posting changes: what a document
// still owes and how often it was paid, and a customer's balance and document counts, which equal the
// sum of its documents. An update that would change one of them by hand is refused; every other field
// stays the general views' own.

#include "ledger/engine/ViewRules.h"

#include <QStringList>

namespace tillbook::engine {

class PostedTotalsRules final : public ViewRules {
public:
    explicit PostedTotalsRules(QStringList kept) : m_kept(std::move(kept)) {}

    void beforeUpdate(ViewCore& view) override;

    static std::unique_ptr<ViewRules> forDocuments();
    static std::unique_ptr<ViewRules> forCustomers();

private:
    QStringList m_kept;
};

} // namespace tillbook::engine
