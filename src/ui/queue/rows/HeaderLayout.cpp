#include "ui/queue/rows/HeaderLayout.h"

#include "ui/queue/rows/HeaderPresenter.h"

#include <QFontMetrics>
#include <QStyle>

namespace vormel {

HeaderLayout::HeaderLayout(const RowMetrics& metrics, const HeaderContent& content, const QRect& row,
                           Qt::LayoutDirection direction)
{
    const QRect inner =
        row.adjusted(RowMetrics::gutter, RowMetrics::marginY, -RowMetrics::marginX, -RowMetrics::marginY);
    const int firstHeight = metrics.firstHeight();
    disclosure = QRect(row.left(), inner.top(), RowMetrics::gutter, firstHeight);
    icon = centred(QRect(inner.left(), inner.top(), metrics.iconSize, firstHeight), metrics.iconSize);
    const int textLeft = icon.right() + 1 + RowMetrics::gapX;
    const QRect column(textLeft, inner.top(), qMax(0, inner.right() + 1 - textLeft), inner.height());
    QRect first(column.left(), column.top(), column.width(), firstHeight);
    buttons = placeButtons(content.buttons, metrics, first);
    title = centred(first, metrics.nameHeight);
    title.setWidth(qMin(title.width(), QFontMetrics(metrics.nameFont).horizontalAdvance(content.title) + 1));
    LineCursor lines(column.adjusted(0, firstHeight, 0, 0), metrics.captionHeight);
    placeSummary(metrics, content, lines.next());
    if (content.lines.testFlag(RowLine::progress)) {
        const FigurePlaces places = placeFigures(metrics, lines.next(), metrics.groupByteWidth);
        progressBar = places.bar;
        bytes = places.bytes;
        speed = places.speed;
    }
    if (content.lines.testFlag(RowLine::lack))
        placeLack(metrics, lines.next());
    for (QRect* rect : all()) {
        if (!rect->isEmpty())
            *rect = QStyle::visualRect(direction, row, *rect);
    }
}

void HeaderLayout::placeSummary(const RowMetrics& metrics, const HeaderContent& content, const QRect& line)
{
    constexpr int gap = 8;
    summary = line;
    if (content.extractionText.isEmpty())
        return;
    const int width = QFontMetrics(metrics.captionFont).horizontalAdvance(summaryLine(content)) + 1;
    summary.setWidth(qMin(width, line.width()));
    extraction = line.adjusted(summary.width() + gap, 0, 0, 0);
}

void HeaderLayout::placeLack(const RowMetrics& metrics, const QRect& line)
{
    constexpr int gap = 6;
    const int size = metrics.smallIconSize;
    lackIcon = centred(QRect(line.left(), line.top(), size, line.height()), size);
    lack = line.adjusted(size + gap, 0, 0, 0);
}

std::vector<QRect*> HeaderLayout::all()
{
    std::vector<QRect*> rects{&disclosure,  &icon,  &title, &summary,  &extraction,
                              &progressBar, &bytes, &speed, &lackIcon, &lack};
    for (ButtonPlace& button : buttons)
        rects.push_back(&button.rect);
    return rects;
}

std::vector<QRect> HeaderLayout::shown() const
{
    return notEmpty(HeaderLayout(*this).all());
}

} // namespace vormel
