#pragma once

// Points the program's settings at an INI file in a fresh temporary folder for the life of the object, so
// that tests never read or write the user's own settings.

#include <QList>
#include <QSettings>
#include <QTemporaryDir>

namespace tillbook::test {

class TempSettings {
public:
    TempSettings() : m_file(m_dir.filePath(QStringLiteral("settings.ini"))) {
        m_previous = qgetenv("TILLBOOK_SETTINGS");
        qputenv("TILLBOOK_SETTINGS", m_file.toUtf8());
    }
    ~TempSettings() {
        if (m_previous.isEmpty())
            qunsetenv("TILLBOOK_SETTINGS");
        else
            qputenv("TILLBOOK_SETTINGS", m_previous);
    }
    TempSettings(const TempSettings&) = delete;
    TempSettings& operator=(const TempSettings&) = delete;

    QString fileName() const { return m_file; }

    // The raw stored text of a value, or a null string when it is missing.
    QString raw(const QString& key) const {
        const QSettings s(m_file, QSettings::IniFormat);
        const QVariant v = s.value(key);
        return v.isValid() ? v.toString() : QString();
    }
    // The raw texts of several values, joined by "|".
    QString raws(const QStringList& keys) const {
        QStringList values;
        for (const QString& key : keys)
            values << raw(key);
        return values.join(u'|');
    }
    void set(const QString& key, const QString& value) { setAll({{key, value}}); }
    void setAll(const QList<std::pair<QString, QString>>& values) {
        QSettings s(m_file, QSettings::IniFormat);
        for (const auto& [key, value] : values)
            s.setValue(key, value);
    }
    bool contains(const QString& key) const { return QSettings(m_file, QSettings::IniFormat).contains(key); }

private:
    QTemporaryDir m_dir;
    QString m_file;
    QByteArray m_previous;
};

} // namespace tillbook::test
