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

Warnings Read_OpenDocuments(ReceiptViews& views, const QString& customer,
                            const std::vector<FieldName>& fields, const DocumentRowSink& row) {
    views.BatchView->browse(FilterOpenReceiptBatches, true);
    views.BatchView->fetch();
    views.ReceiptPostView->clear();
    Field& customerField = views.ReceiptPostView->fields().item(names::PostCustomer);
    Field& key = views.ReceiptPostView->fields().item(names::PostKey);
    customerField.putWithoutVerification(customer);
    const Warnings warnings = views.ReceiptPostView->process();
    views.ReceiptPostView->order(0);
    // Each field looked up once.
    std::vector<Field*> sources;
    sources.reserve(size_t(fields.size()));
    for (const FieldName& field : fields)
        sources.push_back(&views.ReceiptPostView->fields().item(field));
    for (int n = 1;; ++n) {
        key.putWithoutVerification(QString::number(n));
        if (!views.ReceiptPostView->read())
            return warnings;
        QStringList values;
        values.reserve(qsizetype(fields.size()));
        for (qsizetype i = 0; i < qsizetype(fields.size()); ++i) {
            const QString value = VariantText(sources[size_t(i)]->value());
            if (fields[size_t(i)].text() == names::PostApply.text() && (value == u"X" || value == u"N"))
                views.ReceiptHeaderView->clear();
            values << value;
        }
        row(values);
    }
}

void Read_CustomerDocuments(ReceiptViews& views, const QString& customer,
                            const std::vector<FieldName>& fields, const DocumentRowSink& row) {
    views.DocumentView->clear();
    views.DocumentView->browse(QStringLiteral("IDCUST =") + customer, true);
    while (views.DocumentView->fetch()) {
        if (!(FieldMoney(*views.DocumentView, names::DocumentAmountDue) > Money()))
            continue;
        QStringList values;
        values.reserve(qsizetype(fields.size()));
        for (const FieldName& field : fields)
            values << FieldText(*views.DocumentView, field);
        row(values);
    }
}

} // namespace tillbook
