#include "ledger/engine/PostgresRoles.h"
#include "ledger/engine/StoreFailure.h"

#include "ledger/engine/AuditTrail.h"
#include "ledger/engine/CompanyStore.h"
#include "ledger/engine/Schema.h"
#include "ledger/engine/Transaction.h"

#include <QSet>
#include <QSqlDriver>
#include <libpq-fe.h>

namespace tillbook::engine {

namespace {

constexpr int MaxRoleNameBytes = 63;

QString quoted(const QString& identifier) {
    return u'"' + QString(identifier).replace(u'"', QLatin1String("\"\"")) + u'"';
}

QString literal(const QString& text) {
    return u'\'' + QString(text).replace(u'\'', QLatin1String("''")) + u'\'';
}

// The views the tills write: batches, receipts and their lines, and what posting changes (the documents
// paid and made, the customers' figures). Everything else only the owner writes (import).
const QSet<QString>& tillsWrite() {
    static const QSet<QString> views{QStringLiteral("AR0041"), QStringLiteral("AR0042"),
                                     QStringLiteral("AR0043"), QStringLiteral("AR0044"),
                                     QStringLiteral("AR0045"), QStringLiteral("AR0061"),
                                     QStringLiteral("AR0036"), QStringLiteral("AR0024")};
    return views;
}

bool roleExists(CompanyStore& owner, const QString& role) {
    QSqlQuery query = owner.prepare(QStringLiteral("SELECT 1 FROM pg_roles WHERE rolname = ?"));
    owner.run(query, {role});
    return query.next();
}

// The server sets who wrote an audit row and when, whatever the statement says: a clerk who adds rows by
// hand adds them under their own login.
void stampAuditRows(CompanyStore& owner) {
    owner.execute(QStringLiteral(
        "CREATE OR REPLACE FUNCTION tb_audit_stamp() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN "
        "NEW.\"WHO\" := session_user; NEW.\"AT\" := to_char(clock_timestamp() AT TIME ZONE 'UTC', "
        "'YYYY-MM-DD\"T\"HH24:MI:SS.MS\"Z\"'); RETURN NEW; END $$"));
    owner.execute(QStringLiteral("DROP TRIGGER IF EXISTS tb_audit_stamp ON \"TB_AUDIT\""));
    owner.execute(QStringLiteral("CREATE TRIGGER tb_audit_stamp BEFORE INSERT ON \"TB_AUDIT\" FOR EACH ROW "
                                 "EXECUTE FUNCTION tb_audit_stamp()"));
}

// What the server keeps of a password: its SCRAM-SHA-256 verifier, computed by libpq on this side.
QString scramVerifier(CompanyStore& owner, const QString& login, const QString& password) {
    const QVariant handle = owner.connection().driver()->handle();
    // Qt names the type as the compiler spells it: PGconn is libpq's name for struct pg_conn.
    if (qstrcmp(handle.typeName(), "PGconn*") != 0 && qstrcmp(handle.typeName(), "pg_conn*") != 0)
        throw storeFailure(QStringLiteral("The PostgreSQL driver gives no connection handle (%1).")
                             .arg(QString::fromLatin1(handle.typeName())));
    PGconn* connection = *static_cast<PGconn* const*>(handle.constData());
    char* verifier = PQencryptPasswordConn(connection, password.toUtf8().constData(),
                                           login.toUtf8().constData(), "scram-sha-256");
    if (!verifier)
        throw storeFailure(QStringLiteral("The password of %1 could not be prepared: %2")
                             .arg(login, QString::fromUtf8(PQerrorMessage(connection)).trimmed()));
    const QString text = QString::fromLatin1(verifier);
    PQfreemem(verifier);
    return text;
}

} // namespace

QString companyLogin(const QString& companyId, const QString& user) {
    const QString login = companyId.toUpper() + u'.' + user.trimmed().toUpper();
    if (login.toUtf8().size() > MaxRoleNameBytes)
        throw storeFailure(QStringLiteral("User name \"%1\" is too long for company %2 on PostgreSQL: its "
                                        "login %3 would have more than %4 bytes.")
                             .arg(user.trimmed(), companyId.toUpper(), login)
                             .arg(MaxRoleNameBytes));
    return login;
}

QString clerksRole(const QString& companyId) {
    return QStringLiteral("tillbook_clerks_") + companyId.toLower();
}

QString administratorsRole(const QString& companyId) {
    return QStringLiteral("tillbook_admins_") + companyId.toLower();
}

void grantClerksAccess(CompanyStore& owner) {
    const QString clerks = quoted(clerksRole(owner.location().companyId));
    const QString administrators = quoted(administratorsRole(owner.location().companyId));
    if (!roleExists(owner, clerksRole(owner.location().companyId)))
        owner.execute(QStringLiteral("CREATE ROLE %1 NOLOGIN").arg(clerks));
    if (!roleExists(owner, administratorsRole(owner.location().companyId)))
        owner.execute(QStringLiteral("CREATE ROLE %1 NOLOGIN IN ROLE %2").arg(administrators, clerks));
    createAuditTable(owner);
    stampAuditRows(owner);
    // Only the company's own clerks reach its database, and nobody but the owner makes anything in it.
    const QString database = quoted(owner.location().database);
    owner.execute(QStringLiteral("REVOKE ALL ON DATABASE %1 FROM PUBLIC").arg(database));
    owner.execute(QStringLiteral("GRANT CONNECT ON DATABASE %1 TO %2").arg(database, clerks));
    try {
        // Already so on PostgreSQL 15 and later; before, only the schema's owner may say it.
        Transaction revoke(owner);
        owner.execute(QStringLiteral("REVOKE CREATE ON SCHEMA public FROM PUBLIC"));
        revoke.commit();
    } catch (const LedgerError&) {
    }
    owner.execute(QStringLiteral("GRANT USAGE ON SCHEMA public TO %1").arg(clerks));
    owner.execute(
        QStringLiteral("REVOKE ALL ON ALL TABLES IN SCHEMA public FROM %1, %2").arg(clerks, administrators));
    // Administrators keep the master data through the views as well.
    for (const ViewDef& view : Schema::instance().views()) {
        owner.execute(QStringLiteral("GRANT %1 ON %2 TO %3")
                          .arg(tillsWrite().contains(view.id) ? QStringLiteral("SELECT, INSERT, UPDATE")
                                                              : QStringLiteral("SELECT"),
                               quoted(view.table), clerks));
        owner.execute(QStringLiteral("GRANT SELECT, INSERT, UPDATE ON %1 TO %2")
                          .arg(quoted(view.table), administrators));
    }
    owner.execute(QStringLiteral("GRANT SELECT, INSERT, UPDATE ON \"TB_COUNTERS\" TO %1").arg(clerks));
    // The trail is only added to; the users' table holds no secret here, and only names and standing are
    // read.
    owner.execute(QStringLiteral("GRANT SELECT, INSERT ON \"TB_AUDIT\" TO %1").arg(clerks));
    owner.execute(QStringLiteral("GRANT SELECT (\"NAME\", \"ADMIN\") ON \"TB_USERS\" TO %1").arg(clerks));
    try {
        // tillbook-ledger check has PostgreSQL's amcheck look at the indexes, where it is installed.
        Transaction amcheck(owner);
        owner.execute(
            QStringLiteral("GRANT EXECUTE ON FUNCTION bt_index_check(regclass, boolean) TO %1").arg(clerks));
        amcheck.commit();
    } catch (const LedgerError&) {
    }
}

void setCompanyLogin(CompanyStore& owner, const QString& user, const QString& password,
                     std::optional<bool> administrator) {
    const QString login = companyLogin(owner.location().companyId, user);
    const QString clerks = clerksRole(owner.location().companyId);
    if (!roleExists(owner, clerks) || !roleExists(owner, administratorsRole(owner.location().companyId)))
        grantClerksAccess(owner);
    const QString verifier = literal(scramVerifier(owner, login, password));
    Transaction transaction(owner);
    if (roleExists(owner, login))
        owner.execute(QStringLiteral("ALTER ROLE %1 WITH LOGIN PASSWORD %2").arg(quoted(login), verifier));
    else
        owner.execute(QStringLiteral("CREATE ROLE %1 WITH LOGIN PASSWORD %2").arg(quoted(login), verifier));
    owner.execute(QStringLiteral("GRANT %1 TO %2").arg(quoted(clerks), quoted(login)));
    if (administrator)
        owner.execute(QString::fromLatin1(*administrator ? "GRANT %1 TO %2" : "REVOKE %1 FROM %2")
                          .arg(quoted(administratorsRole(owner.location().companyId)), quoted(login)));
    // The row says who the company's users are and who administers; it keeps no secret.
    const QString key = user.trimmed().toUpper();
    owner.execute(
        QStringLiteral("INSERT INTO \"TB_USERS\" (\"NAME\", \"SALT\", \"ROUNDS\", \"HASH\", \"ADMIN\") "
                       "VALUES (?, '', 0, '', ?) ON CONFLICT (\"NAME\") DO UPDATE SET \"SALT\" = '', "
                       "\"ROUNDS\" = 0, \"HASH\" = ''"),
        {key, administrator.value_or(false) ? 1 : 0});
    if (administrator)
        owner.execute(QStringLiteral("UPDATE \"TB_USERS\" SET \"ADMIN\" = ? WHERE \"NAME\" = ?"),
                      {*administrator ? 1 : 0, key});
    transaction.commit();
}

void dropStaleLogins(CompanyStore& owner) {
    const QString prefix = owner.location().companyId + u'.';
    QSqlQuery query = owner.prepare(
        QStringLiteral("SELECT r.rolname FROM pg_roles r JOIN pg_auth_members m ON m.member = r.oid JOIN "
                       "pg_roles g ON g.oid = m.roleid WHERE g.rolname = ? AND r.rolcanlogin"));
    owner.run(query, {clerksRole(owner.location().companyId)});
    QStringList logins;
    while (query.next())
        logins << query.value(0).toString();
    query.finish();
    for (const QString& login : std::as_const(logins)) {
        if (!login.startsWith(prefix) || owner.hasUser(login.mid(prefix.size())))
            continue;
        try {
            owner.execute(QStringLiteral("DROP ROLE %1").arg(quoted(login)));
        } catch (const LedgerError&) {
            // Still holding something elsewhere on the server: it at least no longer signs in.
            owner.execute(QStringLiteral("ALTER ROLE %1 NOLOGIN").arg(quoted(login)));
        }
    }
}

bool hasCompanyLogins(CompanyStore& owner) {
    return roleExists(owner, clerksRole(owner.location().companyId));
}

bool isRefusedLogin(const QString& error) {
    return error.contains(QLatin1String("authentication failed")) ||
           (error.contains(QLatin1String("role \"")) && error.contains(QLatin1String("does not exist")));
}

bool isMissingDatabase(const QString& error) {
    return error.contains(QLatin1String("database \"")) && error.contains(QLatin1String("does not exist"));
}

} // namespace tillbook::engine
