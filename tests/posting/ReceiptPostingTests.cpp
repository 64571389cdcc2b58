// The three posting procedures against the rules company, one table: the entries saved before, the draft
// keyed, and what the ledger then holds (the entry, its lines, the batch's figures) with the messages met.

#include "ledger/engine/RecordAccess.h"
#include "ledger/rules/RulesTestSupport.h"

#include <QRegularExpression>
#include <functional>

namespace tillbook::test {
namespace {

struct PostingCase {
    const char* name;
    ReceiptDraft draft;
    const char* shown; // the messages, "|" between them; "..." matches any text
    const char* entry; // RMITTYPE IDCUST AMTRMIT REMUNAPLTC DOCNBR of the new entry; "" = not written
    const char* lines; // CNTLINE IDINVC AMTPAYM (AR0044) or IDACCT AMTDIST GLREF GLDESC (AR0043), "|" between
    std::vector<ReceiptDraft> before = {};                          // saved first, each without a problem
    std::function<void(engine::CompanyStore&)> meanwhile = nullptr; // what another till does before the save
};

const qint64 Batch = 1;

ReceiptDraft datedAsTyped(ReceiptDraft draft, const char* typed) {
    draft.receiptDate = QDate();
    draft.receiptDateTyped = QString::fromLatin1(typed);
    return draft;
}

ReceiptDraft inPeriod(ReceiptDraft draft, int period) {
    draft.fiscalPeriod = period;
    return draft;
}

ReceiptDraft onLine(ReceiptDraft draft, int line) {
    draft.prepaymentLine = line;
    return draft;
}

void closeBatch(engine::CompanyStore& store) {
    engine::updateRecord(store, QStringLiteral("AR0041"), {{"CODEPYMTYP", "CA"}, {"CNTBTCH", Batch}},
                         {{"BATCHSTAT", 3}});
}

const DistributionLine Retail{"RETAIL", "", amountOf("1234.5"), "Till 1", "Cash sale"};
const DistributionLine Freight{"", "4100-100", amountOf("265.5"), "", "Freight"};
const DistributionLine Huge{"RETAIL", "", amountOf("999999999999999.999"), "", ""};

// Customer C1: CNTKEY 1 CN1 -30.00, 2 IN1 100.00, 3 IN2 50.00; customer C2: 1 IN3 80.00.
const PostingCase Cases[] = {
    {"ReceiptWithoutApplicationsLeavesItAllUnapplied", receiptDraft(Batch, 1, "C1", "150"), "",
     "1 C1 150.000 150.000 ", ""},
    {"ApplicationsTakeTheAmountInTheOrderApplied", receiptDraft(Batch, 1, "C1", "60", {3, 2}), "",
     "1 C1 60.000 0.000 ", "1 IN1 10.000|2 IN2 50.000"},
    {"ACreditNoteAddsToWhatIsLeftToApply", receiptDraft(Batch, 1, "C1", "70", {1, 2, 3}),
     "Nothing is left of the receipt amount to apply to document IN2.", "1 C1 70.000 0.000 ",
     "1 CN1 -30.000|2 IN1 100.000"},
    {"AReceiptOfNothingAppliesNothing", receiptDraft(Batch, 1, "C2", "0", {1}),
     "Nothing is left of the receipt amount to apply to document IN3.", "1 C2 0.000 0.000 ", ""},
    {"PendingApplicationsLimitTheNextOne",
     receiptDraft(Batch, 2, "C1", "100", {2}),
     "",
     "1 C1 100.000 60.000 ",
     "1 IN1 40.000",
     {receiptDraft(Batch, 1, "C1", "60", {2})}},
    {"ADocumentUsedUpByAnUnpostedEntryIsSaidSo",
     receiptDraft(Batch, 2, "C1", "100", {3, 2}),
     "Document IN2 has nothing left to pay: its balance is taken up by payments, discounts and adjustments "
     "already applied.",
     "1 C1 100.000 0.000 ",
     "1 IN1 100.000",
     {receiptDraft(Batch, 1, "C1", "50", {3})}},
    {"AnUnknownCustomerStopsThePostingAtOnce", receiptDraft(Batch, 1, "NOSUCH", "10", {1}),
     "Customer Number \"NOSUCH\" does not exist.", "", ""},
    {"AnImpossibleDateIsRefusedAsTyped", datedAsTyped(receiptDraft(Batch, 1, "C1", "10"), "02/31/2025"),
     "Receipt Date/Adjustment Date \"02/31/2025\" is not a valid date.", "", ""},
    {"AnEntryIntoAPostedBatchLeavesNothing",
     receiptDraft(Batch, 1, "C1", "150", {2, 3}),
     "Batch 1 is not open (Posted); entries can be added only to an open batch.",
     "",
     "",
     {},
     closeBatch},
    {"APrepaymentIsNumberedAndKeptAgainstItsDocument",
     onLine(prepaymentDraft(Batch, "C2", "1,250.00", "IN3"), 3),
     "",
     "2 C2 1250.000 0.000 IN3",
     "3 PP0000002 1250.000",
     {prepaymentDraft(Batch, "C2", "5.00", "IN3")}},
    {"APrepaymentOutsideItsPeriodIsWrittenWithAWarning", inPeriod(prepaymentDraft(Batch, "C2", "40", ""), 5),
     "Receipt date 2025-03-12 is outside fiscal period 05 of 2025.", "2 C2 40.000 0.000 ",
     "1 PP0000001 40.000"},
    {"MiscLinesTakeAccountsFromCodesOrNumbers", miscDraft(Batch, "1500", {Retail, Freight}), "",
     "5  1500.000 0.000 ", "4000 1234.500 Till 1 Cash sale|4100-100 265.500  Freight"},
    {"AMiscReceiptWithoutLinesIsWrittenAlone", miscDraft(Batch, "0", {}), "", "5  0.000 0.000 ", ""},
    {"MiscLinesThatDoNotAddUpLeaveNothing", miscDraft(Batch, "500", {Retail, Freight}),
     "The distribution lines add up to 1500.000, not to the receipt amount 500.000...", "", ""},
    {"MiscLinesTooLargeToAddUpLeaveNothing", miscDraft(Batch, "1", std::vector<DistributionLine>(10, Huge)),
     "...too large...", "", ""},
};

class ReceiptPosting : public RulesTest {
protected:
    QStringList stored(const char* viewId, const QVariantHash& key, const QStringList& fields,
                       const QStringList& order) {
        QStringList texts;
        for (const QVariantHash& r : engine::readRecords(store(), viewId, key, fields, order)) {
            QStringList values;
            for (const QString& field : fields) {
                const QVariant& v = r.value(field);
                values << (v.metaType() == QMetaType::fromType<Money>() ? v.value<Money>().toLedgerString()
                                                                        : v.toString());
            }
            texts << values.join(u' ');
        }
        return texts;
    }
    QStringList stored(const char* viewId, int entry, const QStringList& fields, const QStringList& order) {
        return stored(viewId, {{"CNTBTCH", Batch}, {"CNTITEM", entry}}, fields, order);
    }
};

// Whether a message is the one expected, where "..." stands for any text.
bool matches(const QString& shown, const QString& expected) {
    QString pattern = QRegularExpression::escape(expected);
    pattern.replace(QStringLiteral("\\.\\.\\."), QStringLiteral(".*"));
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(shown).hasMatch();
}

TEST_P(ReceiptPosting, EachKindWritesWhatWasKeyedOrNothing) {
    for (const PostingCase& c : Cases) {
        SCOPED_TRACE(c.name);
        if (&c != Cases)
            startAfresh();
        Till till(signIn());
        ASSERT_EQ(till.newBatch(), Batch);
        Money total;
        for (const ReceiptDraft& earlier : c.before) {
            ASSERT_TRUE(messages(till.post(earlier)).isEmpty());
            total += earlier.amount;
        }
        if (c.meanwhile)
            c.meanwhile(store());
        // A problem left from before the save is not the posting's.
        till.session().errors().append(QStringLiteral("left over"), ErrorPriority::Error);

        const PostingOutcome outcome = till.post(c.draft);

        const bool written = *c.entry != 0;
        EXPECT_EQ(outcome.PostOK, written);
        const QStringList shown = messages(outcome);
        const QStringList expected = QString::fromUtf8(c.shown).split(u'|', Qt::SkipEmptyParts);
        ASSERT_EQ(shown.size(), expected.size()) << shown.join('\n').toStdString();
        for (int i = 0; i < shown.size(); ++i)
            EXPECT_TRUE(matches(shown[i], expected[i])) << shown[i].toStdString();
        const int entry = int(c.before.size()) + 1;
        EXPECT_EQ(
            stored("AR0042", entry, {"RMITTYPE", "IDCUST", "AMTRMIT", "REMUNAPLTC", "DOCNBR"}, {"CNTITEM"})
                .join(u'|')
                .toStdString(),
            c.entry);
        const QStringList lines =
            c.draft.kind == ReceiptKind::Misc
                ? stored("AR0043", entry, {"IDACCT", "AMTDIST", "GLREF", "GLDESC"}, {"CNTLINE"})
                : stored("AR0044", entry, {"CNTLINE", "IDINVC", "AMTPAYM"}, {"CNTLINE"});
        EXPECT_EQ(lines.join(u'|').toStdString(), c.lines);
        if (written && c.draft.kind == ReceiptKind::Prepayment) {
            EXPECT_EQ(outcome.prepaymentNumber, lines.value(0).section(u' ', 1, 1));
        }
        // What was keyed, as keyed: trimmed, but for a prepayment's texts.
        if (written) {
            EXPECT_EQ(stored("AR0042", entry, {"TEXTRMIT", "IDRMIT", "TEXTPAYOR", "DATERMIT"}, {"CNTITEM"})
                          .value(0),
                      c.draft.kind == ReceiptKind::Prepayment ? "  Receipt  CHQ  Ann Payer 2025-03-12"
                                                              : "Receipt CHQ Ann Payer 2025-03-12");
        }
        // The batch counts the entry, its amount and its number only when it is written.
        const int entries = written ? entry : entry - 1;
        const QString figures = QStringLiteral("%1 %2 %1")
                                    .arg(entries)
                                    .arg((written ? total + c.draft.amount : total).toLedgerString());
        EXPECT_EQ(stored("AR0041", {{"CODEPYMTYP", "CA"}, {"CNTBTCH", Batch}},
                         {"CNTENTER", "AMTENTER", "CNTLASTITM"}, {"CNTBTCH"})
                      .value(0),
                  figures);
    }
}

TILLBOOK_ON_EACH_STORE(ReceiptPosting);

} // namespace
} // namespace tillbook::test
