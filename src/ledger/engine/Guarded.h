#pragma once

// Runs one operation of a session or view so that every failure reaches the caller the same way: as a
// LedgerError that is also on the session's error list. An operation whose rules warned is done, and
// then throws the warning, so that the caller sees it as its status and may go on.

#include "ledger/ErrorList.h"
#include "ledger/Money.h"
#include "ledger/engine/FieldRangeError.h"
#include "ledger/engine/StoreError.h"
#include "ledger/filter/Filter.h"

#include <type_traits>

namespace tillbook::engine {

template <typename Operation> auto guarded(ErrorList& errors, Operation operation) -> decltype(operation()) {
    const int before = errors.count();
    try {
        if constexpr (std::is_void_v<decltype(operation())>) {
            operation();
            errors.reportWarnings(before);
        } else {
            auto result = operation();
            errors.reportWarnings(before);
            return result;
        }
    } catch (const LedgerError&) {
        throw; // already on the list
    } catch (const FieldRangeError& e) {
        errors.fail(e.message());
    } catch (const MoneyOverflow&) {
        errors.fail(
            QStringLiteral("An amount is too large for the ledger to work with; nothing was written."));
    } catch (const StoreError& e) {
        errors.fail(e.message(), ErrorPriority::Severe);
    } catch (const filter::FilterError& e) {
        errors.fail(e.message());
    } catch (const std::exception& e) {
        errors.fail(QString::fromStdString(e.what()), ErrorPriority::Severe);
    }
}

} // namespace tillbook::engine
