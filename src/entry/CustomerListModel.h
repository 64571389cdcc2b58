#pragma once

// The customer list as the drop-down shows it: one row per customer of `Customers`, its name as the row's
// text and its number beside it. Rows are read from the list when they are drawn, never copied.

#include "fetching/CustomerList.h"

#include <QAbstractListModel>
#include <QStyledItemDelegate>

class QComboBox;

namespace tillbook {

class CustomerListModel : public QAbstractListModel {
    Q_OBJECT

public:
    static constexpr int NumberRole = Qt::UserRole + 1;

    CustomerListModel(const CustomerList& customers, QObject* parent);
    // The first `count` customers of the list are shown from now on.
    void showFirst(int count);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    const CustomerList& m_customers;
    int m_count = 0;
};

// Draws a customer's number right-aligned beside the name, so that customers of the same name can be told
// apart.
class CustomerNumberDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};

// Puts the first `count` customers of `customers` into `combo`, with nothing selected. The popup's rows
// all have one height, so that opening it never measures the list; typing on the box finds a customer
// (CustomerFinder).
void ShowCustomers(QComboBox* combo, const CustomerList& customers, int count);

} // namespace tillbook
