#include "ledger/engine/OpenDocumentList.h"

#include "ledger/engine/PendingApplications.h"
#include "ledger/engine/RecordAccess.h"
#include "ledger/engine/StoredRow.h"
#include "ledger/engine/ValueCodec.h"
#include "ledger/engine/ViewCore.h"

namespace tillbook::engine {

namespace {

// The AR0036 fields a listed document keeps, in the order they are read.
const QStringList DocumentFields{
    QStringLiteral("IDINVC"),     QStringLiteral("TRXTYPEID"), QStringLiteral("TRXTYPETXT"),
    QStringLiteral("DESCINVC"),   QStringLiteral("DATEINVC"),  QStringLiteral("DATEDUE"),
    QStringLiteral("DATEDISC"),   QStringLiteral("AMTINVCTC"), QStringLiteral("AMTDUETC"),
    QStringLiteral("AMTDISCTC"),  QStringLiteral("IDCUSTPO"),  QStringLiteral("IDORDERNBR"),
    QStringLiteral("CNTTOTPAYM"), QStringLiteral("IDRMIT")};
enum Source {
    SourceNumber,
    SourceTypeId,
    SourceType,
    SourceDescription,
    SourceDate,
    SourceDueDate,
    SourceDiscountDate,
    SourceAmount,
    SourceDue,
    SourceDiscount,
    SourcePurchaseOrder,
    SourceOrder,
    SourcePayments,
    SourceRemittance
};

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

// A row of AR0036 (DocumentFields) into a listed document, every member set, so that a document of an
// earlier list can be written over.
class DocumentDecoder {
public:
    DocumentDecoder(QDate receiptDate, const QHash<QString, PendingAmounts>& pending)
        : m_date(receiptDate), m_pending(pending), m_source(viewDef(QStringLiteral("AR0036"))),
          m_amount(def(SourceAmount)), m_due(def(SourceDue)), m_discount(def(SourceDiscount)) {}

    void operator()(const StoredRow& row, OpenDocument& d) const {
        row.textInto(SourceNumber, d.number);
        d.typeId = int(row.integer(SourceTypeId));
        d.type = int(row.integer(SourceType));
        row.textInto(SourceDescription, d.description);
        d.date = storedDate(row.integer(SourceDate));
        d.dueDate = storedDate(row.integer(SourceDueDate));
        d.discountDate = storedDate(row.integer(SourceDiscountDate));
        row.textInto(SourcePurchaseOrder, d.purchaseOrder);
        row.textInto(SourceOrder, d.order);
        d.scheduledPayments = row.integer(SourcePayments);
        row.textInto(SourceRemittance, d.remittance);
        d.amount = storedMoney(m_amount, row.integer(SourceAmount));
        d.due = storedMoney(m_due, row.integer(SourceDue));
        // A discount is available up to its date, judged by the receipt's.
        d.discountAvailable = d.discountDate.isValid() && m_date <= d.discountDate
                                  ? storedMoney(m_discount, row.integer(SourceDiscount))
                                  : Money();
        const auto others = m_pending.constFind(d.number);
        const PendingAmounts held = others != m_pending.constEnd() ? *others : PendingAmounts{};
        d.pendingPayments = held.payments;
        d.pendingDiscounts = held.discounts;
        d.pendingAdjustments = held.adjustments;
        d.applied = d.discountTaken = d.adjustment = Money();
    }

private:
    const FieldDef& def(Source column) const {
        return m_source.fields[size_t(m_source.fieldIndex(DocumentFields[column]))];
    }

    QDate m_date;
    const QHash<QString, PendingAmounts>& m_pending;
    const ViewDef& m_source;
    const FieldDef& m_amount;
    const FieldDef& m_due;
    const FieldDef& m_discount;
};

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
    // The entry the list is for, whose own lines are not pending: the one put on the list, else the composed
    // header's while it is being keyed. A header holding a saved entry (as it does from one entry's save
    // until the next is begun) is not that entry: what it applies is pending for the entry keyed next.
    m_entry = wholeField(view, QStringLiteral("CNTITEM"));
    if (ViewCore* header = composedView(view, QStringLiteral("AR0042"));
        m_entry == 0 && header && header->isNew())
        m_entry = wholeField(*header, QStringLiteral("CNTITEM"));
    const QDate date = receiptDate(view);

    // What other entries apply is read before what is due: a posting committed in between then counts
    // twice (what is left is shown short, never over), and the entry's insert checks again under lock.
    const auto pending = pendingApplications(view.store(), customer, m_batch, m_entry);
    const DocumentDecoder decode(date, pending);
    // Invoices, debit notes, credit notes and interest with something still due, each decoded as it is read
    // over the documents of the list before the last (their strings' room reused); the list before stays
    // whole should the read fail.
    std::vector<OpenDocument>& documents = m_spare;
    size_t count = 0;
    readEachRow(view.store(), QStringLiteral("AR0036"), {{QStringLiteral("IDCUST"), customer}},
                DocumentFields, {QStringLiteral("IDINVC")},
                QStringLiteral("\"AMTDUETC\" <> 0 AND \"TRXTYPETXT\" IN (1, 2, 3, 4)"),
                [&](const StoredRow& row) {
                    if (count == documents.size())
                        documents.emplace_back();
                    decode(row, documents[count++]);
                });
    documents.resize(count);
    // The list just replaced is kept as the spare, for the next list to be decoded over.
    std::swap(m_documents, m_spare);
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

struct OpenDocumentList::ShownFields {
    int paymentType, batch, entry, key, customer, number, type, typeId, date, dueDate, discountDate,
        purchaseOrder, order, documentString, remittance, description, payments, amount, due, pendingPayments,
        pendingDiscounts, pendingAdjustments, pendingBalance, payment, paymentAmount, discount, adjustment,
        net, discountAvailable, discountShown, discountAmount, apply;

