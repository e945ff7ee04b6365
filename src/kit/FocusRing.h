#pragma once

#include "kit/Theme.h"

#include <QPainter>

namespace vormel {

/// Shows that the keyboard works on what is painted inside the frame. On the ground of what is chosen the ring has the
/// colour of the texts there.
inline void drawFocusRing(QPainter& painter, const QRectF& frame, const Theme& theme, qreal radius,
                          Tint tint = Tint::accent)
{
    constexpr qreal width = 2;
    constexpr qreal inset = width / 2;
    painter.setPen(QPen(theme.color(tint), width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(frame.adjusted(inset, inset, -inset, -inset), radius - inset, radius - inset);
}

} // namespace vormel
