#pragma once

#include "ui/queue/rows/RowPlaces.h"

namespace vormel {

/// Where everything of one row stands. Empty rectangles are not shown. The same value serves painting, the pointer and
/// tests; its height is what RowMetrics::height says.
class RowLayout
{
public:
    RowLayout(const RowMetrics& metrics, const RowContent& content, const QRect& row, Qt::LayoutDirection direction);

    QRect icon;
    QRect name;
    QRect status;                     ///< not shown beside an error, which says as much
    std::vector<ButtonPlace> buttons; ///< the one of a failed archive step included
    QRect error;
    QRect recoveryIcon;
    QRect recovery;
    QRect progressBar;
    QRect bytes;
    QRect speed;
    QRect extractionIcon;
    QRect extractionBar;
    QRect extractionText;
    QRect elapsed;
    QRect verificationIcon;
    QRect verification;
    QRect host;
    QRect waitDot; ///< between the wait and what stands in front of it
    QRect wait;
    QRect figuresDot;
    QRect figures;

    /// All that are shown.
    [[nodiscard]] std::vector<QRect> shown() const;

private:
    [[nodiscard]] std::vector<QRect*> all();
    void placeFirstLine(const RowMetrics& metrics, const RowContent& content, QRect line);
    void placeProgress(const RowMetrics& metrics, const QRect& line);
    void placeExtraction(const RowMetrics& metrics, const RowContent& content, QRect line);
    void placeFailure(const RowMetrics& metrics, const RowContent& content, QRect line);
    void placeCaptions(const RowMetrics& metrics, const RowContent& content, const QRect& line);
};

} // namespace vormel
