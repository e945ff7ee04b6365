#pragma once

#include "ui/kit/Theme.h"

#include <QPainter>

namespace vormel {

/// Shows that the keyboard works on what is painted inside the frame.
inline void drawFocusRing(QPainter& painter, const QRectF& frame, const Theme& theme, qreal radius)
{
    constexpr qreal width = 1.5;
    constexpr qreal inset = width / 2;
    painter.setPen(QPen(theme.color(Tint::blue), width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(frame.adjusted(inset, inset, -inset, -inset), radius - inset, radius - inset);
}

} // namespace vormel
