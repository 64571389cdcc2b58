#pragma once

#include <QMainWindow>
#include <memory>

namespace Ui {
class frmCR;
}

namespace tillbook {

// The receipt-entry window, where the clerk keys receipts into a batch.
class frmCR : public QMainWindow {
    Q_OBJECT

public:
    explicit frmCR(QWidget* parent = nullptr);
    ~frmCR() override;

private:
    std::unique_ptr<Ui::frmCR> ui;
};

} // namespace tillbook
