#include "engine/groups/VisibleGroups.h"

#include "engine/recovery/RevRule.h"
#include "model/SetName.h"

#include <algorithm>

namespace vormel {

namespace {

DownloadGroup groupOf(std::vector<ItemPtr> members)
{
    std::stable_sort(members.begin(), members.end(), [](const ItemPtr& a, const ItemPtr& b) {
        return partNumber(a->filename()) < partNumber(b->filename());
    });
    QString id = setBaseName(members.front()->filename());
    return {std::move(id), std::move(members)};
}

} // namespace

bool isVisible(const DownloadItem& item, const ItemTable& table, bool downloadRevFiles)
{
    if (!isRevName(item.filename()))
        return true;
    const DownloadStatus::Kind status = item.status().kind();
    return status == DownloadStatus::downloading || status == DownloadStatus::completed ||
           (downloadRevFiles && shouldDownloadRev(item, table));
}

std::vector<DownloadGroup> visibleGroups(const ItemTable& table, bool downloadRevFiles)
{
    std::vector<DownloadGroup> groups;
    QSet<QString> gathered;
    for (const ItemPtr& item : table.items()) {
        if (!isVisible(*item, table, downloadRevFiles))
            continue;
        const bool isMember = isSetMember(item->filename());
        if (isMember && gathered.contains(setBaseName(item->filename())))
            continue;
        if (isMember)
            gathered.insert(setBaseName(item->filename()));
        groups.push_back(*visibleGroupOf(*item, table, downloadRevFiles));
    }
    return groups;
}

std::optional<DownloadGroup> visibleGroupOf(const DownloadItem& item, const ItemTable& table, bool downloadRevFiles)
{
    const QString key = groupKey(item);
    std::vector<ItemPtr> members;
    for (const ItemPtr& other : table.itemsOfSet(setBaseName(item.filename()))) {
        if (groupKey(*other) == key && isVisible(*other, table, downloadRevFiles))
            members.push_back(other);
    }
    if (members.empty())
        return std::nullopt;
    return groupOf(std::move(members));
}

} // namespace vormel
