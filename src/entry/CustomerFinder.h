#pragma once

// Finding a customer by typing: a printable key on the customer box opens a small list under it with a line
// for the search text; the list shows the customers whose name or number holds the text (case and accents
// ignored), each with its number. Enter or a double-click chooses the customer in the box, as a choice
// from the drop-down does; Escape or a click elsewhere leaves the box as it was.

#include "fetching/CustomerSearch.h"

#include <QFrame>

class QComboBox;
class QLabel;
class QLineEdit;
class QListView;

namespace tillbook {

class FoundCustomersModel;

class CustomerFinder : public QFrame {
    Q_OBJECT

public:
    // Watches `combo`'s keys; the finder lives as long as the box.
    CustomerFinder(QComboBox* combo, const CustomerList& customers);

    void openWith(const QString& typed);
    void search(const QString& text);
    // Chooses the customer on the list's current row in the box, and closes.
    void choose();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QComboBox* m_combo;
    CustomerSearch m_search;
    QLineEdit* m_text;
    QListView* m_list;
    QLabel* m_count;
    FoundCustomersModel* m_found;
};

} // namespace tillbook
