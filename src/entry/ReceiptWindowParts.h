#pragma once

// The parts the receipt window hands its work to, each owning its share of the window's state and the
// controls it works on; the window owns them together and wires them to each other once.

#include "entry/AmountDateFields.h"
#include "entry/ApplicationGrid.h"
#include "entry/DistributionLines.h"
#include "entry/EntryFields.h"
#include "entry/EntrySelection.h"

namespace tillbook {

struct ReceiptWindowParts {
    ReceiptWindowParts(QWidget& window, Ui::frmCR& form)
        : amountDate(form), entry(window, form, amountDate), grid(form, entry),
          selection(window, form, entry, grid), lines(window, form, entry, grid) {}

    AmountDateFields amountDate; // the amount and date fields, the fiscal year and period
    EntryFields entry;           // the entry's kind, fields, lock and save commands
    ApplicationGrid grid;        // the grid's column sets, the documents applied or picked
    EntrySelection selection;    // the batch, entry and customer lists, a saved entry shown again
    DistributionLines lines;     // a miscellaneous receipt's lines and the floating editor
};

} // namespace tillbook
