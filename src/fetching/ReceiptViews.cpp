#include "fetching/ReceiptViews.h"

namespace tillbook {

namespace {

// The views go in the reverse of their opening; the session they were opened from stays.
void releaseViews(ReceiptViews& views) {
    views.DocumentView.reset();
    views.ReceiptPostView.reset();
    views.ReceiptMiscView.reset();
    views.ReceiptDetailSubView.reset();
    views.ReceiptDetailView.reset();
    views.ReceiptHeaderView.reset();
    views.BatchView.reset();
}

} // namespace

void Open_ReceiptViews(ReceiptViews& views) {
    try {
        views.BatchView = views.LedgerSession->openView(names::Batches);
        views.ReceiptHeaderView = views.LedgerSession->openView(names::ReceiptHeaders);
        views.ReceiptDetailView = views.LedgerSession->openView(names::ReceiptDetails);
        views.ReceiptDetailSubView = views.LedgerSession->openView(names::ReceiptDetailSubs);
        views.ReceiptMiscView = views.LedgerSession->openView(names::ReceiptMiscLines);
        views.ReceiptPostView = views.LedgerSession->openView(names::ReceiptPost);
        views.DocumentView = views.LedgerSession->openView(names::Documents);

        views.BatchView->compose({views.ReceiptHeaderView.get()});
        views.ReceiptHeaderView->compose(
            {views.BatchView.get(), views.ReceiptMiscView.get(), views.ReceiptDetailView.get()});
        views.ReceiptDetailView->compose({views.ReceiptHeaderView.get(), views.ReceiptDetailSubView.get()});
        views.ReceiptDetailSubView->compose({views.ReceiptDetailView.get()});
        views.ReceiptMiscView->compose({views.ReceiptHeaderView.get()});
        views.ReceiptPostView->compose({views.BatchView.get(), views.ReceiptHeaderView.get(),
                                        views.ReceiptMiscView.get(), views.ReceiptDetailView.get(),
                                        views.ReceiptDetailSubView.get()});
    } catch (...) {
        releaseViews(views);
        throw;
    }
}

void Close_Ledger(ReceiptViews& views) {
    releaseViews(views);
    views.LedgerSession.reset();
}

} // namespace tillbook
