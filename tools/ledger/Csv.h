#pragma once

// One CSV line (RFC 4180): fields with a comma, quote or line break are quoted, quotes doubled.

#include <QString>
#include <QStringList>

namespace tillbook::tool {

QString csvLine(const QStringList& fields);

} // namespace tillbook::tool
