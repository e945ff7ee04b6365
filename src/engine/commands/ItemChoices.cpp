#include "engine/commands/ItemChoices.h"

#include "engine/groups/DownloadGroup.h"

namespace vormel {

namespace {

template <typename Rule>
QSet<ItemId> itemsWhere(const ItemTable& table, Rule rule)
{
    QSet<ItemId> ids;
    for (const ItemPtr& item : table.items()) {
        if (rule(*item))
            ids.insert(item->id());
    }
    return ids;
}

} // namespace

QSet<ItemId> allItems(const ItemTable& table)
{
    return itemsWhere(table, [](const DownloadItem& /*item*/) { return true; });
}

QSet<ItemId> completedItems(const ItemTable& table)
{
    return itemsWhere(table, [](const DownloadItem& item) { return item.status() == DownloadStatus::completed; });
}

QSet<ItemId> failedItems(const ItemTable& table)
{
    return itemsWhere(table, [](const DownloadItem& item) { return item.status() == DownloadStatus::failed; });
}

QSet<ItemId> unfinishedItems(const ItemTable& table)
{
    return itemsWhere(table, [](const DownloadItem& item) { return item.status() != DownloadStatus::completed; });
}

QSet<ItemId> extractedItems(const ItemTable& table)
{
    QSet<QString> extracted;
    for (const ItemPtr& item : table.items()) {
        if (item->extractionStatus() == ExtractionStatus::done)
            extracted.insert(groupKey(*item));
    }
    if (extracted.isEmpty())
        return {};
    return itemsWhere(table, [&extracted](const DownloadItem& item) { return extracted.contains(groupKey(item)); });
}

QSet<ItemId> membersOf(const ItemTable& table, const QString& groupId)
{
    QSet<ItemId> ids;
    for (const ItemPtr& item : table.itemsOfSet(groupId))
        ids.insert(item->id());
    const ItemId single(QUuid::fromString(groupId));
    if (table.find(single))
        ids.insert(single);
    return ids;
}

} // namespace vormel
