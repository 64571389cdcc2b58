// A prepayment: a receipt kept against the document it will be applied to. The ledger numbers both the
// entry and the prepayment document; the amount goes to the ledger as the clerk keyed it.

#include "fetching/ReceiptViews.h"
#include "posting/Posting.h"
#include "posting/PostingSequence.h"

#include <cstdint>

namespace tillbook {

std::array<QString, 8> Save_ReceiptHeader(const PostingInput& input) {
    return {QString(),       input.txtReceiptNum,     input.txtEntDesc,
            input.txtAmount, input.cboYear.trimmed(), input.cboPeriod.trimmed(),
            input.txtPrePay, input.txtPayer};
}

PostingOutcome Post_Prepayment(ReceiptViews& views, const PostingInput& input) {
    if (!views.ready())
        return ViewsNotOpen();
    const QString customer = input.customer;
    const QString batch = input.batch;
    const QString entry = QStringLiteral("0"); // the ledger numbers the new entry
    const std::array<QString, 8> header = Save_ReceiptHeader(input);
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

    steps.put(*views.ReceiptHeaderView, "DATERMIT", DateValue(input.txtDate));
    steps.put(*views.ReceiptHeaderView, "TEXTRMIT", QString());
    steps.put(*views.ReceiptHeaderView, "IDCUST", customer);
    steps.init(*views.ReceiptPostView);
    steps.put(*views.ReceiptHeaderView, "RMITTYPE", QStringLiteral("2"));

    // The detail line takes the grid's row as its number.
    steps.putUnverified(*views.ReceiptDetailView, "CNTLINE", QVariant::fromValue(std::int16_t(input.row)));
    steps.browse(*views.ReceiptDetailView,
                 QStringLiteral("CODEPAYM = \"CA\" AND CNTBTCH = ") + batch +
                     QStringLiteral(" AND CNTITEM =") + entry,
                 true);
    steps.fetch(*views.ReceiptDetailView);

    steps.put(*views.ReceiptHeaderView, "IDRMIT", header[1]);
    steps.put(*views.ReceiptHeaderView, "TEXTRMIT", header[2]);
    steps.put(*views.ReceiptHeaderView, "AMTRMIT", header[3]);
    steps.put(*views.ReceiptHeaderView, "FISCYR", header[4]);
    steps.put(*views.ReceiptHeaderView, "FISCPER", header[5]);
    steps.put(*views.ReceiptHeaderView, "DOCNBR", header[6]);
    steps.put(*views.ReceiptHeaderView, "TEXTPAYOR", header[7]);

    steps.insert(*views.ReceiptHeaderView);
    PostingOutcome outcome = steps.run();
    if (outcome.PostOK)
        outcome.prepaymentNumber =
            views.ReceiptDetailView->fields().item(QStringLiteral("IDINVC")).value().toString();
    return outcome;
}

} // namespace tillbook
