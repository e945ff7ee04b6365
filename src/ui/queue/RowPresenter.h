#pragma once

#include "model/AppLanguage.h"
#include "model/DownloadItem.h"
#include "ui/queue/RowContent.h"

namespace vormel {

/// Which lines the item's row has. Cheap: no text is made.
[[nodiscard]] RowLines rowLines(const DownloadItem& item);

/// The whole row in a language.
[[nodiscard]] RowContent rowContent(const DownloadItem& item, AppLanguage language);

[[nodiscard]] QString byteText(const DownloadItem& item);
[[nodiscard]] QString recoveryText(const DownloadItem& item, AppLanguage language);
[[nodiscard]] QString extractionText(const DownloadItem& item, AppLanguage language);

/// The row as one sentence, for assistive technology.
[[nodiscard]] QString accessibleText(const RowContent& content);

/// What a pointer resting on the row tells: the full texts of what may be elided.
[[nodiscard]] QString rowToolTip(const RowContent& content);

} // namespace vormel
