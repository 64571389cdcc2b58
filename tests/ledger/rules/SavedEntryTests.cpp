// What generic operations cannot do to saved entries, their lines and their batch: change an amount,
// move an entry, mark a batch Posted, put a batch's count or total, or write a line outside its entry.
// Each is refused with its reason, and the ledger stays as it was.

#include "RulesTestSupport.h"
#include "ledger/engine/BatchPosting.h"

namespace tillbook::test {
namespace {

using SavedEntryTest = RulesTest;
TILLBOOK_ON_EACH_STORE(SavedEntryTest);

QVariantHash batchKey(qint64 batch) {
    return {{"CODEPYMTYP", "CA"}, {"CNTBTCH", batch}};
}

QVariantHash entryKey(qint64 batch, qint64 entry) {
    return {{"CODEPYMTYP", "CA"}, {"CNTBTCH", batch}, {"CNTITEM", entry}};
}

class Refusals {
public:
    explicit Refusals(Session& session) : m_session(session) {}
    // Runs `operation`, which must fail with an error whose text contains `words`.
    template <typename Operation> void expect(Operation operation, const QString& words) {
        m_session.errors().clear();
        EXPECT_THROW(operation(), LedgerError) << words.toStdString();
        ASSERT_GE(m_session.errors().count(), 1) << words.toStdString();
        EXPECT_TRUE(m_session.errors().at(0).description.contains(words))
            << m_session.errors().at(0).description.toStdString();
        m_session.errors().clear();
    }

private:
    Session& m_session;
};

TEST_P(SavedEntryTest, SavedEntryKeepsItsAmountCustomerKindAndPlace) {
    auto session = signIn();
    Till till(*session);
    Refusals refused(*session);
    const qint64 batch = till.newBatch();
    till.newBatch();                              // batch 2 exists: moving into it is refused as well
    till.postReceipt(batch, 1, "C1", 120.0, {2}); // IN1 100, 20 unapplied
    View& header = till.view("AR0042");
    const auto reread = [&] {
        till.field("AR0042", "CODEPYMTYP").putWithoutVerification("CA");
        till.field("AR0042", "CNTBTCH").putWithoutVerification(QString::number(batch));
        till.field("AR0042", "CNTITEM").putWithoutVerification("1");
        ASSERT_TRUE(header.read());
    };

    till.field("AR0042", "AMTRMIT").setValue(250);
    refused.expect([&] { header.update(); },
                   "Bank Receipt Amount of saved entry 1 of batch 1 cannot be changed");
    reread();
    till.field("AR0042", "IDCUST").putWithoutVerification("C2");
    refused.expect([&] { header.update(); }, "cannot be changed (from \"C1\" to \"C2\")");
    reread();
    till.field("AR0042", "REMUNAPLTC").putWithoutVerification(0);
    refused.expect([&] { header.update(); }, "cannot be changed");
    for (const char* target : {"2", "99"}) {
        reread();
        till.field("AR0042", "CNTBTCH").putWithoutVerification(target);
        refused.expect([&] { header.update(); },
                       QStringLiteral("Batch Number of a saved Receipts/Adjustments record cannot be changed "
                                      "(from 1 to %1)")
                           .arg(QLatin1String(target)));
    }
    reread();
    till.field("AR0042", "CNTITEM").putWithoutVerification("5");
    refused.expect([&] { header.update(); }, "cannot be changed (from 1 to 5)");

    reread();
    till.field("AR0042", "TEXTPAYOR").setValue("Paid by the owner");
    header.update(); // descriptions may change

    const auto entry = record("AR0042", entryKey(batch, 1), {"AMTRMIT", "IDCUST", "REMUNAPLTC", "TEXTPAYOR"});
    EXPECT_EQ(money(entry->value("AMTRMIT")), Money::fromWhole(120));
    EXPECT_EQ(entry->value("IDCUST").toString(), "C1");
    EXPECT_EQ(money(entry->value("REMUNAPLTC")), Money::fromWhole(20));
    EXPECT_EQ(entry->value("TEXTPAYOR").toString(), "Paid by the owner");
    EXPECT_EQ(money(record("AR0041", batchKey(batch), {"AMTENTER"})->value("AMTENTER")),
              Money::fromWhole(120));
    EXPECT_EQ(count("AR0042", {}), 1);

    // Once the batch is posted, not even a description changes.
    engine::postBatch(store(), session->errors(), batch, QDate(2025, 3, 15));
    reread();
    till.field("AR0042", "TEXTPAYOR").setValue("Later");
    refused.expect([&] { header.update(); },
                   "Batch 1 is Posted: entry 1 of batch 1 can no longer be changed.");
}

TEST_P(SavedEntryTest, OnlyPostingMarksABatchPostedAndItsTotalsAreTheLedgers) {
    auto session = signIn();
    Till till(*session);
    Refusals refused(*session);
    const qint64 batch = till.newBatch();
    till.postReceipt(batch, 1, "C2", 30.0, {});
    View& view = till.view("AR0041");
    Field& status = till.field("AR0041", "BATCHSTAT");
    const auto reread = [&] {
        till.field("AR0041", "CNTBTCH").putWithoutVerification(QString::number(batch));
        ASSERT_TRUE(view.read());
    };

    reread();
    refused.expect([&] { status.setValue(3); },
                   "Batch Status \"3\" (Posted) is set only by posting the batch.");
    status.putWithoutVerification(3);
    refused.expect([&] { view.update(); }, "is set only by posting the batch");
    reread();
    status.putWithoutVerification(5);
    refused.expect([&] { view.update(); }, "(Post In Progress) is set only by posting");
    for (const char* field : {"AMTENTER", "CNTENTER", "CNTLASTITM"}) {
        reread();
        till.field("AR0041", field).putWithoutVerification(9);
        refused.expect([&] { view.update(); }, "is kept by the ledger and cannot be put by hand");
    }
    reread();
    status.setValue(7); // a clerk readies the batch, and opens it again
    view.update();
    status.setValue(1);
    view.update();
    const auto stored =
        record("AR0041", batchKey(batch), {"BATCHSTAT", "CNTENTER", "AMTENTER", "CNTLASTITM"});
    EXPECT_EQ(stored->value("BATCHSTAT").toInt(), 1);
    EXPECT_EQ(stored->value("CNTENTER").toInt(), 1);
    EXPECT_EQ(money(stored->value("AMTENTER")), Money::fromWhole(30));
    EXPECT_EQ(stored->value("CNTLASTITM").toInt(), 1);

    // A new batch cannot start Posted, and a deleted one stays deleted.
    till.field("AR0041", "CNTBTCH").putWithoutVerification("0");
    status.putWithoutVerification(3);
    refused.expect([&] { view.insert(); }, "A new batch starts Open or Ready To Post, not Posted.");
    EXPECT_EQ(count("AR0041", {}), 1);
    reread();
    status.setValue(4);
    view.update();
    status.setValue(1);
    refused.expect([&] { view.update(); }, "Batch 1 is Deleted and can no longer be changed.");
}

TEST_P(SavedEntryTest, LinesAreWrittenOnlyWithTheirEntry) {
    auto session = signIn();
    Till till(*session);
    Refusals refused(*session);
    const qint64 batch = till.newBatch();
    till.postReceipt(batch, 1, "C1", 10.0, {});

    // Straight into the tables, for an entry that does not exist: an orphan line.
    for (const char* id : {"AR0044", "AR0043"}) {
        auto lines = session->openView(id, "AR");
        lines->fields().item("CODEPAYM").putWithoutVerification("CA");
        lines->fields().item("CNTBTCH").putWithoutVerification(batch);
        lines->fields().item("CNTITEM").putWithoutVerification(7);
        lines->fields().item("CNTLINE").putWithoutVerification(1);
        refused.expect([&] { lines->insert(); }, "Entry 7 of batch 1 does not exist");
        lines->fields().item("CNTITEM").putWithoutVerification(1); // the saved entry
        refused.expect([&] { lines->insert(); }, "Entry 1 of batch 1 is saved");
    }
    auto sub = session->openView("AR0045", "AR");
    sub->fields().item("CNTBTCH").putWithoutVerification(batch);
    sub->fields().item("CNTITEM").putWithoutVerification(1);
    refused.expect([&] { sub->insert(); }, "Entry 1 of batch 1 is saved");

    // Through the composed detail of a new ordinary receipt: not applied through the list, so refused.
    till.view("AR0042").init();
    till.field("AR0042", "IDCUST").setValue("C1");
    till.field("AR0042", "AMTRMIT").setValue(50);
    till.view("AR0044").init();
    till.field("AR0044", "IDCUST").putWithoutVerification("C1");
    till.field("AR0044", "IDINVC").putWithoutVerification("IN2");
    till.field("AR0044", "AMTPAYM").putWithoutVerification(50);
    till.view("AR0044").insert(); // held with the new entry
    refused.expect([&] { till.view("AR0042").insert(); },
                   "Documents are applied through the open-document list");
    // Miscellaneous lines on an ordinary receipt likewise.
    till.view("AR0042").init();
    till.field("AR0042", "IDCUST").setValue("C1");
    till.view("AR0043").init();
    till.field("AR0043", "IDACCT").setValue("4000");
    till.view("AR0043").insert();
    refused.expect([&] { till.view("AR0042").insert(); }, "Only a miscellaneous receipt");

    EXPECT_EQ(count("AR0044", {}), 0);
    EXPECT_EQ(count("AR0043", {}), 0);
    EXPECT_EQ(count("AR0042", {}), 1);
    ASSERT_TRUE(till.openDocument("C1", 3)); // IN2: nothing pending on it
    EXPECT_EQ(money(till.field("AR0061", "PNDPAYTOT").value()), Money());
}

TEST_P(SavedEntryTest, SavedLinesKeepTheirAmountsAndDocuments) {
    auto session = signIn();
    Till till(*session);
    Refusals refused(*session);
    const qint64 batch = till.newBatch();
    till.postReceipt(batch, 1, "C1", 100.0, {3}); // IN2 50
    till.postMiscReceipt(batch, 10.0, {{"RETAIL", "", "10"}});
    auto applied = session->openView("AR0044", "AR");
    applied->browse(QStringLiteral("CNTBTCH = %1").arg(batch), true);
    ASSERT_TRUE(applied->fetch());
    applied->fields().item("AMTPAYM").putWithoutVerification(5);
    refused.expect([&] { applied->update(); },
                   "Receipt Amount of saved line 1 of entry 1 of batch 1 cannot be changed");
    ASSERT_TRUE(applied->read());
    applied->fields().item("IDINVC").putWithoutVerification("IN1");
    refused.expect([&] { applied->update(); }, "cannot be changed (from \"IN2\" to \"IN1\")");
    auto misc = session->openView("AR0043", "AR");
    misc->browse(QStringLiteral("CNTBTCH = %1").arg(batch), true);
    ASSERT_TRUE(misc->fetch());
    misc->fields().item("AMTDIST").putWithoutVerification(999);
    refused.expect([&] { misc->update(); }, "of saved line 1 of entry 2 of batch 1 cannot be changed");
    ASSERT_TRUE(misc->read());
    misc->fields().item("GLDESC").setValue("Corrected description");
    misc->update();
    EXPECT_EQ(money(record("AR0044", {{"CODEPAYM", "CA"}, {"CNTBTCH", batch}, {"CNTITEM", 1}, {"CNTLINE", 1}},
                           {"AMTPAYM"})
                        ->value("AMTPAYM")),
              Money::fromWhole(50));
}

} // namespace
} // namespace tillbook::test
