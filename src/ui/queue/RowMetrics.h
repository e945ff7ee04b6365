#pragma once

#include "ui/queue/RowContent.h"

#include <QFont>

namespace vormel {

/// The measures that all rows share, taken from a font. Making one is dear, asking it is cheap.
class RowMetrics
{
public:
    explicit RowMetrics(const QFont& font);

    /// How high a row with these further lines is.
    [[nodiscard]] int height(RowLines lines) const;

    QFont baseFont;
    QFont nameFont;
    QFont captionFont;
    int nameHeight;
    int captionHeight;
    int iconSize;      ///< of the status, beside the first line
    int smallIconSize; ///< of the archive step
    int barHeight;
    int byteWidth;
    int speedWidth;

    static constexpr int marginX = 14;
    static constexpr int marginY = 9;
    static constexpr int gapX = 10;
    static constexpr int gapY = 4;
};

} // namespace vormel
