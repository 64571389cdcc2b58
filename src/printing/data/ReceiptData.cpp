#include "printing/data/ReceiptData.h"

#include "fetching/FieldValues.h"
#include "ledger/Formats.h"
#include "ledger/LedgerError.h"
#include "ledger/Session.h"
#include "ledger/View.h"

namespace tillbook {

namespace {

const QStringList ReceiptValues = {
    QStringLiteral("Receipt Number"),    QStringLiteral("Receipt Date"),      QStringLiteral("Customer Name"),
    QStringLiteral("Customer Address1"), QStringLiteral("Customer Address2"), QStringLiteral("Customer City"),
    QStringLiteral("Customer State"),    QStringLiteral("Customer Postal"),   QStringLiteral("Company Name"),
    QStringLiteral("Company Address"),   QStringLiteral("Company City"),      QStringLiteral("Company State"),
    QStringLiteral("Company Postal"),    QStringLiteral("Payor Name"),        QStringLiteral("Customer ID")};

// What every kind's receipt states beyond its stated fields, after them: the money handed over and how it
// was used, the bank it goes to, and who took it and when.
const QStringList PaymentValues = {QStringLiteral("Amount Received"),  QStringLiteral("Total Applied"),
                                   QStringLiteral("Unapplied Amount"), QStringLiteral("Bank Code"),
                                   QStringLiteral("Received By"),      QStringLiteral("Saved At")};

// A text constant of a filter: quoted, quotes doubled, so that a code that looks like a number or a field
// name stays text.
QString quoted(const QString& text) {
    QString inner = text;
    inner.replace(u'"', QStringLiteral("\"\""));
    return u'"' + inner + u'"';
}

QString text(View& view, const FieldName& field) {
    return view.fields().item(field).text();
}

// The values printed once per receipt, by field name.
struct HeaderValues {
    QString receiptNumber, date, payer, customerId;
    QStringList payment;                   // the PaymentValues
    QStringList customer = QStringList(6); // name, two street lines, city, state, postal code
    QStringList company = QStringList(5);  // name, address, city, state, postal code
};

QStringList headerRow(ReceiptKind kind, const HeaderValues& h) {
    QStringList row{h.receiptNumber, h.date};
    if (kind != ReceiptKind::Misc)
        row << h.customer;
    row << h.company << h.payer;
    if (kind != ReceiptKind::Misc)
        row << h.customerId;
    return row;
}

// A miscellaneous line's reference, printed after the stated fields.
QStringList extraLineValues(ReceiptKind kind, View& detail) {
    return kind == ReceiptKind::Misc ? QStringList{text(detail, names::MiscReference)} : QStringList();
}

QStringList lineValues(ReceiptKind kind, View& detail) {
    switch (kind) {
    case ReceiptKind::Receipt:
        return {text(detail, names::DetailDocument), text(detail, names::DetailDescription),
                text(detail, names::DetailAmount)};
    case ReceiptKind::Prepayment:
        return {text(detail, names::DetailMatchingDocument), text(detail, names::DetailDescription),
                text(detail, names::DetailDocument), text(detail, names::DetailAmount)};
    case ReceiptKind::Misc:
        break;
    }
    return {text(detail, names::MiscDistributionCode), text(detail, names::MiscAccount),
            text(detail, names::MiscDescription), text(detail, names::MiscAmount)};
}

// The bank code of the entry's batch.
QString batchBank(Session& session, const QString& batch) {
    const std::unique_ptr<View> batches = session.openView(names::Batches);
    batches->browse(QStringLiteral("CNTBTCH = ") + batch, true);
    return batches->fetch() ? text(*batches, names::BatchBank) : QString();
}

} // namespace

QStringList ReceiptFields(ReceiptKind kind) {
    switch (kind) {
    case ReceiptKind::Receipt:
        return QStringList{QStringLiteral("Invoice Number"), QStringLiteral("Invoice Description"),
                           QStringLiteral("Amount Paid")} +
               ReceiptValues + PaymentValues;
    case ReceiptKind::Prepayment:
        return QStringList{QStringLiteral("Apply Prepayment To"), QStringLiteral("Description"),
                           QStringLiteral("Prepayment Number"), QStringLiteral("Amount Applied")} +
               ReceiptValues + PaymentValues;
    case ReceiptKind::Misc:
        break;
    }
    return QStringList{QStringLiteral("Distribution Code"), QStringLiteral("Account Number"),
                       QStringLiteral("GL Description"),    QStringLiteral("Distribution Amount"),
                       QStringLiteral("Receipt Number"),    QStringLiteral("Receipt Date"),
                       QStringLiteral("Company Name"),      QStringLiteral("Company Address"),
                       QStringLiteral("Company City"),      QStringLiteral("Company State"),
                       QStringLiteral("Company Postal"),    QStringLiteral("Payor Name"),
                       QStringLiteral("Reference")} +
           PaymentValues;
}

DataSet Read_ReceiptData(Session& session, const PrintRequest& request) {
    const QString batch = QString::number(request.batch);
    const QString entry = QString::number(request.entry);
    HeaderValues h;

    const std::unique_ptr<View> company = session.openView(names::CompanyProfile);
    company->browse(QStringLiteral("ORGID = ") + quoted(session.companyId()), true);
    if (company->fetch())
        h.company = {text(*company, names::ProfileName), text(*company, names::ProfileAddress),
                     text(*company, names::ProfileCity), text(*company, names::ProfileState),
                     text(*company, names::ProfilePostal)};

    const std::unique_ptr<View> headers = session.openView(names::ReceiptHeaders);
    View& header = *headers;
    header.browse(QStringLiteral("CNTBTCH = ") + batch + QStringLiteral(" AND CNTITEM = ") + entry, true);
    if (!header.fetch())
        throw LedgerError(QStringLiteral("Entry %1 of batch %2 is not in the ledger.").arg(entry, batch));
    h.receiptNumber = text(header, names::ReceiptNumber);
    h.date = FormatDateLong(header.fields().item(names::ReceiptDate).value().toDate());
    h.payer = text(header, names::ReceiptPayer);
    h.customerId = text(header, names::ReceiptCustomer);
    const Money received = FieldMoney(header, names::ReceiptAmount);
    const Money unapplied = FieldMoney(header, names::ReceiptUnapplied);
    QString saved = text(header, names::ReceiptAuditTime);
    if (const QDate day = header.fields().item(names::ReceiptAuditDate).value().toDate(); day.isValid())
        saved = FormatDateLong(day) + u' ' + saved;
    h.payment = {
        received.toLedgerString(), (received - unapplied).toLedgerString(), unapplied.toLedgerString(),
        batchBank(session, batch), text(header, names::ReceiptEnteredBy),   saved.trimmed()};

    std::unique_ptr<View> detail =
        session.openView(request.kind == ReceiptKind::Misc ? names::ReceiptMiscLines : names::ReceiptDetails);
    QString filter = QStringLiteral("CNTBTCH =") + batch + QStringLiteral(" AND CNTITEM =") + entry;
    if (request.kind != ReceiptKind::Misc) {
        // The customer the ledger holds for the entry, whatever the window shows.
        const QString& customerNumber = h.customerId;
        const std::unique_ptr<View> customers = session.openView(names::Customers);
        customers->browse(QStringLiteral("IDCUST = ") + quoted(customerNumber), true);
        if (customers->fetch())
            h.customer = {text(*customers, names::CustomerName),    text(*customers, names::CustomerStreet1),
                          text(*customers, names::CustomerStreet2), text(*customers, names::CustomerCity),
                          text(*customers, names::CustomerState),   text(*customers, names::CustomerPostal)};
        filter = QStringLiteral("IDCUST=") + quoted(customerNumber) + QStringLiteral(" AND ") + filter;
    }

    DataSet data;
    data.fields = ReceiptFields(request.kind);
    const QStringList headerPart = headerRow(request.kind, h);
    const int lineFields = int(ReceiptFields(request.kind).size() - headerPart.size() - h.payment.size()) -
                           (request.kind == ReceiptKind::Misc ? 1 : 0);
    data.header = QStringList(lineFields) + headerPart +
                  QStringList(request.kind == ReceiptKind::Misc ? 1 : 0) + h.payment;
    // The lines are counted first, so that the rows are made at their final number.
    int count = 0;
    if (request.kind == ReceiptKind::Misc)
        detail->clear();
    detail->browse(filter, true);
    while (detail->fetch())
        ++count;
    data.rows.reserve(size_t(count));
    if (request.kind == ReceiptKind::Misc)
        detail->clear();
    detail->browse(filter, true);
    while (detail->fetch())
        data.rows.push_back(lineValues(request.kind, *detail) + headerPart +
                            extraLineValues(request.kind, *detail) + h.payment);
    return data;
}

} // namespace tillbook
