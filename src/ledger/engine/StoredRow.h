#pragma once

// One row of a read as its reader decodes it, column by column, straight into the values it keeps: no
// value object is made for a cell on the way. Valid only inside the reader's call.

#include <QString>
#include <QtGlobal>
#include <functional>

namespace tillbook::engine {

class StoredRow {
public:
    // A whole-number column (INTEGER: amounts scaled, dates as yyyymmdd); NULL reads as 0.
    virtual qint64 integer(int column) const = 0;
    // A text column; NULL reads as a null string.
    virtual QString text(int column) const = 0;
    // The same into `into`, reusing its room where it holds a string of its own: for a reader that keeps
    // its rows from one read to the next and decodes the next read over them.
    virtual void textInto(int column, QString& into) const { into = text(column); }

protected:
    ~StoredRow() = default;
};

using RowReader = std::function<void(const StoredRow&)>;

} // namespace tillbook::engine
