#include "posting/PostingSequence.h"

#include "fetching/ReceiptViews.h"
#include "ledger/Formats.h"
#include "posting/ErrorTrap.h"

namespace tillbook {

void PostingSequence::put(View& view, const FieldName& field, const QVariant& value) {
    m_statements.emplace_back([&view, field, value] { return view.fields().item(field).setValue(value); });
}

void PostingSequence::putUnverified(View& view, const FieldName& field, const QVariant& value) {
    m_statements.emplace_back(
        [&view, field, value] { return view.fields().item(field).putWithoutVerification(value); });
}

void PostingSequence::order(View& view, int keyNumber) {
    m_statements.emplace_back([&view, keyNumber] {
        view.order(keyNumber);
        return Warnings();
    });
}

void PostingSequence::browse(View& view, const QString& filter, bool ascending) {
    m_statements.emplace_back([&view, filter, ascending] {
        view.browse(filter, ascending);
        return Warnings();
    });
}

void PostingSequence::fetch(View& view) {
    m_statements.emplace_back([&view] {
        view.fetch();
        return Warnings();
    });
}

void PostingSequence::read(View& view) {
    m_statements.emplace_back([&view] {
        view.read();
        return Warnings();
    });
}

void PostingSequence::init(View& view) {
    m_statements.emplace_back([&view] { return view.init(); });
}

void PostingSequence::process(View& view) {
    m_statements.emplace_back([&view] { return view.process(); });
}

void PostingSequence::update(View& view) {
    m_statements.emplace_back([&view] { return view.update(); });
}

void PostingSequence::insert(View& view) {
    m_statements.emplace_back([&view] { return view.insert(); });
}

void PostingSequence::then(std::function<Warnings()> statement) {
    m_statements.push_back(std::move(statement));
}

PostingOutcome PostingSequence::run() const {
    PostingOutcome outcome;
    ErrorList& errors = m_session.errors();
    errors.clear();
    for (const auto& statement : m_statements) {
        try {
            // A statement that warned was done: its warnings are handed on, and the posting goes on.
            if (!statement().empty() && !Trap_PostingError(errors, outcome))
                return outcome;
        } catch (const LedgerError& e) {
            if (!Trap_PostingError(errors, e, outcome))
                return outcome;
        } catch (const std::exception& e) {
            // Not the ledger's: nothing says the rest would be sound, so the posting stops.
            Trap_PostingError(errors, LedgerError(QString::fromLocal8Bit(e.what()), ErrorPriority::Severe),
                              outcome);
            return outcome;
        }
    }
    return outcome;
}

QString Posted_EntryNumber(const ReceiptViews& views) {
    return views.ReceiptHeaderView ? views.ReceiptHeaderView->fields().item(names::ReceiptEntry).text()
                                   : QString();
}

PostingOutcome ViewsNotOpen() {
    PostingOutcome outcome;
    outcome.PostOK = false;
    outcome.problems.push_back(
        {{QStringLiteral("The company's ledger is not open, so the entry was not saved. Sign in again and "
                         "key the entry anew."),
          ErrorPriority::Severe},
         true});
    return outcome;
}

QVariant DateValue(const ReceiptDraft& draft) {
    return draft.receiptDate.isValid() ? QVariant(draft.receiptDate) : QVariant(draft.receiptDateTyped);
}

QString FiscalYearText(const ReceiptDraft& draft) {
    return draft.fiscalYear > 0 ? QString::number(draft.fiscalYear) : QString();
}

QString FiscalPeriodText(const ReceiptDraft& draft) {
    return draft.fiscalPeriod > 0 ? FormatDigits(draft.fiscalPeriod, 2) : QString();
}

void PositionBatch(PostingSequence& steps, ReceiptViews& views, const QString& batch) {
    steps.putUnverified(*views.BatchView, names::BatchPaymentType, QStringLiteral("CA"));
    steps.putUnverified(*views.BatchView, names::BatchNumber, batch);
    steps.read(*views.BatchView);
}

void ResetPostViews(PostingSequence& steps, ReceiptViews& views) {
    steps.init(*views.ReceiptPostView);
    steps.order(*views.ReceiptDetailView, 0);
}

} // namespace tillbook
