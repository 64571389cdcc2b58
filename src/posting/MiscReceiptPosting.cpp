// A miscellaneous receipt: no customer, the amount spread over distribution lines, each line inserted as
// soon as it is filled and written with the header.

#include "fetching/ReceiptViews.h"
#include "ledger/Formats.h"
#include "posting/Posting.h"
#include "posting/PostingSequence.h"

namespace tillbook {

std::vector<std::array<QString, 5>> Load_DistributionArray(const PostingInput& input) {
    const auto& rows = input.distributions;
    std::vector<std::array<QString, 5>> lines(rows.size() + 1);
    for (size_t r = 1; r <= rows.size(); ++r) {
        const DistributionRow& row = rows[r - 1];
        // The amount as a plain number: commas gone, no trailing zeros ("1,234.50" is "1234.5").
        lines[r] = {row.distCode, row.account, VariantText(QVariant::fromValue(Strip_Commas(row.amount))),
                    row.reference, row.description};
    }
    return lines;
}

PostingOutcome Post_MiscReceipt(ReceiptViews& views, const PostingInput& input) {
    if (!views.ready())
        return ViewsNotOpen();
    const QString batch = input.batch;
    const std::vector<std::array<QString, 5>> lines = Load_DistributionArray(input);
    PostingSequence steps(*views.LedgerSession);

    PositionBatch(steps, views, batch);
    steps.putUnverified(*views.ReceiptHeaderView, "CNTITEM", QStringLiteral("0"));
    steps.browse(*views.ReceiptHeaderView, QStringLiteral("(CNTBTCH  = ") + batch + QStringLiteral(")"),
                 true);
    steps.fetch(*views.ReceiptHeaderView);
    ResetPostViews(steps, views);

    steps.putUnverified(*views.ReceiptHeaderView, "CNTITEM", QStringLiteral("0"));
    steps.init(*views.ReceiptHeaderView);
    steps.init(*views.ReceiptPostView);
    steps.init(*views.ReceiptPostView);
    steps.put(*views.ReceiptHeaderView, "RMITTYPE", QStringLiteral("5"));
    steps.order(*views.ReceiptMiscView, 0);

    // No customer: IDCUST stays blank.
    steps.put(*views.ReceiptHeaderView, "TEXTRMIT", input.txtEntDesc.trimmed());
    steps.put(*views.ReceiptHeaderView, "DATERMIT", DateValue(input.txtDate));
    steps.put(*views.ReceiptHeaderView, "AMTRMIT", QVariant::fromValue(input.receiptAmount));
    steps.put(*views.ReceiptHeaderView, "FISCYR", input.cboYear.trimmed());
    steps.put(*views.ReceiptHeaderView, "FISCPER", input.cboPeriod.trimmed());
    steps.put(*views.ReceiptHeaderView, "TEXTPAYOR", input.txtPayer.trimmed());
    steps.put(*views.ReceiptHeaderView, "IDRMIT", input.txtReceiptNum.trimmed());

    for (size_t r = 1; r < lines.size(); ++r) {
        const auto& line = lines[r];
        steps.init(*views.ReceiptMiscView);
        steps.put(*views.ReceiptMiscView, "IDDISTCODE", line[0]);
        steps.put(*views.ReceiptMiscView, "IDACCT", line[1]);
        steps.put(*views.ReceiptMiscView, "AMTDIST", line[2]);
        steps.put(*views.ReceiptMiscView, "GLREF", line[3]);
        steps.put(*views.ReceiptMiscView, "GLDESC", line[4]);
        steps.insert(*views.ReceiptMiscView);
    }

    steps.insert(*views.ReceiptHeaderView);
    steps.order(*views.ReceiptMiscView, 0);
    return steps.run();
}

} // namespace tillbook
