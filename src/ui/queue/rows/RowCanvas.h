#pragma once

#include "kit/Theme.h"
#include "ui/queue/rows/RowPlaces.h"

#include <QStyleOptionViewItem>

#include <optional>

namespace vormel {

/// What the pointer does to a row: nothing, or it is on this button.
struct HotButton
{
    std::optional<RowButton> button;
    bool isPressed = false;
};

/// What moves by itself, at this moment.
struct Motion
{
    int spin = 0; ///< of a waiting indicator, in degrees; bars without an end go by it too
};

/// Draws the pieces that rows and headers are made of, in the colours of one row. Lives for one painting; all
/// references outlive it.
class RowCanvas
{
public:
    RowCanvas(QPainter& painter, const QStyleOptionViewItem& option, const RowMetrics& metrics);
    RowCanvas(const RowCanvas&) = delete;
    RowCanvas& operator=(const RowCanvas&) = delete;
    ~RowCanvas();

    /// Plate, hairline and focus. The hairline begins there.
    void background(int hairlineLeft) const;
    void text(const QRect& rect, const QString& text, const QFont& font, Tint tint, Qt::TextElideMode elide,
              Qt::Alignment alignment) const;
    /// On two lines where one does not do.
    void twoLines(const QRect& rect, const QString& text, Tint tint) const;
    void bar(const QRect& rect, double share, Tint tint) const;
    void endlessBar(const QRect& rect, Motion motion, Tint tint) const;
    void glyph(Glyph glyph, Tint tint, const QRect& rect) const;
    void spinner(const QRect& rect, Motion motion) const;
    void buttons(const std::vector<ButtonPlace>& places, HotButton hot) const;
    /// A button with a border and a text, for the one that stands alone.
    void borderedButton(const ButtonPlace& place, const QString& text, HotButton hot) const;

private:
    void track(const QRect& rect, const QRectF& filled, Tint tint) const;
    void plate(const QRect& rect, bool isPressed) const;
    [[nodiscard]] QColor color(Tint tint) const;
    [[nodiscard]] Qt::LayoutDirection readingDirection(const QString& text) const;

    QPainter& m_painter;
    const QStyleOptionViewItem& m_option;
    const RowMetrics& m_metrics;
    const Theme m_theme;
    const bool m_isSelected;
};

} // namespace vormel
