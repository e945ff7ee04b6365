#pragma once

#include "engine/groups/DownloadGroup.h"
#include "engine/queue/ItemTable.h"

#include <optional>

namespace vormel {

/// Is the item shown? A recovery volume does not clutter the list until it is wanted.
[[nodiscard]] bool isVisible(const DownloadItem& item, const ItemTable& table, bool downloadRevFiles);

/// All groups, in the order in which their first visible items stand in the queue.
[[nodiscard]] std::vector<DownloadGroup> visibleGroups(const ItemTable& table, bool downloadRevFiles);

/// The group that the item is in now, found without a walk over the queue; nothing if all of it is hidden.
[[nodiscard]] std::optional<DownloadGroup> visibleGroupOf(const ItemPtr& item, const ItemTable& table,
                                                          bool downloadRevFiles);

} // namespace vormel
