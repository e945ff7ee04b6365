#pragma once

#include "ui/queue/rows/RowCanvas.h"
#include "ui/queue/rows/RowLayout.h"

namespace vormel {

/// The colour of what became of an archive.
[[nodiscard]] Tint extractionTint(ExtractionStatus::Kind extraction);

/// The colour of what a verification came to.
[[nodiscard]] Tint verificationTint(VerificationResult::Kind verification);

/// Draws the row of an item.
void paintRow(const RowCanvas& canvas, const RowMetrics& metrics, const RowContent& content, const RowLayout& layout,
              HotButton hot, Motion motion);

} // namespace vormel
