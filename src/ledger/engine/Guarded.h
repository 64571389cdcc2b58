#pragma once

// Runs one operation of a session or view so that every failure reaches the caller the same way: as a
// LedgerError that is also on the session's error list.

#include "ledger/ErrorList.h"
#include "ledger/engine/StoreError.h"
#include "ledger/filter/Filter.h"

namespace tillbook::engine {

template <typename Operation> auto guarded(ErrorList& errors, Operation operation) -> decltype(operation()) {
    try {
        return operation();
    } catch (const LedgerError&) {
        throw; // already on the list
    } catch (const StoreError& e) {
        errors.fail(e.message(), ErrorPriority::Severe);
    } catch (const filter::FilterError& e) {
        errors.fail(e.message());
    } catch (const std::exception& e) {
        errors.fail(QString::fromStdString(e.what()), ErrorPriority::Severe);
    }
}

} // namespace tillbook::engine
