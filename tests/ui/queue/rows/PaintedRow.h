#pragma once

#include "fixtures/Palettes.h"
#include "ui/PaintRecorder.h"
#include "ui/queue/rows/HeaderPainter.h"
#include "ui/queue/rows/HeaderPresenter.h"
#include "ui/queue/rows/RowPainter.h"
#include "ui/queue/rows/RowPresenter.h"

#include <QApplication>
#include <QPainter>

namespace vormel::fixtures {

/// What a row or header paints, told in words: texts as "Paused/secondary", bold ones as "**a.zip**/text", icons as
/// "clock/secondary", each in the order of painting.
class PaintedRow
{
public:
    struct Look
    {
        int width = 900;
        bool isSelected = false;
        HotButton hot = {};
        bool isOpen = false;
    };

    PaintedRow(const RowContent& content, const Look& look)
        : m_metrics(QApplication::font())
        , m_row(0, 0, look.width, m_metrics.height(content.lines))
        , m_recorder(m_row.size())
    {
        const RowLayout layout(m_metrics, content, m_row, Qt::LeftToRight);
        m_sizes = {layout.icon.height(), layout.extractionIcon.height(), layout.recoveryIcon.height(),
                   layout.verificationIcon.height()};
        paint(look, [&](const RowCanvas& canvas) { paintRow(canvas, m_metrics, content, layout, look.hot, {}); });
    }
    PaintedRow(const HeaderContent& content, const Look& look)
        : m_metrics(QApplication::font())
        , m_row(0, 0, look.width, m_metrics.height(content.lines))
        , m_recorder(m_row.size())
    {
        const HeaderLayout layout(m_metrics, content, m_row, Qt::LeftToRight);
        m_sizes = {layout.icon.height(), layout.lackIcon.height()};
        paint(look,
              [&](const RowCanvas& canvas) { paintHeader(canvas, m_metrics, content, layout, look.hot, look.isOpen); });
    }

    [[nodiscard]] QStringList texts() const
    {
        QStringList all;
        for (const PaintRecorder::Text& text : m_recorder.texts) {
            const QString shown = text.isBold ? QStringLiteral("**%1**").arg(text.text) : text.text;
            all << shown + u'/' + tintName(text.color);
        }
        return all;
    }
    [[nodiscard]] QStringList glyphs() const
    {
        QStringList all;
        for (const PaintRecorder::Picture& picture : m_recorder.pictures)
            all << glyphName(picture.key);
        return all;
    }
    [[nodiscard]] const PaintRecorder& recorder() const { return m_recorder; }
    /// The share of the only bar that is filled, and its colour: "0.25/blue", or "empty". Nothing without one.
    [[nodiscard]] QString bar() const
    {
        const std::vector<PaintRecorder::Shape>& shapes = m_recorder.shapes;
        const auto track = std::find_if(shapes.begin(), shapes.end(), [](const PaintRecorder::Shape& shape) {
            return tintName(shape.fill) == u"track";
        });
        if (track == shapes.end())
            return {};
        const auto filled = std::next(track);
        if (filled == shapes.end() || filled->rect.height() > track->rect.height())
            return QStringLiteral("empty");
        const double share = filled->rect.width() / track->rect.width();
        return QString::number(share, 'f', 2) + u'/' + tintName(filled->fill);
    }

private:
    template <typename Draw>
    void paint(const Look& look, const Draw& draw)
    {
        QStyleOptionViewItem option;
        option.rect = m_row;
        option.palette = lightPalette();
        option.state = QStyle::State_Enabled | QStyle::State_Active;
        option.state.setFlag(QStyle::State_Selected, look.isSelected);
        QPainter painter(&m_recorder);
        const RowCanvas canvas(painter, option, m_metrics);
        draw(canvas);
    }

    [[nodiscard]] static QString tintName(const QColor& color)
    {
        const std::pair<Tint, const char*> names[] = {
            {Tint::text, "text"},         {Tint::secondary, "secondary"}, {Tint::tertiary, "tertiary"},
            {Tint::blue, "blue"},         {Tint::orange, "orange"},       {Tint::green, "green"},
            {Tint::red, "red"},           {Tint::track, "track"},         {Tint::highlightedText, "highlightedText"},
            {Tint::hairline, "hairline"},
        };
        for (const auto& [tint, name] : names) {
            if (Theme(lightPalette()).color(tint) == color)
                return QString::fromLatin1(name);
        }
        return color.name(QColor::HexArgb);
    }

    [[nodiscard]] QString glyphName(qint64 key) const
    {
        QList<int> sizes = m_sizes;
        sizes << m_metrics.buttonGlyphSize << m_metrics.smallIconSize - 2 << triangleSize;
        for (const int size : std::as_const(sizes)) {
            for (int glyph = 0; size > 0 && glyph < static_cast<int>(Glyph::program); ++glyph) {
                for (const Tint tint : {Tint::text, Tint::secondary, Tint::tertiary, Tint::blue, Tint::orange,
                                        Tint::green, Tint::red, Tint::highlightedText}) {
                    const QColor color = Theme(lightPalette()).color(tint);
                    if (glyphPixmap(static_cast<Glyph>(glyph), color, size, 1).cacheKey() == key)
                        return glyphPath(static_cast<Glyph>(glyph)).section(u'/', -1).chopped(4) + u'/' +
                               tintName(color);
                }
            }
        }
        return QStringLiteral("unknown");
    }

    static constexpr int triangleSize = 11;

    RowMetrics m_metrics;
    QRect m_row;
    PaintRecorder m_recorder;
    QList<int> m_sizes; ///< of the icons of this row
};

} // namespace vormel::fixtures
