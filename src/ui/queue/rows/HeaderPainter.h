#pragma once

#include "ui/queue/rows/HeaderLayout.h"
#include "ui/queue/rows/RowCanvas.h"

namespace vormel {

/// Draws the header of a group.
void paintHeader(const RowCanvas& canvas, const RowMetrics& metrics, const HeaderContent& content,
                 const HeaderLayout& layout, HotButton hot, bool isOpen);

} // namespace vormel
