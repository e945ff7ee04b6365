#include "ui/queue/rows/RowMetrics.h"

#include "kit/TextStyle.h"

#include <QFontMetrics>

using namespace Qt::StringLiterals;

namespace vormel {

RowMetrics::RowMetrics(const QFont& font)
    : baseFont(font)
    , nameFont(headlineFont(font))
    , captionFont(vormel::captionFont(font))
    , digitsFont(vormel::digitsFont(captionFont))
{
    // The usual widths of the two figures; a larger font widens them, so that the columns stay in line and complete.
    constexpr int usualByteWidth = 140;
    constexpr int usualSpeedWidth = 80;
    constexpr int usualGroupByteWidth = 160;
    constexpr int airOfDot = 6;
    const QFontMetrics caption(captionFont);
    nameHeight = QFontMetrics(nameFont).height();
    captionHeight = caption.height();
    iconSize = qMax(18, nameHeight);
    smallIconSize = captionHeight;
    barHeight = qMax(4, captionHeight / 4);
    byteWidth = qMax(usualByteWidth, caption.horizontalAdvance(u"999.99 MB / 999.99 GB"_s));
    groupByteWidth = qMax(usualGroupByteWidth, byteWidth);
    dotWidth = caption.horizontalAdvance(u'·') + 2 * airOfDot;
    buttonSize = qMax(24, nameHeight + 6);
    buttonGlyphSize = qMax(16, captionHeight);
    speedWidth = qMax(usualSpeedWidth, caption.horizontalAdvance(u"999.99 MB/s"_s));
}

int RowMetrics::firstHeight() const
{
    return qMax(qMax(nameHeight, iconSize), buttonSize);
}

int RowMetrics::failureHeight() const
{
    return 2 * captionHeight + 2;
}

int RowMetrics::errorHeight(RowLines lines) const
{
    return lines.testFlag(RowLine::longError) ? failureHeight() : captionHeight;
}

int RowMetrics::height(RowLines lines) const
{
    const int oneLine = gapY + captionHeight;
    int height = 2 * marginY + firstHeight() + oneLine;
    for (const RowLine line :
         {RowLine::recovery, RowLine::progress, RowLine::extraction, RowLine::verification, RowLine::lack}) {
        if (lines.testFlag(line))
            height += oneLine;
    }
    if (lines.testFlag(RowLine::error))
        height += gapY + errorHeight(lines);
    if (lines.testFlag(RowLine::failure))
        height += gapY + failureHeight();
    return height;
}

} // namespace vormel
