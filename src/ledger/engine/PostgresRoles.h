#pragma once

// On PostgreSQL a company's users are the server's own logins, and the server checks their passwords
// (SCRAM-SHA-256): the company keeps no password and no hash of theirs. The roles of company ID:
//  - the owner: the role of TILLBOOK_LEDGER_URL, which makes the company, owns its tables and runs
//    tillbook-ledger create, user and import;
//  - its clerks' role, tillbook_clerks_id (the ID in lower case), holding what the tills need and no more;
//  - its administrators' role, tillbook_admins_id, a member of the clerks' role that may also write the
//    master data (accounts, banks, codes, profile, calendar) through the views;
//  - a login for each user, ID.USER (both in upper case, at most 63 bytes), a member of the clerks' role.
//    No company ID has a dot, so two companies' logins never share a name, and neither role has one.

#include <QString>
#include <optional>

namespace tillbook::engine {

class CompanyStore;

// The login of `user` in company `companyId`; throws a store failure when it would be longer than the
// server's 63 bytes.
QString companyLogin(const QString& companyId, const QString& user);
QString clerksRole(const QString& companyId);
QString administratorsRole(const QString& companyId);

// Run by the owner on the company's database: the clerks' and administrators' roles (made when the server
// has none), their grants, and the audit trail's stamp of who wrote each row.
void grantClerksAccess(CompanyStore& owner);

// Run by the owner: makes user's login or gives it the new password, a member of the clerks' role (and of
// the administrators' when `administrator` says so; unset keeps it as it is), and
// the user's row (name and standing, as CompanyStore::setUser). The server gets only the password's SCRAM
// verifier, made here.
void setCompanyLogin(CompanyStore& owner, const QString& user, const QString& password,
                     std::optional<bool> administrator);

// Run by the owner after a company is made: the logins of users it does not have (those of the company it
// replaced) are removed.
void dropStaleLogins(CompanyStore& owner);

// Whether the company's users have logins: not so for one made on PostgreSQL before they had, whose users'
// hashes are in its table until `tillbook-ledger user` gives each a login.
bool hasCompanyLogins(CompanyStore& owner);

// Whether the text of a failed connection says the server refused the login or its password.
bool isRefusedLogin(const QString& error);
// Whether it says the database is not there.
bool isMissingDatabase(const QString& error);

} // namespace tillbook::engine
