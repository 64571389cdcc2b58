#include "ledger/engine/ReceiptRules.h"

#include "ledger/engine/BatchRules.h"
#include "ledger/engine/DocumentRules.h"
#include "ledger/engine/EntryLineRules.h"
#include "ledger/engine/EntryRules.h"
#include "ledger/engine/MiscLineRules.h"
#include "ledger/engine/OpenDocumentList.h"
#include "ledger/engine/PostedTotalsRules.h"

namespace tillbook::engine {

void registerReceiptRules(void (*add)(const QString& viewId, ViewRulesFactory factory)) {
    add(QStringLiteral("AR0041"), [] { return std::make_unique<BatchRules>(); });
    add(QStringLiteral("AR0042"), [] { return std::make_unique<EntryRules>(); });
    add(QStringLiteral("AR0043"), [] { return std::make_unique<MiscLineRules>(); });
    add(QStringLiteral("AR0044"), [] { return EntryLineRules::forAppliedDocuments(); });
    add(QStringLiteral("AR0045"), [] { return EntryLineRules::forAdjustmentDistributions(); });
    add(QStringLiteral("AR0061"), [] { return std::make_unique<OpenDocumentList>(); });
    add(QStringLiteral("AR0036"), [] { return std::make_unique<DocumentRules>(); });
    add(QStringLiteral("AR0024"), [] { return PostedTotalsRules::forCustomers(); });
}

} // namespace tillbook::engine
