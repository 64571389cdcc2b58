#include "fetching/ReceiptDate.h"

#include "fetching/ReceiptViews.h"

namespace tillbook {

void Put_ReceiptDate(const QVariant& date) {
    if (!ReceiptHeaderView)
        return;
    ReceiptHeaderView->fields().item(QStringLiteral("DATERMIT")).setValue(date);
}

} // namespace tillbook
