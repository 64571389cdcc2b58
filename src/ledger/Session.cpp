#include "ledger/Session.h"

#include "ledger/engine/CompanyStore.h"
#include "ledger/engine/Guarded.h"
#include "ledger/engine/SessionState.h"
#include "ledger/engine/TableAccess.h"
#include "ledger/engine/Transaction.h"
#include "ledger/engine/ValueCodec.h"

namespace tillbook {

struct Session::PendingSignIn {
    engine::PasswordCheck check;
    QString user;
    QString password;
    QString databaseId;
};

namespace {

// One message, whether the user is unknown or the password wrong: a sign-in must not tell which users a
// company has.
[[noreturn]] void refuse(ErrorList& errors, const QString& databaseId) {
    errors.fail(QStringLiteral("The user name or password is not correct for company \"%1\".")
                    .arg(engine::locateCompany(databaseId).companyId),
                ErrorPriority::Security);
}

QString profileCompanyId(engine::CompanyStore& store) {
    const engine::ViewDef& profile = *engine::Schema::instance().view(QStringLiteral("CS0001"));
    engine::TableAccess table(store, profile);
    const auto page = table.page({{profile.fieldIndex(QStringLiteral("ORGID"))},
                                  profile.primaryKey().fields,
                                  true,
                                  QString(),
                                  {},
                                  {},
                                  {},
                                  1});
    return page.rows() == 0 ? store.location().companyId : page.row(0)->toString();
}

} // namespace

Session::Session() {
    engine::registerValueTypes();
}
Session::~Session() = default;

void Session::open(const QString& user, const QString& password, const QString& databaseId,
                   const QDate& sessionDate, int flags) {
    beginOpen(user, password, databaseId, sessionDate, flags);
    finishOpen();
}

void Session::beginOpen(const QString& user, const QString& password, const QString& databaseId,
                        const QDate& sessionDate, int flags) {
    close();
    checkLedgerNames();
    auto state = std::make_shared<engine::SessionState>();
    std::unique_ptr<PendingSignIn> pending;
    engine::guarded(m_closedErrors, [&] {
        auto started = engine::CompanyStore::startSignIn(databaseId, user, password);
        if (flags & OpenAsOwner) {
            if (!engine::CompanyStore::finishSignIn(started, user, password))
                refuse(m_closedErrors, databaseId);
            started.store = engine::CompanyStore::open(databaseId);
        }
        if (!started.store)
            refuse(m_closedErrors, databaseId);
        state->store = std::move(started.store);
        if (started.check)
            pending.reset(new PendingSignIn{std::move(*started.check), user, password, databaseId});
        state->companyId = profileCompanyId(*state->store);
    });
    state->user = user.trimmed().toUpper();
    state->sessionDate = sessionDate.isValid() ? sessionDate : QDate::currentDate();
    state->errors = m_closedErrors;
    m_closedErrors.clear();
    m_state = std::move(state);
    m_pending = std::move(pending);
}

void Session::finishOpen() {
    if (!m_pending)
        return;
    const std::unique_ptr<PendingSignIn> pending = std::move(m_pending);
    bool passed = false;
    try {
        engine::guarded(m_state->errors, [&] {
            passed = m_state->store->passwordChecked(pending->check, pending->user, pending->password);
        });
    } catch (...) {
        close();
        throw;
    }
    if (passed)
        return;
    close();
    engine::guarded(m_closedErrors, [&] { refuse(m_closedErrors, pending->databaseId); });
}

void Session::close() {
    m_pending.reset();
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
