#include "kit/GlyphLabel.h"

#include <QPainter>

namespace vormel {

GlyphLabel::GlyphLabel(Glyph glyph, Tint tint, int size, QWidget* parent)
    : QWidget(parent)
    , m_glyph(glyph)
    , m_tint(tint)
    , m_size(size)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void GlyphLabel::setLook(Glyph glyph, Tint tint)
{
    m_glyph = glyph;
    m_tint = tint;
    update();
}

void GlyphLabel::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    QRect square(0, 0, m_size, m_size);
    square.moveCenter(rect().center());
    painter.drawPixmap(square, glyphPixmap(m_glyph, Theme(palette()).color(m_tint), m_size, devicePixelRatioF()));
}

} // namespace vormel
