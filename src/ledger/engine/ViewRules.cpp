#include "ledger/engine/ViewRules.h"

#include "ledger/LedgerError.h"
#include "ledger/engine/ReceiptRules.h"
#include "ledger/engine/ReferenceChecks.h"
#include "ledger/engine/ViewCore.h"

#include <QHash>
#include <QMutex>
#include <mutex>

namespace tillbook::engine {

namespace {

struct Registry {
    QMutex mutex;
    QHash<QString, ViewRulesFactory> factories;
};

Registry& registry() {
    static Registry r;
    return r;
}

void addFactory(const QString& viewId, ViewRulesFactory factory) {
    QMutexLocker lock(&registry().mutex);
    registry().factories.insert(viewId.toUpper(), std::move(factory));
}

// The ledger's own rules, in place before any view opens or other rules are registered (which then
// replace them).
void registerBuiltInRules() {
    static std::once_flag once;
    std::call_once(once, [] { registerReceiptRules(addFactory); });
}

} // namespace

void ViewRules::readAllKept(ViewCore& view, const std::vector<int>&, const KeptRowSink&) {
    throw ProgrammingError(QStringLiteral("View %1 keeps no records in memory to read all at once; browse "
                                          "and fetch its records instead.")
                               .arg(view.def().id));
}

void ViewRules::checkPut(ViewCore& view, int field, const QVariant& value) {
    checkReference(view, field, value);
}

bool ViewRules::stagesDetails(const ViewCore& view) const {
    return view.def().isHeader();
}

void registerViewRules(const QString& viewId, ViewRulesFactory factory) {
    registerBuiltInRules();
    addFactory(viewId, std::move(factory));
}

std::unique_ptr<ViewRules> makeViewRules(const QString& viewId) {
    registerBuiltInRules();
    QMutexLocker lock(&registry().mutex);
    const auto it = registry().factories.constFind(viewId.toUpper());
    if (it != registry().factories.constEnd())
        return it.value()();
    return std::make_unique<ViewRules>();
}

} // namespace tillbook::engine
