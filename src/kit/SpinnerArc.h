#pragma once

#include <QPainter>

namespace vormel {

/// What turns while something is waited for, at that angle in degrees.
inline void drawSpinner(QPainter& painter, const QRect& rect, const QColor& color, int angle)
{
    constexpr int unitsPerDegree = 16; // Qt's arcs count in sixteenths
    const QRectF ring = QRectF(rect).adjusted(2, 2, -2, -2);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, 2, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(ring, (90 - angle) * unitsPerDegree, -270 * unitsPerDegree);
}

} // namespace vormel
