// The three posting procedures on a small company of known records, one table: the entries saved before, the
// draft keyed, and what the ledger then holds (the entry, its lines, the batch's figures) with the messages
// met.

#include "Till.h"
#include "ledger/engine/RecordAccess.h"

#include <QRegularExpression>
#include <functional>

namespace tillbook::test {
namespace {

const qint64 Batch = 1;

ReceiptDraft datedAsTyped(ReceiptDraft draft, const char* typed) {
    draft.receiptDate = QDate();
    draft.receiptDateTyped = QString::fromLatin1(typed);
    return draft;
}

void closeBatch(engine::CompanyStore& store) {
    engine::updateRecord(store, QStringLiteral("AR0041"), {{"CODEPYMTYP", "CA"}, {"CNTBTCH", Batch}},
                         {{"BATCHSTAT", 3}});
}

const DistributionLine Retail{"RETAIL", "", Money::fromCents(123450), "Till 1", "Cash sale"};
const DistributionLine Freight{"", "4100-100", Money::fromCents(26550), "", "Freight"};
const DistributionLine Huge{"RETAIL", "", *Money::parse("999999999999999.999"), "", ""};

struct PostingCase {
    const char* name;
    ReceiptDraft draft;
    const char* shown; // the messages, "|" between them; "..." matches any text
    const char* entry; // RMITTYPE IDCUST AMTRMIT REMUNAPLTC DOCNBR of the new entry; "" = not written
    const char* lines; // CNTLINE IDINVC AMTPAYM (AR0044) or IDACCT AMTDIST GLREF GLDESC (AR0043), "|" between
    std::vector<ReceiptDraft> before = {};                          // saved first, each without a problem
    std::function<void(engine::CompanyStore&)> meanwhile = nullptr; // what another till does before the save
};

const PostingCase Cases[] = {
    {"ReceiptWithoutApplicationsLeavesItAllUnapplied", receipt(Batch, 1, "C1", "150"), "",
     "1 C1 150.000 150.000 ", ""},
    {"ApplicationsTakeTheAmountInTheOrderApplied", receipt(Batch, 1, "C1", "60", {3, 2}), "",
     "1 C1 60.000 0.000 ", "1 IN1 10.000|2 IN2 50.000"},
    {"ACreditNoteAddsToWhatIsLeftToApply", receipt(Batch, 1, "C1", "70", {1, 2, 3}),
     "Nothing is left of the receipt amount to apply to document IN2.", "1 C1 70.000 0.000 ",
     "1 CN1 -30.000|2 IN1 100.000"},
    {"AReceiptOfNothingAppliesNothing", receipt(Batch, 1, "C2", "0", {1}),
     "Nothing is left of the receipt amount to apply to document IN3.", "1 C2 0.000 0.000 ", ""},
    {"PendingApplicationsLimitTheNextOne",
     receipt(Batch, 2, "C1", "100", {2}),
     "",
     "1 C1 100.000 60.000 ",
     "1 IN1 40.000",
     {receipt(Batch, 1, "C1", "60", {2})}},
    {"ADocumentUsedUpByAnUnpostedEntryIsSaidSo",
     receipt(Batch, 2, "C1", "100", {3, 2}),
     "Document IN2 has nothing left to pay: its balance is taken up by payments, discounts and adjustments "
     "already applied.",
     "1 C1 100.000 0.000 ",
     "1 IN1 100.000",
     {receipt(Batch, 1, "C1", "50", {3})}},
    {"AnUnknownCustomerStopsThePostingAtOnce", receipt(Batch, 1, "NOSUCH", "10", {1}),
     "Customer Number \"NOSUCH\" does not exist.", "", ""},
    {"AnImpossibleDateIsRefusedAsTyped", datedAsTyped(receipt(Batch, 1, "C1", "10"), "02/31/2025"),
     "Receipt Date/Adjustment Date \"02/31/2025\" is not a valid date.", "", ""},
    {"AnEntryIntoAPostedBatchLeavesNothing",
     receipt(Batch, 1, "C1", "150", {2, 3}),
     "Batch 1 is not open (Posted); entries can be added only to an open batch.",
     "",
     "",
     {},
     closeBatch},
    {"APrepaymentIsNumberedAndKeptAgainstItsDocument",
     prepayment(Batch, "C2", "1,250.00", "IN3", 3),
     "",
     "2 C2 1250.000 0.000 IN3",
     "3 PP0000002 1250.000",
     {prepayment(Batch, "C2", "5.00", "IN3")}},
    {"APrepaymentOutsideItsPeriodIsWrittenWithAWarning", prepayment(Batch, "C2", "40", "", 1, 5),
     "Receipt date 2025-03-12 is outside fiscal period 05 of 2025.", "2 C2 40.000 0.000 ",
     "1 PP0000001 40.000"},
    {"MiscLinesTakeAccountsFromCodesOrNumbers", misc(Batch, "1500", {Retail, Freight}), "",
     "5  1500.000 0.000 ", "4000 1234.500 Till 1 Cash sale|4100-100 265.500  Freight"},
    {"AMiscReceiptWithoutLinesIsWrittenAlone", misc(Batch, "0", {}), "", "5  0.000 0.000 ", ""},
    {"MiscLinesThatDoNotAddUpLeaveNothing", misc(Batch, "500", {Retail, Freight}),
     "The distribution lines add up to 1500.000, not to the receipt amount 500.000...", "", ""},
    {"MiscLinesTooLargeToAddUpLeaveNothing", misc(Batch, "1", std::vector<DistributionLine>(10, Huge)),
     "...too large...", "", ""},
};

// Whether a message is the one expected, where "..." stands for any text.
bool matches(const QString& shown, const QString& expected) {
    QString pattern = QRegularExpression::escape(expected);
    pattern.replace(QStringLiteral("\\.\\.\\."), QStringLiteral(".*"));
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(shown).hasMatch();
}

class ReceiptPosting : public ::testing::TestWithParam<StoreKind> {};

TEST_P(ReceiptPosting, EachKindWritesWhatWasKeyedOrNothing) {
    for (const PostingCase& c : Cases) {
        SCOPED_TRACE(c.name);
        const Company company(CompanyBuilder(GetParam()).known());
        TILLBOOK_SKIP_UNLESS_READY(company);
        Till till(company);
        ASSERT_EQ(till.newBatch(), Batch);
        Money total;
        for (const ReceiptDraft& earlier : c.before) {
            ASSERT_TRUE(till.post(earlier).problems.empty());
            total += earlier.amount;
        }
        if (c.meanwhile)
            c.meanwhile(*company.store());
        // A problem left from before the save is not the posting's.
        till.session().errors().append(QStringLiteral("left over"), ErrorPriority::Error);

        const PostingOutcome outcome = till.post(c.draft);

        const bool written = *c.entry != 0;
        EXPECT_EQ(outcome.PostOK, written);
        const QStringList expected = QString::fromUtf8(c.shown).split(u'|', Qt::SkipEmptyParts);
        ASSERT_EQ(outcome.problems.size(), size_t(expected.size()));
        for (int i = 0; i < expected.size(); ++i) {
            const QString& shown = outcome.problems[size_t(i)].error.description;
            EXPECT_TRUE(matches(shown, expected[i])) << shown.toStdString();
        }
        const int entry = int(c.before.size()) + 1;
        const QVariantHash key{{"CNTBTCH", Batch}, {"CNTITEM", entry}};
        const QStringList header =
            company.records("AR0042", key, {"RMITTYPE", "IDCUST", "AMTRMIT", "REMUNAPLTC", "DOCNBR"});
        EXPECT_EQ(header.join(u'|').toStdString(), c.entry);
        const QStringList lines =
            c.draft.kind == ReceiptKind::Misc
                ? company.records("AR0043", key, {"IDACCT", "AMTDIST", "GLREF", "GLDESC"})
                : company.records("AR0044", key, {"CNTLINE", "IDINVC", "AMTPAYM"});
        EXPECT_EQ(lines.join(u'|').toStdString(), c.lines);
        if (written && c.draft.kind == ReceiptKind::Prepayment) {
            EXPECT_EQ(outcome.prepaymentNumber, lines.value(0).section(u' ', 1, 1));
        }
        // What was keyed, as keyed: trimmed, but for a prepayment's texts; a new entry is a receipt document.
        if (written) {
            EXPECT_EQ(
                company.records("AR0042", key, {"DOCTYPE", "TEXTRMIT", "IDRMIT", "TEXTPAYOR", "DATERMIT"})
                    .value(0),
                c.draft.kind == ReceiptKind::Prepayment ? "1   Receipt  CHQ  Ann Payer 2025-03-12"
                                                        : "1 Receipt CHQ Ann Payer 2025-03-12");
        }
        // The batch counts the entry, its amount and its number only when it is written.
        if (written)
            total += c.draft.amount;
        EXPECT_EQ(
            company.records("AR0041", {}, {"CNTENTER", "AMTENTER", "CNTLASTITM"}),
            QStringList(
                QStringLiteral("%1 %2 %1").arg(written ? entry : entry - 1).arg(total.toLedgerString())));
    }
}

TILLBOOK_EACH_STORE(ReceiptPosting);

} // namespace
} // namespace tillbook::test
