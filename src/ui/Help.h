#pragma once

#include <QString>

namespace tillbook {

// Opens the user's guide: on Windows through the help viewer and the program's help file, elsewhere the guide
// in the program's help folder in the desktop's browser.
void ShowHelp();

// The command line that ShowHelp starts through Shell.
QString HelpCommandLine();

} // namespace tillbook
