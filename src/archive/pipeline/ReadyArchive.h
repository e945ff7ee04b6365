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
    QString base; ///< of its set, as the queue calls it; empty for a single file
    bool isSet = false;
    std::vector<ItemPtr> elsewhere; ///< volumes that lie in other folders than the first
};

/// What the choice of an archive asks of the queue.
struct ArchiveSources
{
    std::span<const ItemPtr> namedLikeSet;             ///< every item whose name has the base name of the item's
    std::function<bool(const DownloadItem&)> isComing; ///< is this recovery volume to be waited for?
};

/// The archive that the finished item completes: itself, or the set whose last part it is. A set is what has one base
/// name in the queue, wherever its volumes lie and whatever had to be changed about their names there. Nothing while
/// any part of it is still to come, and for files that are no archives. A part that has failed for good is not waited
/// for.
[[nodiscard]] std::optional<ReadyArchive> readyArchive(const ItemPtr& item, const ArchiveSources& sources);

} // namespace vormel
