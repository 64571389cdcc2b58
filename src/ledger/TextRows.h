#pragma once

// Rows of a few text fields, every cell in one block of UTF-8: a long list kept in memory at the cost of
// its text and four bytes a cell, without an object per row or per cell.

#include <QByteArrayView>
#include <QString>
#include <cstdint>
#include <string>
#include <vector>

namespace tillbook {

class TextRows {
public:
    explicit TextRows(int width = 0) : m_width(width) {}

    int width() const { return m_width; }
    size_t rows() const { return m_width ? m_ends.size() / size_t(m_width) : 0; }
    bool empty() const { return m_ends.empty(); }

    QByteArrayView utf8(size_t row, int field) const {
        const size_t cell = row * size_t(m_width) + size_t(field);
        const size_t begin = cell ? m_ends[cell - 1] : 0;
        return QByteArrayView(m_bytes.data() + begin, qsizetype(m_ends[cell] - begin));
    }
    QString text(size_t row, int field) const { return QString::fromUtf8(utf8(row, field)); }

    // The next cell, filling the rows field by field. Throws std::length_error past 4 GB of text.
    void append(const char* data, size_t size);
    void append(QByteArrayView cell) { append(cell.data(), size_t(cell.size())); }
    void reserve(size_t rows, size_t bytes);
    // The same rows in another order: row i of the result is row order[i] of this.
    TextRows reordered(const std::vector<std::uint32_t>& order) const;

private:
    int m_width;
    std::string m_bytes;
    std::vector<std::uint32_t> m_ends; // where each cell ends in m_bytes
};

} // namespace tillbook
