#pragma once

#include "ui/queue/rows/RowButton.h"

#include <QRect>

namespace vormel {

/// What of a row or header lies at a point.
struct RowHit
{
    enum class Part
    {
        elsewhere,
        title,      ///< the name of a group
        disclosure, ///< what opens and closes a group
        button,
    };

    Part part = Part::elsewhere;
    RowButton button{}; ///< if it is one
    QRect rect;         ///< of the part

    [[nodiscard]] bool isButton() const { return part == Part::button; }
};

} // namespace vormel
