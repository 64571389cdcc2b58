#include "ui/Forms.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>

namespace tillbook {

void CentreForm(QWidget* form) {
    const QScreen* screen = form->screen() ? form->screen() : QGuiApplication::primaryScreen();
    if (!screen)
        return;
    const QRect area = screen->geometry();
    const QSize size = form->frameGeometry().size();
    form->move(area.left() + (area.width() - size.width()) / 2,
               area.top() + (area.height() - size.height()) / 2);
}

void FixFormSize(QWidget* form, int widthTwips, int heightTwips) {
    form->setFixedSize(pixelsOfTwips(widthTwips), pixelsOfTwips(heightTwips));
}

QString ProgramFolder() {
    return QCoreApplication::applicationDirPath();
}

} // namespace tillbook
