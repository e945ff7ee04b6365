#include "ui/queue/RowLayout.h"

#include <QFontMetrics>
#include <QStyle>

namespace vormel {

namespace {

QRect centred(const QRect& line, int height)
{
    return {line.left(), line.top() + (line.height() - height) / 2, line.width(), height};
}

/// Hands out lines of a row from the top down.
class LineFeed
{
public:
    LineFeed(const QRect& column, int lineHeight)
        : m_column(column)
        , m_lineHeight(lineHeight)
    {}

    [[nodiscard]] QRect next()
    {
        const QRect line(m_column.left(), m_column.top() + RowMetrics::gapY, m_column.width(), m_lineHeight);
        m_column.setTop(line.top() + m_lineHeight);
        return line;
    }

private:
    QRect m_column;
    int m_lineHeight;
};

} // namespace

RowLayout::RowLayout(const RowMetrics& metrics, const RowContent& content, const QRect& row,
                     Qt::LayoutDirection direction)
{
    const QRect inner =
        row.adjusted(RowMetrics::marginX, RowMetrics::marginY, -RowMetrics::marginX, -RowMetrics::marginY);
    const int firstHeight = qMax(metrics.nameHeight, metrics.iconSize);
    icon = centred(QRect(inner.left(), inner.top(), metrics.iconSize, firstHeight), metrics.iconSize);
    const int textLeft = icon.right() + 1 + RowMetrics::gapX;
    const QRect column(textLeft, inner.top(), qMax(0, inner.right() + 1 - textLeft), inner.height());
    placeFirstLine(metrics, content, QRect(column.left(), column.top(), column.width(), firstHeight));
    LineFeed lines(column.adjusted(0, firstHeight, 0, 0), metrics.captionHeight);
    if (content.lines.testFlag(RowLine::recovery))
        recovery = lines.next();
    if (content.lines.testFlag(RowLine::progress))
        placeProgress(metrics, lines.next());
    if (content.lines.testFlag(RowLine::extraction))
        placeExtraction(metrics, content, lines.next());
    host = lines.next();
    for (QRect* rect : all()) {
        if (!rect->isEmpty())
            *rect = QStyle::visualRect(direction, row, *rect);
    }
}

void RowLayout::placeFirstLine(const RowMetrics& metrics, const RowContent& content, const QRect& line)
{
    // The name may have what the status leaves, and never less than a good half of the line.
    constexpr double smallestShareOfName = 0.55;
    const int available = qMax(0, line.width() - RowMetrics::gapX);
    const int nameWanted = QFontMetrics(metrics.nameFont).horizontalAdvance(content.name) + 1;
    const int statusWanted = QFontMetrics(metrics.captionFont).horizontalAdvance(content.statusText) + 1;
    const int nameKept = qMin(nameWanted, static_cast<int>(available * smallestShareOfName));
    const int statusWidth = qMin(statusWanted, available - nameKept);
    name = centred(QRect(line.left(), line.top(), available - statusWidth, line.height()), metrics.nameHeight);
    status = QRect(line.right() + 1 - statusWidth, line.top(), statusWidth, line.height());
}

void RowLayout::placeProgress(const RowMetrics& metrics, const QRect& line)
{
    constexpr int smallestBar = 24;
    const int forTexts = qMax(0, line.width() - smallestBar - 2 * RowMetrics::gapX);
    const int wanted = metrics.byteWidth + metrics.speedWidth;
    const int speedWidth = forTexts < wanted ? forTexts * metrics.speedWidth / wanted : metrics.speedWidth;
    const int byteWidth = forTexts < wanted ? forTexts - speedWidth : metrics.byteWidth;
    speed = QRect(line.right() + 1 - speedWidth, line.top(), speedWidth, line.height());
    bytes = QRect(speed.left() - RowMetrics::gapX - byteWidth, line.top(), byteWidth, line.height());
    const int barWidth = qMax(0, bytes.left() - RowMetrics::gapX - line.left());
    progressBar = centred(QRect(line.left(), line.top(), barWidth, line.height()), metrics.barHeight);
}

void RowLayout::placeExtraction(const RowMetrics& metrics, const RowContent& content, const QRect& line)
{
    constexpr int gap = 6;
    extractionIcon =
        centred(QRect(line.left(), line.top(), metrics.smallIconSize, line.height()), metrics.smallIconSize);
    QRect rest = line;
    rest.setLeft(extractionIcon.right() + 1 + gap);
    extractionText = rest;
    if (!content.hasExtractionBar)
        return;
    const int textWidth = QFontMetrics(metrics.captionFont).horizontalAdvance(QStringLiteral("100%")) + 1;
    extractionText.setLeft(rest.right() + 1 - textWidth);
    rest.setRight(extractionText.left() - 1 - RowMetrics::gapX);
    extractionBar = centred(rest, metrics.barHeight);
}

std::vector<QRect*> RowLayout::all()
{
    return {&icon,  &name,           &status,        &recovery,       &progressBar, &bytes,
            &speed, &extractionIcon, &extractionBar, &extractionText, &host};
}

std::vector<QRect> RowLayout::shown() const
{
    std::vector<QRect> rects{icon,  name,           status,        recovery,       progressBar, bytes,
                             speed, extractionIcon, extractionBar, extractionText, host};
    std::erase_if(rects, [](const QRect& rect) { return rect.isEmpty(); });
    return rects;
}

} // namespace vormel
