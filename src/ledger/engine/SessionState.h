#pragma once

// What a session's views share: the company's store, the error list and the session's date.

#include "ledger/ErrorList.h"
#include "ledger/engine/CompanyStore.h"

#include <QDate>
#include <memory>

namespace tillbook::engine {

struct SessionState {
    std::unique_ptr<CompanyStore> store;
    ErrorList errors;
    QString user;
    QString companyId;
    QDate sessionDate;
};

} // namespace tillbook::engine
