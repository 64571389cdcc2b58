#pragma once

// What the ledger holds, read through a view of its own on the program's session: the named fields of each
// record that matches the filter, as the ledger's text.

#include "entry/ReceiptDesk.h"

#include <QStringList>
#include <vector>

namespace tillbook::test {

inline std::vector<QStringList> ledgerRecords(const QString& viewId, const QString& filter,
                                              const QStringList& fields) {
    const auto view = Desk().LedgerSession->openView(viewId, viewId.left(2));
    view->browse(filter, true);
    std::vector<QStringList> found;
    while (view->fetch()) {
        QStringList values;
        for (const QString& field : fields)
            values << view->fields().item(field).text();
        found.push_back(values);
    }
    return found;
}

} // namespace tillbook::test
