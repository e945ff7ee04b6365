#pragma once

#include "ui/kit/Glyph.h"
#include "ui/kit/Theme.h"
#include "ui/queue/RowLayout.h"

#include <QStyleOptionViewItem>

namespace vormel {

/// Draws one row. Lives for one painting.
class RowPainter
{
public:
    /// `spin` is the angle of the waiting indicator in degrees. All references outlive the painter.
    RowPainter(QPainter& painter, const QStyleOptionViewItem& option, const RowMetrics& metrics, int spin);

    void paint(const RowContent& content, const RowLayout& layout) const;

private:
    void paintBackground() const;
    void paintStatusIcon(DownloadStatus::Kind status, const QRect& rect) const;
    void paintSpinner(const QRect& rect) const;
    void paintExtraction(const RowContent& content, const RowLayout& layout) const;
    void paintBar(const QRect& rect, double share, Tint tint) const;
    void paintGlyph(Glyph glyph, Tint tint, const QRect& rect) const;
    void paintText(const QRect& rect, const QString& text, const QFont& font, Tint tint, Qt::TextElideMode elide,
                   Qt::Alignment alignment) const;
    [[nodiscard]] QColor color(Tint tint) const;

    QPainter& m_painter;
    const QStyleOptionViewItem& m_option;
    const RowMetrics& m_metrics;
    const Theme m_theme;
    const bool m_isSelected;
    const int m_spin;
};

} // namespace vormel
