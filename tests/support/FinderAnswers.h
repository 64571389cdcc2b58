#pragma once

// Answers the receipt window's finder: runs a function on it as soon as it is shown modally, and chooses a
// row of it by its code.

#include "entry/dialogs/frmFinder.h"
#include "support/ReceiptWindow.h"

#include <QApplication>
#include <QPushButton>
#include <QTimer>
#include <functional>

namespace tillbook::test {

// Runs `act` on the finder once it is shown modally; the finder runs until `act` closes it.
inline void whenFinderShows(std::function<void(frmFinder*)> act) {
    QTimer::singleShot(0, [act = std::move(act)] {
        auto* finder = qobject_cast<frmFinder*>(QApplication::activeModalWidget());
        if (!finder)
            qFatal("the finder is not open");
        act(finder);
    });
}

inline FlexGrid* finderGrid(frmFinder* finder) {
    return control<FlexGrid>(finder, "MSFlexFinder");
}

// Makes the finder's row whose first cell reads `code` current and presses Select.
inline void selectInFinder(frmFinder* finder, const QString& code) {
    FlexGrid* grid = finderGrid(finder);
    for (int r = 1; r < grid->Rows(); ++r)
        if (grid->TextMatrix(r, 0) == code)
            grid->setRow(r);
    QCOMPARE(grid->Text(), code);
    control<QPushButton>(finder, "cmdSelect")->click();
}

} // namespace tillbook::test
