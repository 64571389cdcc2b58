#pragma once

// Placing and sizing forms. Sizes are given in twips, 15 to a pixel.

#include <QWidget>

namespace tillbook {

constexpr int TwipsPerPixel = 15;

constexpr int pixelsOfTwips(int twips) {
    return twips / TwipsPerPixel;
}

// Centres the form on the screen it is on: left = (screen width - width) / 2, top = (screen height - height)
// / 2.
void CentreForm(QWidget* form);

// Gives the form a fixed size that the clerk cannot change.
void FixFormSize(QWidget* form, int widthTwips, int heightTwips);

// The folder the program runs from, where its receipt templates and user's guide stand.
QString ProgramFolder();

} // namespace tillbook
