#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <functional>
#include <memory>

namespace Ui {
class frmWorking;
}

namespace tillbook {

// The "Working..." window: a caption-only window shown while a long task runs on the one thread, with a bar
// that follows the task's progress.
class frmWorking : public QDialog {
    Q_OBJECT

public:
    explicit frmWorking(QWidget* parent = nullptr);
    ~frmWorking() override;

    // Shows the window and paints it at once, before the task starts and holds the thread.
    void showNow();

    // Moves the bar to `done` of `total`; a total of 0 shows a busy bar. The window is painted again only a
    // few times a second, so that a task may report as often as it likes.
    void setProgress(int done, int total);

    // What a task reports its progress to: the bar of the Working window now shown, or nothing when none is.
    static std::function<void(int done, int total)> ShownProgress();

protected:
    void hideEvent(QHideEvent* event) override;

private:
    std::unique_ptr<Ui::frmWorking> ui;
    QElapsedTimer m_sincePaint;
};

} // namespace tillbook
