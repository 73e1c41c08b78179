#pragma once

class QPainter;
class QRect;

/// Draws the outline of a rectangle with the painter's pen, as QPainter::drawRect() does without a brush. It
/// is several times faster where the painter draws single pixels: Qt draws vertical lines as one span for
/// each pixel.
void paintOutline(QPainter &painter, const QRect &rect);
