#include "EngineTestSupport.h"
#include "ledger/engine/CompanyStore.h"

#include <QThread>
#include <set>

namespace tillbook::test {
namespace {

using CounterTest = EngineTest;

TEST_P(CounterTest, TillsTakingNumbersAtOnceNeverShareOne) {
    constexpr int Tills = 3;
    constexpr int Each = 40;
    std::vector<std::vector<qint64>> taken(Tills);
    std::vector<std::unique_ptr<QThread>> threads;
    for (int t = 0; t < Tills; ++t) {
        threads.emplace_back(QThread::create([&, t] {
            // Each till has its own connection, as separate programs would.
            auto store = engine::CompanyStore::open(m_id);
            for (int i = 0; i < Each; ++i)
                taken[size_t(t)].push_back(store->nextNumber("BATCH"));
        }));
        threads.back()->start();
    }
    for (auto& thread : threads)
        thread->wait();
    std::set<qint64> all;
    for (const auto& numbers : taken)
        all.insert(numbers.begin(), numbers.end());
    EXPECT_EQ(all.size(), size_t(Tills * Each));
    EXPECT_EQ(*all.begin(), 1);
    EXPECT_EQ(*all.rbegin(), Tills * Each);
}

TILLBOOK_ON_EACH_STORE(CounterTest);

} // namespace
} // namespace tillbook::test
