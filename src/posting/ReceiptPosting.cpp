// An ordinary receipt: the header filled from the form, the customer's open-document list built, each
// applied document marked, and the header inserted with the applications the list holds.

#include "fetching/ReceiptViews.h"
#include "posting/Posting.h"
#include "posting/PostingSequence.h"

namespace tillbook {

PostingOutcome Post_Receipt(ReceiptViews& views, const ReceiptDraft& draft) {
    if (!views.ready())
        return ViewsNotOpen();
    const QString customer = draft.customer;
    const QString batch = QString::number(draft.batch);
    const QString entry = QString::number(draft.entry);
    const QVariant amount = QVariant::fromValue(draft.amount);
    PostingSequence steps(*views.LedgerSession);

    PositionBatch(steps, views, batch);

    // The header inside the batch.
    steps.putUnverified(*views.ReceiptHeaderView, names::ReceiptEntry, QStringLiteral("0"));
    steps.browse(*views.ReceiptHeaderView, QStringLiteral("(CNTBTCH  = ") + batch + QStringLiteral("      )"),
                 true);
    steps.fetch(*views.ReceiptHeaderView);
    ResetPostViews(steps, views);

    // The batch's last receipt entry.
    const QString lastEntry = QStringLiteral("(CODEPYMTYP = \"CA\" AND CNTBTCH = ") + batch +
                              QStringLiteral("       AND RMITTYPE <= 5)");
    steps.putUnverified(*views.ReceiptHeaderView, names::ReceiptEntry, QStringLiteral("0"));
    steps.browse(*views.ReceiptHeaderView, lastEntry, true);
    steps.putUnverified(*views.ReceiptHeaderView, names::ReceiptEntry, QStringLiteral("0"));
    steps.browse(*views.ReceiptHeaderView, lastEntry, false);
    steps.fetch(*views.ReceiptHeaderView);
    steps.putUnverified(*views.ReceiptHeaderView, names::ReceiptEntry, QStringLiteral("0"));

    // The new entry; an ordinary receipt keeps the header's own receipt type.
    steps.init(*views.ReceiptHeaderView);
    steps.init(*views.ReceiptPostView);
    steps.init(*views.ReceiptPostView);
    steps.put(*views.ReceiptHeaderView, names::ReceiptDescription, draft.description.trimmed());
    steps.put(*views.ReceiptHeaderView, names::ReceiptCustomer, customer);
    steps.init(*views.ReceiptPostView);
    steps.put(*views.ReceiptHeaderView, names::ReceiptDate, DateValue(draft));
    steps.put(*views.ReceiptHeaderView, names::ReceiptNumber, draft.receiptNumber.trimmed());
    steps.put(*views.ReceiptHeaderView, names::ReceiptAmount, amount);
    steps.put(*views.ReceiptHeaderView, names::ReceiptFiscalPeriod, FiscalPeriodText(draft));
    steps.put(*views.ReceiptHeaderView, names::ReceiptFiscalYear, FiscalYearText(draft));
    steps.put(*views.ReceiptHeaderView, names::ReceiptPayer, draft.payer.trimmed());

    // The customer's payable documents.
    const auto linkPostView = [&] {
        steps.putUnverified(*views.ReceiptPostView, names::PostPaymentType, QStringLiteral("CA"));
        steps.putUnverified(*views.ReceiptPostView, names::PostBatch, batch);
        steps.putUnverified(*views.ReceiptPostView, names::PostEntry, entry);
    };
    linkPostView();
    steps.putUnverified(*views.ReceiptPostView, names::PostCustomer, customer);
    steps.putUnverified(*views.ReceiptPostView, names::PostAmount, amount);
    steps.process(*views.ReceiptPostView);
    steps.order(*views.ReceiptPostView, 0);

    // Each applied document in the order applied: the ledger spreads the amount over them.
    for (const int key : draft.applyKeys) {
        linkPostView();
        steps.putUnverified(*views.ReceiptPostView, names::PostKey, QString::number(key));
        steps.read(*views.ReceiptPostView);
        steps.put(*views.ReceiptPostView, names::PostApply, QStringLiteral("Y"));
        steps.update(*views.ReceiptPostView);
    }

    steps.insert(*views.ReceiptHeaderView);
    return steps.run();
}

} // namespace tillbook
