#include "ledger/engine/LedgerCheck.h"

#include "ledger/engine/AuditTrail.h"
#include "ledger/engine/BatchRules.h"
#include "ledger/engine/EntryRules.h"
#include "ledger/engine/RecordAccess.h"

#include <QDate>
#include <QHash>
#include <QSet>
#include <map>

namespace tillbook::engine {

namespace {

// Every record of a view, in the order of its primary key.
std::vector<QVariantHash> everyRecord(CompanyStore& store, const QString& viewId, const QStringList& fields) {
    const ViewDef& def = viewDef(viewId);
    QStringList key;
    for (int field : def.primaryKey().fields)
        key << def.fields[size_t(field)].name;
    return readRecords(store, viewId, {}, fields, key);
}

QString text(const QVariantHash& record, const char* field) {
    return record.value(QLatin1String(field)).toString().trimmed();
}
qint64 whole(const QVariantHash& record, const char* field) {
    return record.value(QLatin1String(field)).toLongLong();
}
Money amount(const QVariantHash& record, const char* field) {
    return moneyOf(record.value(QLatin1String(field)));
}
QString shown(Money m) {
    return m.toPlainString(3);
}

// A customer's document, by customer and number; an entry, by payment code, batch and entry number.
QString documentKey(const QString& customer, const QString& number) {
    return customer + u'/' + number;
}
QString entryKey(const QString& code, qint64 batch, qint64 entry) {
    return QStringLiteral("%1/%2/%3").arg(code).arg(batch).arg(entry);
}

struct Applications {
    Money posted;
    qint64 postedCount = 0;
    Money pending;
};

class Checker {
public:
    explicit Checker(CompanyStore& store) : m_store(store) {}
    LedgerCheckResult run();

private:
    void load();
    void checkBatches();
    void checkEntries();
    void checkDocuments();
    void checkMadeDocuments();
    void checkCustomers();
    void fail(const QString& violation) { m_result.violations << violation; }
    bool isPosted(const QVariantHash& entry) const {
        return entry.value(QStringLiteral("DATEBUS")).toDate().isValid();
    }

