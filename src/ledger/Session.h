#pragma once

// A clerk's session with one company: signs in, opens views and collects the errors of their
// operations.

#include "ledger/ErrorList.h"
#include "ledger/View.h"

#include <QDate>
#include <QString>
#include <memory>

namespace tillbook {

// The longest database ID a company can have.
constexpr int MaxDatabaseIdLength = 32;

namespace engine {
struct SessionState;
class Transaction;
} // namespace engine

class Session {
public:
    Session();
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Finds the company's store (see README: TILLBOOK_DATA, TILLBOOK_LEDGER_URL) and checks the user;
    // the password is case-sensitive. Throws LedgerError for an unknown company, and one and the same
    // LedgerError for an unknown user and a wrong password.
    // On PostgreSQL the session connects as the user's own database login.
    void open(const QString& user, const QString& password, const QString& databaseId,
              const QDate& sessionDate, int flags = 0);
    // A flag of open: once the user is signed in, the session works through the company owner's connection
    // (on PostgreSQL the role of TILLBOOK_LEDGER_URL; on SQLite no different), for administering it.
    static constexpr int OpenAsOwner = 1 << 30;
    // open() in two halves, so that the password's hash (some 140 ms of work) is checked on a
    // thread of its own while the caller goes on: beginOpen opens the company and sets the check going, and
    // the session's views may be opened and read at once. finishOpen waits for the check; for an unknown
    // user or a wrong password it closes the session and throws as open() does, and whatever was read
    // meanwhile is to be thrown away unseen. An unknown company throws in beginOpen.
    void beginOpen(const QString& user, const QString& password, const QString& databaseId,
                   const QDate& sessionDate, int flags = 0);
    void finishOpen();
    void close();
    bool isOpen() const;
    QString companyId() const; // the company profile's ORGID
    QString userId() const;
    QDate sessionDate() const;

    // Throws LedgerError for a view the company does not have.
    std::unique_ptr<View> openView(const QString& viewId, const QString& ledger = QString());
    std::unique_ptr<View> openView(const ViewName& view) { return openView(view.text()); }

    ErrorList& errors();

    // Many writes as one: what the session's views write until the returned object's commit() lasts
    // together, and nothing of it when the object goes uncommitted. Fails when no company is open.
    std::unique_ptr<engine::Transaction> beginTransaction();

private:
    struct PendingSignIn;

    std::shared_ptr<engine::SessionState> m_state;
    std::unique_ptr<PendingSignIn> m_pending; // the password still being checked
    ErrorList m_closedErrors;                 // the list while no company is open
};

} // namespace tillbook
