// A miscellaneous receipt: no customer, the amount spread over distribution lines, each line inserted as
// soon as it is filled and written with the header.

#include "fetching/ReceiptViews.h"
#include "ledger/Formats.h"
#include "posting/Posting.h"
#include "posting/PostingSequence.h"

namespace tillbook {

void Load_DistributionArray(const PostingInput& input) {
    const auto& rows = input.distributions;
    Distributions.assign(rows.size() + 1, {});
    for (size_t r = 1; r <= rows.size(); ++r) {
        const DistributionRow& row = rows[r - 1];
        // The amount as a plain number: commas gone, no trailing zeros ("1,234.50" is "1234.5").
        Distributions[r] = {row.distCode, row.account,
                            VariantText(QVariant::fromValue(Strip_Commas(row.amount))), row.reference,
                            row.description};
    }
}

void Post_MiscReceipt(const PostingInput& input) {
    if (!ReceiptViewsReady())
        return;
    const QString batch = input.batch;
    Load_DistributionArray(input);
    PostingSequence steps;

    PositionBatch(steps, batch);
    steps.putUnverified(*ReceiptHeaderView, "CNTITEM", QStringLiteral("0"));
    steps.browse(*ReceiptHeaderView, QStringLiteral("(CNTBTCH  = ") + batch + QStringLiteral(")"), true);
    steps.fetch(*ReceiptHeaderView);
    ResetPostViews(steps);

    steps.putUnverified(*ReceiptHeaderView, "CNTITEM", QStringLiteral("0"));
    steps.init(*ReceiptHeaderView);
    steps.init(*ReceiptPostView);
    steps.init(*ReceiptPostView);
    steps.put(*ReceiptHeaderView, "RMITTYPE", QStringLiteral("5"));
    steps.order(*ReceiptMiscView, 0);

    // No customer: IDCUST stays blank.
    steps.put(*ReceiptHeaderView, "TEXTRMIT", input.txtEntDesc.trimmed());
    steps.put(*ReceiptHeaderView, "DATERMIT", DateValue(input.txtDate));
    steps.put(*ReceiptHeaderView, "AMTRMIT", QVariant::fromValue(input.receiptAmount));
    steps.put(*ReceiptHeaderView, "FISCYR", input.cboYear.trimmed());
    steps.put(*ReceiptHeaderView, "FISCPER", input.cboPeriod.trimmed());
    steps.put(*ReceiptHeaderView, "TEXTPAYOR", input.txtPayer.trimmed());
    steps.put(*ReceiptHeaderView, "IDRMIT", input.txtReceiptNum.trimmed());

    for (size_t r = 1; r < Distributions.size(); ++r) {
        const auto& line = Distributions[r];
        steps.init(*ReceiptMiscView);
        steps.put(*ReceiptMiscView, "IDDISTCODE", line[0]);
        steps.put(*ReceiptMiscView, "IDACCT", line[1]);
        steps.put(*ReceiptMiscView, "AMTDIST", line[2]);
        steps.put(*ReceiptMiscView, "GLREF", line[3]);
        steps.put(*ReceiptMiscView, "GLDESC", line[4]);
        steps.insert(*ReceiptMiscView);
    }

    steps.insert(*ReceiptHeaderView);
    steps.order(*ReceiptMiscView, 0);
    steps.run();
}

} // namespace tillbook
