#include "ui/queue/DropOverlay.h"

#include "kit/GlyphLabel.h"
#include "kit/StyledLabel.h"

#include <QPainter>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

DropOverlay::DropOverlay(QWidget* parent)
    : QWidget(parent)
    , m_text(new StyledLabel(StyledLabel::Style::title, Tint::accent, this))
{
    constexpr int iconSize = 48;
    setObjectName(u"dropOverlay"_s);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    m_text->setObjectName(u"dropText"_s);
    m_text->setAlignment(Qt::AlignCenter);
    auto* column = new QVBoxLayout(this);
    column->setSpacing(10);
    column->addStretch();
    column->addWidget(new GlyphLabel(Glyph::arrowDownCircleFill, Tint::accent, iconSize, this), 0, Qt::AlignHCenter);
    column->addWidget(m_text);
    column->addStretch();
    hide();
}

void DropOverlay::setText(const QString& text)
{
    m_text->setText(text);
    setAccessibleName(text);
}

void DropOverlay::paintEvent(QPaintEvent* /*event*/)
{
    constexpr double margin = 8;
    constexpr double corner = 10;
    constexpr double stroke = 2;
    constexpr float opacity = 0.07F;
    constexpr float veil = 0.96F; // what lies below must not compete with the label
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor background = palette().color(QPalette::Window);
    background.setAlphaF(veil);
    painter.fillRect(rect(), background);
    const QColor accent = Theme(palette()).color(Tint::accent);
    QColor filling = accent;
    filling.setAlphaF(opacity);
    painter.setBrush(filling);
    painter.setPen(QPen(accent, stroke));
    painter.drawRoundedRect(QRectF(rect()).adjusted(margin, margin, -margin, -margin), corner, corner);
}

} // namespace vormel
