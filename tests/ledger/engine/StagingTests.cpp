// A new header's lines wait in memory until the header is inserted, numbered from it; the engine's staging on
// its own, without the receipt rules (entry numbers, the lines' accounts).
#include "ledger/engine/ViewCore.h"
#include "support/Company.h"

namespace tillbook::test {
namespace {

using StagingTest = StoreTest;

TEST_P(StagingTest, LinesWaitForTheirHeaderAndAreNumberedFromIt) {
    for (const char* view : {"AR0042", "AR0043"})
        engine::registerViewRules(view, [] { return std::make_unique<engine::ViewRules>(); });
    auto receipt = m_session->openView("AR0042", "AR"); // a receipt with its miscellaneous lines
    auto lines = m_session->openView("AR0043", "AR");
    receipt->compose({lines.get()});
    const auto newReceipt = [&] {
        receipt->init();
        for (const auto& [field, value] : {std::pair{"CODEPYMTYP", "CA"}, {"CNTBTCH", "7"}, {"CNTITEM", "1"}})
            receipt->fields().item(field).setValue(value);
    };
    const auto addLine = [&](const char* description) {
        lines->init();
        lines->fields().item("GLDESC").putWithoutVerification(description);
        lines->insert();
    };
    const auto stored = [&](const char* view) {
        return m_company->count(view, {});
    }; // as another till sees them
    const auto fetched = [&] {
        EXPECT_TRUE(lines->fetch());
        return lines->fields().item("GLDESC").value().toString();
    };
    newReceipt();
    addLine("dropped"); // a new header's init discards lines held for the one before
    newReceipt();
    addLine("first");
    addLine("second");
    EXPECT_EQ(lines->fields().item("CNTLINE").value().toLongLong(), 2); // numbered in memory
    EXPECT_EQ(lines->fields().item("CNTITEM").value().toLongLong(), 1); // took the header's key
    EXPECT_EQ(stored("AR0043"), 0);
    lines->browse("", true); // the new header's lines, from memory
    EXPECT_EQ(fetched(), "first");

    receipt->insert();
    EXPECT_EQ(stored("AR0042"), 1);
    // Now stored, the header's lines are read from the store, and new ones go there at once.
    lines->browse("", false);
    EXPECT_EQ(fetched(), "second");
    lines->init();
    lines->fields().item("CNTLINE").setValue(3);
    lines->insert();
    EXPECT_EQ(stored("AR0043"), 3);
}

TILLBOOK_EACH_STORE(StagingTest);

} // namespace
} // namespace tillbook::test
