#pragma once

// Lays the copies of one receipt out on a page of the printer's paper: one equal band per copy, with tear
// lines between the bands.

#include <QPageSize>
#include <QStringList>

class QPagedPaintDevice;
class QPainter;

namespace tillbook {

// Paints the finished HTML of each copy into its band. A copy taller than its band is scaled down to fit, so
// that the page always holds every copy whole. `painter` is active on `device`.
void Paint_ReceiptPage(QPainter& painter, QPagedPaintDevice& device, const QStringList& copies);

// The paper of a receipt that goes into a file: the default printer's, or the locale's (Letter in the US and
// Canada, A4 elsewhere) when no printer is installed.
QPageSize ReceiptPaper();

} // namespace tillbook
