#include "ledger/engine/BatchPosting.h"

#include "ledger/engine/AuditTrail.h"
#include "ledger/engine/BatchRules.h"
#include "ledger/engine/EntryRules.h"
#include "ledger/engine/Guarded.h"
#include "ledger/engine/RecordAccess.h"
#include "ledger/engine/Transaction.h"

namespace tillbook::engine {

namespace {

const QString Code = QStringLiteral("CA");
const QString Documents = QStringLiteral("AR0036");
const QString Customers = QStringLiteral("AR0024");
const QString Batches = QStringLiteral("AR0041");

QVariant amount(Money m) {
    return QVariant::fromValue(m);
}

QVariantHash customerKey(const QString& customer) {
    return {{QStringLiteral("IDCUST"), customer}};
}

class Poster {
public:
    Poster(CompanyStore& store, ErrorList& errors, qint64 batch, const QDate& date,
           const PostingOptions& options)
        : m_store(store), m_errors(errors), m_batch(batch),
          m_date(date.isValid() ? date : QDate::currentDate()), m_options(options) {}

    PostingSummary run();

private:
    QVariantHash batchKey() const {
        return {{QStringLiteral("CODEPYMTYP"), Code}, {QStringLiteral("CNTBTCH"), m_batch}};
    }
    int lockedStatus();
    bool begin();
    void reopenIfNothingPosted();
    bool step();
    void finish();
    void lockCustomers(const std::vector<QVariantHash>& entries);
    void postEntry(const QVariantHash& entry);
    void payDocument(const QString& customer, const QVariantHash& line);
    void addDocument(const QVariantHash& entry, const QString& number, int type, int typeId, Money owed,
                     const QString& applyTo);

