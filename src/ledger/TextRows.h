#pragma once

// Rows of a few text fields, every cell in one block of UTF-8: a long list kept in memory at the cost of
// its text and four bytes a cell, without an object per row or per cell.

#include <QByteArrayView>
#include <QString>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

namespace tillbook {

class TextRows {
public:
    explicit TextRows(int width = 0) : m_width(width) {}

    int width() const { return m_width; }
    size_t rows() const { return m_width ? m_ends.size / size_t(m_width) : 0; }
    bool empty() const { return m_ends.size == 0; }

    QByteArrayView utf8(size_t row, int field) const {
        const size_t cell = row * size_t(m_width) + size_t(field);
        const std::uint32_t* ends = m_ends.at<std::uint32_t>();
        const size_t begin = cell ? ends[cell - 1] : 0;
        return QByteArrayView(m_bytes.at<char>() + begin, qsizetype(ends[cell] - begin));
    }
    QString text(size_t row, int field) const { return QString::fromUtf8(utf8(row, field)); }

    // The next cell, filling the rows field by field. Throws std::length_error past 4 GB of text.
    void append(const char* data, size_t size);
    void append(QByteArrayView cell) { append(cell.data(), size_t(cell.size())); }
    // The same rows in another order: row i of the result is row order[i] of this.
    TextRows reordered(const std::vector<std::uint32_t>& order) const;

private:
    // Grown with realloc, which moves a large block by remapping its pages rather than copying them: a list
    // of a million customers grows to its size without its text being copied on the way.
    struct Block {
        struct Free {
            void operator()(void* p) const { std::free(p); }
        };
        std::unique_ptr<char, Free> data;
        size_t size = 0; // in elements
        size_t capacity = 0;
        template <typename T> T* at() const { return reinterpret_cast<T*>(data.get()); }
        template <typename T> void grow(size_t needed);
    };

    int m_width;
    Block m_bytes;
    Block m_ends; // where each cell ends in m_bytes
};

} // namespace tillbook
