#include "printing/ReceiptPage.h"

#include <QAbstractTextDocumentLayout>
#include <QLocale>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPrinterInfo>
#include <QTextDocument>
#include <algorithm>
#include <memory>

namespace tillbook {

namespace {

// Space kept clear on each side of a tear line, in inches.
constexpr double TearGap = 0.18;

std::unique_ptr<QTextDocument> layOut(QPagedPaintDevice& device, const QString& html, double width) {
    auto doc = std::make_unique<QTextDocument>();
    doc->documentLayout()->setPaintDevice(&device);
    QFont font(QStringLiteral("DejaVu Sans"), 9);
    // Without ligatures the printed text reads back letter for letter ("Office", not "O\uFB03ce").
    font.setStyleStrategy(QFont::PreferNoShaping);
    doc->setDefaultFont(font);
    doc->setDocumentMargin(0);
    doc->setHtml(html);
    doc->setTextWidth(width);
    return doc;
}

void drawTearLine(QPainter& painter, double y, double width, int resolution) {
    painter.save();
    QPen pen(Qt::gray);
    pen.setStyle(Qt::DashLine);
    pen.setWidthF(resolution / 144.0);
    painter.setPen(pen);
    painter.drawLine(QPointF(0, y), QPointF(width, y));
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSizeF(7);
    painter.setFont(QFont(font, painter.device()));
    painter.setPen(Qt::darkGray);
    const QString label = QStringLiteral("\u2702 tear here");
    const QRectF box(0, y - resolution * 0.09, width, resolution * 0.18);
    painter.fillRect(QRectF(width / 2 - resolution * 0.5, box.top(), resolution, box.height()), Qt::white);
    painter.drawText(box, Qt::AlignCenter, label);
    painter.restore();
}

} // namespace

void Paint_ReceiptPage(QPainter& painter, QPagedPaintDevice& device, const QStringList& copies) {
    const int resolution = device.logicalDpiY();
    const QRectF page = device.pageLayout().paintRectPixels(resolution);
    // The bands divide the whole sheet, so that the tear lines fall on its thirds or halves (where perforated
    // paper tears); the copies keep inside the printable area. The painter starts at the printable corner.
    const double sheetTop = -page.top();
    const double sheetHeight = device.pageLayout().fullRectPixels(resolution).height();
    const qsizetype bands = std::max<qsizetype>(1, copies.size());
    const double bandHeight = sheetHeight / double(bands);
    const double gap = bands > 1 ? TearGap * resolution : 0;

    for (qsizetype i = 0; i < copies.size(); ++i) {
        const double top = std::max(0.0, sheetTop + double(i) * bandHeight + (i > 0 ? gap : 0));
        const double bottom =
            std::min(page.height(), sheetTop + double(i + 1) * bandHeight - (i + 1 < bands ? gap : 0));
        const double room = bottom - top;
        std::unique_ptr<QTextDocument> doc = layOut(device, copies[i], page.width());
        // A shrunk copy is laid out wider, so that it still spans the band; a few passes settle the scale.
        double scale = 1.0;
        for (int pass = 0; pass < 4; ++pass) {
            const double over = doc->size().height() * scale / room;
            if (over <= 1.0)
                break;
            scale /= over;
            doc->setTextWidth(page.width() / scale);
        }
        scale = std::min(scale, room / doc->size().height());
        painter.save();
        painter.translate(0, top);
        painter.scale(scale, scale);
        painter.setClipRect(QRectF(0, 0, page.width() / scale, room / scale));
        doc->drawContents(&painter);
        painter.restore();
        if (i > 0)
            drawTearLine(painter, sheetTop + double(i) * bandHeight, page.width(), resolution);
    }
}

QPageSize ReceiptPaper() {
    const QPrinterInfo printer = QPrinterInfo::defaultPrinter();
    if (!printer.isNull() && printer.defaultPageSize().isValid())
        return printer.defaultPageSize();
    const QLocale::Territory territory = QLocale::system().territory();
    const bool letter = territory == QLocale::UnitedStates || territory == QLocale::Canada;
    return QPageSize(letter ? QPageSize::Letter : QPageSize::A4);
}

} // namespace tillbook
