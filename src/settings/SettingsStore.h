#pragma once

// Where the program's settings live: the per-user store of "ORVA\ORVA Tillbook" (the registry on Windows, an
// INI file elsewhere), or the INI file named by TILLBOOK_SETTINGS. Every value is a string.

#include <QSettings>
#include <QString>
#include <memory>

namespace tillbook {

class SettingsStore {
public:
    SettingsStore();
    ~SettingsStore();
    SettingsStore(const SettingsStore&) = delete;
    SettingsStore& operator=(const SettingsStore&) = delete;

    // `key` is "Section/Value" or "Section/Subsection/Value".
    QString read(const QString& key, const QString& defaultValue) const;
    void write(const QString& key, const QString& value);

private:
    std::unique_ptr<QSettings> m_settings;
    bool m_written = false;
};

} // namespace tillbook
