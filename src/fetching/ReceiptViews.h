#pragma once

// The ledger session and the seven receipt views, opened once when the receipt window loads and kept until
// the program ends. Their current records are the receipt window's working position in a batch: whatever
// browses one of them moves the position that the others see. The receipt desk owns the one the program uses.

#include "ledger/Session.h"
#include "ledger/View.h"

#include <memory>

namespace tillbook {

struct ReceiptViews {
    std::unique_ptr<Session> LedgerSession;

    std::unique_ptr<View> BatchView;            // AR0041 receipt batches
    std::unique_ptr<View> ReceiptHeaderView;    // AR0042 receipt entries
    std::unique_ptr<View> ReceiptDetailView;    // AR0044 applied documents
    std::unique_ptr<View> ReceiptDetailSubView; // AR0045 adjustment distributions
    std::unique_ptr<View> ReceiptMiscView;      // AR0043 miscellaneous receipt lines
    std::unique_ptr<View> ReceiptPostView;      // AR0061 the open-document list
    std::unique_ptr<View> DocumentView;         // AR0036 documents

    // Whether the session and every view a posting writes through are open.
    bool ready() const {
        return LedgerSession && BatchView && ReceiptHeaderView && ReceiptDetailView && ReceiptDetailSubView &&
               ReceiptMiscView && ReceiptPostView;
    }
};

// Opens the seven views from views.LedgerSession and composes the batch family. Throws LedgerError; on
// failure no view is left open.
void Open_ReceiptViews(ReceiptViews& views);
// Releases the views and the session.
void Close_Ledger(ReceiptViews& views);

} // namespace tillbook
