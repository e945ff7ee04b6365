#pragma once

#include "ui/queue/rows/RowPlaces.h"

namespace vormel {

/// Where everything of the header of a group stands, as RowLayout tells it of a row.
class HeaderLayout
{
public:
    HeaderLayout(const RowMetrics& metrics, const HeaderContent& content, const QRect& row,
                 Qt::LayoutDirection direction);

    QRect disclosure; ///< what can be hit to open and close; the triangle is in its middle
    QRect icon;
    QRect title; ///< no wider than its text
    std::vector<ButtonPlace> buttons;
    QRect summary;    ///< the second line
    QRect extraction; ///< behind it
    QRect progressBar;
    QRect bytes;
    QRect speed;
    QRect lackIcon;
    QRect lack;

    /// All that are shown.
    [[nodiscard]] std::vector<QRect> shown() const;

private:
    void placeLack(const RowMetrics& metrics, const QRect& line);
    void placeSummary(const RowMetrics& metrics, const HeaderContent& content, const QRect& line);
    [[nodiscard]] std::vector<QRect*> all();
};

} // namespace vormel
