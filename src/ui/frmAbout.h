#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class frmAbout;
}

namespace tillbook {

// The about box: the program's title, version, what it is, its notices and the disclaimer, and a way to the
// desktop's system information.
class frmAbout : public QDialog {
    Q_OBJECT

public:
    explicit frmAbout(QWidget* parent = nullptr);
    ~frmAbout() override;

public slots:
    void cmdOK_Click();
    void cmdSysInfo_Click();

private:
    void Form_Load();

    std::unique_ptr<Ui::frmAbout> ui;
};

// Shows the about box over the given window and returns when the clerk has closed it.
void ShowAbout(QWidget* parent);

} // namespace tillbook
