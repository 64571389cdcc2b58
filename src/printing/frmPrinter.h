#pragma once

#include <QDialog>
#include <QPrinterInfo>
#include <memory>

namespace Ui {
class frmPrinter;
}

namespace tillbook {

// Chooses the printer receipts are printed on, or the platform's default printer, and keeps the choice in the
// "Printer" settings, from which each print reads it.
class frmPrinter : public QDialog {
    Q_OBJECT

public:
    explicit frmPrinter(QWidget* parent = nullptr);
    ~frmPrinter() override;

public slots:
    void Form_Load();
    void List_Printers();
    void Load_PrinterSettings();
    void Save_PrinterSettings();
    void chkDefault_Click();
    void lstNames_Click();
    void cmdOK_Click();
    void cmdClose_Click();

protected:
    void closeEvent(QCloseEvent* event) override;
    void reject() override;

private:
    std::unique_ptr<Ui::frmPrinter> ui;
    bool m_closing = false;
};

} // namespace tillbook
