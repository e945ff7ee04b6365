#include "ui/queue/RowMetrics.h"

#include "ui/kit/TextStyle.h"

#include <QFontMetrics>

namespace vormel {

RowMetrics::RowMetrics(const QFont& font)
    : baseFont(font)
    , nameFont(headlineFont(font))
    , captionFont(vormel::captionFont(font))
{
    // The usual widths of the two figures; a larger font widens them, so that the columns stay in line and complete.
    constexpr int usualByteWidth = 140;
    constexpr int usualSpeedWidth = 80;
    const QFontMetrics caption(captionFont);
    nameHeight = QFontMetrics(nameFont).height();
    captionHeight = caption.height();
    iconSize = qMax(18, nameHeight);
    smallIconSize = captionHeight;
    barHeight = qMax(4, captionHeight / 4);
    byteWidth = qMax(usualByteWidth, caption.horizontalAdvance(QStringLiteral("999.99 MB / 999.99 GB")));
    speedWidth = qMax(usualSpeedWidth, caption.horizontalAdvance(QStringLiteral("999.99 MB/s")));
}

int RowMetrics::height(RowLines lines) const
{
    const int oneLine = gapY + captionHeight;
    int height = 2 * marginY + qMax(nameHeight, iconSize) + oneLine;
    for (const RowLine line : {RowLine::recovery, RowLine::progress, RowLine::extraction}) {
        if (lines.testFlag(line))
            height += oneLine;
    }
    return height;
}

} // namespace vormel
