#include "ledger/TextRows.h"

#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>

namespace tillbook {

template <typename T> void TextRows::Block::grow(size_t needed) {
    if (needed <= capacity)
        return;
    const size_t wanted = std::max(needed, std::max<size_t>(capacity * 2, 4096 / sizeof(T)));
    void* moved = std::realloc(data.get(), wanted * sizeof(T));
    if (!moved)
        throw std::bad_alloc();
    (void)data.release();
    data.reset(static_cast<char*>(moved));
    capacity = wanted;
}

void TextRows::append(const char* data, size_t size) {
    const size_t end = m_bytes.size + size;
    if (end > std::numeric_limits<std::uint32_t>::max())
        throw std::length_error("a list of more than 4 GB of text");
    m_bytes.grow<char>(end);
    if (size)
        std::memcpy(m_bytes.at<char>() + m_bytes.size, data, size);
    m_bytes.size = end;
    m_ends.grow<std::uint32_t>(m_ends.size + 1);
    m_ends.at<std::uint32_t>()[m_ends.size++] = std::uint32_t(end);
}

TextRows TextRows::reordered(const std::vector<std::uint32_t>& order) const {
    TextRows result(m_width);
    result.m_bytes.grow<char>(m_bytes.size);
    result.m_ends.grow<std::uint32_t>(m_ends.size);
    for (const std::uint32_t row : order)
        for (int field = 0; field < m_width; ++field)
            result.append(utf8(row, field));
    return result;
}

} // namespace tillbook
