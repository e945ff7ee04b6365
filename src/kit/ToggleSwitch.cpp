#include "kit/ToggleSwitch.h"

#include "kit/Card.h"
#include "kit/FocusRing.h"

#include <QPainter>

namespace vormel {

namespace {

constexpr QSize track(38, 22);
constexpr int ring = Card::endOfRow; ///< room around the track for the ring of the focus

} // namespace

ToggleSwitch::ToggleSwitch(QWidget* parent)
    : QCheckBox(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setCursor(Qt::PointingHandCursor);
}

QSize ToggleSwitch::sizeHint() const
{
    return track + QSize(2 * ring, 2 * ring);
}

void ToggleSwitch::paintEvent(QPaintEvent* /*event*/)
{
    constexpr qreal knobInset = 3.5;
    constexpr qreal outline = 1.2;
    const Theme theme(palette());
    const QRectF body(QPointF(ring, ring), track);
    const qreal radius = body.height() / 2;
    const bool isOn = isChecked();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (hasFocus())
        drawFocusRing(painter, QRectF(rect()), theme, radius + ring);
    painter.setPen(QPen(theme.color(isOn ? Tint::highlight : Tint::tertiary), outline));
    painter.setBrush(theme.color(isOn ? Tint::highlight : Tint::hairline));
    painter.drawRoundedRect(body.adjusted(outline / 2, outline / 2, -outline / 2, -outline / 2), radius, radius);
    const qreal side = body.height() - 2 * knobInset;
    const bool isAtRight = isOn != (layoutDirection() == Qt::RightToLeft);
    const qreal x = isAtRight ? body.right() - knobInset - side : body.left() + knobInset;
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.color(isOn ? Tint::highlightedText : Tint::tertiary));
    painter.drawEllipse(QRectF(x, body.top() + knobInset, side, side));
}

} // namespace vormel
