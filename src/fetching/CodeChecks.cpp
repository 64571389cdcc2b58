#include "fetching/CodeChecks.h"

#include "ledger/LedgerError.h"
#include "ledger/View.h"

namespace tillbook {

namespace {

// Walks the whole view from its first record, comparing the trimmed field with the wanted text; the first
// equal record's `answer` field, trimmed, or nothing.
std::optional<QString> firstRecordWith(Session& session, const FieldName& field, const QString& wanted,
                                       const FieldName& answer) {
    try {
        const std::unique_ptr<View> view = session.openView(field.view);
        Field& value = view->fields().item(field);
        while (view->fetch()) {
            if (value.value().toString().trimmed() == wanted)
                return view->fields().item(answer).value().toString().trimmed();
        }
    } catch (const LedgerError&) {
        // The failure is answered here as "not found"; left on the session's list it would reappear in a
        // later posting's error trap.
        session.errors().clear();
    }
    return std::nullopt;
}

bool anyRecordHas(Session& session, const FieldName& field, const QString& wanted) {
    return firstRecordWith(session, field, wanted, field).has_value();
}

} // namespace

bool Check_DistCode(Session& session, const QString& code) {
    return anyRecordHas(session, names::DistributionCode, code);
}

std::optional<QString> Get_DistRevenueAccount(Session& session, const QString& code) {
    return firstRecordWith(session, names::DistributionCode, code, names::DistributionRevenueAccount);
}

bool Check_GLAccount(Session& session, const QString& account) {
    return anyRecordHas(session, names::AccountNumber, Strip_Hyphens(account));
}

QString Strip_Hyphens(const QString& text) {
    return text.trimmed().remove(u'-');
}

int Get_ReceiptTypeIndex(int receiptType) {
    switch (receiptType) {
    case 2:
        return 1;
    case 5:
        return 2;
    default:
        return 0;
    }
}

} // namespace tillbook
