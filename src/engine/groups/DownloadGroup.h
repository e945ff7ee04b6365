#pragma once

#include "engine/groups/GroupLack.h"
#include "model/DownloadItem.h"

#include <vector>

namespace vormel {

/// What the list shows as one: the visible members of a set in the order of their part numbers, or a single plain file.
/// Made from the queue when it is needed, and never stored.
struct DownloadGroup
{
    QString id;                 ///< the base name of a set; the file name of a plain file, which changes with it
    std::vector<ItemPtr> items; ///< never empty
    GroupLack lack = {};        ///< of the whole set, hidden members included

    friend bool operator==(const DownloadGroup&, const DownloadGroup&) = default;
};

/// Items with equal keys form one group. Two plain files never do, even with equal names.
[[nodiscard]] QString groupKey(const DownloadItem& item);

} // namespace vormel
