// The open-document list a receipt is applied through: what it lists and reads, what other unposted entries
// hold, and applications another till has made stale meanwhile.

#include "Till.h"

namespace tillbook::test {
namespace {

using ApplicationTest = KnownCompanyTest;
TILLBOOK_EACH_STORE(ApplicationTest);

// A read shows the document's own values in every field, whatever the record held before: another
// document of the list, or values of other types put by the caller. Other unposted entries show as pending.
TEST_P(ApplicationTest, ListHoldsDocumentsWithAmountDueEachReadShowsItsOwnValuesAndOthersArePending) {
    start(CompanyBuilder(GetParam()).known().documents("C3", 3, Money::fromCents(1000)));
    Till till(*m_company);
    const qint64 batch = till.newBatch();
    View& list = till.view("AR0061");
    QStringList names{"IDINVC"}; // every field, one of them twice
    for (int i = 0; i < list.fields().count(); ++i)
        names << list.fields().at(i).name();
    const auto values = [&] {
        std::vector<QVariant> held;
        for (const QString& name : names)
            held.push_back(list.fields().item(name).value());
        return held;
    };
    const auto readKey = [&](int key) {
        list.fields().item("CNTKEY").putWithoutVerification(key);
        return list.read();
    };
    ASSERT_TRUE(till.openDocument("C1", 2));
    EXPECT_EQ(till.text("AR0061", "IDINVC"), "IN1");
    EXPECT_EQ(till.text("AR0061", "OBSDISCAMT"), "2.000"); // before 2025-03-20
    EXPECT_EQ(till.text("AR0061", "APPLY"), "N");
    const std::vector<QVariant> invoice = values();
    ASSERT_TRUE(readKey(1));
    EXPECT_EQ(till.text("AR0061", "IDINVC"), "CN1");
    EXPECT_NE(values(), invoice);
    till.field("AR0061", "IDINVC").putWithoutVerification(7);
    till.field("AR0061", "AMTDUE").putWithoutVerification("12.5");
    till.field("AR0061", "CNTBTCH").putWithoutVerification("9");
    ASSERT_TRUE(readKey(2));
    EXPECT_EQ(values(), invoice);
    ASSERT_TRUE(readKey(3));
    EXPECT_EQ(till.text("AR0061", "IDINVC"), "IN2");
    EXPECT_FALSE(readKey(4)); // the paid IN0 is not listed

    // The whole list at once: each document as reading its key gives it (a field asked twice, twice), and
    // then the record as the read past the last left it.
    const auto allOf = [&names](View& view) {
        std::vector<std::vector<QVariant>> rows;
        view.readAllKept(names, [&](const auto& held) { rows.push_back(held); });
        return rows;
    };
    const std::vector<QVariant> record = values();
    std::vector<std::vector<QVariant>> byKey;
    for (int key = 1; readKey(key); ++key)
        byKey.push_back(values());
    ASSERT_TRUE(readKey(1));
    EXPECT_EQ(allOf(list), byKey);
    EXPECT_EQ(values(), record);

    ASSERT_TRUE(till.post(receipt(batch, 1, "C1", "60", {2})).PostOK);
    ASSERT_TRUE(till.openDocument("C1", 2)); // the next entry's list: the entry just saved is pending
    EXPECT_EQ(till.text("AR0061", "PENDNGBAL"), "40.000");
    Till second(*m_company);
    ASSERT_TRUE(second.openDocument("C1", 2));
    EXPECT_EQ(second.text("AR0061", "APPLY"), "X");
    EXPECT_EQ(second.text("AR0061", "PNDPAYTOT"), "60.000");
    EXPECT_EQ(second.text("AR0061", "PENDNGBAL"), "40.000");

    // A list built over older ones shows what one built afresh shows: nothing is kept of the documents
    // listed before, neither their figures nor what was applied to them.
    second.field("AR0061", "AMTRMIT").putWithoutVerification(100);
    second.field("AR0061", "APPLY").setValue("Y");
    second.view("AR0061").update();
    second.field("AR0061", "AMTRMIT").putWithoutVerification(0);
    Till fresh(*m_company);
    ASSERT_TRUE(second.openDocument("C2", 1) && second.openDocument("C3", 1) && fresh.openDocument("C3", 1));
    EXPECT_EQ(allOf(second.view("AR0061")), allOf(fresh.view("AR0061")));
    ASSERT_TRUE(second.openDocument("C2", 1) && second.openDocument("C2", 1)); // the second over C3's list
    EXPECT_EQ(allOf(second.view("AR0061")).size(), 1u);
}

// Two tills on one batch: the second builds its list of C1's documents for a receipt of 100, then the first
// saves a receipt of `firstReceipt` applied to `firstKeys`; the second applies to `apply` (CNTKEYs) from its
// list, which is stale by then, and its save is refused whole.
struct Stale {
    const char* name;
    const char* firstReceipt;
    std::vector<int> firstKeys, apply;
    const char* named; // in the second till's last error
};

TEST_P(ApplicationTest, ApplicationsMadeStaleByAnotherTillAreRefusedWhole) {
    for (const Stale& c : {Stale{"IN1 paid in full meanwhile", "100", {2}, {2}, "IN1"},
                           Stale{"CN1 taken meanwhile", "70", {1, 2}, {1, 3}, "CN1"}}) {
        SCOPED_TRACE(c.name);
        start(CompanyBuilder(GetParam()).known());
        Till first(*m_company);
        const qint64 batch = first.newBatch();
        Till second(*m_company);
        second.field("AR0042", "CNTITEM").putWithoutVerification("0");
        second.field("AR0041", "CNTBTCH").putWithoutVerification(QString::number(batch));
        second.view("AR0041").read();
        second.view("AR0042").init();
        second.field("AR0042", "IDCUST").setValue("C1");
        second.field("AR0042", "AMTRMIT").setValue(100);
        second.field("AR0061", "IDCUST").putWithoutVerification("C1");
        second.field("AR0061", "AMTRMIT").putWithoutVerification(100);
        second.view("AR0061").process();
        EXPECT_TRUE(first.post(receipt(batch, 1, "C1", c.firstReceipt, c.firstKeys)).PostOK);
        for (int key : c.apply) {
            second.field("AR0061", "CNTKEY").putWithoutVerification(QString::number(key));
            EXPECT_TRUE(second.view("AR0061").read());
            second.field("AR0061", "APPLY").setValue("Y");
            second.view("AR0061").update();
        }
        EXPECT_THROW(second.view("AR0042").insert(), LedgerError);
        const ErrorList& errors = second.session().errors();
        ASSERT_GT(errors.count(), 0);
        EXPECT_TRUE(errors.at(errors.count() - 1).description.contains(c.named));
        EXPECT_EQ(m_company->count("AR0042", {{"CNTBTCH", batch}}), 1);
        EXPECT_EQ(m_company->value("AR0041", {{"CODEPYMTYP", "CA"}, {"CNTBTCH", batch}}, "CNTENTER"), "1");
    }
}

} // namespace
} // namespace tillbook::test