    explicit ShownFields(ViewCore& view) {
        const auto at = [&](const char* name) { return view.requireField(QLatin1String(name)); };
        paymentType = at("PAYMTYPE");
        batch = at("CNTBTCH");
        entry = at("CNTITEM");
        key = at("CNTKEY");
        customer = at("IDCUST");
        number = at("IDINVC");
        type = at("TRXTYPE");
        typeId = at("IDTRXTYPE");
        date = at("DATEINVC");
        dueDate = at("DATEDUE");
        discountDate = at("DATEDISC");
        purchaseOrder = at("CUSTPO");
        order = at("ORDRNBR");
        documentString = at("STDOCSTR");
        remittance = at("IDRMIT");
        description = at("TEXTDESC");
        payments = at("CNTPAYM");
        amount = at("ORGDOCAMT");
        due = at("AMTDUE");
        pendingPayments = at("PNDPAYTOT");
        pendingDiscounts = at("PNDDSCTOT");
        pendingAdjustments = at("PNDADJTOT");
        pendingBalance = at("PENDNGBAL");
        payment = at("PAYMAMT");
        paymentAmount = at("AMTPAYM");
        discount = at("DISCAMT");
        adjustment = at("ADJAMT");
        net = at("AMTNET");
        discountAvailable = at("AMTDISC");
        discountShown = at("OBSDISC");
        discountAmount = at("OBSDISCAMT");
        apply = at("APPLY");
    }
};

const OpenDocumentList::ShownFields& OpenDocumentList::shown(const ViewCore& view) {
    if (!m_shown)
        m_shown = std::make_shared<const ShownFields>(const_cast<ViewCore&>(view));
    return *m_shown;
}

// Hands each field the list shows, with its value for the document numbered `key`, to `visit`.
template <typename Visit>
void OpenDocumentList::eachShown(const ShownFields& f, int key, const Visit& visit) const {
    const OpenDocument& d = m_documents[size_t(key - 1)];
    visit(f.paymentType, QStringLiteral("CA"));
    visit(f.batch, qlonglong(m_batch));
    visit(f.entry, qlonglong(m_entry));
    visit(f.key, key); // an int, as a put of the key holds it
    visit(f.customer, m_customer);
    visit(f.number, d.number);
    visit(f.type, d.type);
    visit(f.typeId, d.typeId);
    visit(f.date, d.date);
    visit(f.dueDate, d.dueDate);
    visit(f.discountDate, d.discountDate);
    visit(f.purchaseOrder, d.purchaseOrder);
    visit(f.order, d.order);
    visit(f.documentString, d.order);
    visit(f.remittance, d.remittance);
    visit(f.description, d.description);
    visit(f.payments, qlonglong(d.scheduledPayments + 1));
    visit(f.amount, d.amount);
    visit(f.due, d.due);
    visit(f.pendingPayments, d.pendingPayments);
    visit(f.pendingDiscounts, d.pendingDiscounts);
    visit(f.pendingAdjustments, d.pendingAdjustments);
    visit(f.pendingBalance, d.pendingBalance());
    visit(f.payment, d.applied);
    visit(f.paymentAmount, d.applied);
    visit(f.discount, d.discountTaken);
    visit(f.adjustment, d.adjustment);
    visit(f.net, d.netBalance());
    visit(f.discountAvailable, d.discountAvailable);
    visit(f.discountShown, d.discountAvailable);
    visit(f.discountAmount, d.discountAvailable);
    visit(f.apply, d.applyFlag());
}

void OpenDocumentList::show(ViewCore& view, int key) {
    // Each value is written over the one the previous document left in the field.
    eachShown(shown(view), key, [&view](int field, const auto& value) { view.setAs(field, value); });
}

void OpenDocumentList::readAllKept(ViewCore& view, const std::vector<int>& fields, const KeptRowSink& row) {
    const ShownFields& f = shown(view);
    // Where each asked field goes in the row; a field the list does not show keeps the record's value.
    std::vector<int> slot(view.def().fields.size(), -1);
    std::vector<QVariant> values(fields.size());
    std::vector<std::pair<size_t, size_t>> repeats; // a field asked for twice: (where again, where first)
    for (size_t i = 0; i < fields.size(); ++i) {
        values[i] = view.value(fields[i]);
        int& first = slot[size_t(fields[i])];
        if (first < 0)
            first = int(i);
        else
            repeats.emplace_back(i, size_t(first));
    }
    const auto fill = [&](int field, const auto& value) {
        if (const int at = slot[size_t(field)]; at >= 0)
            assignValue(values[size_t(at)], value);
    };
    // The size is looked at again after each row, should what `row` does change the list.
    for (size_t k = 0; k < m_documents.size(); ++k) {
        eachShown(f, int(k + 1), fill);
        for (const auto& [again, first] : repeats)
            values[again] = values[first];
        row(values);
    }
    if (!m_documents.empty())
        show(view, int(m_documents.size()));
    view.setAs(f.key, int(m_documents.size() + 1));
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
            // Which of the two is used up: the document's balance, or the receipt's amount.
            view.errors().warn(
                open.isZero()
                    ? QStringLiteral("Document %1 has nothing left to pay: its balance is taken up by "
                                     "payments, discounts and adjustments already applied.")
                          .arg(d.number)
                    : QStringLiteral("Nothing is left of the receipt amount to apply to document %1.")
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