    CompanyStore& m_store;
    LedgerCheckResult m_result;
    std::vector<QVariantHash> m_batches, m_entries, m_lines, m_miscLines, m_documents, m_customers;
    QHash<QString, AuditedBatch> m_audited;        // "code/batch" -> its audit trail
    QHash<QString, int> m_batchStatus;             // "code/batch" -> BATCHSTAT
    QHash<QString, const QVariantHash*> m_entryOf; // entryKey -> entry
};

LedgerCheckResult Checker::run() {
    load();
    checkBatches();
    checkEntries();
    checkDocuments();
    checkMadeDocuments();
    checkCustomers();
    return m_result;
}

void Checker::load() {
    m_batches = everyRecord(m_store, QStringLiteral("AR0041"),
                            {"CODEPYMTYP", "CNTBTCH", "CNTENTER", "AMTENTER", "CNTLASTITM", "BATCHSTAT"});
    m_entries = everyRecord(
        m_store, QStringLiteral("AR0042"),
        {"CODEPYMTYP", "CNTBTCH", "CNTITEM", "IDCUST", "RMITTYPE", "AMTRMIT", "REMUNAPLTC", "DATEBUS"});
    m_lines = everyRecord(m_store, QStringLiteral("AR0044"),
                          {"CODEPAYM", "CNTBTCH", "CNTITEM", "CNTLINE", "IDCUST", "IDINVC", "RMITTYPE",
                           "AMTPAYM", "AMTERNDISC", "AMTADJTOT"});
    m_miscLines =
        everyRecord(m_store, QStringLiteral("AR0043"), {"CODEPAYM", "CNTBTCH", "CNTITEM", "AMTDIST"});
    m_documents = everyRecord(m_store, QStringLiteral("AR0036"),
                              {"IDCUST", "IDINVC", "TRXTYPETXT", "AMTINVCTC", "AMTDUETC", "AMTDUEHC",
                               "CNTTOTPAYM", "SWPAID", "CNTBTCH", "CNTITEM"});
    m_customers = everyRecord(m_store, QStringLiteral("AR0024"), {"IDCUST", "AMTBALDUET", "CNTOPENINV"});
    m_audited = auditedBatches(m_store);
    m_result.batches = qint64(m_batches.size());
    m_result.entries = qint64(m_entries.size());
    m_result.documents = qint64(m_documents.size());
    m_result.customers = qint64(m_customers.size());
    for (const QVariantHash& b : m_batches)
        m_batchStatus.insert(QStringLiteral("%1/%2").arg(text(b, "CODEPYMTYP")).arg(whole(b, "CNTBTCH")),
                             int(whole(b, "BATCHSTAT")));
    for (const QVariantHash& e : m_entries)
        m_entryOf.insert(entryKey(text(e, "CODEPYMTYP"), whole(e, "CNTBTCH"), whole(e, "CNTITEM")), &e);
}

void Checker::checkBatches() {
    std::map<std::pair<QString, qint64>, std::vector<const QVariantHash*>> entriesOf;
    for (const QVariantHash& e : m_entries)
        entriesOf[{text(e, "CODEPYMTYP"), whole(e, "CNTBTCH")}].push_back(&e);
    for (const QVariantHash& b : m_batches) {
        const qint64 number = whole(b, "CNTBTCH");
        const auto& entries = entriesOf[{text(b, "CODEPYMTYP"), number}];
        const int status = int(whole(b, "BATCHSTAT"));
        Money total;
        qint64 posted = 0;
        for (size_t i = 0; i < entries.size(); ++i) {
            total += amount(*entries[i], "AMTRMIT");
            posted += isPosted(*entries[i]) ? 1 : 0;
            // Entries come in number order: number i + 1 at place i, or a number is missing or twice.
            if (whole(*entries[i], "CNTITEM") != qint64(i + 1) &&
                (i == 0 || whole(*entries[i - 1], "CNTITEM") == qint64(i)))
                fail(QStringLiteral("Batch %1: entry number %2 stands where %3 should.")
                         .arg(number)
                         .arg(whole(*entries[i], "CNTITEM"))
                         .arg(i + 1));
        }
        const qint64 count = qint64(entries.size());
        if (whole(b, "CNTENTER") != count)
            fail(QStringLiteral("Batch %1 counts %2 entries and holds %3.")
                     .arg(number)
                     .arg(whole(b, "CNTENTER"))
                     .arg(count));
        if (whole(b, "CNTLASTITM") != count)
            fail(QStringLiteral("Batch %1's last entry number is %2, not %3.")
                     .arg(number)
                     .arg(whole(b, "CNTLASTITM"))
                     .arg(count));
        if (amount(b, "AMTENTER") != total)
            fail(QStringLiteral("Batch %1's total is %2; its entries add up to %3.")
                     .arg(number)
                     .arg(shown(amount(b, "AMTENTER")), shown(total)));
        // A batch made since the company keeps a trail: what it holds is what its tills saved.
        const auto audited =
            m_audited.constFind(QStringLiteral("%1/%2").arg(text(b, "CODEPYMTYP")).arg(number));
        if (audited != m_audited.constEnd() && (audited->entries != count || audited->total != total))
            fail(QStringLiteral("Batch %1 holds %2 entries of %3 in all; its audit trail saved %4 of %5.")
                     .arg(number)
                     .arg(count)
                     .arg(shown(total))
                     .arg(audited->entries)
                     .arg(shown(audited->total)));
        if (status == BatchPosted && posted != count)
            fail(QStringLiteral("Batch %1 is posted, but %2 of its %3 entries are not.")
                     .arg(number)
                     .arg(count - posted)
                     .arg(count));
        if (status == BatchOpen && posted != 0)
            fail(QStringLiteral("Batch %1 is open, but %2 of its entries are posted.")
                     .arg(number)
                     .arg(posted));
    }
}

void Checker::checkEntries() {
    QHash<QString, Money> applied; // entryKey -> what its lines apply or pay
    QHash<QString, int> lineCount;
    for (const QVariantHash& e : m_entries)
        if (!m_batchStatus.contains(
                QStringLiteral("%1/%2").arg(text(e, "CODEPYMTYP")).arg(whole(e, "CNTBTCH"))))
            fail(QStringLiteral("Entry %1 of batch %2 has no batch.")
                     .arg(whole(e, "CNTITEM"))
                     .arg(whole(e, "CNTBTCH")));
    const auto header = [&](const QVariantHash& line, const char* view) {
        const QString key = entryKey(text(line, "CODEPAYM"), whole(line, "CNTBTCH"), whole(line, "CNTITEM"));
        if (!m_entryOf.contains(key))
            fail(QStringLiteral("A line of %1 belongs to entry %2 of batch %3, which does not exist.")
                     .arg(QLatin1String(view))
                     .arg(whole(line, "CNTITEM"))
                     .arg(whole(line, "CNTBTCH")));
        return key;
    };
    for (const QVariantHash& line : m_lines) {
        const QString key = header(line, "AR0044");
        applied[key] += amount(line, "AMTPAYM");
        ++lineCount[key];
    }
    for (const QVariantHash& line : m_miscLines)
        applied[header(line, "AR0043")] += amount(line, "AMTDIST");
    for (const QVariantHash& e : m_entries) {
        const QString key = entryKey(text(e, "CODEPYMTYP"), whole(e, "CNTBTCH"), whole(e, "CNTITEM"));
        const int type = int(whole(e, "RMITTYPE"));
        const Money receipt = amount(e, "AMTRMIT");
        const Money lines =
            applied.value(key) + (type == OrdinaryReceipt ? amount(e, "REMUNAPLTC") : Money());
        if (lines != receipt)
            fail(QStringLiteral("Entry %1 of batch %2 is %3; its lines and unapplied amount make %4.")
                     .arg(whole(e, "CNTITEM"))
                     .arg(whole(e, "CNTBTCH"))
                     .arg(shown(receipt), shown(lines)));
        if (type == Prepayment && lineCount.value(key) != 1)
            fail(QStringLiteral("Prepayment %1 of batch %2 has %3 lines, not one.")
                     .arg(whole(e, "CNTITEM"))
                     .arg(whole(e, "CNTBTCH"))
                     .arg(lineCount.value(key)));
    }
}

void Checker::checkDocuments() {
    QHash<QString, Applications> applications;
    for (const QVariantHash& line : m_lines) {
        if (text(line, "RMITTYPE") != QLatin1String("1"))
            continue;
        const QVariantHash* entry =
            m_entryOf.value(entryKey(text(line, "CODEPAYM"), whole(line, "CNTBTCH"), whole(line, "CNTITEM")));
        const int status = m_batchStatus.value(
            QStringLiteral("%1/%2").arg(text(line, "CODEPAYM")).arg(whole(line, "CNTBTCH")));
        if (!entry || status == BatchDeleted)
            continue;
        const Money taken = amount(line, "AMTPAYM") + amount(line, "AMTERNDISC") + amount(line, "AMTADJTOT");
        Applications& a = applications[documentKey(text(line, "IDCUST"), text(line, "IDINVC"))];
        if (isPosted(*entry)) {
            a.posted += taken;
            ++a.postedCount;
        } else if (status != BatchPosted) {
            a.pending += taken;
        }
    }
    QSet<QString> known;
    for (const QVariantHash& d : m_documents) {
        const QString key = documentKey(text(d, "IDCUST"), text(d, "IDINVC"));
        known.insert(key);
        const QString name =
            QStringLiteral("Document %1 of customer %2").arg(text(d, "IDINVC"), text(d, "IDCUST"));
        const Money invoiced = amount(d, "AMTINVCTC");
        const Money due = amount(d, "AMTDUETC");
        const Applications a = applications.value(key);
        if (amount(d, "AMTDUEHC") != due)
            fail(QStringLiteral("%1 is due %2 and %3 in functional currency.")
                     .arg(name, shown(due), shown(amount(d, "AMTDUEHC"))));
        if ((whole(d, "SWPAID") != 0) != due.isZero())
            fail(QStringLiteral("%1 is due %2 but marked %3.")
                     .arg(name, shown(due),
                          whole(d, "SWPAID") ? QStringLiteral("paid") : QStringLiteral("unpaid")));
        if (whole(d, "CNTTOTPAYM") != a.postedCount)
            fail(QStringLiteral("%1 counts %2 payments; %3 posted lines pay it.")
                     .arg(name)
                     .arg(whole(d, "CNTTOTPAYM"))
                     .arg(a.postedCount));
        if (invoiced.isZero())
            continue;
        // Everything below in the document's own direction: owed (invoices) or owing (credit notes).
        const auto inDirection = [&](Money m) { return invoiced.isNegative() ? -m : m; };
        if (inDirection(due).isNegative() || inDirection(due) > inDirection(invoiced))
            fail(QStringLiteral("%1 of %2 is due %3: paid beyond what it owed.")
                     .arg(name, shown(invoiced), shown(due)));
        if (inDirection(invoiced - due) < inDirection(a.posted))
            fail(QStringLiteral("%1 of %2 is due %3, though %4 was posted to it: a payment is missing.")
                     .arg(name, shown(invoiced), shown(due), shown(a.posted)));
        if (inDirection(due - a.pending).isNegative())
            fail(QStringLiteral("%1 is due %2, and unposted entries apply %3 to it.")
                     .arg(name, shown(due), shown(a.pending)));
    }
    for (auto it = applications.constBegin(); it != applications.constEnd(); ++it)
        if (!known.contains(it.key()))
            fail(QStringLiteral("Receipt lines apply to document %1, which does not exist.").arg(it.key()));
}

// Each posted receipt's unapplied cash (type 5) and each posted prepayment (type 10): one document each.
void Checker::checkMadeDocuments() {
    QHash<QString, std::vector<const QVariantHash*>> madeBy;
    for (const QVariantHash& d : m_documents) {
        const int type = int(whole(d, "TRXTYPETXT"));
        if (type == 5 || type == 10)
            madeBy[entryKey(QStringLiteral("CA"), whole(d, "CNTBTCH"), whole(d, "CNTITEM"))].push_back(&d);
    }
    for (const QVariantHash& e : m_entries) {
        const QString key = entryKey(text(e, "CODEPYMTYP"), whole(e, "CNTBTCH"), whole(e, "CNTITEM"));
        const int type = int(whole(e, "RMITTYPE"));
        Money owed;
        if (isPosted(e) && type == OrdinaryReceipt)
            owed = -amount(e, "REMUNAPLTC");
        else if (isPosted(e) && type == Prepayment)
            owed = -amount(e, "AMTRMIT");
        const auto made = madeBy.take(key);
        const size_t expected = owed.isZero() ? 0 : 1;
        if (made.size() != expected || (expected == 1 && amount(*made.front(), "AMTINVCTC") != owed))
            fail(QStringLiteral("Entry %1 of batch %2 made %3 documents, not %4 of %5.")
                     .arg(whole(e, "CNTITEM"))
                     .arg(whole(e, "CNTBTCH"))
                     .arg(made.size())
                     .arg(expected)
                     .arg(shown(owed)));
    }
    for (auto it = madeBy.constBegin(); it != madeBy.constEnd(); ++it)
        fail(QStringLiteral("Document %1 was made by entry %2, which does not exist.")
                 .arg(text(*it.value().front(), "IDINVC"), it.key()));
}

void Checker::checkCustomers() {
    QHash<QString, Money> balance;
    QHash<QString, qint64> open;
    for (const QVariantHash& d : m_documents) {
        const Money due = amount(d, "AMTDUETC");
        balance[text(d, "IDCUST")] += due;
        open[text(d, "IDCUST")] += due.isZero() ? 0 : 1;
    }
    for (const QVariantHash& c : m_customers) {
        const QString id = text(c, "IDCUST");
        if (amount(c, "AMTBALDUET") != balance.value(id))
            fail(QStringLiteral("Customer %1's balance is %2; its documents add up to %3.")
                     .arg(id, shown(amount(c, "AMTBALDUET")), shown(balance.value(id))));
        if (whole(c, "CNTOPENINV") != open.value(id))
            fail(QStringLiteral("Customer %1 counts %2 open documents and has %3.")
                     .arg(id)
                     .arg(whole(c, "CNTOPENINV"))
                     .arg(open.value(id)));
        balance.remove(id);
    }
    for (auto it = balance.constBegin(); it != balance.constEnd(); ++it)
        fail(QStringLiteral("Documents of customer %1, who does not exist.").arg(it.key()));
}

} // namespace

LedgerCheckResult checkLedger(CompanyStore& store) {
    return Checker(store).run();
}

} // namespace tillbook::engine
