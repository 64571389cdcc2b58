// The three posting procedures against the rules company, one table: the entries saved before, the draft
// keyed, and what the ledger then holds (the entry, its lines, the batch's figures) with the messages met.

#include "ledger/engine/RecordAccess.h"
#include "ledger/rules/RulesTestSupport.h"

#include <functional>

namespace tillbook::test {
namespace {

struct PostingCase {
    const char* name;
    std::vector<ReceiptDraft> before; // saved first, each without a problem
    ReceiptDraft draft;
    bool written;
    QStringList shown;      // the messages, in order; a trailing "..." matches any text that starts alike
    const char* entry;      // RMITTYPE IDCUST AMTRMIT REMUNAPLTC DOCNBR of the new entry, "" = not written
    QStringList lines;      // IDINVC AMTPAYM (AR0044) or IDACCT AMTDIST GLREF (AR0043), by line number
    const char* batch = ""; // CNTENTER AMTENTER afterwards; "" = as before plus the entry when written
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

const DistributionLine Retail{"RETAIL", "", amountOf("1234.5"), "Till 1", "Cash sale"};
const DistributionLine Freight{"", "4100-100", amountOf("265.5"), "", "Freight"};
const DistributionLine Huge{"RETAIL", "", amountOf("999999999999999.999"), "", ""};

// Customer C1: CNTKEY 1 CN1 -30.00, 2 IN1 100.00, 3 IN2 50.00; customer C2: 1 IN3 80.00.
const PostingCase Cases[] = {
    {"ReceiptWithoutApplicationsLeavesItAllUnapplied",
     {},
     receiptDraft(Batch, 1, "C1", "150"),
     true,
     {},
     "1 C1 150.000 150.000 ",
     {}},
    {"ApplicationsTakeTheAmountInTheOrderApplied",
     {},
     receiptDraft(Batch, 1, "C1", "60", {3, 2}),
     true,
     {},
     "1 C1 60.000 0.000 ",
     {"IN1 10.000", "IN2 50.000"}},
    {"ACreditNoteAddsToWhatIsLeftToApply",
     {},
     receiptDraft(Batch, 1, "C1", "70", {1, 2, 3}),
     true,
     {"Nothing is left of the receipt amount to apply to document IN2."},
     "1 C1 70.000 0.000 ",
     {"CN1 -30.000", "IN1 100.000"}},
    {"AReceiptOfNothingAppliesNothing",
     {},
     receiptDraft(Batch, 1, "C2", "0", {1}),
     true,
     {"Nothing is left of the receipt amount to apply to document IN3."},
     "1 C2 0.000 0.000 ",
     {}},
    {"PendingApplicationsLimitTheNextOne",
     {receiptDraft(Batch, 1, "C1", "60", {2})},
     receiptDraft(Batch, 2, "C1", "100", {2}),
     true,
     {},
     "1 C1 100.000 60.000 ",
     {"IN1 40.000"},
     "2 160.000"},
    {"ADocumentUsedUpByAnUnpostedEntryIsSaidSo",
     {receiptDraft(Batch, 1, "C1", "50", {3})},
     receiptDraft(Batch, 2, "C1", "100", {3, 2}),
     true,
     {"Document IN2 has nothing left to pay: its balance is taken up by payments, discounts and "
      "adjustments already applied."},
     "1 C1 100.000 0.000 ",
     {"IN1 100.000"},
     "2 150.000"},
    {"AnUnknownCustomerStopsThePostingAtOnce",
     {},
     receiptDraft(Batch, 1, "NOSUCH", "10", {1}),
     false,
     {"Customer Number \"NOSUCH\" does not exist."},
     "",
     {},
     "0 0.000"},
    {"AnImpossibleDateIsRefusedAsTyped",
     {},
     datedAsTyped(receiptDraft(Batch, 1, "C1", "10"), "02/31/2025"),
     false,
     {"Receipt Date/Adjustment Date \"02/31/2025\" is not a valid date."},
     "",
     {},
     "0 0.000"},
    {"AnEntryIntoAPostedBatchLeavesNothing",
     {},
     receiptDraft(Batch, 1, "C1", "150", {2, 3}),
     false,
     {"Batch 1 is not open (Posted); entries can be added only to an open batch."},
     "",
     {},
     "0 0.000",
     [](engine::CompanyStore& store) {
         engine::updateRecord(store, QStringLiteral("AR0041"), {{"CODEPYMTYP", "CA"}, {"CNTBTCH", Batch}},
                              {{"BATCHSTAT", 3}});
     }},
    {"APrepaymentIsNumberedAndKeptAgainstItsDocument",
     {prepaymentDraft(Batch, "C2", "5.00", "IN3")},
     onLine(prepaymentDraft(Batch, "C2", "1,250.00", "IN3"), 3),
     true,
     {},
     "2 C2 1250.000 0.000 IN3",
     {"PP0000002 1250.000"},
     "2 1255.000"},
    {"APrepaymentOutsideItsPeriodIsWrittenWithAWarning",
     {},
     inPeriod(prepaymentDraft(Batch, "C2", "40", ""), 5),
     true,
     {"Receipt date 2025-03-14 is outside fiscal period 05 of 2025."},
     "2 C2 40.000 0.000 ",
     {"PP0000001 40.000"}},
    {"MiscLinesTakeAccountsFromCodesOrNumbers",
     {},
     miscDraft(Batch, "1500", {Retail, Freight}),
     true,
     {},
     "5  1500.000 0.000 ",
     {"4000 1234.500 Till 1", "4100-100 265.500 "}},
    {"AMiscReceiptWithoutLinesIsWrittenAlone",
     {},
     miscDraft(Batch, "0", {}),
     true,
     {},
     "5  0.000 0.000 ",
     {}},
    {"MiscLinesThatDoNotAddUpLeaveNothing",
     {},
     miscDraft(Batch, "500", {Retail, Freight}),
     false,
     {"The distribution lines add up to 1500.000, not to the receipt amount 500.000..."},
     "",
     {},
     "0 0.000"},
    {"MiscLinesTooLargeToAddUpLeaveNothing",
     {},
     miscDraft(Batch, "1", std::vector<DistributionLine>(10, Huge)),
     false,
     {"...too large..."},
     "",
     {},
     "0 0.000"},
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

bool matches(const QString& shown, QString expected) {
    const bool anyStart = expected.startsWith(QLatin1String("..."));
    const bool anyEnd = expected.endsWith(QLatin1String("..."));
    expected.remove(QStringLiteral("..."));
    return anyStart ? shown.contains(expected) : anyEnd ? shown.startsWith(expected) : shown == expected;
}

TEST_P(ReceiptPosting, EachKindWritesWhatWasKeyedOrNothing) {
    for (const PostingCase& c : Cases) {
        SCOPED_TRACE(c.name);
        if (&c != Cases)
            startAfresh();
        Till till(signIn());
        ASSERT_EQ(till.newBatch(), Batch);
        for (const ReceiptDraft& earlier : c.before)
            ASSERT_TRUE(messages(till.post(earlier)).isEmpty());
        if (c.meanwhile)
            c.meanwhile(store());
        // A problem left from before the save is not the posting's.
        till.session().errors().append(QStringLiteral("left over"), ErrorPriority::Error);

        const PostingOutcome outcome = till.post(c.draft);

        EXPECT_EQ(outcome.PostOK, c.written);
        const QStringList shown = messages(outcome);
        ASSERT_EQ(shown.size(), c.shown.size()) << shown.join('\n').toStdString();
        for (int i = 0; i < shown.size(); ++i)
            EXPECT_TRUE(matches(shown[i], c.shown[i])) << shown[i].toStdString();
        const int entry = int(c.before.size()) + 1;
        const QStringList header =
            stored("AR0042", entry, {"RMITTYPE", "IDCUST", "AMTRMIT", "REMUNAPLTC", "DOCNBR"}, {"CNTITEM"});
        EXPECT_EQ(header.join(u'|').toStdString(), c.entry);
        const bool misc = c.draft.kind == ReceiptKind::Misc;
        const QStringList lines = misc ? stored("AR0043", entry, {"IDACCT", "AMTDIST", "GLREF"}, {"CNTLINE"})
                                       : stored("AR0044", entry, {"IDINVC", "AMTPAYM"}, {"CNTLINE"});
        EXPECT_EQ(lines.join(u'|').toStdString(), c.lines.join(u'|').toStdString());
        if (c.written && c.draft.kind == ReceiptKind::Prepayment) {
            EXPECT_EQ(outcome.prepaymentNumber, c.lines.value(0).section(u' ', 0, 0));
        }
        Money total;
        for (const ReceiptDraft& d : c.before)
            total += d.amount;
        const QString figures =
            QString::fromLatin1(c.batch).isEmpty()
                ? QStringLiteral("%1 %2").arg(entry).arg((total + c.draft.amount).toLedgerString())
                : QString::fromLatin1(c.batch);
        EXPECT_EQ(stored("AR0041", {{"CODEPYMTYP", "CA"}, {"CNTBTCH", Batch}}, {"CNTENTER", "AMTENTER"},
                         {"CNTBTCH"})
                      .value(0),
                  figures);
    }
}

TILLBOOK_ON_EACH_STORE(ReceiptPosting);

} // namespace
} // namespace tillbook::test
