#include "fetching/OpenDocuments.h"

#include "fetching/FieldValues.h"
#include "fetching/ReceiptViews.h"
#include "ledger/Formats.h"
#include "ledger/View.h"

#include <vector>

namespace tillbook {

namespace {

const QString FilterOpenReceiptBatches =
    QStringLiteral("CODEPYMTYP = \"CA\" AND (BATCHSTAT < 3 OR BATCHSTAT >= 6)");

} // namespace

void Read_OpenDocuments(const QString& customer, const QStringList& fields, const DocumentRowSink& row) {
    BatchView->browse(FilterOpenReceiptBatches, true);
    BatchView->fetch();
    ReceiptPostView->clear();
    Field& customerField = ReceiptPostView->fields().item(QStringLiteral("IDCUST"));
    Field& key = ReceiptPostView->fields().item(QStringLiteral("CNTKEY"));
    customerField.putWithoutVerification(customer);
    ReceiptPostView->process();
    ReceiptPostView->order(0);
    // Each field looked up once. The document type is the document's own (TRXTYPE): the receipt header's
    // DOCTYPE would give every document the type of the receipt, or none.
    std::vector<Field*> sources;
    sources.reserve(size_t(fields.size()));
    for (const QString& field : fields)
        sources.push_back(
            &ReceiptPostView->fields().item(field == u"DOCTYPE" ? QStringLiteral("TRXTYPE") : field));
    for (int n = 1;; ++n) {
        key.putWithoutVerification(QString::number(n));
        if (!ReceiptPostView->read())
            return;
        QStringList values;
        values.reserve(fields.size());
        for (qsizetype i = 0; i < fields.size(); ++i) {
            const QString value = VariantText(sources[size_t(i)]->value());
            if (fields[i] == u"APPLY" && (value == u"X" || value == u"N"))
                ReceiptHeaderView->clear();
            values << value;
        }
        row(values);
    }
}

void Read_CustomerDocuments(const QString& customer, const QStringList& fields, const DocumentRowSink& row) {
    DocumentView->clear();
    DocumentView->browse(QStringLiteral("IDCUST =") + customer, true);
    while (DocumentView->fetch()) {
        if (!(FieldMoney(*DocumentView, QStringLiteral("AMTDUETC")) > Money()))
            continue;
        QStringList values;
        values.reserve(fields.size());
        for (const QString& field : fields)
            values << FieldText(*DocumentView, field);
        row(values);
    }
}

} // namespace tillbook
