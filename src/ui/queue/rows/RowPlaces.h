#pragma once

#include "ui/queue/rows/RowMetrics.h"

#include <QRect>

namespace vormel {

struct ButtonPlace
{
    RowButton button = RowButton::pause;
    QRect rect;
};

/// The line's middle part of that height.
[[nodiscard]] QRect centred(const QRect& line, int height);

/// Takes the places of the buttons, in their order, from the end of the line.
[[nodiscard]] std::vector<ButtonPlace> placeButtons(const std::vector<RowButton>& buttons, const RowMetrics& metrics,
                                                    QRect& line);

/// Copies of those that are shown.
[[nodiscard]] std::vector<QRect> notEmpty(const std::vector<QRect*>& rects);

/// Takes that much from the end of the line, and a gap in front of it.
[[nodiscard]] QRect takeEnd(QRect& line, int width);

/// A bar with its two figures behind it. Where all three have no room the figures shrink.
struct FigurePlaces
{
    QRect bar;
    QRect bytes;
    QRect speed;
};
[[nodiscard]] FigurePlaces placeFigures(const RowMetrics& metrics, QRect line, int byteWidth);

/// Hands out the lines below the first one from the top down.
class LineCursor
{
public:
    LineCursor(const QRect& column, int lineHeight)
        : m_column(column)
        , m_lineHeight(lineHeight)
    {}

    [[nodiscard]] QRect next() { return next(m_lineHeight); }
    [[nodiscard]] QRect next(int height);

private:
    QRect m_column;
    int m_lineHeight;
};

/// Hands out the places of captions on one line from its start, with dots between them.
class CaptionCursor
{
public:
    CaptionCursor(const QRect& line, int dotWidth)
        : m_line(line)
        , m_dotWidth(dotWidth)
        , m_left(line.left())
    {}

    /// Sets the place of the dot, if something stands in front of it. Without a width there is neither.
    [[nodiscard]] QRect next(int width, QRect* dot);

private:
    [[nodiscard]] QRect take(int width);

    QRect m_line;
    int m_dotWidth;
    int m_left;
};

} // namespace vormel
