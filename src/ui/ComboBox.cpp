#include "ui/ComboBox.h"

namespace tillbook {

ComboBox::ComboBox(QWidget* parent) : QComboBox(parent) {
    // A choice by the clerk, with the mouse or the arrow keys.
    connect(this, &QComboBox::activated, this, [this] { emit Click(); });
}

void ComboBox::setListIndex(int index) {
    setCurrentIndex(index < count() ? index : -1);
    emit Click();
}

} // namespace tillbook
