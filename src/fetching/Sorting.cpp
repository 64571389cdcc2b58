#include "fetching/CustomerList.h"
#include "fetching/NameCollation.h"

#include <QCollatorSortKey>
#include <algorithm>
#include <cstdint>
#include <numeric>

namespace tillbook {

namespace {

// Each name's place in the collation order, equal for names that compare equal: comparing two ranks answers
// exactly as comparing the two names' collation keys, for the price of comparing two integers.
std::vector<std::uint32_t> collationRanks(const std::vector<QCollatorSortKey>& keys) {
    std::vector<std::uint32_t> byKey(keys.size());
    std::iota(byKey.begin(), byKey.end(), 0u);
    std::sort(byKey.begin(), byKey.end(),
              [&keys](std::uint32_t a, std::uint32_t b) { return keys[a].compare(keys[b]) < 0; });
    std::vector<std::uint32_t> ranks(keys.size());
    std::uint32_t rank = 0;
    for (size_t i = 0; i < byKey.size(); ++i) {
        if (i > 0 && keys[byKey[i - 1]].compare(keys[byKey[i]]) != 0)
            ++rank;
        ranks[byKey[i]] = rank;
    }
    return ranks;
}

} // namespace

void Sort_Customers(std::vector<CustomerRecord>& customers, const TaskProgress& progress) {
    // Each name's collation key is made once; comparing keys orders exactly as comparing the names.
    const QCollator collator = NameCollator();
    std::vector<QCollatorSortKey> keys;
    keys.reserve(customers.size());
    // Progress in two equal halves: making the keys, then the passes of the sort.
    const long n = static_cast<long>(customers.size());
    const int total = static_cast<int>(2 * n);
    for (const CustomerRecord& c : customers) {
        keys.push_back(collator.sortKey(c.Name));
        if (progress && keys.size() % ProgressStep == 0)
            progress(static_cast<int>(keys.size()), total);
    }
    // The sort moves (rank, record index) pairs in one word: the rank in the high half is all it compares,
    // the index in the low half says which record ends up where.
    const std::vector<std::uint32_t> ranks = collationRanks(keys);
    std::vector<std::uint64_t> items(customers.size());
    for (size_t i = 0; i < items.size(); ++i)
        items[i] = (std::uint64_t(ranks[i]) << 32) | std::uint64_t(i);
    const auto before = [](std::uint64_t a, std::uint64_t b) { return (a >> 32) < (b >> 32); };

    int passes = 0;
    for (long gap = n / 2 + 1; gap >= 1; gap /= 2)
        ++passes;

    // Shell sort over positions 1..n, as the list has always been ordered.
    int pass = 0;
    auto at = [&items](long position) -> std::uint64_t& { return items[static_cast<size_t>(position - 1)]; };
    for (long gap = n / 2 + 1; gap >= 1; gap /= 2) {
        for (long i = gap + 1; i <= n; ++i) {
            const std::uint64_t t = at(i);
            long j = i - gap;
            while (j >= 1 && before(t, at(j))) {
                at(j + gap) = at(j);
                j -= gap;
            }
            at(j + gap) = t;
        }
        if (progress)
            progress(static_cast<int>(n + n * ++pass / passes), total);
    }
    std::vector<CustomerRecord> sorted;
    sorted.reserve(customers.size());
    for (const std::uint64_t item : items)
        sorted.push_back(std::move(customers[static_cast<size_t>(item & 0xffffffffu)]));
    customers = std::move(sorted);
}

} // namespace tillbook
