#include "fetching/ReceiptViews.h"

namespace tillbook {

void Open_ReceiptViews() {
    try {
        BatchView = LedgerSession->openView(QStringLiteral("AR0041"), QStringLiteral("AR"));
        ReceiptHeaderView = LedgerSession->openView(QStringLiteral("AR0042"), QStringLiteral("AR"));
        ReceiptDetailView = LedgerSession->openView(QStringLiteral("AR0044"), QStringLiteral("AR"));
        ReceiptDetailSubView = LedgerSession->openView(QStringLiteral("AR0045"), QStringLiteral("AR"));
        ReceiptMiscView = LedgerSession->openView(QStringLiteral("AR0043"), QStringLiteral("AR"));
        ReceiptPostView = LedgerSession->openView(QStringLiteral("AR0061"), QStringLiteral("AR"));
        DocumentView = LedgerSession->openView(QStringLiteral("AR0036"), QStringLiteral("AR"));

        BatchView->compose({ReceiptHeaderView.get()});
        ReceiptHeaderView->compose({BatchView.get(), ReceiptMiscView.get(), ReceiptDetailView.get()});
        ReceiptDetailView->compose({ReceiptHeaderView.get(), ReceiptDetailSubView.get()});
        ReceiptDetailSubView->compose({ReceiptDetailView.get()});
        ReceiptMiscView->compose({ReceiptHeaderView.get()});
        ReceiptPostView->compose({BatchView.get(), ReceiptHeaderView.get(), ReceiptMiscView.get(),
                                  ReceiptDetailView.get(), ReceiptDetailSubView.get()});
    } catch (...) {
        BatchView.reset();
        ReceiptHeaderView.reset();
        ReceiptDetailView.reset();
        ReceiptDetailSubView.reset();
        ReceiptMiscView.reset();
        ReceiptPostView.reset();
        DocumentView.reset();
        throw;
    }
}

void Close_Ledger() {
    DocumentView.reset();
    ReceiptPostView.reset();
    ReceiptMiscView.reset();
    ReceiptDetailSubView.reset();
    ReceiptDetailView.reset();
    ReceiptHeaderView.reset();
    BatchView.reset();
    LedgerSession.reset();
}

} // namespace tillbook
