#include "fetching/CustomerSearch.h"

#include <cstring>
#include <numeric>
#include <utility>

namespace tillbook {

namespace {

// One character's folded form, appended as UTF-8.
void appendFolded(char32_t c, QByteArray& out) {
    if (c < 0x80) {
        out += c == '\t' || c == '\n' || c == '\r' ? ' ' : char(c >= 'A' && c <= 'Z' ? c + 32 : c);
        return;
    }
    // Letters that are no base letter and accents, written as a clerk types them.
    static constexpr std::pair<char32_t, const char*> Spelled[] = {{U'ß', "ss"}, {U'æ', "ae"}, {U'Æ', "ae"},
                                                                   {U'œ', "oe"}, {U'Œ', "oe"}, {U'ø', "o"},
                                                                   {U'Ø', "o"},  {U'ł', "l"},  {U'Ł', "l"}};
    for (const auto& [letter, spelled] : Spelled)
        if (c == letter) {
            out += spelled;
            return;
        }
    // A letter with an accent is its base letter and combining marks: the marks are dropped.
    if (QChar::category(c) == QChar::Mark_NonSpacing)
        return;
    const QString decomposed =
        QChar::decompositionTag(c) == QChar::Canonical ? QChar::decomposition(c) : QString::fromUcs4(&c, 1);
    for (const char32_t part : decomposed.toUcs4()) {
        if (QChar::category(part) == QChar::Mark_NonSpacing)
            continue;
        if (part < 0x80 && part != c)
            appendFolded(part, out);
        else
            out += QString::fromUcs4(&part, 1).toCaseFolded().toUtf8();
    }
}

} // namespace

QByteArray Fold_SearchText(QStringView text) {
    QByteArray out;
    out.reserve(text.size());
    for (const char32_t c : text.toUcs4())
        appendFolded(c, out);
    return out;
}

CustomerSearch::CustomerSearch(CustomerList customers) : m_customers(std::move(customers)) {
    m_folding = std::async(std::launch::async, [this] { return Fold_Customers(m_customers); });
}

CustomerSearch::~CustomerSearch() {
    if (m_folding.valid())
        m_folding.wait();
}

void CustomerSearch::waitUntilFolded() {
    if (m_folding.valid())
        m_folded = m_folding.get();
}

FoldedCustomers Fold_Customers(const CustomerList& customers) {
    FoldedCustomers folded;
    std::string& out = folded.text;
    const size_t n = customers.size();
    size_t bytes = 0;
    for (size_t i = 0; i < n; ++i)
        bytes += size_t(customers.utf8(i, CustomerList::Name).size() +
                        customers.utf8(i, CustomerList::Id).size()) +
                 2;
    out.reserve(bytes + bytes / 16);
    folded.starts.reserve(n + 1);
    QByteArray cell;
    for (size_t i = 0; i < n; ++i) {
        folded.starts.push_back(std::uint32_t(out.size()));
        for (const CustomerList::Field field : {CustomerList::Name, CustomerList::Id}) {
            const QByteArrayView text = customers.utf8(i, field);
            bool ascii = true;
            for (const char c : text)
                ascii = ascii && (c & 0x80) == 0;
            if (ascii) { // the common case, without decoding
                const size_t at = out.size();
                out.resize(at + size_t(text.size()));
                char* to = out.data() + at;
                for (const char c : text)
                    *to++ =
                        c == '\t' || c == '\n' || c == '\r' ? ' ' : char(c >= 'A' && c <= 'Z' ? c + 32 : c);
            } else {
                cell = Fold_SearchText(QString::fromUtf8(text));
                out.append(cell.constData(), size_t(cell.size()));
            }
            out += field == CustomerList::Name ? '\t' : '\n';
        }
    }
    folded.starts.push_back(std::uint32_t(out.size()));
    return folded;
}

bool CustomerSearch::holds(std::uint32_t position, const QByteArray& folded) const {
    const std::vector<std::uint32_t>& starts = m_folded.starts;
    const char* begin = m_folded.text.data() + starts[position];
    const size_t length = starts[position + 1] - starts[position];
    return memmem(begin, length, folded.constData(), size_t(folded.size())) != nullptr;
}

const std::vector<std::uint32_t>& CustomerSearch::find(const QString& text) {
    waitUntilFolded();
    const QByteArray folded = Fold_SearchText(text);
    const bool narrower = m_lastValid && folded.startsWith(m_lastText);
    m_lastText = folded;
    m_lastValid = true;
    if (narrower) { // what holds the longer text holds the shorter one
        std::erase_if(m_found, [&](std::uint32_t position) { return !holds(position, folded); });
        return m_found;
    }
    m_found.clear();
    const std::string& all = m_folded.text;
    const std::vector<std::uint32_t>& starts = m_folded.starts;
    const size_t customers = starts.empty() ? 0 : starts.size() - 1;
    if (folded.isEmpty()) {
        m_found.resize(customers);
        std::iota(m_found.begin(), m_found.end(), 0u);
        return m_found;
    }
    // One pass over all the text; after a hit the search goes on at the next customer.
    size_t at = 0;
    std::uint32_t position = 0;
    while (const void* hit =
               memmem(all.data() + at, all.size() - at, folded.constData(), size_t(folded.size()))) {
        const size_t offset = size_t(static_cast<const char*>(hit) - all.data());
        while (starts[position + 1] <= offset)
            ++position;
        m_found.push_back(position);
        at = starts[++position];
        if (position >= customers)
            break;
    }
    return m_found;
}

} // namespace tillbook
