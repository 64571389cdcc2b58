#pragma once

// The program's ledger session and the seven receipt views, opened once when the receipt window loads and
// kept until the program ends. Their current records are the receipt window's working position in a batch:
// whatever browses one of them moves the position that the others see.

#include "ledger/Session.h"
#include "ledger/View.h"

#include <memory>

namespace tillbook {

inline std::unique_ptr<Session> LedgerSession;

inline std::unique_ptr<View> BatchView;            // AR0041 receipt batches
inline std::unique_ptr<View> ReceiptHeaderView;    // AR0042 receipt entries
inline std::unique_ptr<View> ReceiptDetailView;    // AR0044 applied documents
inline std::unique_ptr<View> ReceiptDetailSubView; // AR0045 adjustment distributions
inline std::unique_ptr<View> ReceiptMiscView;      // AR0043 miscellaneous receipt lines
inline std::unique_ptr<View> ReceiptPostView;      // AR0061 the open-document list
inline std::unique_ptr<View> DocumentView;         // AR0036 documents

// Opens the seven views from LedgerSession and composes the batch family. Throws LedgerError; on failure
// no view is left open.
void Open_ReceiptViews();
// Releases the views and the session.
void Close_Ledger();

} // namespace tillbook
