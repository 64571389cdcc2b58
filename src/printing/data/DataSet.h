#pragma once

// The runtime data set a report is bound to: named text columns, one row per detail line of the entry.

#include <QStringList>
#include <vector>

namespace tillbook {

struct DataSet {
    QStringList fields;            // the column names, in order
    std::vector<QStringList> rows; // each row holds one text per field
    QStringList header;            // a row of the header values alone, for a receipt without lines

    int column(const QString& field) const { return int(fields.indexOf(field)); }
};

} // namespace tillbook
