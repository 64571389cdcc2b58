#include "ledger/engine/CompanyLocation.h"

#include "ledger/engine/StoreFailure.h"

#include <QDir>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QUrl>

namespace tillbook::engine {

namespace {

// The address as it may be shown: a password in it never reaches a message, a log or a screen.
QString withoutPassword(const QString& address) {
    static const QRegularExpression secret(QStringLiteral("^([^:/]*://[^:@/]*):[^@/]*@"));
    QString shown = address;
    shown.replace(secret, QStringLiteral("\\1:*****@"));
    return shown;
}

} // namespace

QString CompanyLocation::describe() const {
    if (!postgres)
        return sqlitePath;
    return QStringLiteral("%1:%2/%3").arg(host).arg(port).arg(database);
}

CompanyLocation locateCompany(const QString& databaseId) {
    static const QRegularExpression valid(QStringLiteral("^[A-Za-z0-9_]+$"));
    const QString id = databaseId.trimmed();
    if (id.isEmpty())
        throw storeFailure(QStringLiteral("A company ID may not be empty."));
    // The length is checked first: a long ID of good characters is wrong only in its length.
    if (id.size() > MaxCompanyIdLength)
        throw storeFailure(
            QStringLiteral("\"%1...\" is not a valid company ID (at most %2 characters, it has %3).")
                .arg(id.left(MaxCompanyIdLength))
                .arg(MaxCompanyIdLength)
                .arg(id.size()));
    if (!valid.match(id).hasMatch())
        throw storeFailure(
            QStringLiteral("\"%1\" is not a valid company ID (letters, digits and _ only).").arg(id));
    CompanyLocation location;
    location.companyId = id.toUpper();
    const QString urlTemplate = qEnvironmentVariable("TILLBOOK_LEDGER_URL");
    if (!urlTemplate.isEmpty()) {
        QString text = urlTemplate;
        text.replace(QLatin1String("{id}"), id.toLower());
        const QUrl url(text);
        const QString shown = withoutPassword(urlTemplate);
        if (!text.startsWith(QLatin1String("postgresql://")) &&
            !text.startsWith(QLatin1String("postgres://")))
            throw storeFailure(
                QStringLiteral("TILLBOOK_LEDGER_URL \"%1\" is not a postgresql:// address.").arg(shown));
        if (!url.isValid())
            throw storeFailure(QStringLiteral("TILLBOOK_LEDGER_URL \"%1\" is not a valid address: check its "
                                              "host, and its port (1 to 65535).")
                                   .arg(shown));
        location.postgres = true;
        location.host = url.host().isEmpty() ? QStringLiteral("localhost") : url.host();
        location.port = url.port(5432);
        location.user = url.userName();
        location.password = url.password();
        location.database = url.path().mid(1);
        if (location.database.isEmpty())
            location.database = QStringLiteral("tillbook_") + id.toLower();
        return location;
    }
    QString folder = qEnvironmentVariable("TILLBOOK_DATA");
    if (folder.isEmpty())
        folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    location.sqlitePath = QDir(folder).filePath(location.companyId + QStringLiteral(".sqlite"));
    return location;
}

} // namespace tillbook::engine
