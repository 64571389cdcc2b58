#pragma once

// Answers the new-batch dialog when it opens: picks the bank code at `position` and confirms.

#include "ui/ComboBox.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

namespace tillbook::test {

inline void answerBankDialog(int position, QString* shownBatch = nullptr) {
    QTimer::singleShot(0, [position, shownBatch] {
        QWidget* dialog = QApplication::activeModalWidget();
        if (!dialog || dialog->objectName() != "frmBank")
            qFatal("the bank dialog is not open");
        if (shownBatch)
            *shownBatch = dialog->findChild<QLineEdit*>("txtBatchNum")->text();
        auto* ok = dialog->findChild<QPushButton*>("cmdOK");
        if (ok->isEnabled())
            qFatal("OK is enabled before a bank code is chosen");
        dialog->findChild<ComboBox*>("cboBank")->setListIndex(position);
        ok->click();
    });
}

} // namespace tillbook::test
