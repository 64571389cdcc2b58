// A miscellaneous receipt: no customer, the amount spread over distribution lines, each line inserted as
// soon as it is filled and written with the header.

#include "fetching/ReceiptViews.h"
#include "posting/Posting.h"
#include "posting/PostingSequence.h"

namespace tillbook {

std::vector<DistributionLine> Load_DistributionArray(const ReceiptDraft& draft) {
    return draft.distributions;
}

PostingOutcome Post_MiscReceipt(ReceiptViews& views, const ReceiptDraft& draft) {
    if (!views.ready())
        return ViewsNotOpen();
    const QString batch = QString::number(draft.batch);
    const std::vector<DistributionLine> lines = Load_DistributionArray(draft);
    PostingSequence steps(*views.LedgerSession);

    PositionBatch(steps, views, batch);
    steps.putUnverified(*views.ReceiptHeaderView, names::ReceiptEntry, QStringLiteral("0"));
    steps.browse(*views.ReceiptHeaderView, QStringLiteral("(CNTBTCH  = ") + batch + QStringLiteral(")"),
                 true);
    steps.fetch(*views.ReceiptHeaderView);
    ResetPostViews(steps, views);

    steps.putUnverified(*views.ReceiptHeaderView, names::ReceiptEntry, QStringLiteral("0"));
    steps.init(*views.ReceiptHeaderView);
    steps.init(*views.ReceiptPostView);
    steps.init(*views.ReceiptPostView);
    steps.put(*views.ReceiptHeaderView, names::ReceiptType, QStringLiteral("5"));
    steps.order(*views.ReceiptMiscView, 0);

    // No customer: IDCUST stays blank.
    steps.put(*views.ReceiptHeaderView, names::ReceiptDescription, draft.description.trimmed());
    steps.put(*views.ReceiptHeaderView, names::ReceiptDate, DateValue(draft));
    steps.put(*views.ReceiptHeaderView, names::ReceiptAmount, QVariant::fromValue(draft.amount));
    steps.put(*views.ReceiptHeaderView, names::ReceiptFiscalYear, FiscalYearText(draft));
    steps.put(*views.ReceiptHeaderView, names::ReceiptFiscalPeriod, FiscalPeriodText(draft));
    steps.put(*views.ReceiptHeaderView, names::ReceiptPayer, draft.payer.trimmed());
    steps.put(*views.ReceiptHeaderView, names::ReceiptNumber, draft.receiptNumber.trimmed());

    for (const DistributionLine& line : lines) {
        steps.init(*views.ReceiptMiscView);
        steps.put(*views.ReceiptMiscView, names::MiscDistributionCode, line.distCode);
        steps.put(*views.ReceiptMiscView, names::MiscAccount, line.account);
        steps.put(*views.ReceiptMiscView, names::MiscAmount, QVariant::fromValue(line.amount));
        steps.put(*views.ReceiptMiscView, names::MiscReference, line.reference);
        steps.put(*views.ReceiptMiscView, names::MiscDescription, line.description);
        steps.insert(*views.ReceiptMiscView);
    }

    steps.insert(*views.ReceiptHeaderView);
    steps.order(*views.ReceiptMiscView, 0);
    return steps.run();
}

} // namespace tillbook
