#pragma once

// The arithmetic of applying a receipt to the documents in the grid, and the record of applied rows, without
// widgets: the window's handlers call these and show the results.

#include "ledger/Money.h"

#include <QDate>
#include <QString>
#include <vector>

namespace tillbook {

struct Application {
    Money unapplied; // what is left of the receipt
    Money applied;   // what the document gets
    Money net;       // what is left of the document
};

// The receipt covers the whole document when its net balance is below what is unapplied; otherwise (equality
// included) the document takes all that is left.
Application ApplyToDocument(Money unapplied, Money net);
// Gives the applied amount back to the receipt and to the document.
Application UnapplyFromDocument(Money unapplied, Money applied, Money net);

// The record of applied rows: keys[k] is the grid row (the document's CNTKEY) of the k-th application and
// marks[k] what its Apply cell showed before. Both hold `count` elements at rest; a reset record holds one
// empty element.
struct AppliedRows {
    std::vector<int>& keys;
    std::vector<QString>& marks;

    // Adds the row as application number `count` (0-based), growing both arrays and keeping their contents.
    void add(int count, int row, const QString& mark);
    // Takes the row out of the record of `count` applications and returns the mark kept for it. Below two
    // applications both arrays become one empty element; otherwise they lose the row's element, in order.
    QString remove(int count, int row);
    // No application: one empty element each.
    void reset();
};

// "0012-003-20001201": the batch as "0000", the entry as "000" and the date as "yyyymmdd".
QString ReceiptNumberText(int batch, int entry, const QDate& date);

} // namespace tillbook
