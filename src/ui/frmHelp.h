#pragma once

#include <QWidget>
#include <memory>

namespace Ui {
class frmHelp;
}

namespace tillbook {

// The program's own window over the user's guide, for a desktop without a browser to show it in.
class frmHelp : public QWidget {
    Q_OBJECT

public:
    // Shows the guide's page `indexFile`; its pictures and linked pages are read from the same folder.
    explicit frmHelp(const QString& indexFile, QWidget* parent = nullptr);
    ~frmHelp() override;

    // The one help window, made and shown on the first call, raised on every later one.
    static frmHelp* Show(const QString& indexFile);

private:
    std::unique_ptr<Ui::frmHelp> ui;
};

} // namespace tillbook
