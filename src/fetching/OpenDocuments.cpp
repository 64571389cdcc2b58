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
    views.ReceiptPostView->fields().item(names::PostCustomer).putWithoutVerification(customer);
    const Warnings warnings = views.ReceiptPostView->process();
    views.ReceiptPostView->order(0);
    QStringList fieldNames;
    fieldNames.reserve(qsizetype(fields.size()));
    for (const FieldName& field : fields)
        fieldNames << field.text();
    const qsizetype apply = fieldNames.indexOf(names::PostApply.text());
    // The whole list in one pass, each document as reading it by its CNTKEY gives it.
    views.ReceiptPostView->readAllKept(fieldNames, [&](const std::vector<QVariant>& documentValues) {
        QStringList values;
        values.reserve(fieldNames.size());
        for (qsizetype i = 0; i < fieldNames.size(); ++i) {
            const QString value = VariantText(documentValues[size_t(i)]);
            if (i == apply && (value == u"X" || value == u"N"))
                views.ReceiptHeaderView->clear();
            values << value;
        }
        row(values);
    });
    return warnings;
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
