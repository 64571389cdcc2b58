#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class frmWorking;
}

namespace tillbook {

// The "Working..." window: a caption-only window shown while a long task runs on the one thread.
class frmWorking : public QDialog {
    Q_OBJECT

public:
    explicit frmWorking(QWidget* parent = nullptr);
    ~frmWorking() override;

    // Shows the window and paints it at once, before the task starts and holds the thread.
    void showNow();

private:
    std::unique_ptr<Ui::frmWorking> ui;
};

} // namespace tillbook
