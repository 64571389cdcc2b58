#include "printing/ReceiptData.h"

#include "fetching/ReceiptViews.h"
#include "ledger/Formats.h"
#include "ledger/LedgerError.h"

namespace tillbook {

namespace {

const QStringList ReceiptValues = {
    QStringLiteral("Receipt Number"),    QStringLiteral("Receipt Date"),      QStringLiteral("Customer Name"),
    QStringLiteral("Customer Address1"), QStringLiteral("Customer Address2"), QStringLiteral("Customer City"),
    QStringLiteral("Customer State"),    QStringLiteral("Customer Postal"),   QStringLiteral("Company Name"),
    QStringLiteral("Company Address"),   QStringLiteral("Company City"),      QStringLiteral("Company State"),
    QStringLiteral("Company Postal"),    QStringLiteral("Payor Name"),        QStringLiteral("Customer ID")};

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

} // namespace

QStringList ReceiptFields(ReceiptKind kind) {
    switch (kind) {
    case ReceiptKind::Receipt:
        return QStringList{QStringLiteral("Invoice Number"), QStringLiteral("Invoice Description"),
                           QStringLiteral("Amount Paid")} +
               ReceiptValues;
    case ReceiptKind::Prepayment:
        return QStringList{QStringLiteral("Apply Prepayment To"), QStringLiteral("Description"),
                           QStringLiteral("Prepayment Number"), QStringLiteral("Amount Applied")} +
               ReceiptValues;
    case ReceiptKind::Misc:
        break;
    }
    return {QStringLiteral("Distribution Code"), QStringLiteral("Account Number"),
            QStringLiteral("GL Description"),    QStringLiteral("Distribution Amount"),
            QStringLiteral("Receipt Number"),    QStringLiteral("Receipt Date"),
            QStringLiteral("Company Name"),      QStringLiteral("Company Address"),
            QStringLiteral("Company City"),      QStringLiteral("Company State"),
            QStringLiteral("Company Postal"),    QStringLiteral("Payor Name")};
}

DataSet Read_ReceiptData(const PrintRequest& request) {
    const QString batch = QString::number(Int16Of(request.batch));
    const QString entry = QString::number(Int16Of(request.entry));
    HeaderValues h;

    const std::unique_ptr<View> company =
        LedgerSession->openView(QStringLiteral("CS0001"), QStringLiteral("CS"));
    company->browse(QStringLiteral("ORGID = ") + quoted(LedgerSession->companyId()), true);
    if (company->fetch())
        h.company = {text(*company, "CONAME"), text(*company, "ADDR01"), text(*company, "CITY"),
                     text(*company, "STATE"), text(*company, "POSTAL")};

    View& header = *ReceiptHeaderView;
    header.browse(QStringLiteral("CNTBTCH = ") + batch + QStringLiteral(" AND CNTITEM = ") + entry, true);
    if (!header.fetch())
        throw LedgerError(QStringLiteral("Entry %1 of batch %2 is not in the ledger.").arg(entry, batch));
    h.receiptNumber = text(header, "IDRMIT");
    h.date = FormatDateLong(header.fields().item(QStringLiteral("DATERMIT")).value().toDate());
    h.payer = text(header, "TEXTPAYOR");
    h.customerId = text(header, "IDCUST");

    View* detail = ReceiptMiscView.get();
    QString filter = QStringLiteral("CNTBTCH =") + batch + QStringLiteral(" AND CNTITEM =") + entry;
    if (request.kind != ReceiptKind::Misc) {
        const QString customerNumber =
            request.customerNumber.isEmpty() ? h.customerId : request.customerNumber;
        const std::unique_ptr<View> customers =
            LedgerSession->openView(QStringLiteral("AR0024"), QStringLiteral("AR"));
        customers->browse(QStringLiteral("IDCUST = ") + quoted(customerNumber), true);
        if (customers->fetch())
            h.customer = {text(*customers, "NAMECUST"),  text(*customers, "TEXTSTRE1"),
                          text(*customers, "TEXTSTRE2"), text(*customers, "NAMECITY"),
                          text(*customers, "CODESTTE"),  text(*customers, "CODEPSTL")};
        detail = ReceiptDetailView.get();
        filter = QStringLiteral("IDCUST=") + quoted(customerNumber) + QStringLiteral(" AND ") + filter;
    }

    DataSet data;
    data.fields = ReceiptFields(request.kind);
    const QStringList headerPart = headerRow(request.kind, h);
    data.header = QStringList(data.fields.size() - headerPart.size()) + headerPart;
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
        data.rows.push_back(lineValues(request.kind, *detail) + headerPart);
    return data;
}

} // namespace tillbook
