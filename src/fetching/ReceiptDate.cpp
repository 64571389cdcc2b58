#include "fetching/ReceiptDate.h"

#include "fetching/ReceiptViews.h"

namespace tillbook {

Warnings Put_ReceiptDate(ReceiptViews& views, const QVariant& date) {
    if (!views.ReceiptHeaderView)
        return {};
    return views.ReceiptHeaderView->fields().item(names::ReceiptDate).setValue(date);
}

} // namespace tillbook
