#pragma once

// Customers (AR0024) keep figures that follow from their documents: the balance and the document
// counts, which posting and the documents' own rules (DocumentRules) move. A new customer starts with
// none, and an update that would change one of them by hand is refused; every other field stays the
// general views' own.

#include "ledger/engine/ViewRules.h"

#include <QStringList>

namespace tillbook::engine {

class PostedTotalsRules final : public ViewRules {
public:
    explicit PostedTotalsRules(QStringList kept) : m_kept(std::move(kept)) {}

    void beforeInsert(ViewCore& view) override;
    void beforeUpdate(ViewCore& view) override;

    static std::unique_ptr<ViewRules> forCustomers();

private:
    QStringList m_kept;
};

// The customer figures the ledger keeps (AR0024 field names).
QStringList customerFigures();

} // namespace tillbook::engine
