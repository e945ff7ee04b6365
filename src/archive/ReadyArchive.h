#pragma once

#include "model/DownloadItem.h"

#include <functional>
#include <span>
#include <vector>

namespace vormel {

/// An archive that is whole on the disk, as far as it ever will be.
struct ReadyArchive
{
    ItemPtr target; ///< carries the state of the extraction: the item of the first volume
    QString path;
    QString base; ///< of its set; empty for a single file
    bool isSet = false;
};

/// What the choice of an archive asks of the queue.
struct ArchiveSources
{
    const std::vector<ItemPtr>& items;
    std::span<const ItemPtr> namedLikeSet;              ///< every item whose name has the base name of the item's set
    std::function<bool(const DownloadItem&)> isFetched; ///< is this recovery volume fetched at all?
};

/// The archive that the finished item completes: itself, or the set whose last part it is. Nothing while any part of
/// the set is still to come, and for files that are no archives. A part that has failed for good is not waited for.
[[nodiscard]] std::optional<ReadyArchive> readyArchive(const ItemPtr& item, const ArchiveSources& sources);

} // namespace vormel
