#include "ledger/engine/EntryLineRules.h"

#include "ledger/engine/SavedEntries.h"
#include "ledger/engine/ViewCore.h"

namespace tillbook::engine {

void EntryLineRules::checkDirectInsert(ViewCore& view) {
    refuseLineOutsideItsEntry(view);
}

void EntryLineRules::beforeUpdate(ViewCore& view) {
    const QString what = entryName(view);
    requireOpenBatchForChange(view, what);
    refuseFixedChanges(view, m_changeable, what);
}

std::unique_ptr<ViewRules> EntryLineRules::forAppliedDocuments() {
    return std::make_unique<EntryLineRules>(
        QSet<QString>{QStringLiteral("TEXTADJ"), QStringLiteral("GLREF"), QStringLiteral("DESCINVC")});
}

std::unique_ptr<ViewRules> EntryLineRules::forAdjustmentDistributions() {
    return std::make_unique<EntryLineRules>(
        QSet<QString>{QStringLiteral("TEXTDESC"), QStringLiteral("TEXTREF")});
}

} // namespace tillbook::engine
