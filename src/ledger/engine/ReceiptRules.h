#pragma once

// The rules of the receipt views: batches (AR0041), entries (AR0042), their miscellaneous lines
// (AR0043), the applied documents and their distributions (AR0044, AR0045) and the open-document list
// (AR0061), and the figures of documents (AR0036) and customers (AR0024) that posting keeps. Registered
// once, before the first view opens.

#include "ledger/engine/ViewRules.h"

namespace tillbook::engine {

void registerReceiptRules(void (*add)(const QString& viewId, ViewRulesFactory factory));

} // namespace tillbook::engine
