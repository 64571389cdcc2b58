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

QString text(View& view, const char* field) {
    return view.fields().item(QLatin1String(field)).text();
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
    return kind == ReceiptKind::Misc ? QStringList{text(detail, "GLREF")} : QStringList();
}

QStringList lineValues(ReceiptKind kind, View& detail) {
    switch (kind) {
    case ReceiptKind::Receipt:
        return {text(detail, "IDINVC"), text(detail, "DESCINVC"), text(detail, "AMTPAYM")};
    case ReceiptKind::Prepayment:
        return {text(detail, "IDDOCMTCH"), text(detail, "DESCINVC"), text(detail, "IDINVC"),
                text(detail, "AMTPAYM")};
    case ReceiptKind::Misc:
        break;
    }
    return {text(detail, "IDDISTCODE"), text(detail, "IDACCT"), text(detail, "GLDESC"),
            text(detail, "AMTDIST")};
}

// The bank code of the entry's batch.
QString batchBank(Session& session, const QString& batch) {
    const std::unique_ptr<View> batches = session.openView(QStringLiteral("AR0041"), QStringLiteral("AR"));
    batches->browse(QStringLiteral("CNTBTCH = ") + batch, true);
    return batches->fetch() ? text(*batches, "IDBANK") : QString();
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

    const std::unique_ptr<View> company = session.openView(QStringLiteral("CS0001"), QStringLiteral("CS"));
    company->browse(QStringLiteral("ORGID = ") + quoted(session.companyId()), true);
    if (company->fetch())
        h.company = {text(*company, "CONAME"), text(*company, "ADDR01"), text(*company, "CITY"),
                     text(*company, "STATE"), text(*company, "POSTAL")};

    const std::unique_ptr<View> headers = session.openView(QStringLiteral("AR0042"), QStringLiteral("AR"));
    View& header = *headers;
    header.browse(QStringLiteral("CNTBTCH = ") + batch + QStringLiteral(" AND CNTITEM = ") + entry, true);
    if (!header.fetch())
        throw LedgerError(QStringLiteral("Entry %1 of batch %2 is not in the ledger.").arg(entry, batch));
    h.receiptNumber = text(header, "IDRMIT");
    h.date = FormatDateLong(header.fields().item(QStringLiteral("DATERMIT")).value().toDate());
    h.payer = text(header, "TEXTPAYOR");
    h.customerId = text(header, "IDCUST");
    const Money received = FieldMoney(header, QStringLiteral("AMTRMIT"));
    const Money unapplied = FieldMoney(header, QStringLiteral("REMUNAPLTC"));
    QString saved = text(header, "AUDTTIME");
    if (const QDate day = header.fields().item(QStringLiteral("AUDTDATE")).value().toDate(); day.isValid())
        saved = FormatDateLong(day) + u' ' + saved;
    h.payment = {received.toLedgerString(),  (received - unapplied).toLedgerString(),
                 unapplied.toLedgerString(), batchBank(session, batch),
                 text(header, "ENTEREDBY"),  saved.trimmed()};

    std::unique_ptr<View> detail = session.openView(
        request.kind == ReceiptKind::Misc ? QStringLiteral("AR0043") : QStringLiteral("AR0044"),
        QStringLiteral("AR"));
    QString filter = QStringLiteral("CNTBTCH =") + batch + QStringLiteral(" AND CNTITEM =") + entry;
    if (request.kind != ReceiptKind::Misc) {
        // The customer the ledger holds for the entry, whatever the window shows.
        const QString& customerNumber = h.customerId;
        const std::unique_ptr<View> customers =
            session.openView(QStringLiteral("AR0024"), QStringLiteral("AR"));
        customers->browse(QStringLiteral("IDCUST = ") + quoted(customerNumber), true);
        if (customers->fetch())
            h.customer = {text(*customers, "NAMECUST"),  text(*customers, "TEXTSTRE1"),
                          text(*customers, "TEXTSTRE2"), text(*customers, "NAMECITY"),
                          text(*customers, "CODESTTE"),  text(*customers, "CODEPSTL")};
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