    CompanyStore& m_store;
    ErrorList& m_errors;
    qint64 m_batch;
    QDate m_date;
    const PostingOptions& m_options;
    PostingSummary m_summary;
};

PostingSummary Poster::run() {
    const bool opened = begin();
    try {
        while (step())
            if (m_options.afterStep)
                m_options.afterStep(m_summary);
    } catch (...) {
        if (opened)
            reopenIfNothingPosted();
        throw;
    }
    return m_summary;
}

// A posting that fails before any entry of the batch is posted leaves the batch open, as it found it, for
// the clerk to correct; once entries are posted the batch stays being posted, to be resumed.
void Poster::reopenIfNothingPosted() {
    try {
        Transaction transaction(m_store);
        if (lockedStatus() == BatchPosting &&
            readRecords(m_store, QStringLiteral("AR0042"), batchKey(), {QStringLiteral("CNTITEM")},
                        {QStringLiteral("CNTITEM")}, QStringLiteral("\"DATEBUS\" <> 0"), 1)
                .empty())
            updateRecord(m_store, Batches, batchKey(), {{QStringLiteral("BATCHSTAT"), int(BatchOpen)}});
        transaction.commit();
    } catch (...) {
        // The failure that stopped the posting is the one reported; the batch stays being posted.
    }
}

// The batch's status, its record locked (read for update) until the step commits: entries cannot be
// added while it is read, and two postings of the batch take their steps one after the other.
int Poster::lockedStatus() {
    const auto batch = readRecordForUpdate(m_store, Batches, batchKey(), {QStringLiteral("BATCHSTAT")});
    if (!batch)
        m_errors.fail(QStringLiteral("Batch Number \"%1\" does not exist.").arg(m_batch));
    return batch->value(QStringLiteral("BATCHSTAT")).toInt();
}

// An open batch becomes "Post In Progress": no till adds an entry to it any more. One already in that
// state is a posting that stopped half-way, and goes on.
// True when this posting is the one that took the batch from open to being posted.
bool Poster::begin() {
    Transaction transaction(m_store);
    const int status = lockedStatus();
    if (status == BatchOpen)
        updateRecord(m_store, Batches, batchKey(),
                     {{QStringLiteral("BATCHSTAT"), int(BatchPosting)}, {QStringLiteral("NBRERRORS"), 0}});
    else if (status != BatchPosting)
        m_errors.fail(QStringLiteral("Batch %1 is not open; only an open batch can be posted.").arg(m_batch));
    transaction.commit();
    return status == BatchOpen;
}

// Posts the next entries not yet posted, at most entriesPerStep of them, in one transaction; marks the
// batch Posted when none is left. False when the posting is done.
bool Poster::step() {
    Transaction transaction(m_store);
    const int status = lockedStatus();
    if (status == BatchPosted)
        return false; // another posting of the batch finished it
    if (status != BatchPosting)
        m_errors.fail(QStringLiteral("Batch %1 is no longer being posted.").arg(m_batch));
    const auto entries =
        readRecords(m_store, QStringLiteral("AR0042"), batchKey(),
                    {QStringLiteral("CNTITEM"), QStringLiteral("IDCUST"), QStringLiteral("RMITTYPE"),
                     QStringLiteral("IDRMIT"), QStringLiteral("DATERMIT"), QStringLiteral("REMUNAPLTC"),
                     QStringLiteral("TEXTRMIT")},
                    {QStringLiteral("CNTITEM")}, QStringLiteral("\"DATEBUS\" = 0"),
                    std::max(1, m_options.entriesPerStep));
    if (entries.empty()) {
        finish();
        transaction.commit();
        return false;
    }
    lockCustomers(entries);
    for (const QVariantHash& entry : entries)
        postEntry(entry);
    // The step's entries are the first unposted ones in number order, and none can join the batch while
    // it is being posted: the unposted entries from the first number to the last are exactly them.
    updateRun(m_store, QStringLiteral("AR0042"), batchKey(), QStringLiteral("CNTITEM"),
              entries.front().value(QStringLiteral("CNTITEM")),
              entries.back().value(QStringLiteral("CNTITEM")), {{QStringLiteral("DATEBUS"), m_date}},
              QStringLiteral("\"DATEBUS\" = 0"));
    transaction.commit();
    return true;
}

void Poster::finish() {
    m_summary.postingSequence = m_store.nextNumber(QStringLiteral("AR0041/%1/postings").arg(Code));
    updateRecord(m_store, Batches, batchKey(),
                 {{QStringLiteral("BATCHSTAT"), int(BatchPosted)},
                  {QStringLiteral("POSTSEQNBR"), m_summary.postingSequence},
                  {QStringLiteral("DATELSTEDT"), m_date}});
    auditBatchPosted(m_store, m_options.user, Code, m_batch);
}

// The customers of a step are locked first, in one order (their numbers), before any of their documents
// is read: a till applying to a customer's documents locks the customer too, so each sees the other's
// work whole, and two steps never wait for each other in a circle.
void Poster::lockCustomers(const std::vector<QVariantHash>& entries) {
    if (m_store.dialect().lockForUpdate().isEmpty())
        return; // the store's write lock already keeps everyone else out
    QStringList customers;
    for (const QVariantHash& entry : entries)
        if (entry.value(QStringLiteral("RMITTYPE")).toInt() != MiscellaneousReceipt)
            customers << entry.value(QStringLiteral("IDCUST")).toString().trimmed();
    customers.sort();
    customers.removeDuplicates();
    for (const QString& customer : customers)
        readRecordForUpdate(m_store, Customers, customerKey(customer), {QStringLiteral("IDCUST")});
}

// Entries are posted in their numbers' order; an entry of the step is wholly posted or not at all.
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
    // The amount due and payment count are written back from what is read here: read for update.
    const auto document = readRecordForUpdate(m_store, Documents, key,
                                              {QStringLiteral("AMTDUETC"), QStringLiteral("CNTTOTPAYM")});
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
    // Relative: the customer's figures are added to, never written back from a read.
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

PostingSummary postBatch(CompanyStore& store, ErrorList& errors, qint64 batch, const QDate& postingDate,
                         const PostingOptions& options) {
    return guarded(errors, [&] { return Poster(store, errors, batch, postingDate, options).run(); });
}

} // namespace tillbook::engine
