#pragma once

#include <QIcon>

namespace tillbook {

// The program's icon: a till receipt with its torn edge, drawn at the sizes the desktop asks for.
QIcon ProgramIcon();

} // namespace tillbook
