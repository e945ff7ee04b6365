#pragma once

#include "ui/queue/rows/RowContent.h"

#include <QFont>

namespace vormel {

/// The measures that all rows share, taken from a font. Make one for each font and keep it: making it measures texts.
class RowMetrics
{
public:
    explicit RowMetrics(const QFont& font);

    /// How high a row with these further lines is.
    [[nodiscard]] int height(RowLines lines) const;
    [[nodiscard]] int firstHeight() const;               ///< of the first line
    [[nodiscard]] int failureHeight() const;             ///< of the failure of an archive step
    [[nodiscard]] int errorHeight(RowLines lines) const; ///< of what the download failed of

    QFont baseFont;
    QFont nameFont;
    QFont captionFont;
    QFont digitsFont; ///< of captions that count
    int nameHeight;
    int captionHeight;
    int iconSize;      ///< of the status, beside the first line
    int smallIconSize; ///< of the archive step
    int barHeight;
    int byteWidth;
    int speedWidth;
    int groupByteWidth;
    int dotWidth;        ///< of the dot between captions, with its air
    int buttonSize;      ///< what can be hit
    int buttonGlyphSize; ///< what is seen

    /// In front of the icons, where the headers of groups have their triangle.
    static constexpr int gutter = 22;
    /// How far the rows of a group stand in.
    static constexpr int indent = 24;
    /// Behind the buttons, which have air of their own.
    static constexpr int marginX = 14;
    static constexpr int marginY = 7;
    static constexpr int gapX = 10;
    static constexpr int gapY = 4;
};

} // namespace vormel
