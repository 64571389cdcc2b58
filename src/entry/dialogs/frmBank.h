#pragma once

#include <QDialog>
#include <QStringList>
#include <functional>
#include <memory>

namespace Ui {
class frmBank;
}

namespace tillbook {

// Asks for the bank code of a batch that has just been created. It is given the batch number, the company's
// bank codes and the way to write the chosen code into the batch; it hands the code back. There is no cancel:
// OK needs a chosen code, and a code that cannot be written is asked for again.
class frmBank : public QDialog {
    Q_OBJECT

public:
    using BankCodeWriter = std::function<void(const QString& bankCode)>; // throws LedgerError

    frmBank(const QString& batchNumber, const QStringList& bankCodes, BankCodeWriter writeBankCode,
            QWidget* parent = nullptr);
    ~frmBank() override;

    // The code written into the batch; empty while none was.
    QString BankCode() const { return m_bankCode; }

public slots:
    void cboBank_Click();
    void cmdOK_Click();
    void reject() override;

private:
    std::unique_ptr<Ui::frmBank> ui;
    BankCodeWriter m_write;
    QString m_bankCode;
    bool m_writeFailed = false;
};

} // namespace tillbook
