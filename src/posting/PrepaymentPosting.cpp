// A prepayment: a receipt kept against the document it will be applied to. The ledger numbers both the
// entry and the prepayment document; the amount goes to the ledger as the clerk keyed it.

#include "fetching/ReceiptViews.h"
#include "posting/Posting.h"
#include "posting/PostingSequence.h"

#include <cstdint>

namespace tillbook {

void Save_ReceiptHeader(const PostingInput& input) {
    ReceiptHeader = {};
    ReceiptHeader[1] = input.txtReceiptNum;
    ReceiptHeader[2] = input.txtEntDesc;
    ReceiptHeader[3] = input.txtAmount;
    ReceiptHeader[4] = input.cboYear.trimmed();
    ReceiptHeader[5] = input.cboPeriod.trimmed();
    ReceiptHeader[6] = input.txtPrePay;
    ReceiptHeader[7] = input.txtPayer;
}

void Post_Prepayment(const PostingInput& input, QString& txtPrePayDocNo) {
    if (!ReceiptViewsReady())
        return;
    const QString customer = input.customer;
    const QString batch = input.batch;
    const QString entry = QStringLiteral("0"); // the ledger numbers the new entry
    Save_ReceiptHeader(input);
    PostingSequence steps;

    steps.put(*BatchView, "CODEPYMTYP", QStringLiteral("CA"));
    steps.put(*ReceiptDetailSubView, "CODEPAYM", QStringLiteral("CA"));
    steps.put(*ReceiptDetailView, "CODEPAYM", QStringLiteral("CA"));
    steps.put(*ReceiptHeaderView, "CODEPYMTYP", QStringLiteral("CA"));
    steps.put(*ReceiptMiscView, "CODEPAYM", QStringLiteral("CA"));
    steps.putUnverified(*ReceiptHeaderView, "RMITTYPE", QStringLiteral("2"));

    PositionBatch(steps, batch);
    steps.putUnverified(*ReceiptHeaderView, "CNTITEM", QStringLiteral("0"));
    steps.browse(*ReceiptHeaderView, QStringLiteral("CNTBTCH  =") + batch, true);
    steps.fetch(*ReceiptHeaderView);
    ResetPostViews(steps);

    steps.put(*ReceiptHeaderView, "TEXTRMIT", QString());
    steps.putUnverified(*ReceiptHeaderView, "CNTITEM", QStringLiteral("0"));
    steps.init(*ReceiptHeaderView);
    steps.init(*ReceiptPostView);
    steps.init(*ReceiptPostView);

    steps.put(*ReceiptHeaderView, "DATERMIT", DateValue(input.txtDate));
    steps.put(*ReceiptHeaderView, "TEXTRMIT", QString());
    steps.put(*ReceiptHeaderView, "IDCUST", customer);
    steps.init(*ReceiptPostView);
    steps.put(*ReceiptHeaderView, "RMITTYPE", QStringLiteral("2"));

    // The detail line takes the grid's row as its number.
    steps.putUnverified(*ReceiptDetailView, "CNTLINE", QVariant::fromValue(std::int16_t(input.row)));
    steps.browse(*ReceiptDetailView,
                 QStringLiteral("CODEPAYM = \"CA\" AND CNTBTCH = ") + batch +
                     QStringLiteral(" AND CNTITEM =") + entry,
                 true);
    steps.fetch(*ReceiptDetailView);

    const auto& header = ReceiptHeader;
    steps.put(*ReceiptHeaderView, "IDRMIT", header[1]);
    steps.put(*ReceiptHeaderView, "TEXTRMIT", header[2]);
    steps.put(*ReceiptHeaderView, "AMTRMIT", header[3]);
    steps.put(*ReceiptHeaderView, "FISCYR", header[4]);
    steps.put(*ReceiptHeaderView, "FISCPER", header[5]);
    steps.put(*ReceiptHeaderView, "DOCNBR", header[6]);
    steps.put(*ReceiptHeaderView, "TEXTPAYOR", header[7]);

    steps.insert(*ReceiptHeaderView);
    steps.then([&txtPrePayDocNo] {
        txtPrePayDocNo = ReceiptDetailView->fields().item(QStringLiteral("IDINVC")).value().toString();
    });
    steps.run();
}

} // namespace tillbook
