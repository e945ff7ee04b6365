#include "kit/SegmentButton.h"

#include "kit/FocusRing.h"

#include <QPainter>

namespace vormel {

QSize SegmentButton::sizeHint() const
{
    constexpr QSize air(44, 14);
    return fontMetrics().size(Qt::TextSingleLine, text()) + air;
}

void SegmentButton::paintEvent(QPaintEvent* /*event*/)
{
    constexpr qreal radius = 6;
    constexpr qreal inset = 2;
    const Theme theme(palette());
    const QRectF body = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isChecked()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme.color(Tint::highlight));
        painter.drawRoundedRect(body, radius - 1, radius - 1);
    }
    if (hasFocus())
        drawFocusRing(painter, body.adjusted(1, 1, -1, -1), theme, radius - 2,
                      isChecked() ? Tint::highlightedText : Tint::accent);
    painter.setPen(theme.color(isChecked() ? Tint::highlightedText : Tint::text));
    painter.drawText(rect(), Qt::AlignCenter, text());
}

} // namespace vormel
