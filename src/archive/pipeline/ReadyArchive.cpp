#include "archive/pipeline/ReadyArchive.h"

#include "archive/sources/ArchiveFormat.h"
#include "model/SetName.h"
#include "text/FileName.h"

#include <algorithm>

namespace vormel {

namespace {

QString nameOnDisk(const DownloadItem& item)
{
    return lastComponent(item.localPath().value_or(QString()));
}

QStringView folderOf(const DownloadItem& item)
{
    const QStringView path = *item.localPath();
    return path.left(path.lastIndexOf(u'/'));
}

bool holdsBack(const DownloadItem& item, const ArchiveSources& sources)
{
    const bool isThere = item.localPath() && item.status() == DownloadStatus::completed;
    if (isThere || !isSetMember(item.filename()))
        return false;
    const bool hasFailed = !item.localPath() && item.status() == DownloadStatus::failed;
    return !hasFailed && (!isRevName(item.filename()) || sources.isComing(item));
}

/// The volumes of a set that its tools would look for beside the first one, and not find there.
std::vector<ItemPtr> volumesElsewhere(std::span<const ItemPtr> set, const DownloadItem& first)
{
    const QStringView folder = folderOf(first);
    std::vector<ItemPtr> found;
    for (const ItemPtr& item : set) {
        if (item->localPath() && folderOf(*item) != folder && isSetMember(nameOnDisk(*item)))
            found.push_back(item);
    }
    return found;
}

} // namespace

std::optional<ReadyArchive> readyArchive(const ItemPtr& item, const ArchiveSources& sources)
{
    if (!item->localPath() || !formatOf(*item->localPath()))
        return std::nullopt;
    if (!isRarPart(nameOnDisk(*item)))
        return ReadyArchive{item, *item->localPath(), {}, false, {}};
    const std::span<const ItemPtr> set = sources.namedLikeSet;
    const bool isHeldBack =
        std::any_of(set.begin(), set.end(), [&](const ItemPtr& other) { return holdsBack(*other, sources); });
    const auto first =
        std::find_if(set.begin(), set.end(), [](const ItemPtr& other) { return isFirstVolume(nameOnDisk(*other)); });
    if (isHeldBack || first == set.end())
        return std::nullopt;
    return ReadyArchive{*first, *(*first)->localPath(), setBaseName(item->filename()), true,
                        volumesElsewhere(set, **first)};
}

} // namespace vormel
