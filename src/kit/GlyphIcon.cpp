#include "kit/GlyphIcon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>

namespace vormel {

namespace {

class GlyphIconEngine final : public QIconEngine
{
public:
    GlyphIconEngine(Glyph glyph, Tint tint)
        : m_glyph(glyph)
        , m_tint(tint)
    {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override
    {
        const int side = qMin(rect.width(), rect.height());
        QRect square(0, 0, side, side);
        square.moveCenter(rect.center());
        painter->drawPixmap(square, glyphPixmap(m_glyph, color(mode), side, painter->device()->devicePixelRatioF()));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        return scaledPixmap(size, mode, state, 1.0);
    }

    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/, qreal /*scale*/) override
    {
        // The size comes in device pixels already, and QIcon sets the ratio of what comes back.
        return glyphPixmap(m_glyph, color(mode), qMin(size.width(), size.height()), 1.0);
    }

    [[nodiscard]] QIconEngine* clone() const override { return new GlyphIconEngine(*this); }

private:
    [[nodiscard]] QColor color(QIcon::Mode mode) const
    {
        if (m_glyph == Glyph::program)
            return {};
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const Theme theme(QGuiApplication::palette(), group);
        if (mode == QIcon::Disabled)
            return theme.color(Tint::text);
        return theme.color(mode == QIcon::Selected ? Tint::highlightedText : m_tint);
    }

    Glyph m_glyph;
    Tint m_tint;
};

} // namespace

QIcon glyphIcon(Glyph glyph, Tint tint)
{
    return QIcon(new GlyphIconEngine(glyph, tint)); // the icon owns its engine
}

QIcon programIcon()
{
    return glyphIcon(Glyph::program);
}

} // namespace vormel
