#pragma once

// Runs one operation of a session or view so that every failure reaches the caller the same way: as a
// LedgerError that is also on the session's error list. An operation without a result returns the
// warnings and messages its rules raised; they are on the list too.

#include "ledger/ErrorList.h"

#include <type_traits>

namespace tillbook::engine {

template <typename Operation> auto guarded(ErrorList& errors, Operation operation) {
    using Result = decltype(operation());
    const int before = errors.count();
    try {
        if constexpr (std::is_void_v<Result>) {
            operation();
            return errors.warningsSince(before);
        } else {
            return operation();
        }
    } catch (LedgerError& e) {
        if (!e.listed()) { // a failure of the store
            errors.append(e.description(), e.priority());
            e.markListed();
        }
        throw;
    } catch (const InputError& e) {
        errors.fail(e.message());
    } catch (const ProgrammingError&) {
        throw;
    } catch (const std::exception& e) {
        errors.fail(QString::fromStdString(e.what()), ErrorPriority::Severe);
    }
}

} // namespace tillbook::engine
