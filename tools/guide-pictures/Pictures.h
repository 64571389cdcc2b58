#pragma once

// The windows of the user's guide, each put into the state its figure shows and saved as a PNG file named
// after the figure (frmLogin.png, frmCR-receipt.png, ...). Expects the program's settings to remember a
// sign-in as ADMIN to company SAMINC, a sample company whose customers have open documents.

#include <QString>
#include <QStringList>

namespace tillbook::guide {

// Walks the program from its sign-in window to a saved receipt; returns the names of the pictures saved.
QStringList takePictures(const QString& folder);

} // namespace tillbook::guide
