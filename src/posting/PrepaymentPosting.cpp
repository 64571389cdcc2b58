// A prepayment: a receipt kept against the document it will be applied to. The ledger numbers both the
// entry and the prepayment document.

#include "fetching/ReceiptViews.h"
#include "posting/Posting.h"
#include "posting/PostingSequence.h"

#include <cstdint>

namespace tillbook {

ReceiptHeader Save_ReceiptHeader(const ReceiptDraft& draft) {
    return {draft.receiptNumber,     draft.description,     draft.amount, FiscalYearText(draft),
            FiscalPeriodText(draft), draft.prepaidDocument, draft.payer};
}

PostingOutcome Post_Prepayment(ReceiptViews& views, const ReceiptDraft& draft) {
    if (!views.ready())
        return ViewsNotOpen();
    const QString customer = draft.customer;
    const QString batch = QString::number(draft.batch);
    const QString entry = QStringLiteral("0"); // the ledger numbers the new entry
    const ReceiptHeader header = Save_ReceiptHeader(draft);
    PostingSequence steps(*views.LedgerSession);

    steps.put(*views.BatchView, names::BatchPaymentType, QStringLiteral("CA"));
    steps.put(*views.ReceiptDetailSubView, names::DetailSubPaymentCode, QStringLiteral("CA"));
    steps.put(*views.ReceiptDetailView, names::DetailPaymentCode, QStringLiteral("CA"));
    steps.put(*views.ReceiptHeaderView, names::ReceiptPaymentType, QStringLiteral("CA"));
    steps.put(*views.ReceiptMiscView, names::MiscPaymentCode, QStringLiteral("CA"));
    steps.putUnverified(*views.ReceiptHeaderView, names::ReceiptType, QStringLiteral("2"));

    PositionBatch(steps, views, batch);
    steps.putUnverified(*views.ReceiptHeaderView, names::ReceiptEntry, QStringLiteral("0"));
    steps.browse(*views.ReceiptHeaderView, QStringLiteral("CNTBTCH  =") + batch, true);
    steps.fetch(*views.ReceiptHeaderView);
    ResetPostViews(steps, views);

    steps.put(*views.ReceiptHeaderView, names::ReceiptDescription, QString());
    steps.putUnverified(*views.ReceiptHeaderView, names::ReceiptEntry, QStringLiteral("0"));
    steps.init(*views.ReceiptHeaderView);
    steps.init(*views.ReceiptPostView);
    steps.init(*views.ReceiptPostView);

    steps.put(*views.ReceiptHeaderView, names::ReceiptDate, DateValue(draft));
    steps.put(*views.ReceiptHeaderView, names::ReceiptDescription, QString());
    steps.put(*views.ReceiptHeaderView, names::ReceiptCustomer, customer);
    steps.init(*views.ReceiptPostView);
    steps.put(*views.ReceiptHeaderView, names::ReceiptType, QStringLiteral("2"));

    // The detail line takes the grid's row as its number.
    steps.putUnverified(*views.ReceiptDetailView, names::DetailLine,
                        QVariant::fromValue(std::int16_t(draft.prepaymentLine)));
    steps.browse(*views.ReceiptDetailView,
                 QStringLiteral("CODEPAYM = \"CA\" AND CNTBTCH = ") + batch +
                     QStringLiteral(" AND CNTITEM =") + entry,
                 true);
    steps.fetch(*views.ReceiptDetailView);

    steps.put(*views.ReceiptHeaderView, names::ReceiptNumber, header.receiptNumber);
    steps.put(*views.ReceiptHeaderView, names::ReceiptDescription, header.description);
    steps.put(*views.ReceiptHeaderView, names::ReceiptAmount, QVariant::fromValue(header.amount));
    steps.put(*views.ReceiptHeaderView, names::ReceiptFiscalYear, header.fiscalYear);
    steps.put(*views.ReceiptHeaderView, names::ReceiptFiscalPeriod, header.fiscalPeriod);
    steps.put(*views.ReceiptHeaderView, names::ReceiptDocumentNumber, header.applyTo);
    steps.put(*views.ReceiptHeaderView, names::ReceiptPayer, header.payer);

    steps.insert(*views.ReceiptHeaderView);
    PostingOutcome outcome = steps.run();
    if (outcome.PostOK)
        outcome.prepaymentNumber =
            views.ReceiptDetailView->fields().item(names::DetailDocument).value().toString();
    return outcome;
}

} // namespace tillbook
