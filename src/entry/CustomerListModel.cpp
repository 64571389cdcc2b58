#include "entry/CustomerListModel.h"

#include "entry/CustomerFinder.h"

#include <QComboBox>
#include <QListView>
#include <QPainter>
#include <QProxyStyle>
#include <QSignalBlocker>

namespace tillbook {

namespace {

// The list drops down below the box, as a plain drop-down list does, rather than as a menu over it: a
// menu is made as wide as the widest of all the names and as tall as all the rows, which means measuring
// every name on each opening.
class DropDownStyle : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override {
        if (hint == SH_ComboBox_Popup)
            return 0;
        return QProxyStyle::styleHint(hint, option, widget, returned);
    }
};

} // namespace

CustomerListModel::CustomerListModel(const CustomerList& customers, QObject* parent)
    : QAbstractListModel(parent), m_customers(customers) {}

void CustomerListModel::showFirst(int count) {
    beginResetModel();
    m_count = std::clamp(count, 0, int(m_customers.size()));
    endResetModel();
}

int CustomerListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_count;
}

QVariant CustomerListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= m_count)
        return {};
    const size_t position = size_t(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return m_customers.text(position, CustomerList::Name);
    case NumberRole:
        return m_customers.text(position, CustomerList::Id);
    default:
        return {};
    }
}

void CustomerNumberDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                   const QModelIndex& index) const {
    QStyleOptionViewItem shown = option;
    initStyleOption(&shown, index);
    const QString number = index.data(CustomerListModel::NumberRole).toString();
    const int margin = shown.fontMetrics.averageCharWidth();
    const int numberWidth = shown.fontMetrics.horizontalAdvance(number) + 2 * margin;
    // The name keeps the width the number leaves, elided where it is longer.
    QStyleOptionViewItem name = shown;
    name.rect.setRight(shown.rect.right() - numberWidth);
    QStyledItemDelegate::paint(painter, name, index);
    painter->save();
    const bool selected = shown.state & QStyle::State_Selected;
    painter->setPen(shown.palette.color(selected ? QPalette::HighlightedText : QPalette::PlaceholderText));
    if (selected)
        painter->fillRect(QRect(name.rect.right() + 1, shown.rect.top(), numberWidth, shown.rect.height()),
                          shown.palette.highlight());
    painter->drawText(shown.rect.adjusted(0, 0, -margin, 0), Qt::AlignRight | Qt::AlignVCenter, number);
    painter->restore();
}

void ShowCustomers(QComboBox* combo, const CustomerList& customers, int count) {
    auto* model = qobject_cast<CustomerListModel*>(combo->model());
    const QSignalBlocker quiet(combo);
    if (!model) {
        auto* style = new DropDownStyle();
        style->setParent(combo);
        combo->setStyle(style);
        model = new CustomerListModel(customers, combo);
        combo->setModel(model);
        auto* view = new QListView(combo);
        view->setUniformItemSizes(true);
        combo->setView(view);
        combo->setItemDelegate(new CustomerNumberDelegate(view));
        new CustomerFinder(combo, customers);
    }
    model->showFirst(count);
    combo->setCurrentIndex(-1);
}

} // namespace tillbook
