#include "engine/groups/VisibleGroups.h"

#include "engine/recovery/RevRule.h"
#include "model/SetName.h"

#include <algorithm>

namespace vormel {

namespace {

DownloadGroup groupOf(const QString& id, const std::vector<ItemPtr>& members)
{
    std::vector<std::pair<qint64, ItemPtr>> numbered;
    numbered.reserve(members.size());
    for (const ItemPtr& item : members)
        numbered.emplace_back(partNumber(item->filename()), item);
    std::stable_sort(numbered.begin(), numbered.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    DownloadGroup group{id, {}};
    group.items.reserve(numbered.size());
    for (auto& [number, item] : numbered)
        group.items.push_back(std::move(item));
    return group;
}

/// The group of a set; nothing if all of it is hidden.
std::optional<DownloadGroup> visibleSet(const QString& base, const ItemTable& table, bool downloadRevFiles)
{
    std::vector<ItemPtr> members;
    for (const ItemPtr& item : table.itemsOfSet(base)) {
        // A plain file may be called as the set is.
        if (item->filename() != base && isVisible(*item, table, downloadRevFiles))
            members.push_back(item);
    }
    if (members.empty())
        return std::nullopt;
    DownloadGroup group = groupOf(base, members);
    group.lack = lackOf(table.itemsOfSet(base));
    return group;
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
        const QString base = setBaseName(item->filename());
        if (base == item->filename()) {
            groups.push_back({base, {item}});
        } else if (!gathered.contains(base)) {
            gathered.insert(base);
            groups.push_back(*visibleSet(base, table, downloadRevFiles));
        }
    }
    return groups;
}

std::optional<DownloadGroup> visibleGroupOf(const ItemPtr& item, const ItemTable& table, bool downloadRevFiles)
{
    const QString base = setBaseName(item->filename());
    if (base != item->filename())
        return visibleSet(base, table, downloadRevFiles);
    if (!isVisible(*item, table, downloadRevFiles))
        return std::nullopt;
    return DownloadGroup{base, {item}};
}

} // namespace vormel
