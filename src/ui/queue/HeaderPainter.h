#pragma once

#include "ui/queue/HeaderLayout.h"
#include "ui/queue/RowCanvas.h"

namespace vormel {

/// Draws the header of a group.
void paintHeader(const RowCanvas& canvas, const RowMetrics& metrics, const HeaderContent& content,
                 const HeaderLayout& layout, HotButton hot, bool isOpen);

} // namespace vormel
