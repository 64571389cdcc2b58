#include "entry/CustomerFinder.h"

#include "entry/CustomerListModel.h"
#include "ui/ComboBox.h"

#include <QAbstractListModel>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QVBoxLayout>

namespace tillbook {

// The customers found, by their list positions: a row's text is the name, its number beside it.
class FoundCustomersModel : public QAbstractListModel {
public:
    FoundCustomersModel(const CustomerList& customers, QObject* parent)
        : QAbstractListModel(parent), m_customers(customers) {}

    void show(const std::vector<std::uint32_t>& positions) {
        beginResetModel();
        m_positions = positions;
        endResetModel();
    }
    int position(int row) const { return row >= 0 && row < rowCount() ? int(m_positions[size_t(row)]) : -1; }

    int rowCount(const QModelIndex& parent = QModelIndex()) const override {
        return parent.isValid() ? 0 : int(m_positions.size());
    }
    QVariant data(const QModelIndex& index, int role) const override {
        const int at = position(index.row());
        if (at < 0)
            return {};
        if (role == Qt::DisplayRole)
            return m_customers.text(size_t(at), CustomerList::Name);
        if (role == CustomerListModel::NumberRole)
            return m_customers.text(size_t(at), CustomerList::Id);
        return {};
    }

private:
    const CustomerList& m_customers;
    std::vector<std::uint32_t> m_positions;
};

CustomerFinder::CustomerFinder(QComboBox* combo, const CustomerList& customers)
    : QFrame(combo, Qt::Popup), m_combo(combo), m_search(customers), m_text(new QLineEdit(this)),
      m_list(new QListView(this)), m_count(new QLabel(this)),
      m_found(new FoundCustomersModel(customers, this)) {
    setObjectName(QStringLiteral("CustomerFinder"));
    setFrameShape(QFrame::StyledPanel);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->addWidget(m_text);
    layout->addWidget(m_list);
    layout->addWidget(m_count);
    m_text->setPlaceholderText(tr("Name or customer number"));
    m_list->setModel(m_found);
    m_list->setUniformItemSizes(true);
    m_list->setItemDelegate(new CustomerNumberDelegate(m_list));
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setFocusProxy(m_text);
    connect(m_text, &QLineEdit::textEdited, this, &CustomerFinder::search);
    connect(m_text, &QLineEdit::returnPressed, this, &CustomerFinder::choose);
    connect(m_list, &QListView::doubleClicked, this, &CustomerFinder::choose);
    m_text->installEventFilter(this);
    combo->installEventFilter(this);
}

void CustomerFinder::openWith(const QString& typed) {
    m_text->setText(typed);
    search(typed);
    const QPoint below = m_combo->mapToGlobal(QPoint(0, m_combo->height()));
    setGeometry(below.x(), below.y(), qMax(m_combo->width(), 360), 300);
    show();
    m_text->setFocus();
}

void CustomerFinder::search(const QString& text) {
    m_found->show(m_search.find(text));
    m_count->setText(tr("%n customer(s) found", nullptr, m_found->rowCount()));
    if (m_found->rowCount() > 0)
        m_list->setCurrentIndex(m_found->index(0));
}

void CustomerFinder::choose() {
    const int position = m_found->position(m_list->currentIndex().row());
    if (position < 0)
        return;
    hide();
    if (auto* box = qobject_cast<ComboBox*>(m_combo))
        box->setListIndex(position);
    else
        m_combo->setCurrentIndex(position);
}

bool CustomerFinder::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto* key = static_cast<QKeyEvent*>(event);
    if (watched == m_combo) {
        // A printable key starts a search; every other key keeps its meaning on the box.
        const QString typed = key->text();
        if (typed.isEmpty() || !typed.at(0).isPrint() ||
            (key->modifiers() & (Qt::ControlModifier | Qt::AltModifier)))
            return false;
        if (isVisible()) { // a key that reached the box while the finder is open goes on into its line
            m_text->insert(typed);
            search(m_text->text());
        } else {
            openWith(typed);
        }
        return true;
    }
    // The arrows and page keys move on the list while the text keeps the focus.
    switch (key->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        QCoreApplication::sendEvent(m_list, event);
        return true;
    default:
        return false;
    }
}

} // namespace tillbook
