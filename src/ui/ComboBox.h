#pragma once

#include <QComboBox>

namespace tillbook {

// A drop-down list whose list index behaves as the forms expect: setting it, in code or by the clerk, runs
// the Click handler, also when the index does not change; -1 selects nothing.
class ComboBox : public QComboBox {
    Q_OBJECT
    Q_PROPERTY(int ListIndex READ ListIndex WRITE setListIndex)
    Q_PROPERTY(int ListCount READ ListCount)

public:
    explicit ComboBox(QWidget* parent = nullptr);

    int ListIndex() const { return currentIndex(); }
    Q_INVOKABLE void setListIndex(int index);
    int ListCount() const { return count(); }

signals:
    void Click();

private:
    int m_indexBeforeInsert = -1;
};

} // namespace tillbook
