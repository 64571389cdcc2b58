#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QTextStream(stderr) << "tillbook-ledger: no commands yet\n";
    return 2;
}
