// The program: a Qt application that runs the start-up procedure and then its forms' events.
#include "app/Start.h"

#include <QApplication>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("ORVA"));
    QApplication::setApplicationName(QStringLiteral("ORVA Tillbook"));
    tillbook::Start_Main();
    const int status = QApplication::exec();
    tillbook::End_Main();
    return status;
}
