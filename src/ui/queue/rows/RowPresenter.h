#pragma once

#include "model/AppLanguage.h"
#include "model/DownloadItem.h"
#include "ui/queue/rows/RowContent.h"

namespace vormel {

/// Which lines the item's row has. Cheap: no text is made.
[[nodiscard]] RowLines rowLines(const DownloadItem& item);

/// A moment on both clocks: the wall's tells how long something has been going on, the steady one what is left of a
/// wait.
struct Moment
{
    WallTime wall = {};
    SteadyTime steady = {};
};

/// The whole row in a language at that moment.
[[nodiscard]] RowContent rowContent(const DownloadItem& item, AppLanguage language, Moment now);

[[nodiscard]] QString recoveryText(const DownloadItem& item, AppLanguage language);
[[nodiscard]] QString extractionText(const DownloadItem& item, AppLanguage language);
/// The same without a figure.
[[nodiscard]] QString extractionWords(const DownloadItem& item, AppLanguage language);

/// What the user's wish to have the set tested came to; empty without one.
[[nodiscard]] QString verificationText(const VerificationResult& result, AppLanguage language);

/// How long the archive step has been going on: minutes and seconds, "0:07". Empty while none is.
[[nodiscard]] QString elapsedText(const DownloadItem& item, WallTime now);

/// What its menu offers for its archive: to unpack one that nothing was done with, to stop what is being done.
[[nodiscard]] std::optional<RowButton> archiveCommand(const DownloadItem& item);

/// Does something in the row move or count, so that it is worth painting again without any change?
[[nodiscard]] bool isMoving(const DownloadItem& item);

/// The row as one sentence, for assistive technology.
[[nodiscard]] QString accessibleText(const RowContent& content);

/// What is copied of the row: its name and what failed of it, or else its link.
[[nodiscard]] QString copiedText(const DownloadItem& item, AppLanguage language);

/// The lines as a tool tip that shows them as they are.
[[nodiscard]] QString plainToolTip(const QStringList& lines);

/// What a pointer resting on the row tells: the full texts of what may be elided.
[[nodiscard]] QString rowToolTip(const RowContent& content);

} // namespace vormel
