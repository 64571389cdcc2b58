#pragma once

// The about box's way to the desktop's system information.

#include <QString>
#include <QStringList>

namespace tillbook {

// Starts the system-information program; when there is none, says so in a message box.
void StartSysInfo();

// The command line that starts the system-information program, or "" when none is installed. Outside
// Windows the programs are looked for in `searchPaths` (empty: the PATH).
QString SysInfoCommandLine(const QStringList& searchPaths = {});

#ifdef Q_OS_WIN
// A value of a registry key under HKEY_LOCAL_MACHINE: its text, or its decimal form for a number.
// `found` is false when the key or value is missing.
QString GetKeyValue(const QString& keyPath, const QString& valueName, bool& found);
#endif

} // namespace tillbook
