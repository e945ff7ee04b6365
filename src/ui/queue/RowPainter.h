#pragma once

#include "ui/queue/RowCanvas.h"
#include "ui/queue/RowLayout.h"

namespace vormel {

/// Draws the row of an item.
void paintRow(const RowCanvas& canvas, const RowMetrics& metrics, const RowContent& content, const RowLayout& layout,
              HotButton hot, Motion motion);

} // namespace vormel
