#pragma once

#include "ui/queue/rows/RowContent.h"

namespace vormel {

/// Which lines the header has. Cheap: no text is made.
[[nodiscard]] RowLines headerLines(const GroupTally& tally, const GroupLack& lack = {});

/// The whole header in a language, but for its title and its buttons.
[[nodiscard]] HeaderContent headerContent(const GroupTally& tally, AppLanguage language);

/// Adds what became of the archive that the group is.
void addExtraction(HeaderContent& content, const DownloadGroup& group, AppLanguage language);

/// Adds what its set lacks.
void addLack(HeaderContent& content, const GroupLack& lack, AppLanguage language);

/// The second line, but for the extraction.
[[nodiscard]] QString summaryLine(const HeaderContent& content);

/// The header as one sentence, for assistive technology.
[[nodiscard]] QString accessibleText(const HeaderContent& content);

/// What the user copies of the header: its title, and what is lacking where something is.
[[nodiscard]] QString copiedText(const HeaderContent& content);

/// What a pointer resting on the header tells: the full texts of what may be elided, where there are any.
[[nodiscard]] QString headerToolTip(const HeaderContent& content);

} // namespace vormel
