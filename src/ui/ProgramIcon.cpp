#include "ui/ProgramIcon.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace tillbook {

namespace {

QPixmap drawReceipt(int size) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(size / 64.0, size / 64.0);

    // A round blue badge behind a white receipt slip with a zig-zag torn foot.
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0x1d, 0x3d, 0x5c));
    p.drawRoundedRect(QRectF(2, 2, 60, 60), 12, 12);

    QPainterPath slip;
    slip.moveTo(18, 10);
    slip.lineTo(46, 10);
    slip.lineTo(46, 50);
    for (int i = 0; i < 7; ++i) {
        slip.lineTo(46 - 2 - i * 4, i % 2 == 0 ? 54 : 50);
    }
    slip.lineTo(18, 50);
    slip.closeSubpath();
    p.setBrush(Qt::white);
    p.drawPath(slip);

    // Printed lines and a total.
    p.setPen(QPen(QColor(0x8a, 0x99, 0xa8), 2.2, Qt::SolidLine, Qt::RoundCap));
    for (int y : {18, 24, 30})
        p.drawLine(QPointF(23, y), QPointF(41, y));
    p.setPen(QPen(QColor(0x2e, 0x8b, 0x57), 3.2, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(29, 40), QPointF(41, 40));
    return pixmap;
}

} // namespace

QIcon ProgramIcon() {
    QIcon icon;
    for (int size : {16, 24, 32, 48, 64, 128, 256})
        icon.addPixmap(drawReceipt(size));
    return icon;
}

} // namespace tillbook
