#pragma once

// Lines of a receipt entry: the documents it applies (AR0044), their distributions (AR0045) and, through
// MiscLineRules, miscellaneous lines (AR0043). A line is written with its entry, never on its own, and a
// saved line keeps everything but its descriptions.

#include "ledger/engine/ViewRules.h"

#include <QSet>

namespace tillbook::engine {

class EntryLineRules : public ViewRules {
public:
    explicit EntryLineRules(QSet<QString> changeable) : m_changeable(std::move(changeable)) {}

    void checkDirectInsert(ViewCore& view) override;
    void beforeUpdate(ViewCore& view) override;

    static std::unique_ptr<ViewRules> forAppliedDocuments();
    static std::unique_ptr<ViewRules> forAdjustmentDistributions();

private:
    QSet<QString> m_changeable;
};

} // namespace tillbook::engine
