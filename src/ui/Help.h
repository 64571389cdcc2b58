#pragma once

#include <QString>

namespace tillbook {

// Opens the user's guide: on Windows through the help viewer and the program's help file, elsewhere the guide
// in the program's help folder in the desktop's browser, or in the program's own help window when the desktop
// has no way to open it.
void ShowHelp();

// The guide's first page.
QString HelpIndexFile();

// The command line that ShowHelp starts through Shell.
QString HelpCommandLine();

} // namespace tillbook
