#pragma once

// The rules of a miscellaneous receipt's distribution lines that need no window: which key moves the editor
// where, what a line's amount is, what is left to distribute, when a line may be added, and the texts of
// the refused cells.

#include "ledger/Money.h"

#include <QString>
#include <vector>

namespace tillbook {

// The grid's columns of a distribution line.
constexpr int DistColCode = 0;
constexpr int DistColAccount = 1;
constexpr int DistColAmount = 2;
constexpr int DistColReference = 3;
constexpr int DistColDescription = 4;

inline const QString InvalidInputTitle = QStringLiteral("Invalid Input");
inline const QString AmountOverUndistributedText =
    QStringLiteral("The Amount you entered is greater than the Undistributed Amount.\n"
                   "Enter an Amount less than the Undistributed Amount.");

// Where the refusal is met: the editor's arrow keys say "thr finder", a click on the grid "the finder".
enum class RefusedBy { Keys, Click };
QString InvalidDistCodeText(RefusedBy by);
QString InvalidAccountText(RefusedBy by);

// Tab in the editor moves one column to the left, like Left.
void TabToLeft(int& keyCode);
// The column the editor moves to for a key in column `col`: Left from column 1 on, Right up to column 3;
// -1 when the key moves nothing.
int DistKeyTarget(int keyCode, int col);

// A line's amount as its cell shows it: the typed text without commas, read leniently ("12abc" is 12), to
// whole cents half away from zero, so that what is checked, shown and posted is one figure.
Money DistLineAmount(const QString& typed);

// `amounts` holds the stored amount of line n at index n (index 0 unused); lines past its end count as 0.
// What line `line` may take: the receipt amount less every other line 1..lines.
Money DistRemaining(Money receipt, const std::vector<Money>& amounts, int lines, int line);
// The receipt amount less lines 1..lines.
Money Undistributed(Money receipt, const std::vector<Money>& amounts, int lines);

// A line is added to none, or after a last line whose Amount cell holds more than zero.
bool CanAddDistLine(int lines, const QString& lastAmountCell);

} // namespace tillbook
