#include "fetching/ReceiptDate.h"

#include "fetching/ReceiptViews.h"

namespace tillbook {

void Put_ReceiptDate(ReceiptViews& views, const QVariant& date) {
    if (!views.ReceiptHeaderView)
        return;
    views.ReceiptHeaderView->fields().item(QStringLiteral("DATERMIT")).setValue(date);
}

} // namespace tillbook
