#include "fetching/ReceiptRecall.h"

#include "fetching/FieldValues.h"
#include "fetching/ReceiptViews.h"
#include "ledger/Formats.h"

namespace tillbook {

namespace {

std::vector<QStringList> readLines(View& view, const QString& filter, const std::vector<FieldName>& fields) {
    std::vector<QStringList> lines;
    view.browse(filter, true);
    while (view.fetch()) {
        QStringList line;
        for (const FieldName& field : fields)
            line << FieldText(view, field);
        lines.push_back(line);
    }
    return lines;
}

} // namespace

QString EntryFilter(const QString& batch, const QString& entry) {
    return QStringLiteral("(CNTBTCH=") + batch + QStringLiteral(" AND CNTITEM=") + entry + u')';
}

RecalledReceipt Read_Receipt(ReceiptViews& views, const QString& batch, const QString& entry) {
    const QString filter = EntryFilter(batch, entry);
    views.ReceiptHeaderView->clear();
    views.ReceiptHeaderView->browse(filter, true);
    views.ReceiptHeaderView->fetch();
    View& header = *views.ReceiptHeaderView;
    RecalledReceipt receipt;
    receipt.description = FieldText(header, names::ReceiptDescription);
    receipt.receiptType = header.fields().item(names::ReceiptType).value().toInt();
    receipt.customerNumber = FieldText(header, names::ReceiptCustomer);
    receipt.amount = FieldMoney(header, names::ReceiptAmount);
    receipt.date = FieldText(header, names::ReceiptDate);
    receipt.fiscalYear = FieldText(header, names::ReceiptFiscalYear);
    receipt.fiscalPeriod = FieldText(header, names::ReceiptFiscalPeriod);
    receipt.receiptNumber = FieldText(header, names::ReceiptNumber);
    receipt.payer = FieldText(header, names::ReceiptPayer);
    receipt.unapplied = FieldMoney(header, names::ReceiptUnapplied);
    receipt.documentNumber = FieldText(header, names::ReceiptDocumentNumber);
    views.ReceiptDetailView->browse(filter, true);
    views.ReceiptDetailView->fetch();
    receipt.firstLineNumber = FieldText(*views.ReceiptDetailView, names::DetailDocument);
    return receipt;
}

std::vector<QStringList> Read_EntryLines(View& detailView, const QString& batch, const QString& entry,
                                         const std::vector<FieldName>& fields) {
    return readLines(detailView, EntryFilter(batch, entry), fields);
}

} // namespace tillbook
