#include "fetching/ReceiptRecall.h"

#include "fetching/FieldValues.h"
#include "fetching/ReceiptViews.h"
#include "ledger/Formats.h"

namespace tillbook {

namespace {

std::vector<QStringList> readLines(View& view, const QString& filter, const QStringList& fields) {
    std::vector<QStringList> lines;
    view.browse(filter, true);
    while (view.fetch()) {
        QStringList line;
        for (const QString& field : fields)
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
    receipt.description = FieldText(header, QStringLiteral("TEXTRMIT"));
    receipt.receiptType = header.fields().item(QStringLiteral("RMITTYPE")).value().toInt();
    receipt.customerNumber = FieldText(header, QStringLiteral("IDCUST"));
    receipt.amount = FieldMoney(header, QStringLiteral("AMTRMIT"));
    receipt.date = FieldText(header, QStringLiteral("DATERMIT"));
    receipt.fiscalYear = FieldText(header, QStringLiteral("FISCYR"));
    receipt.fiscalPeriod = FieldText(header, QStringLiteral("FISCPER"));
    receipt.receiptNumber = FieldText(header, QStringLiteral("IDRMIT"));
    receipt.payer = FieldText(header, QStringLiteral("TEXTPAYOR"));
    receipt.unapplied = FieldMoney(header, QStringLiteral("REMUNAPLTC"));
    receipt.documentNumber = FieldText(header, QStringLiteral("DOCNBR"));
    views.ReceiptDetailView->browse(filter, true);
    views.ReceiptDetailView->fetch();
    receipt.firstLineNumber = FieldText(*views.ReceiptDetailView, QStringLiteral("IDINVC"));
    return receipt;
}

std::vector<QStringList> Read_EntryLines(View& detailView, const QString& batch, const QString& entry,
                                         const QStringList& fields) {
    return readLines(detailView, EntryFilter(batch, entry), fields);
}

} // namespace tillbook
