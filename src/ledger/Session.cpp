#include "ledger/Session.h"

#include "ledger/engine/CompanyStore.h"
#include "ledger/engine/Guarded.h"
#include "ledger/engine/SessionState.h"
#include "ledger/engine/TableAccess.h"
#include "ledger/engine/Transaction.h"
#include "ledger/engine/ValueCodec.h"

namespace tillbook {

Session::Session() {
    engine::registerValueTypes();
}
Session::~Session() = default;

void Session::open(const QString& user, const QString& password, const QString& databaseId,
                   const QDate& sessionDate, int flags) {
    close();
    checkLedgerNames();
    auto state = std::make_shared<engine::SessionState>();
    engine::guarded(m_closedErrors, [&] {
        state->store = engine::CompanyStore::signIn(databaseId, user, password);
        // One message, whether the user is unknown or the password wrong: a sign-in must not tell which
        // users a company has.
        if (!state->store)
            m_closedErrors.fail(QStringLiteral("The user name or password is not correct for company \"%1\".")
                                    .arg(engine::locateCompany(databaseId).companyId),
                                ErrorPriority::Security);
        if (flags & OpenAsOwner)
            state->store = engine::CompanyStore::open(databaseId);
        const engine::ViewDef& profile = *engine::Schema::instance().view(QStringLiteral("CS0001"));
        engine::TableAccess table(*state->store, profile);
        const auto page = table.page({{profile.fieldIndex(QStringLiteral("ORGID"))},
                                      profile.primaryKey().fields,
                                      true,
                                      QString(),
                                      {},
                                      {},
                                      {},
                                      1});
        state->companyId = page.rows() == 0 ? state->store->location().companyId : page.row(0)->toString();
    });
    state->user = user.trimmed().toUpper();
    state->sessionDate = sessionDate.isValid() ? sessionDate : QDate::currentDate();
    state->errors = m_closedErrors;
    m_closedErrors.clear();
    m_state = std::move(state);
}

void Session::close() {
    if (m_state)
        m_closedErrors = m_state->errors;
    m_state.reset();
}

bool Session::isOpen() const {
    return bool(m_state);
}
QString Session::companyId() const {
    return m_state ? m_state->companyId : QString();
}
QString Session::userId() const {
    return m_state ? m_state->user : QString();
}
QDate Session::sessionDate() const {
    return m_state ? m_state->sessionDate : QDate();
}

ErrorList& Session::errors() {
    return m_state ? m_state->errors : m_closedErrors;
}

std::unique_ptr<View> Session::openView(const QString& viewId, const QString& /*ledger*/) {
    if (!m_state)
        m_closedErrors.fail(QStringLiteral("Open a company before opening view \"%1\".").arg(viewId));
    const engine::ViewDef* def = engine::Schema::instance().view(viewId);
    if (!def)
        m_state->errors.fail(QStringLiteral("View \"%1\" does not exist in this company.").arg(viewId));
    return std::make_unique<View>(m_state, *def);
}

std::unique_ptr<engine::Transaction> Session::beginTransaction() {
    if (!m_state)
        m_closedErrors.fail(QStringLiteral("Open a company before writing to it."));
    return engine::guarded(m_state->errors,
                           [&] { return std::make_unique<engine::Transaction>(*m_state->store); });
}

} // namespace tillbook
