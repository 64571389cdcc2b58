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
        views.BatchView = views.LedgerSession->openView(QStringLiteral("AR0041"), QStringLiteral("AR"));
        views.ReceiptHeaderView =
            views.LedgerSession->openView(QStringLiteral("AR0042"), QStringLiteral("AR"));
        views.ReceiptDetailView =
            views.LedgerSession->openView(QStringLiteral("AR0044"), QStringLiteral("AR"));
        views.ReceiptDetailSubView =
            views.LedgerSession->openView(QStringLiteral("AR0045"), QStringLiteral("AR"));
        views.ReceiptMiscView = views.LedgerSession->openView(QStringLiteral("AR0043"), QStringLiteral("AR"));
        views.ReceiptPostView = views.LedgerSession->openView(QStringLiteral("AR0061"), QStringLiteral("AR"));
        views.DocumentView = views.LedgerSession->openView(QStringLiteral("AR0036"), QStringLiteral("AR"));

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
