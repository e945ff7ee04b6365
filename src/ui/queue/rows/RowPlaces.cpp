#include "ui/queue/rows/RowPlaces.h"

namespace vormel {

QRect centred(const QRect& line, int height)
{
    return {line.left(), line.top() + (line.height() - height) / 2, line.width(), height};
}

std::vector<ButtonPlace> placeButtons(const std::vector<RowButton>& buttons, const RowMetrics& metrics, QRect& line)
{
    const int size = metrics.buttonSize;
    // The last glyph, not its air, ends where the other columns do.
    const int overhang = (size - metrics.buttonGlyphSize) / 2;
    const int count = static_cast<int>(buttons.size());
    QRect next(line.right() + 1 + overhang - count * size, line.top() + (line.height() - size) / 2, size, size);
    if (count > 0)
        line.setRight(next.left() - 1 - RowMetrics::gapX / 2);
    std::vector<ButtonPlace> places;
    for (const RowButton button : buttons) {
        places.push_back({button, next});
        next.translate(size, 0);
    }
    return places;
}

std::vector<QRect> notEmpty(const std::vector<QRect*>& rects)
{
    std::vector<QRect> shown;
    for (const QRect* rect : rects) {
        if (!rect->isEmpty())
            shown.push_back(*rect);
    }
    return shown;
}

QRect takeEnd(QRect& line, int width)
{
    const QRect end(line.right() + 1 - width, line.top(), width, line.height());
    line.setRight(end.left() - 1 - RowMetrics::gapX);
    return end;
}

FigurePlaces placeFigures(const RowMetrics& metrics, QRect line, int byteWidth)
{
    constexpr int minBarWidth = 24;
    const int room = qMax(0, line.width() - minBarWidth - 2 * RowMetrics::gapX);
    const int wanted = byteWidth + metrics.speedWidth;
    const int speedWidth = room < wanted ? room * metrics.speedWidth / wanted : metrics.speedWidth;
    FigurePlaces places;
    places.speed = takeEnd(line, speedWidth);
    places.bytes = takeEnd(line, room < wanted ? room - speedWidth : byteWidth);
    places.bar = centred(line, metrics.barHeight);
    return places;
}

QRect LineCursor::next(int height)
{
    const QRect line(m_column.left(), m_column.top() + RowMetrics::gapY, m_column.width(), height);
    m_column.setTop(line.top() + height);
    return line;
}

QRect CaptionCursor::next(int width, QRect* dot)
{
    if (width <= 0)
        return {};
    if (dot && m_left > m_line.left())
        *dot = take(m_dotWidth);
    return take(width);
}

QRect CaptionCursor::take(int width)
{
    const QRect place(m_left, m_line.top(), width, m_line.height());
    m_left += width;
    return place;
}

} // namespace vormel
