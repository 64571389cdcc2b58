#pragma once

#include <QDialog>
#include <QStringList>
#include <memory>
#include <vector>

namespace Ui {
class frmFinder;
}

namespace tillbook {

// Lists the company's distribution codes or G/L accounts for the clerk to pick one for a distribution line.
// It is given the kind and the records of that kind (the fields of FinderFields, as stored) and hands back
// the chosen code, with a distribution code's revenue account.
class frmFinder : public QDialog {
    Q_OBJECT

public:
    frmFinder(int finderKind, const std::vector<QStringList>& records, QWidget* parent = nullptr);
    ~frmFinder() override;

    // After Select: the text of the finder's current cell (the code or the account as shown), and for a
    // distribution code its Revenue Account.
    QString ChosenCode() const { return m_code; }
    QString ChosenAccount() const { return m_account; }

public slots:
    void cmdSelect_Click();
    void cmdCancel_Click();
    void MSFlexFinder_EnterCell();

private:
    std::unique_ptr<Ui::frmFinder> ui;
    int m_kind;
    QString m_code;
    QString m_account;
};

} // namespace tillbook
