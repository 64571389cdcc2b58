#pragma once

// The receipt window's form as Qt Designer generates it, declared for the parts that work on its controls,
// and the parts themselves.

class QWidget;
namespace Ui {
class frmCR;
}

namespace tillbook {
class AmountDateFields;
class ApplicationGrid;
class DistributionLines;
class EntryFields;
class EntrySelection;
} // namespace tillbook
