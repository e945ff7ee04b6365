#include "ui/queue/RowPainter.h"

#include <QPainter>
#include <QPainterPath>
#include <QTextOption>

namespace vormel {

namespace {

struct StatusIcon
{
    Glyph glyph;
    Tint tint;
};

StatusIcon statusIcon(DownloadStatus::Kind status)
{
    switch (status) {
    case DownloadStatus::queued:
    case DownloadStatus::resolving: // has an indicator instead
        return {Glyph::clock, Tint::secondary};
    case DownloadStatus::expanding:
        return {Glyph::archiveboxFill, Tint::orange};
    case DownloadStatus::downloading:
        return {Glyph::arrowDownCircleFill, Tint::blue};
    case DownloadStatus::paused:
        return {Glyph::pauseCircleFill, Tint::orange};
    case DownloadStatus::stopped:
        return {Glyph::stopCircleFill, Tint::secondary};
    case DownloadStatus::completed:
        return {Glyph::checkmarkCircleFill, Tint::green};
    case DownloadStatus::failed:
        return {Glyph::exclamationmarkCircleFill, Tint::red};
    }
    Q_UNREACHABLE();
}

StatusIcon extractionIcon(ExtractionStatus::Kind extraction)
{
    switch (extraction) {
    case ExtractionStatus::done:
        return {Glyph::checkmarkCircleFill, Tint::green};
    case ExtractionStatus::failed:
        return {Glyph::exclamationmarkCircleFill, Tint::red};
    case ExtractionStatus::idle:
    case ExtractionStatus::extracting:
    case ExtractionStatus::repairing:
        return {Glyph::archiveboxFill, Tint::orange};
    }
    Q_UNREACHABLE();
}

QPalette::ColorGroup colorGroup(const QStyleOptionViewItem& option)
{
    return option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
}

} // namespace

RowPainter::RowPainter(QPainter& painter, const QStyleOptionViewItem& option, const RowMetrics& metrics, int spin)
    : m_painter(painter)
    , m_option(option)
    , m_metrics(metrics)
    , m_theme(option.palette, colorGroup(option))
    , m_isSelected(option.state.testFlag(QStyle::State_Selected))
    , m_spin(spin)
{}

QColor RowPainter::color(Tint tint) const
{
    // No status colour is readable on every highlight, so a selected row is told apart by shapes and texts alone.
    return m_theme.color(m_isSelected ? Tint::highlightedText : tint);
}

void RowPainter::paint(const RowContent& content, const RowLayout& layout) const
{
    const Qt::Alignment leading = Qt::AlignLeading | Qt::AlignVCenter;
    const Qt::Alignment trailing = Qt::AlignTrailing | Qt::AlignVCenter;
    const QFont& caption = m_metrics.captionFont;
    m_painter.save();
    m_painter.setRenderHint(QPainter::Antialiasing);
    paintBackground();
    paintStatusIcon(content.status, layout.icon);
    paintText(layout.name, content.name, m_metrics.nameFont, Tint::text, Qt::ElideMiddle, leading);
    const Tint statusTint = content.status == DownloadStatus::failed ? Tint::red : Tint::secondary;
    paintText(layout.status, content.statusText, caption, statusTint, Qt::ElideRight, trailing);
    paintText(layout.recovery, content.recoveryText, caption, Tint::orange, Qt::ElideRight, leading);
    paintBar(layout.progressBar, content.progress, Tint::blue);
    paintText(layout.bytes, content.byteText, caption, Tint::secondary, Qt::ElideRight, trailing);
    paintText(layout.speed, content.speedText, caption, Tint::secondary, Qt::ElideRight, trailing);
    paintExtraction(content, layout);
    paintText(layout.host, content.host, caption, Tint::tertiary, Qt::ElideRight, leading);
    m_painter.restore();
}

void RowPainter::paintBackground() const
{
    constexpr int inset = 4;
    constexpr double corner = 6;
    const QRectF plate = QRectF(m_option.rect).adjusted(inset, 1.5, -inset, -1.5);
    if (m_isSelected) {
        m_painter.setPen(Qt::NoPen);
        m_painter.setBrush(m_theme.color(Tint::highlight));
        m_painter.drawRoundedRect(plate, corner, corner);
        return;
    }
    const QRect row = m_option.rect;
    m_painter.fillRect(row.left() + RowMetrics::marginX, row.bottom(), row.width() - 2 * RowMetrics::marginX, 1,
                       m_theme.color(Tint::hairline));
    if (m_option.state.testFlag(QStyle::State_HasFocus)) {
        m_painter.setPen(QPen(m_theme.color(Tint::highlight), 1.5));
        m_painter.setBrush(Qt::NoBrush);
        m_painter.drawRoundedRect(plate, corner, corner);
    }
}

void RowPainter::paintStatusIcon(DownloadStatus::Kind status, const QRect& rect) const
{
    const StatusIcon icon = statusIcon(status);
    if (status == DownloadStatus::resolving)
        paintSpinner(rect);
    else
        paintGlyph(icon.glyph, icon.tint, rect);
}

void RowPainter::paintSpinner(const QRect& rect) const
{
    constexpr int unitsPerDegree = 16; // Qt's arcs count in sixteenths
    const QRectF ring = QRectF(rect).adjusted(2, 2, -2, -2);
    QPen pen(color(Tint::secondary), 2, Qt::SolidLine, Qt::RoundCap);
    m_painter.setBrush(Qt::NoBrush);
    m_painter.setPen(pen);
    m_painter.drawArc(ring, (90 - m_spin) * unitsPerDegree, -270 * unitsPerDegree);
}

void RowPainter::paintExtraction(const RowContent& content, const RowLayout& layout) const
{
    if (layout.extractionIcon.isEmpty())
        return;
    const StatusIcon icon = extractionIcon(content.extraction);
    paintGlyph(icon.glyph, icon.tint, layout.extractionIcon);
    paintBar(layout.extractionBar, content.extractionProgress, Tint::orange);
    const Qt::Alignment side = content.hasExtractionBar ? Qt::AlignTrailing : Qt::AlignLeading;
    const Tint tint = content.extraction == ExtractionStatus::failed ? Tint::red : Tint::secondary;
    paintText(layout.extractionText, content.extractionText, m_metrics.captionFont, tint, Qt::ElideRight,
              side | Qt::AlignVCenter);
}

void RowPainter::paintBar(const QRect& rect, double share, Tint tint) const
{
    if (rect.isEmpty())
        return;
    const double corner = rect.height() / 2.0;
    QColor track = color(Tint::track);
    if (m_isSelected)
        track.setAlphaF(0.35F);
    QPainterPath shape;
    shape.addRoundedRect(rect, corner, corner);
    m_painter.fillPath(shape, track);
    QRectF filled = rect;
    filled.setWidth(rect.width() * share);
    if (m_option.direction == Qt::RightToLeft)
        filled.moveRight(QRectF(rect).right());
    QPainterPath part;
    part.addRect(filled);
    m_painter.fillPath(shape.intersected(part), color(tint));
}

void RowPainter::paintGlyph(Glyph glyph, Tint tint, const QRect& rect) const
{
    const qreal ratio = m_painter.device()->devicePixelRatioF();
    m_painter.drawPixmap(rect, glyphPixmap(glyph, color(tint), rect.height(), ratio));
}

void RowPainter::paintText(const QRect& rect, const QString& text, const QFont& font, Tint tint,
                           Qt::TextElideMode elide, Qt::Alignment alignment) const
{
    if (rect.isEmpty() || text.isEmpty())
        return;
    m_painter.setFont(font);
    m_painter.setPen(color(tint));
    const QString shown = QFontMetrics(font).elidedText(text, elide, rect.width());
    QTextOption place(QStyle::visualAlignment(m_option.direction, alignment));
    place.setWrapMode(QTextOption::NoWrap);
    place.setTextDirection(m_option.direction);
    m_painter.drawText(rect, shown, place);
}

} // namespace vormel
