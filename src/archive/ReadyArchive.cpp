#include "archive/ReadyArchive.h"

#include "archive/ArchiveFormat.h"
#include "model/SetName.h"

#include <QFileInfo>

#include <algorithm>

namespace vormel {

namespace {

QString nameOf(const DownloadItem& item)
{
    return QFileInfo(item.localPath().value_or(QString())).fileName();
}

bool holdsBack(const DownloadItem& item, const ArchiveSources& sources)
{
    return !item.localPath() && isSetMember(item.filename()) && !(item.status() == DownloadStatus::failed) &&
           (!isRevName(item.filename()) || sources.isFetched(item));
}

/// The items whose files lie in the folder and belong to the set.
std::vector<ItemPtr> onDisk(const std::vector<ItemPtr>& items, const QString& folder, const QString& base)
{
    const QString beginning = folder + u'/' + base;
    std::vector<ItemPtr> found;
    for (const ItemPtr& item : items) {
        if (item->localPath() && item->localPath()->startsWith(beginning) &&
            QFileInfo(*item->localPath()).path() == folder && setBaseName(nameOf(*item)) == base)
            found.push_back(item);
    }
    return found;
}

} // namespace

std::optional<ReadyArchive> readyArchive(const ItemPtr& item, const ArchiveSources& sources)
{
    if (!item->localPath() || !formatOf(*item->localPath()))
        return std::nullopt;
    const QFileInfo file(*item->localPath());
    if (!isRarPart(file.fileName()))
        return ReadyArchive{item, *item->localPath(), {}, false};
    const QString base = setBaseName(file.fileName());
    const std::vector<ItemPtr> members = onDisk(sources.items, file.path(), base);
    const bool isHeldBack = std::any_of(sources.namedLikeSet.begin(), sources.namedLikeSet.end(),
                                        [&](const ItemPtr& other) { return holdsBack(*other, sources); });
    const bool isWhole = std::all_of(members.begin(), members.end(), [](const ItemPtr& member) {
        return member->status() == DownloadStatus::completed;
    });
    const auto first = std::find_if(members.begin(), members.end(),
                                    [](const ItemPtr& member) { return isFirstVolume(nameOf(*member)); });
    if (isHeldBack || !isWhole || first == members.end())
        return std::nullopt;
    return ReadyArchive{*first, *(*first)->localPath(), base, true};
}

} // namespace vormel
