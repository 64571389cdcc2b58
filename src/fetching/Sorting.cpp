#include "fetching/CustomerList.h"
#include "fetching/NameCollation.h"

#include <QCollatorSortKey>

namespace tillbook {

void Sort_Customers(std::vector<CustomerRecord>& customers, const TaskProgress& progress) {
    // Each name's collation key is made once; comparing keys orders exactly as comparing the names.
    const QCollator collator = NameCollator();
    struct Keyed {
        QCollatorSortKey key;
        CustomerRecord record;
    };
    std::vector<Keyed> items;
    items.reserve(customers.size());
    // Progress in two equal halves: making the keys, then the passes of the sort.
    const long n = static_cast<long>(customers.size());
    const int total = static_cast<int>(2 * n);
    for (CustomerRecord& c : customers) {
        items.push_back({collator.sortKey(c.Name), std::move(c)});
        if (progress && items.size() % ProgressStep == 0)
            progress(static_cast<int>(items.size()), total);
    }
    int passes = 0;
    for (long gap = n / 2 + 1; gap >= 1; gap /= 2)
        ++passes;

    // Shell sort over positions 1..n, as the list has always been ordered.
    int pass = 0;
    auto at = [&items](long position) -> Keyed& { return items[static_cast<size_t>(position - 1)]; };
    for (long gap = n / 2 + 1; gap >= 1; gap /= 2) {
        for (long i = gap + 1; i <= n; ++i) {
            Keyed t = std::move(at(i));
            long j = i - gap;
            while (j >= 1 && t.key.compare(at(j).key) < 0) {
                at(j + gap) = std::move(at(j));
                j -= gap;
            }
            at(j + gap) = std::move(t);
        }
        if (progress)
            progress(static_cast<int>(n + n * ++pass / passes), total);
    }
    for (size_t i = 0; i < items.size(); ++i)
        customers[i] = std::move(items[i].record);
}

} // namespace tillbook
