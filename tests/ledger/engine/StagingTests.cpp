#include "ledger/engine/ViewCore.h"
#include "support/Company.h"

namespace tillbook::test {
namespace {

// A receipt (header) with miscellaneous lines (detail).
class StagingTest : public StoreTest {
protected:
    void SetUp() override {
        StoreTest::SetUp();
        if (IsSkipped())
            return;
        // The engine's staging on its own, without the receipt rules (entry numbers, the lines' accounts).
        for (const char* view : {"AR0042", "AR0043"})
            engine::registerViewRules(view, [] { return std::make_unique<engine::ViewRules>(); });
        receipt = m_session->openView("AR0042", "AR");
        lines = m_session->openView("AR0043", "AR");
        receipt->compose({lines.get()});
    }

    void newReceipt(int entry) {
        receipt->init();
        receipt->fields().item("CODEPYMTYP").setValue("CA");
        receipt->fields().item("CNTBTCH").setValue(7);
        receipt->fields().item("CNTITEM").setValue(entry);
    }

    void addLine(const QString& description) {
        lines->init();
        lines->fields().item("GLDESC").putWithoutVerification(description);
        lines->insert();
    }

    // Records of the view in the store, as another till sees them.
    int stored(const char* view) {
        auto plain = signIn()->openView(view, "AR");
        int n = 0;
        while (plain->fetch())
            ++n;
        return n;
    }

    std::unique_ptr<View> receipt;
    std::unique_ptr<View> lines;
};

TEST_P(StagingTest, LinesWaitForTheirHeaderAndAreNumberedFromIt) {
    newReceipt(1);
    addLine("dropped"); // a new header's init discards lines held for the one before
    newReceipt(1);
    addLine("first");
    addLine("second");
    EXPECT_EQ(lines->fields().item("CNTLINE").value().toLongLong(), 2); // numbered in memory
    EXPECT_EQ(lines->fields().item("CNTITEM").value().toLongLong(), 1); // took the header's key
    EXPECT_EQ(stored("AR0043"), 0);
    lines->browse("", true); // the new header's lines, from memory
    ASSERT_TRUE(lines->fetch());
    EXPECT_EQ(lines->fields().item("GLDESC").value().toString(), "first");

    receipt->insert();
    EXPECT_EQ(stored("AR0042"), 1);
    // Now stored, the header's lines are read from the store, and new ones go there at once.
    lines->browse("", false);
    ASSERT_TRUE(lines->fetch());
    EXPECT_EQ(lines->fields().item("GLDESC").value().toString(), "second");
    lines->init();
    lines->fields().item("CNTLINE").setValue(3);
    lines->insert();
    EXPECT_EQ(stored("AR0043"), 3);
}

TILLBOOK_EACH_STORE(StagingTest);

} // namespace
} // namespace tillbook::test
