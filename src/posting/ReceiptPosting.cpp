// An ordinary receipt: the header filled from the form, the customer's open-document list built, each
// applied document marked, and the header inserted with the applications the list holds.

#include "fetching/ReceiptViews.h"
#include "posting/Posting.h"
#include "posting/PostingSequence.h"

namespace tillbook {

void Post_Receipt(const PostingInput& input) {
    if (!ReceiptViewsReady())
        return;
    const QString customer = input.customer;
    const QString batch = input.batch;
    const QString entry = input.entry;
    const QVariant amount = QVariant::fromValue(input.receiptAmount);
    PostingSequence steps;

    PositionBatch(steps, batch);

    // The header inside the batch.
    steps.putUnverified(*ReceiptHeaderView, "CNTITEM", QStringLiteral("0"));
    steps.browse(*ReceiptHeaderView, QStringLiteral("(CNTBTCH  = ") + batch + QStringLiteral("      )"),
                 true);
    steps.fetch(*ReceiptHeaderView);
    ResetPostViews(steps);

    // The batch's last receipt entry.
    const QString lastEntry = QStringLiteral("(CODEPYMTYP = \"CA\" AND CNTBTCH = ") + batch +
                              QStringLiteral("       AND RMITTYPE <= 5)");
    steps.putUnverified(*ReceiptHeaderView, "CNTITEM", QStringLiteral("0"));
    steps.browse(*ReceiptHeaderView, lastEntry, true);
    steps.putUnverified(*ReceiptHeaderView, "CNTITEM", QStringLiteral("0"));
    steps.browse(*ReceiptHeaderView, lastEntry, false);
    steps.fetch(*ReceiptHeaderView);
    steps.putUnverified(*ReceiptHeaderView, "CNTITEM", QStringLiteral("0"));

    // The new entry; an ordinary receipt keeps the header's own receipt type.
    steps.init(*ReceiptHeaderView);
    steps.init(*ReceiptPostView);
    steps.init(*ReceiptPostView);
    steps.put(*ReceiptHeaderView, "TEXTRMIT", input.txtEntDesc.trimmed());
    steps.put(*ReceiptHeaderView, "IDCUST", customer);
    steps.init(*ReceiptPostView);
    steps.put(*ReceiptHeaderView, "DATERMIT", DateValue(input.txtDate));
    steps.put(*ReceiptHeaderView, "IDRMIT", input.txtReceiptNum.trimmed());
    steps.put(*ReceiptHeaderView, "AMTRMIT", amount);
    steps.put(*ReceiptHeaderView, "FISCPER", input.cboPeriod.trimmed());
    steps.put(*ReceiptHeaderView, "FISCYR", input.cboYear.trimmed());
    steps.put(*ReceiptHeaderView, "TEXTPAYOR", input.txtPayer.trimmed());

    // The customer's payable documents.
    const auto linkPostView = [&] {
        steps.putUnverified(*ReceiptPostView, "PAYMTYPE", QStringLiteral("CA"));
        steps.putUnverified(*ReceiptPostView, "CNTBTCH", batch);
        steps.putUnverified(*ReceiptPostView, "CNTITEM", entry);
    };
    linkPostView();
    steps.putUnverified(*ReceiptPostView, "IDCUST", customer);
    steps.putUnverified(*ReceiptPostView, "AMTRMIT", amount);
    steps.process(*ReceiptPostView);
    steps.order(*ReceiptPostView, 0);

    // Each applied document in the order applied: the ledger spreads the amount over them.
    for (const int key : input.applyKeys) {
        linkPostView();
        steps.putUnverified(*ReceiptPostView, "CNTKEY", QString::number(key));
        steps.read(*ReceiptPostView);
        steps.put(*ReceiptPostView, "APPLY", QStringLiteral("Y"));
        steps.update(*ReceiptPostView);
    }

    steps.insert(*ReceiptHeaderView);
    steps.run();
}

} // namespace tillbook
