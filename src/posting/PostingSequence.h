#pragma once

// A posting procedure as the list of its ledger statements, run in order under the error trap: a statement
// that fails or warns hands the session's errors to the outcome, and the next statement runs unless the trap
// stopped the posting.
// Building the list first keeps each procedure a plain reading of its steps.

#include "fetching/ReceiptViews.h"
#include "ledger/LedgerNames.h"
#include "ledger/View.h"
#include "posting/Posting.h"

#include <QString>
#include <QVariant>
#include <functional>
#include <vector>

namespace tillbook {

class PostingSequence {
public:
    explicit PostingSequence(Session& session) : m_session(session) {}

    // Field values: a verified put (the ledger checks the value) or a put without verification.
    void put(View& view, const FieldName& field, const QVariant& value);
    void putUnverified(View& view, const FieldName& field, const QVariant& value);

    void order(View& view, int keyNumber);
    void browse(View& view, const QString& filter, bool ascending);
    void fetch(View& view);
    void read(View& view);
    void init(View& view);
    void process(View& view);
    void update(View& view);
    void insert(View& view);
    // Any other statement; it returns the warnings of the ledger operations it ran.
    void then(std::function<Warnings()> statement);

    // Starts from an empty error list and runs the statements until the end or until the trap stops.
    PostingOutcome run() const;

private:
    Session& m_session;
    std::vector<std::function<Warnings()>> m_statements;
};

// The outcome of a posting that cannot start because the ledger session and the receipt views are not open.
PostingOutcome ViewsNotOpen();

// The value put in DATERMIT: the receipt date, or, when the field held no date, its text, so that the ledger
// refuses it with its own message.
QVariant DateValue(const ReceiptDraft& draft);
// FISCYR and FISCPER as the lists show them ("2026", "03"); blank when none is chosen.
QString FiscalYearText(const ReceiptDraft& draft);
QString FiscalPeriodText(const ReceiptDraft& draft);

// The steps every posting starts with: the batch positioned by its number.
void PositionBatch(PostingSequence& steps, ReceiptViews& views, const QString& batch);
// After the header is positioned: a fresh open-document list and the detail view in key order.
void ResetPostViews(PostingSequence& steps, ReceiptViews& views);

} // namespace tillbook
