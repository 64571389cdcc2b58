#include "posting/PostingSequence.h"

#include "fetching/ReceiptViews.h"
#include "ledger/Formats.h"
#include "posting/ErrorTrap.h"
#include "settings/Globals.h"
#include "ui/Platform.h"

namespace tillbook {

void PostingSequence::put(View& view, const char* field, const QVariant& value) {
    m_statements.emplace_back(
        [&view, field, value] { view.fields().item(QString::fromLatin1(field)).setValue(value); });
}

void PostingSequence::putUnverified(View& view, const char* field, const QVariant& value) {
    m_statements.emplace_back([&view, field, value] {
        view.fields().item(QString::fromLatin1(field)).putWithoutVerification(value);
    });
}

void PostingSequence::order(View& view, int keyNumber) {
    m_statements.emplace_back([&view, keyNumber] { view.order(keyNumber); });
}

void PostingSequence::browse(View& view, const QString& filter, bool ascending) {
    m_statements.emplace_back([&view, filter, ascending] { view.browse(filter, ascending); });
}

void PostingSequence::fetch(View& view) {
    m_statements.emplace_back([&view] { view.fetch(); });
}

void PostingSequence::read(View& view) {
    m_statements.emplace_back([&view] { view.read(); });
}

void PostingSequence::init(View& view) {
    m_statements.emplace_back([&view] { view.init(); });
}

void PostingSequence::process(View& view) {
    m_statements.emplace_back([&view] { view.process(); });
}

void PostingSequence::update(View& view) {
    m_statements.emplace_back([&view] { view.update(); });
}

void PostingSequence::insert(View& view) {
    m_statements.emplace_back([&view] { view.insert(); });
}

void PostingSequence::then(std::function<void()> statement) {
    m_statements.push_back(std::move(statement));
}

void PostingSequence::run() const {
    ErrorList& errors = LedgerSession->errors();
    errors.clear();
    for (const auto& statement : m_statements) {
        try {
            statement();
        } catch (const LedgerError& e) {
            if (!Trap_PostingError(errors, e))
                return;
        } catch (const std::exception& e) {
            // Not the ledger's: nothing says the rest would be sound, so the posting stops.
            Trap_PostingError(errors, LedgerError(QString::fromLocal8Bit(e.what()), ErrorPriority::Severe));
            return;
        }
    }
}

QString Posted_EntryNumber() {
    return ReceiptHeaderView ? ReceiptHeaderView->fields().item(QStringLiteral("CNTITEM")).text() : QString();
}

bool ReceiptViewsReady() {
    if (LedgerSession && BatchView && ReceiptHeaderView && ReceiptDetailView && ReceiptDetailSubView &&
        ReceiptMiscView && ReceiptPostView)
        return true;
    MsgBox(QStringLiteral("The company's ledger is not open, so the entry was not saved. Sign in again and "
                          "key the entry anew."),
           vbOKOnly + vbCritical);
    PostOK = false;
    return false;
}

QVariant DateValue(const QString& txtDate) {
    const QDate date = ParseShortDate(txtDate);
    return date.isValid() ? QVariant(date) : QVariant(txtDate);
}

void PositionBatch(PostingSequence& steps, const QString& batch) {
    steps.putUnverified(*BatchView, "CODEPYMTYP", QStringLiteral("CA"));
    steps.putUnverified(*BatchView, "CNTBTCH", batch);
    steps.read(*BatchView);
}

void ResetPostViews(PostingSequence& steps) {
    steps.init(*ReceiptPostView);
    steps.order(*ReceiptDetailView, 0);
}

} // namespace tillbook
