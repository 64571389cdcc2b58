#include "ledger/engine/OpenDocumentList.h"

#include "ledger/engine/PendingApplications.h"
#include "ledger/engine/RecordAccess.h"
#include "ledger/engine/ValueCodec.h"
#include "ledger/engine/ViewCore.h"

namespace tillbook::engine {

namespace {

const QStringList DocumentFields{
    QStringLiteral("IDINVC"),     QStringLiteral("TRXTYPEID"), QStringLiteral("TRXTYPETXT"),
    QStringLiteral("DESCINVC"),   QStringLiteral("DATEINVC"),  QStringLiteral("DATEDUE"),
    QStringLiteral("DATEDISC"),   QStringLiteral("AMTINVCTC"), QStringLiteral("AMTDUETC"),
    QStringLiteral("AMTDISCTC"),  QStringLiteral("IDCUSTPO"),  QStringLiteral("IDORDERNBR"),
    QStringLiteral("CNTTOTPAYM"), QStringLiteral("IDRMIT")};

QString money(Money m) {
    return m.toLedgerString();
}

// The date discounts are judged by: the entry's receipt date, else the session's date.
QDate receiptDate(ViewCore& view) {
    if (ViewCore* header = composedView(view, QStringLiteral("AR0042"))) {
        const QDate date = header->value(QStringLiteral("DATERMIT")).toDate();
        if (date.isValid())
            return date;
    }
    return view.session().sessionDate;
}

qint64 fromListOrComposed(ViewCore& view, const QString& field, const QString& viewId) {
    const qint64 put = wholeField(view, field);
    if (put != 0)
        return put;
    ViewCore* other = composedView(view, viewId);
    return other ? wholeField(*other, field) : 0;
}

} // namespace

bool OpenDocument::hasPending() const {
    return !pendingPayments.isZero() || !pendingDiscounts.isZero() || !pendingAdjustments.isZero();
}

QString OpenDocument::applyFlag() const {
    if (isApplied())
        return QStringLiteral("Y");
    return hasPending() ? QStringLiteral("X") : QStringLiteral("N");
}

void OpenDocumentList::initRecord(ViewCore&) {
    forget();
}

void OpenDocumentList::forget() {
    m_documents.clear();
    m_customer.clear();
}

void OpenDocumentList::checkPut(ViewCore& view, int field, const QVariant& value) {
    const FieldDef& def = view.def().fields[size_t(field)];
    if (def.name == QLatin1String("APPLY")) {
        const QString flag = value.toString().trimmed().toUpper();
        if (flag != QLatin1String("Y") && flag != QLatin1String("N"))
            view.errors().fail(QStringLiteral("%1 \"%2\" is not allowed: put Y to apply the document or N to "
                                              "leave it.")
                                   .arg(def.label(), value.toString()));
        return;
    }
    ViewRules::checkPut(view, field, value);
}

void OpenDocumentList::process(ViewCore& view) {
    const QString customer = textField(view, QStringLiteral("IDCUST"));
    if (customer.isEmpty())
        view.errors().fail(
            QStringLiteral("Put a customer number in ID Customer (IDCUST) before building the list "
                           "of open documents."));
    if (!readRecord(view.store(), QStringLiteral("AR0024"), {{QStringLiteral("IDCUST"), customer}},
                    {QStringLiteral("IDCUST")}))
        view.errors().fail(QStringLiteral("Customer Number \"%1\" does not exist.").arg(customer));
    m_customer = customer;
    m_batch = fromListOrComposed(view, QStringLiteral("CNTBTCH"), QStringLiteral("AR0041"));
    m_entry = fromListOrComposed(view, QStringLiteral("CNTITEM"), QStringLiteral("AR0042"));
    const QDate date = receiptDate(view);

    // What other entries apply is read before what is due: a posting committed in between then counts
    // twice (what is left is shown short, never over), and the entry's insert checks again under lock.
    const auto pending = pendingApplications(view.store(), customer, m_batch, m_entry);
    // Invoices, debit notes, credit notes and interest with something still due.
    const auto records = readRecords(
        view.store(), QStringLiteral("AR0036"), {{QStringLiteral("IDCUST"), customer}}, DocumentFields,
        {QStringLiteral("IDINVC")}, QStringLiteral("\"AMTDUETC\" <> 0 AND \"TRXTYPETXT\" IN (1, 2, 3, 4)"));
    m_documents.clear();
    for (const QVariantHash& record : records) {
        OpenDocument document;
        document.source = record;
        document.number = record.value(QStringLiteral("IDINVC")).toString();
        document.due = moneyOf(record.value(QStringLiteral("AMTDUETC")));
        const QDate discountDate = record.value(QStringLiteral("DATEDISC")).toDate();
        if (discountDate.isValid() && date <= discountDate)
            document.discountAvailable = moneyOf(record.value(QStringLiteral("AMTDISCTC")));
        const PendingAmounts others = pending.value(document.number);
        document.pendingPayments = others.payments;
        document.pendingDiscounts = others.discounts;
        document.pendingAdjustments = others.adjustments;
        m_documents.push_back(document);
    }
    view.set(QStringLiteral("PAYMTYPE"), QStringLiteral("CA"));
    view.set(QStringLiteral("CNTBTCH"), qlonglong(m_batch));
    view.set(QStringLiteral("CNTITEM"), qlonglong(m_entry));
}

bool OpenDocumentList::readKept(ViewCore& view) {
    const qint64 key = wholeField(view, QStringLiteral("CNTKEY"));
    if (key < 1 || key > qint64(m_documents.size()))
        return false;
    show(view, int(key));
    return true;
}

void OpenDocumentList::show(ViewCore& view, int key) {
    const OpenDocument& d = m_documents[size_t(key - 1)];
    const auto put = [&](const char* field, const QVariant& value) { view.set(QLatin1String(field), value); };
    const auto amount = [&](const char* field, Money value) { put(field, QVariant::fromValue(value)); };
    put("PAYMTYPE", QStringLiteral("CA"));
    put("CNTBTCH", qlonglong(m_batch));
    put("CNTITEM", qlonglong(m_entry));
    put("CNTKEY", qlonglong(key));
    put("IDCUST", m_customer);
    put("IDINVC", d.number);
    put("TRXTYPE", d.source.value(QStringLiteral("TRXTYPETXT")));
    put("IDTRXTYPE", d.source.value(QStringLiteral("TRXTYPEID")));
    put("DATEINVC", d.source.value(QStringLiteral("DATEINVC")));
    put("DATEDUE", d.source.value(QStringLiteral("DATEDUE")));
    put("DATEDISC", d.source.value(QStringLiteral("DATEDISC")));
    put("CUSTPO", d.source.value(QStringLiteral("IDCUSTPO")));
    put("ORDRNBR", d.source.value(QStringLiteral("IDORDERNBR")));
    put("STDOCSTR", d.source.value(QStringLiteral("IDORDERNBR")));
    put("IDRMIT", d.source.value(QStringLiteral("IDRMIT")));
    put("TEXTDESC", d.source.value(QStringLiteral("DESCINVC")));
    put("CNTPAYM", qlonglong(d.source.value(QStringLiteral("CNTTOTPAYM")).toLongLong() + 1));
    amount("ORGDOCAMT", moneyOf(d.source.value(QStringLiteral("AMTINVCTC"))));
    amount("AMTDUE", d.due);
    amount("PNDPAYTOT", d.pendingPayments);
    amount("PNDDSCTOT", d.pendingDiscounts);
    amount("PNDADJTOT", d.pendingAdjustments);
    amount("PENDNGBAL", d.pendingBalance());
    amount("PAYMAMT", d.applied);
    amount("AMTPAYM", d.applied);
    amount("DISCAMT", d.discountTaken);
    amount("ADJAMT", d.adjustment);
    amount("AMTNET", d.netBalance());
    amount("AMTDISC", d.discountAvailable);
    amount("OBSDISC", d.discountAvailable);
    amount("OBSDISCAMT", d.discountAvailable);
    put("APPLY", d.applyFlag());
}

void OpenDocumentList::updateKept(ViewCore& view) {
    const qint64 key = wholeField(view, QStringLiteral("CNTKEY"));
    if (key < 1 || key > qint64(m_documents.size()))
        view.errors().fail(
            QStringLiteral("Count key %1 is not in the list of open documents; process the list "
                           "and read a document first.")
                .arg(key));
    OpenDocument& d = m_documents[size_t(key - 1)];
    if (textField(view, QStringLiteral("APPLY")).toUpper() != QLatin1String("Y")) {
        d.applied = d.discountTaken = d.adjustment = Money();
        show(view, int(key));
        return;
    }
    // Discount and adjustment as put on the record; the discount no more than is available.
    d.discountTaken = moneyField(view, QStringLiteral("DISCAMT"));
    if (d.discountTaken > d.discountAvailable || d.discountTaken.isNegative())
        view.errors().fail(
            QStringLiteral("Discount Taken Amount \"%1\" is more than the discount available on "
                           "document %2 (%3).")
                .arg(money(d.discountTaken), d.number, money(d.discountAvailable)));
    d.adjustment = moneyField(view, QStringLiteral("ADJAMT"));

    Money appliedElsewhere;
    for (const OpenDocument& other : m_documents)
        if (&other != &d)
            appliedElsewhere += other.applied;
    const Money left = moneyField(view, QStringLiteral("AMTRMIT")) - appliedElsewhere;
    const Money open = d.pendingBalance() - d.discountTaken - d.adjustment; // before this entry's payment
    const Money asked = moneyField(view, QStringLiteral("PAYMAMT"));
    if (asked != d.applied && !asked.isZero()) {
        // An amount put by the clerk: within the document's balance, whichever its sign.
        if ((open.isNegative() ? asked < open || asked > Money() : asked > open || asked.isNegative()))
            view.errors().fail(
                QStringLiteral("Receipt Amount \"%1\" is more than the net balance of document %2 "
                               "(%3).")
                    .arg(money(asked), d.number, money(open)));
        d.applied = asked;
    } else {
        d.applied = min(left, open);
        if (!open.isNegative() && d.applied <= Money()) {
            d.applied = Money();
            view.errors().warn(
                QStringLiteral("Nothing is left of the receipt amount to apply to document %1.")
                    .arg(d.number));
        }
    }
    show(view, int(key));
}

OpenDocumentList* composedDocumentList(ViewCore& header) {
    ViewCore* list = composedView(header, QStringLiteral("AR0061"));
    return list ? dynamic_cast<OpenDocumentList*>(&list->rules()) : nullptr;
}

} // namespace tillbook::engine
