// The floor of bench/program_wall.sh: a sign-in window that shows the receipt window at once on Enter, so
// that the script's own keys, polling and window round trips can be told from the program's time.
#include <QApplication>
#include <QLineEdit>
#include <QMainWindow>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QLineEdit login;
    login.setWindowTitle(QStringLiteral("Tillbook - Login"));
    login.resize(528, 222);
    QMainWindow receipts;
    receipts.setWindowTitle(QStringLiteral("Tillbook - Receipt Entry"));
    receipts.resize(800, 600);
    QObject::connect(&login, &QLineEdit::returnPressed, &login, [&] {
        receipts.show();
        login.close();
    });
    login.show();
    return QApplication::exec();
}
