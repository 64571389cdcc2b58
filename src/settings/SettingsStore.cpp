#include "settings/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace tillbook {

SettingsStore::SettingsStore() {
    const QString file = qEnvironmentVariable("TILLBOOK_SETTINGS");
    if (!file.isEmpty())
        m_settings = std::make_unique<QSettings>(file, QSettings::IniFormat);
    else
        m_settings = std::make_unique<QSettings>(QStringLiteral("ORVA"), QStringLiteral("ORVA Tillbook"));
}

SettingsStore::~SettingsStore() {
    if (m_written)
        m_settings->sync();
}

namespace {

// The settings hold sign-on passwords in plain text. Where the store is a file, it is made readable by
// its owner only before anything is written to it (one left by an earlier version is narrowed first);
// QSettings replaces the file keeping its permissions, so no moment sees it readable by others.
void makeOwnerOnly(const QSettings& settings) {
#ifdef Q_OS_WIN
    if (settings.format() != QSettings::IniFormat)
        return; // the registry
#endif
    const QString path = settings.fileName();
    const QFileDevice::Permissions ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly, ownerOnly))
        return;
    QFile::setPermissions(path, ownerOnly);
}

} // namespace

QString SettingsStore::read(const QString& key, const QString& defaultValue) const {
    const QVariant value = m_settings->value(key);
    return value.isValid() ? value.toString() : defaultValue;
}

void SettingsStore::write(const QString& key, const QString& value) {
    if (!m_written)
        makeOwnerOnly(*m_settings);
    m_settings->setValue(key, value);
    m_written = true;
}

} // namespace tillbook
