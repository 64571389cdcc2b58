#include "settings/SettingsStore.h"

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
    if (!m_written)
        return;
    m_settings->sync();
    // The settings hold sign-on passwords in plain text: where the store is a file, only its owner may read
    // it.
    if (m_settings->format() == QSettings::IniFormat || QFileInfo::exists(m_settings->fileName())) {
        QFile::setPermissions(m_settings->fileName(), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    }
}

QString SettingsStore::read(const QString& key, const QString& defaultValue) const {
    const QVariant value = m_settings->value(key);
    return value.isValid() ? value.toString() : defaultValue;
}

void SettingsStore::write(const QString& key, const QString& value) {
    m_settings->setValue(key, value);
    m_written = true;
}

} // namespace tillbook
