#pragma once

#include "ui/queue/rows/RowContent.h"

namespace vormel {

/// Which lines the header has. Cheap: no text is made.
[[nodiscard]] RowLines headerLines(const GroupTally& tally);

/// The whole header in a language, but for its title and its buttons.
[[nodiscard]] HeaderContent headerContent(const GroupTally& tally, AppLanguage language);

/// Adds what became of the archive that the group is.
void addExtraction(HeaderContent& content, const DownloadGroup& group, AppLanguage language);

/// The second line, but for the extraction.
[[nodiscard]] QString summaryLine(const HeaderContent& content);

/// The header as one sentence, for assistive technology.
[[nodiscard]] QString accessibleText(const HeaderContent& content);

} // namespace vormel
