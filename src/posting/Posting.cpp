#include "posting/Posting.h"

namespace tillbook {

void Post_Receipt(const PostingInput&) {}
void Post_Prepayment(const PostingInput&, QString&) {}
void Post_MiscReceipt(const PostingInput&) {}
void Save_ReceiptHeader(const PostingInput&) {}
void Load_DistributionArray(const PostingInput&) {}

} // namespace tillbook
