#pragma once

// A view's records as CSV, as browse and export write them: a line of field names, then a line per
// record fetched, each field as plain text (amounts with all their decimals, dates yyyy-mm-dd).

#include "ledger/View.h"

#include <QTextStream>
#include <vector>

namespace tillbook::tool {

// Every field of the view, in its order.
std::vector<Field*> allFields(View& view);
// Writes the header line and every record the view's fetch still gives. Returns the records written.
qint64 writeRecords(View& view, const std::vector<Field*>& fields, QTextStream& out);

} // namespace tillbook::tool
