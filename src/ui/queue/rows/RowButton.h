#pragma once

#include "kit/Glyph.h"
#include "kit/Theme.h"
#include "ui/queue/rows/GroupTally.h"

#include <vector>

namespace vormel {

/// Everything that a row or the header of a group can be told to do.
enum class RowButton : quint8
{
    pause,
    stop,
    resume,
    start,
    resync,
    retry,
    showInViewer,
    redownload,
    remove,
    retryExtraction, ///< stands in the line of the archive step
    pauseGroup,
    stopGroup,
    startStoppedGroup,
    startGroup,
    repairGroup,
    verifyGroup,
    resyncGroup,
    removeGroup,
    extract, ///< of a row or a header; only menus have this and the next ones
    stopExtraction,
    tryFailedAgain, ///< of a header
    showGroup,
};

struct ButtonLook
{
    Glyph glyph = Glyph::xmark;
    Tint tint = Tint::secondary;
    bool isDestructive = false;
};
[[nodiscard]] ButtonLook buttonLook(RowButton button);

/// What it does in words: its tool tip.
[[nodiscard]] QString buttonText(RowButton button, AppLanguage language);
/// The same in two or three words: its entry in a menu.
[[nodiscard]] QString buttonName(RowButton button, AppLanguage language);

/// The buttons at the end of the item's first line, in their order.
[[nodiscard]] std::vector<RowButton> itemButtons(DownloadStatus::Kind status);

/// The buttons of a header, in their order.
[[nodiscard]] std::vector<RowButton> groupButtons(const GroupTally& tally, bool hasPendingRevFiles);

} // namespace vormel
