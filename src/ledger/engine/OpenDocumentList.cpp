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
    const ViewDef& source = viewDef(QStringLiteral("AR0036"));
    const auto def = [&source](Source column) -> const FieldDef& {
        return source.fields[size_t(source.fieldIndex(DocumentFields[column]))];
    };
    const FieldDef& amountDef = def(SourceAmount);
    const FieldDef& dueDef = def(SourceDue);
    const FieldDef& discountDef = def(SourceDiscount);
    // Invoices, debit notes, credit notes and interest with something still due, each decoded as it is read
    // into the spare list (whose room is kept from one list to the next); the list before stays whole
    // should the read fail.
    std::vector<OpenDocument>& documents = m_spare;
    documents.clear();
    readEachRow(view.store(), QStringLiteral("AR0036"), {{QStringLiteral("IDCUST"), customer}},
                DocumentFields, {QStringLiteral("IDINVC")},
                QStringLiteral("\"AMTDUETC\" <> 0 AND \"TRXTYPETXT\" IN (1, 2, 3, 4)"),
                [&](const StoredRow& row) {
                    OpenDocument& document = documents.emplace_back();
                    document.number = row.text(SourceNumber);
                    document.typeId = int(row.integer(SourceTypeId));
                    document.type = int(row.integer(SourceType));
                    document.description = row.text(SourceDescription);
                    document.date = storedDate(row.integer(SourceDate));
                    document.dueDate = storedDate(row.integer(SourceDueDate));
                    document.discountDate = storedDate(row.integer(SourceDiscountDate));
                    document.purchaseOrder = row.text(SourcePurchaseOrder);
                    document.order = row.text(SourceOrder);
                    document.scheduledPayments = row.integer(SourcePayments);
                    document.remittance = row.text(SourceRemittance);
                    document.amount = storedMoney(amountDef, row.integer(SourceAmount));
                    document.due = storedMoney(dueDef, row.integer(SourceDue));
                    if (document.discountDate.isValid() && date <= document.discountDate)
                        document.discountAvailable = storedMoney(discountDef, row.integer(SourceDiscount));
                    const auto others = pending.constFind(document.number);
                    if (others != pending.constEnd()) {
                        document.pendingPayments = others->payments;
                        document.pendingDiscounts = others->discounts;
                        document.pendingAdjustments = others->adjustments;
                    }
                });
    std::swap(m_documents, m_spare);
    m_spare.clear();
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

void OpenDocumentList::show(ViewCore& view, int key) {
    const OpenDocument& d = m_documents[size_t(key - 1)];
    const ShownFields& f = shown(view);
    // Each value is written over the one the previous document left in the field.
    const auto amount = [&](int field, Money value) { view.setAs(field, value); };
    view.setAs(f.paymentType, QStringLiteral("CA"));
    view.setAs(f.batch, qlonglong(m_batch));
    view.setAs(f.entry, qlonglong(m_entry));
    view.setAs(f.key, qlonglong(key));
    view.setAs(f.customer, m_customer);
    view.setAs(f.number, d.number);
    view.setAs(f.type, d.type);
    view.setAs(f.typeId, d.typeId);
    view.setAs(f.date, d.date);
    view.setAs(f.dueDate, d.dueDate);
    view.setAs(f.discountDate, d.discountDate);
    view.setAs(f.purchaseOrder, d.purchaseOrder);
    view.setAs(f.order, d.order);
    view.setAs(f.documentString, d.order);
    view.setAs(f.remittance, d.remittance);
    view.setAs(f.description, d.description);
    view.setAs(f.payments, qlonglong(d.scheduledPayments + 1));
    amount(f.amount, d.amount);
    amount(f.due, d.due);
    amount(f.pendingPayments, d.pendingPayments);
    amount(f.pendingDiscounts, d.pendingDiscounts);
    amount(f.pendingAdjustments, d.pendingAdjustments);
    amount(f.pendingBalance, d.pendingBalance());
    amount(f.payment, d.applied);
    amount(f.paymentAmount, d.applied);
    amount(f.discount, d.discountTaken);
    amount(f.adjustment, d.adjustment);
    amount(f.net, d.netBalance());
    amount(f.discountAvailable, d.discountAvailable);
    amount(f.discountShown, d.discountAvailable);
    amount(f.discountAmount, d.discountAvailable);
    view.setAs(f.apply, d.applyFlag());
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
