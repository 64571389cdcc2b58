#pragma once

#include <QString>

namespace tillbook {

// The folder of one of the program's own data folders ("Reports", "help"). In a build tree they stand beside
// the program; once installed, in the data folder that the install puts beside the programs' folder
// (/usr/bin/tillbook finds /usr/share/tillbook/Reports). When neither exists, the folder beside the program
// is named, so that a message about a missing file points where a build tree keeps it.
QString ProgramDataFolder(const QString& name);

} // namespace tillbook
