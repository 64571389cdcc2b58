#include "ledger/TextRows.h"

#include <limits>
#include <stdexcept>

namespace tillbook {

void TextRows::append(const char* data, size_t size) {
    if (m_bytes.size() + size > std::numeric_limits<std::uint32_t>::max())
        throw std::length_error("a list of more than 4 GB of text");
    m_bytes.append(data, size);
    m_ends.push_back(std::uint32_t(m_bytes.size()));
}

void TextRows::reserve(size_t rows, size_t bytes) {
    m_ends.reserve(rows * size_t(m_width));
    m_bytes.reserve(bytes);
}

TextRows TextRows::reordered(const std::vector<std::uint32_t>& order) const {
    TextRows result(m_width);
    result.reserve(order.size(), m_bytes.size());
    for (const std::uint32_t row : order)
        for (int field = 0; field < m_width; ++field)
            result.append(utf8(row, field));
    return result;
}

} // namespace tillbook
