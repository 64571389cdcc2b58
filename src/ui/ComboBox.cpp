#include "ui/ComboBox.h"

#include <QSignalBlocker>

namespace tillbook {

ComboBox::ComboBox(QWidget* parent) : QComboBox(parent) {
    // A choice by the clerk, with the mouse or the arrow keys.
    connect(this, &QComboBox::activated, this, [this] { emit Click(); });
    // Items added to a list with nothing selected leave nothing selected (a plain combo box would select the
    // first one); only the list index selects.
    connect(model(), &QAbstractItemModel::rowsAboutToBeInserted, this,
            [this] { m_indexBeforeInsert = currentIndex(); });
    connect(model(), &QAbstractItemModel::rowsInserted, this, [this] {
        if (m_indexBeforeInsert == -1 && currentIndex() != -1) {
            const QSignalBlocker quiet(this);
            setCurrentIndex(-1);
        }
    });
}

void ComboBox::setListIndex(int index) {
    setCurrentIndex(index < count() ? index : -1);
    emit Click();
}

} // namespace tillbook
