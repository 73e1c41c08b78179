#include "models/outline.h"

#include <QPainter>

#include <cmath>

namespace {

/// Whether the pen's lines are one pixel wide and cover whole pixels.
bool drawsSinglePixels(const QPainter &painter)
{
    const QPen &pen = painter.pen();
    const bool isThin = pen.style() == Qt::SolidLine && pen.width() <= 1;
    const bool isOpaque = pen.brush().style() == Qt::SolidPattern && pen.color().alpha() == 255;
    const QTransform &place = painter.deviceTransform();
    const bool isOnPixels = place.type() <= QTransform::TxTranslate && place.dx() == std::floor(place.dx())
        && place.dy() == std::floor(place.dy()) && !painter.testRenderHint(QPainter::Antialiasing);
    return isThin && isOpaque && isOnPixels;
}

} // namespace

void paintOutline(QPainter &painter, const QRect &rect)
{
    const bool hasInside = rect.width() > 1 && rect.height() > 1;
    if (!hasInside || painter.brush().style() != Qt::NoBrush || !drawsSinglePixels(painter)) {
        painter.drawRect(rect);
        return;
    }
    const QColor color = painter.pen().color();
    const int width = rect.width() + 1; // a pen draws the right and the bottom line outside the rectangle
    const int insideTop = rect.top() + 1;
    const int insideHeight = rect.height() - 1;
    painter.fillRect(rect.left(), rect.top(), width, 1, color);
    painter.fillRect(rect.left(), rect.top() + rect.height(), width, 1, color);
    painter.fillRect(rect.left(), insideTop, 1, insideHeight, color);
    painter.fillRect(rect.left() + rect.width(), insideTop, 1, insideHeight, color);
}
