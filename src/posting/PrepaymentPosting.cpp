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

    steps.put(*views.BatchView, "CODEPYMTYP", QStringLiteral("CA"));
    steps.put(*views.ReceiptDetailSubView, "CODEPAYM", QStringLiteral("CA"));
    steps.put(*views.ReceiptDetailView, "CODEPAYM", QStringLiteral("CA"));
    steps.put(*views.ReceiptHeaderView, "CODEPYMTYP", QStringLiteral("CA"));
    steps.put(*views.ReceiptMiscView, "CODEPAYM", QStringLiteral("CA"));
    steps.putUnverified(*views.ReceiptHeaderView, "RMITTYPE", QStringLiteral("2"));

    PositionBatch(steps, views, batch);
    steps.putUnverified(*views.ReceiptHeaderView, "CNTITEM", QStringLiteral("0"));
    steps.browse(*views.ReceiptHeaderView, QStringLiteral("CNTBTCH  =") + batch, true);
    steps.fetch(*views.ReceiptHeaderView);
    ResetPostViews(steps, views);

    steps.put(*views.ReceiptHeaderView, "TEXTRMIT", QString());
    steps.putUnverified(*views.ReceiptHeaderView, "CNTITEM", QStringLiteral("0"));
    steps.init(*views.ReceiptHeaderView);
    steps.init(*views.ReceiptPostView);
    steps.init(*views.ReceiptPostView);

    steps.put(*views.ReceiptHeaderView, "DATERMIT", DateValue(draft));
    steps.put(*views.ReceiptHeaderView, "TEXTRMIT", QString());
    steps.put(*views.ReceiptHeaderView, "IDCUST", customer);
    steps.init(*views.ReceiptPostView);
    steps.put(*views.ReceiptHeaderView, "RMITTYPE", QStringLiteral("2"));

    // The detail line takes the grid's row as its number.
    steps.putUnverified(*views.ReceiptDetailView, "CNTLINE",
                        QVariant::fromValue(std::int16_t(draft.prepaymentLine)));
    steps.browse(*views.ReceiptDetailView,
                 QStringLiteral("CODEPAYM = \"CA\" AND CNTBTCH = ") + batch +
                     QStringLiteral(" AND CNTITEM =") + entry,
                 true);
    steps.fetch(*views.ReceiptDetailView);

    steps.put(*views.ReceiptHeaderView, "IDRMIT", header.receiptNumber);
    steps.put(*views.ReceiptHeaderView, "TEXTRMIT", header.description);
    steps.put(*views.ReceiptHeaderView, "AMTRMIT", QVariant::fromValue(header.amount));
    steps.put(*views.ReceiptHeaderView, "FISCYR", header.fiscalYear);
    steps.put(*views.ReceiptHeaderView, "FISCPER", header.fiscalPeriod);
    steps.put(*views.ReceiptHeaderView, "DOCNBR", header.applyTo);
    steps.put(*views.ReceiptHeaderView, "TEXTPAYOR", header.payer);

    steps.insert(*views.ReceiptHeaderView);
    PostingOutcome outcome = steps.run();
    if (outcome.PostOK)
        outcome.prepaymentNumber =
            views.ReceiptDetailView->fields().item(QStringLiteral("IDINVC")).value().toString();
    return outcome;
}

} // namespace tillbook
