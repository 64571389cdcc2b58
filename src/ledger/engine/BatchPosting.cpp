#include "ledger/engine/BatchPosting.h"

#include "ledger/engine/BatchRules.h"
#include "ledger/engine/EntryRules.h"
#include "ledger/engine/RecordAccess.h"
#include "ledger/engine/Transaction.h"

namespace tillbook::engine {

namespace {

const QString Code = QStringLiteral("CA");
const QString Documents = QStringLiteral("AR0036");
const QString Customers = QStringLiteral("AR0024");

QVariant amount(Money m) {
    return QVariant::fromValue(m);
}

QVariantHash customerKey(const QString& customer) {
    return {{QStringLiteral("IDCUST"), customer}};
}

class Poster {
public:
    Poster(CompanyStore& store, ErrorList& errors, qint64 batch, const QDate& date)
        : m_store(store), m_errors(errors), m_batch(batch), m_date(date) {}

    PostingSummary run();

private:
    void postEntry(const QVariantHash& entry);
    void payDocument(const QString& customer, const QVariantHash& line);
    void addDocument(const QVariantHash& entry, const QString& number, int type, int typeId, Money owed,
                     const QString& applyTo);

    CompanyStore& m_store;
    ErrorList& m_errors;
    qint64 m_batch;
    QDate m_date;
    PostingSummary m_summary;
};

PostingSummary Poster::run() {
    const QVariantHash key{{QStringLiteral("CODEPYMTYP"), Code}, {QStringLiteral("CNTBTCH"), m_batch}};
    // Marking the batch first locks its record against entries being added while it posts.
    if (!updateRecord(m_store, QStringLiteral("AR0041"), key, {{QStringLiteral("NBRERRORS"), 0}}))
        m_errors.fail(QStringLiteral("Batch Number \"%1\" does not exist.").arg(m_batch));
    const auto batch = readRecord(m_store, QStringLiteral("AR0041"), key, {QStringLiteral("BATCHSTAT")});
    if (batch->value(QStringLiteral("BATCHSTAT")).toInt() != BatchOpen)
        m_errors.fail(QStringLiteral("Batch %1 is not open; only an open batch can be posted.").arg(m_batch));
    const auto entries =
        readRecords(m_store, QStringLiteral("AR0042"), key,
                    {QStringLiteral("CNTITEM"), QStringLiteral("IDCUST"), QStringLiteral("RMITTYPE"),
                     QStringLiteral("IDRMIT"), QStringLiteral("DATERMIT"), QStringLiteral("REMUNAPLTC"),
                     QStringLiteral("TEXTRMIT")},
                    {QStringLiteral("CNTITEM")});
    for (const QVariantHash& entry : entries)
        postEntry(entry);
    m_summary.postingSequence = m_store.nextNumber(QStringLiteral("AR0041/%1/postings").arg(Code));
    updateRecord(m_store, QStringLiteral("AR0041"), key,
                 {{QStringLiteral("BATCHSTAT"), int(BatchPosted)},
                  {QStringLiteral("POSTSEQNBR"), m_summary.postingSequence},
                  {QStringLiteral("DATELSTEDT"), m_date}});
    return m_summary;
}

void Poster::postEntry(const QVariantHash& entry) {
    ++m_summary.entries;
    const int type = entry.value(QStringLiteral("RMITTYPE")).toInt();
    if (type == MiscellaneousReceipt)
        return; // its lines go to the general ledger, not to a customer
    const QString customer = entry.value(QStringLiteral("IDCUST")).toString().trimmed();
    const auto lines =
        readRecords(m_store, QStringLiteral("AR0044"),
                    {{QStringLiteral("CODEPAYM"), Code},
                     {QStringLiteral("CNTBTCH"), m_batch},
                     {QStringLiteral("CNTITEM"), entry.value(QStringLiteral("CNTITEM"))}},
                    {QStringLiteral("IDINVC"), QStringLiteral("IDDOCMTCH"), QStringLiteral("AMTPAYM"),
                     QStringLiteral("AMTERNDISC"), QStringLiteral("AMTADJTOT")},
                    {QStringLiteral("CNTLINE")});
    if (type == Prepayment) {
        for (const QVariantHash& line : lines)
            addDocument(entry, line.value(QStringLiteral("IDINVC")).toString(), 10, 50,
                        -moneyOf(line.value(QStringLiteral("AMTPAYM"))),
                        line.value(QStringLiteral("IDDOCMTCH")).toString());
        return;
    }
    for (const QVariantHash& line : lines)
        payDocument(customer, line);
    const Money unapplied = moneyOf(entry.value(QStringLiteral("REMUNAPLTC")));
    if (unapplied > Money()) {
        const QString number = QStringLiteral("UC%1").arg(
            m_store.nextNumber(QStringLiteral("AR0036/unapplied")), 7, 10, QLatin1Char('0'));
        addDocument(entry, number, 5, 1, -unapplied, QString());
    }
}

void Poster::payDocument(const QString& customer, const QVariantHash& line) {
    const QVariantHash key{{QStringLiteral("IDCUST"), customer},
                           {QStringLiteral("IDINVC"), line.value(QStringLiteral("IDINVC"))}};
    const auto document =
        readRecord(m_store, Documents, key, {QStringLiteral("AMTDUETC"), QStringLiteral("CNTTOTPAYM")});
    if (!document)
        m_errors.fail(
            QStringLiteral("Document %1 of customer %2 no longer exists; the batch cannot be posted.")
                .arg(line.value(QStringLiteral("IDINVC")).toString(), customer));
    const Money taken = moneyOf(line.value(QStringLiteral("AMTPAYM"))) +
                        moneyOf(line.value(QStringLiteral("AMTERNDISC"))) +
                        moneyOf(line.value(QStringLiteral("AMTADJTOT")));
    const Money before = moneyOf(document->value(QStringLiteral("AMTDUETC")));
    const Money after = before - taken;
    updateRecord(
        m_store, Documents, key,
        {{QStringLiteral("AMTDUETC"), amount(after)},
         {QStringLiteral("AMTDUEHC"), amount(after)},
         {QStringLiteral("SWPAID"), after.isZero() ? 1 : 0},
         {QStringLiteral("DATELSTACT"), m_date},
         {QStringLiteral("CNTTOTPAYM"), document->value(QStringLiteral("CNTTOTPAYM")).toLongLong() + 1}});
    QVariantHash change{{QStringLiteral("AMTBALDUET"), amount(-taken)},
                        {QStringLiteral("AMTBALDUEH"), amount(-taken)}};
    if (after.isZero() && !before.isZero()) {
        ++m_summary.documentsPaid;
        change.insert(QStringLiteral("CNTOPENINV"), -1);
        change.insert(QStringLiteral("CNTINVPAID"), 1);
    }
    addToRecord(m_store, Customers, customerKey(customer), change);
}

// A credit document of the customer's: unapplied cash (5) or a prepayment (10), owing `owed` (below zero).
void Poster::addDocument(const QVariantHash& entry, const QString& number, int type, int typeId, Money owed,
                         const QString& applyTo) {
    const QString customer = entry.value(QStringLiteral("IDCUST")).toString().trimmed();
    const QDate date = entry.value(QStringLiteral("DATERMIT")).toDate();
    insertRecord(m_store, Documents,
                 {{QStringLiteral("IDCUST"), customer},
                  {QStringLiteral("IDINVC"), number},
                  {QStringLiteral("IDRMIT"), entry.value(QStringLiteral("IDRMIT"))},
                  {QStringLiteral("TRXTYPETXT"), type},
                  {QStringLiteral("TRXTYPEID"), typeId},
                  {QStringLiteral("DESCINVC"), entry.value(QStringLiteral("TEXTRMIT"))},
                  {QStringLiteral("DATEINVC"), date},
                  {QStringLiteral("DATEBTCH"), date},
                  {QStringLiteral("DATEASOF"), date},
                  {QStringLiteral("DATELSTACT"), m_date},
                  {QStringLiteral("CODECURN"), QStringLiteral("CAD")},
                  {QStringLiteral("AMTINVCHC"), amount(owed)},
                  {QStringLiteral("AMTINVCTC"), amount(owed)},
                  {QStringLiteral("AMTDUEHC"), amount(owed)},
                  {QStringLiteral("AMTDUETC"), amount(owed)},
                  {QStringLiteral("IDPREPAID"), applyTo},
                  {QStringLiteral("CNTBTCH"), m_batch},
                  {QStringLiteral("CNTITEM"), entry.value(QStringLiteral("CNTITEM"))}});
    ++m_summary.documentsCreated;
    QVariantHash change{{QStringLiteral("AMTBALDUET"), amount(owed)},
                        {QStringLiteral("AMTBALDUEH"), amount(owed)},
                        {QStringLiteral("CNTOPENINV"), 1}};
    if (type == 10) {
        change.insert(QStringLiteral("CNTPPDINVC"), 1);
        change.insert(QStringLiteral("AMTPPDINVT"), amount(-owed));
        change.insert(QStringLiteral("AMTPPDINVH"), amount(-owed));
    }
    addToRecord(m_store, Customers, customerKey(customer), change);
}

} // namespace

PostingSummary postBatch(CompanyStore& store, ErrorList& errors, qint64 batch, const QDate& postingDate) {
    Transaction transaction(store);
    const PostingSummary summary = Poster(store, errors, batch, postingDate).run();
    transaction.commit();
    return summary;
}

} // namespace tillbook::engine
