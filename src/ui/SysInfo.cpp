#include "ui/SysInfo.h"

#include "ui/Platform.h"

#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

namespace tillbook {

namespace {

QString quoted(const QString& path) {
    return u'"' + path + u'"';
}

} // namespace

#ifdef Q_OS_WIN
QString GetKeyValue(const QString& keyPath, const QString& valueName, bool& found) {
    const QSettings key(QStringLiteral("HKEY_LOCAL_MACHINE\\") + keyPath, QSettings::NativeFormat);
    const QVariant value = key.value(valueName);
    found = value.isValid();
    // Text values come back as text and 32-bit numbers as numbers; other kinds count as found but empty.
    if (!found)
        return QString();
    switch (value.typeId()) {
    case QMetaType::QString:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return value.toString();
    default:
        return QString();
    }
}

QString SysInfoCommandLine(const QStringList& /*searchPaths*/) {
    bool found = false;
    const QString path = GetKeyValue(QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools\\MSINFO"),
                                     QStringLiteral("PATH"), found);
    if (found)
        return quoted(path);
    const QString folder = GetKeyValue(QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools Location"),
                                       QStringLiteral("MSINFO"), found);
    const QString program = folder + QStringLiteral("\\MSINFO32.EXE");
    if (found && QFileInfo::exists(program))
        return quoted(program);
    return QString();
}
#else
QString SysInfoCommandLine(const QStringList& searchPaths) {
#ifdef Q_OS_MACOS
    if (searchPaths.isEmpty() &&
        QFileInfo::exists(QStringLiteral("/System/Applications/Utilities/System Information.app")))
        return QStringLiteral("open -a \"System Information\"");
#endif
    // The desktops' own system-information programs, the most common first.
    static const char* const programs[] = {"kinfocenter", "hardinfo2", "hardinfo", "gnome-system-monitor"};
    for (const char* name : programs) {
        const QString path = QStandardPaths::findExecutable(QString::fromLatin1(name), searchPaths);
        if (!path.isEmpty())
            return quoted(path);
    }
    return QString();
}
#endif

void StartSysInfo() {
    const QString commandLine = SysInfoCommandLine();
    if (commandLine.isEmpty()) {
        MsgBox(QStringLiteral("System Information Is Unavailable At This Time"), vbOKOnly);
        return;
    }
    if (!Shell(commandLine))
        MsgBox(QStringLiteral("System Information Is Unavailable At This Time"), vbOKOnly);
}

} // namespace tillbook
