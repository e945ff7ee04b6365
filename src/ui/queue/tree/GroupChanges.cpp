#include "ui/queue/tree/GroupChanges.h"

#include "engine/DownloadManager.h"

#include <algorithm>

namespace vormel {

GroupChanges::GroupChanges(const DownloadManager& manager, const QueueRows& rows)
    : m_manager(manager)
    , m_rows(rows)
{}

/// The row where the item belongs by its name; null if there is none.
QueueEntry* GroupChanges::rowOf(const DownloadItem& item, const QString& set) const
{
    QueueEntry* const entry = set.isEmpty() ? m_rows.find(item.id()).entry : m_rows.findSet(set);
    const bool isOfSet = entry && entry->set == set;
    return isOfSet && !m_takenOver.contains(entry) ? entry : nullptr;
}

/// A file that had a row to itself keeps that row when its name makes it the first member of a set, or a plain file.
bool GroupChanges::mayTakeOver(const QueueEntry* entry) const
{
    return entry && !entry->isHeader() && !m_places.contains(entry);
}

void GroupChanges::noteItem(const ItemPtr& item)
{
    const QString set = setKey(*item);
    QueueEntry* const before = m_rows.find(item->id()).entry;
    QueueEntry* now = rowOf(*item, set);
    if (set.isEmpty() || !m_sets.contains(set)) {
        m_sets.insert(set);
        std::optional<DownloadGroup> group = m_manager.visibleGroupOf(*item);
        if (!now && group && mayTakeOver(before)) {
            now = before;
            m_takenOver.insert(now);
        }
        put(now, std::move(group));
    }
    if (before && before != now)
        noteEntry(before);
}

void GroupChanges::noteRemoval(const ItemId& id)
{
    if (QueueEntry* const entry = m_rows.find(id).entry)
        noteEntry(entry);
}

void GroupChanges::noteEntry(QueueEntry* entry)
{
    if (m_places.contains(entry))
        return;
    const std::vector<ItemPtr>& items = entry->group.items;
    const auto rest = std::find_if(items.begin(), items.end(), [&](const ItemPtr& item) {
        return m_manager.item(item->id()) == item && setKey(*item) == entry->set;
    });
    put(entry, rest == items.end() ? std::nullopt : m_manager.visibleGroupOf(**rest));
}

void GroupChanges::put(QueueEntry* entry, std::optional<DownloadGroup> group)
{
    if (!entry && !group)
        return;
    const auto known = entry ? m_places.constFind(entry) : m_places.constEnd();
    if (known != m_places.constEnd()) {
        m_changes[*known].group = std::move(group);
        return;
    }
    if (entry)
        m_places.insert(entry, m_changes.size());
    m_changes.push_back({entry, std::move(group)});
}

} // namespace vormel
