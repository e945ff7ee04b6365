#include "kit/TagLabel.h"

#include "kit/Contrast.h"

#include <QApplication>
#include <QPainter>

namespace vormel {

TagLabel::TagLabel(Tint ground, QWidget* parent)
    : StyledLabel(Style::boldCaption, Tint::text, parent)
    , m_ground(ground)
{
    setContentsMargins(6, 2, 6, 2);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void TagLabel::setGround(Tint ground)
{
    m_ground = ground;
    update();
}

void TagLabel::paintEvent(QPaintEvent* /*event*/)
{
    constexpr double opacity = 0.15;
    constexpr qreal radius = 5;
    const QPalette colors = QApplication::palette();
    const Theme theme(colors);
    const QColor ground = mixed(colors.color(QPalette::Base), theme.color(m_ground), opacity);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(rect(), radius, radius);
    painter.setPen(standingOut(theme.color(m_ground), theme.color(Tint::text), {ground}, readableContrast));
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text());
}

} // namespace vormel
