#include "ledger/ReceiptRecall.h"

#include "ledger/ReceiptViews.h"
#include "ui/Formats.h"

namespace tillbook {

namespace {

QString text(View& view, const QString& field) {
    return VariantText(view.fields().item(field).value());
}

Money money(View& view, const QString& field) {
    const QVariant value = view.fields().item(field).value();
    return value.canConvert<Money>() ? value.value<Money>() : ValMoney(value.toString());
}

std::vector<QStringList> readLines(View& view, const QString& filter, const QStringList& fields) {
    std::vector<QStringList> lines;
    view.browse(filter, true);
    while (view.fetch()) {
        QStringList line;
        for (const QString& field : fields)
            line << text(view, field);
        lines.push_back(line);
    }
    return lines;
}

} // namespace

QString EntryFilter(const QString& batch, const QString& entry) {
    return QStringLiteral("(CNTBTCH=") + batch + QStringLiteral(" AND CNTITEM=") + entry + u')';
}

RecalledReceipt Read_Receipt(const QString& batch, const QString& entry) {
    const QString filter = EntryFilter(batch, entry);
    ReceiptHeaderView->clear();
    ReceiptHeaderView->browse(filter, true);
    ReceiptHeaderView->fetch();
    View& header = *ReceiptHeaderView;
    RecalledReceipt receipt;
    receipt.description = text(header, QStringLiteral("TEXTRMIT"));
    receipt.receiptType = header.fields().item(QStringLiteral("RMITTYPE")).value().toInt();
    receipt.customerNumber = text(header, QStringLiteral("IDCUST"));
    receipt.amount = money(header, QStringLiteral("AMTRMIT"));
    receipt.date = text(header, QStringLiteral("DATERMIT"));
    receipt.fiscalYear = text(header, QStringLiteral("FISCYR"));
    receipt.fiscalPeriod = text(header, QStringLiteral("FISCPER"));
    receipt.receiptNumber = text(header, QStringLiteral("IDRMIT"));
    receipt.payer = text(header, QStringLiteral("TEXTPAYOR"));
    receipt.unapplied = money(header, QStringLiteral("REMUNAPLTC"));
    receipt.documentNumber = text(header, QStringLiteral("DOCNBR"));
    ReceiptDetailView->browse(filter, true);
    ReceiptDetailView->fetch();
    receipt.firstLineNumber = text(*ReceiptDetailView, QStringLiteral("IDINVC"));
    return receipt;
}

std::vector<QStringList> Read_EntryLines(View& detailView, const QString& batch, const QString& entry,
                                         const QStringList& fields) {
    return readLines(detailView, EntryFilter(batch, entry), fields);
}

} // namespace tillbook
