#pragma once

#include "ui/queue/RowMetrics.h"

#include <QRect>

#include <vector>

namespace vormel {

/// Where everything of one row stands. Empty rectangles are not shown. The same value serves painting and tests; its
/// height is what RowMetrics::height says.
class RowLayout
{
public:
    RowLayout(const RowMetrics& metrics, const RowContent& content, const QRect& row, Qt::LayoutDirection direction);

    QRect icon;
    QRect name;
    QRect status;
    QRect recovery;
    QRect progressBar;
    QRect bytes;
    QRect speed;
    QRect extractionIcon;
    QRect extractionBar;
    QRect extractionText;
    QRect host;

    /// All that are shown.
    [[nodiscard]] std::vector<QRect> shown() const;

private:
    [[nodiscard]] std::vector<QRect*> all();
    void placeFirstLine(const RowMetrics& metrics, const RowContent& content, const QRect& line);
    void placeProgress(const RowMetrics& metrics, const QRect& line);
    void placeExtraction(const RowMetrics& metrics, const RowContent& content, const QRect& line);
};

} // namespace vormel
