#include "engine/queue/SetIndex.h"

#include "model/SetName.h"

#include <algorithm>

namespace vormel {

namespace {

SetTally shareOf(const DownloadItem& item)
{
    const bool isRar = isRarName(item.filename());
    const bool isMissing = isRar && item.status() != DownloadStatus::completed;
    const bool isExtracted = item.extractionStatus() == ExtractionStatus::done;
    return {isRar ? 1 : 0, isMissing ? 1 : 0, isExtracted ? 1 : 0};
}

void add(SetTally& tally, const SetTally& share, qsizetype times)
{
    tally.rarParts += times * share.rarParts;
    tally.rarPartsMissing += times * share.rarPartsMissing;
    tally.extracted += times * share.extracted;
}

} // namespace

void SetIndex::insert(const ItemPtr& item)
{
    const Entry entry{setBaseName(item->filename()), shareOf(*item)};
    Set& set = m_sets[entry.base];
    set.items.insert(std::upper_bound(set.items.begin(), set.items.end(), item, m_order), item);
    add(set.tally, entry.share, 1);
    m_entries.insert(item->id(), entry);
}

void SetIndex::remove(const ItemPtr& item)
{
    const Entry entry = m_entries.take(item->id());
    const auto set = m_sets.find(entry.base);
    if (set == m_sets.end())
        return;
    set->items.erase(std::lower_bound(set->items.begin(), set->items.end(), item, m_order));
    add(set->tally, entry.share, -1);
    if (set->items.empty())
        m_sets.erase(set);
}

void SetIndex::renamed(const ItemPtr& item)
{
    if (setBaseName(item->filename()) == m_entries.value(item->id()).base)
        return recount(*item);
    remove(item);
    insert(item);
}

void SetIndex::recount(const DownloadItem& item)
{
    Entry& entry = m_entries[item.id()];
    SetTally& tally = m_sets[entry.base].tally;
    add(tally, entry.share, -1);
    entry.share = shareOf(item);
    add(tally, entry.share, 1);
}

void SetIndex::reorder()
{
    for (Set& set : m_sets)
        std::sort(set.items.begin(), set.items.end(), m_order);
}

std::span<const ItemPtr> SetIndex::find(const QString& base) const
{
    const auto set = m_sets.find(base);
    return set == m_sets.end() ? std::span<const ItemPtr>() : std::span<const ItemPtr>(set->items);
}

SetTally SetIndex::tallyOf(const ItemId& id) const
{
    const auto entry = m_entries.constFind(id);
    if (entry == m_entries.cend())
        return {};
    const auto set = m_sets.constFind(entry->base);
    return set == m_sets.cend() ? SetTally() : set->tally;
}

} // namespace vormel
