#include "engine/queue/ItemTable.h"

#include "model/SetName.h"

#include <algorithm>
#include <numeric>

namespace vormel {

namespace {

qint64 slotsHeld(DownloadStatus::Kind status)
{
    return status == DownloadStatus::resolving || status == DownloadStatus::downloading ? 1 : 0;
}

} // namespace

ItemTable::ItemTable(Listener& listener)
    : m_listener(listener)
    , m_sets([this](const ItemPtr& a, const ItemPtr& b) { return position(a->id()) < position(b->id()); })
{}

ItemTable::~ItemTable()
{
    for (const ItemPtr& item : m_items)
        item->setWatcher(nullptr);
}

ItemPtr ItemTable::find(const ItemId& id) const
{
    const auto found = m_positions.find(id);
    return found == m_positions.end() ? nullptr : m_items[found->second];
}

double ItemTable::totalSpeed() const
{
    return std::accumulate(m_speeds.begin(), m_speeds.end(), 0.0);
}

ItemTable::Row ItemTable::rowOf(const DownloadItem& item)
{
    return {item.status().kind(), isRevName(item.filename())};
}

void ItemTable::append(std::vector<ItemPtr> items)
{
    if (items.empty())
        return;
    const std::size_t first = m_items.size();
    m_items.reserve(first + items.size());
    m_rows.reserve(first + items.size());
    m_positions.reserve(first + items.size());
    for (ItemPtr& item : items) {
        m_positions.emplace(item->id(), m_items.size());
        m_rows.push_back(rowOf(*item));
        observeItem(item);
        m_sets.insert(item);
        m_files.insert(item);
        m_items.push_back(std::move(item));
    }
    m_listener.tableGrew(static_cast<qsizetype>(first), static_cast<qsizetype>(m_items.size() - first));
}

void ItemTable::insert(const std::vector<Placed>& placed)
{
    if (placed.empty())
        return;
    std::vector<ItemPtr> all;
    all.reserve(m_items.size() + placed.size());
    auto next = placed.begin();
    for (ItemPtr& item : m_items) {
        for (; next != placed.end() && next->place <= all.size(); ++next)
            all.push_back(next->item);
        all.push_back(std::move(item));
    }
    for (; next != placed.end(); ++next)
        all.push_back(next->item);
    m_items = std::move(all);
    m_rows.resize(m_items.size());
    indexFrom(std::min(placed.front().place, m_items.size() - placed.size()));
    QSet<ItemId> ids;
    for (const Placed& one : placed) {
        observeItem(one.item);
        m_sets.insert(one.item);
        m_files.insert(one.item);
        ids.insert(one.item->id());
    }
    m_listener.tableFilledUp(ids);
}

void ItemTable::remove(const QSet<ItemId>& ids, Departure departure)
{
    QSet<ItemId> gone;
    for (const ItemId& id : ids) {
        const ItemPtr item = departure == Departure::forGood ? find(id) : nullptr;
        if (item)
            m_listener.tableWillRemove(*item);
    }
    for (const ItemId& id : ids) {
        if (const ItemPtr item = find(id)) {
            removeItemObserver(item);
            m_sets.remove(item);
            m_files.remove(id);
            gone.insert(id);
        }
    }
    if (gone.isEmpty())
        return;
    const auto isGone = [&gone](const ItemPtr& item) { return gone.contains(item->id()); };
    const auto firstGone = std::find_if(m_items.begin(), m_items.end(), isGone);
    const auto start = static_cast<std::size_t>(firstGone - m_items.begin());
    std::erase_if(m_items, isGone);
    for (const ItemId& id : gone)
        m_positions.erase(id);
    m_rows.resize(m_items.size());
    indexFrom(start);
    m_listener.tableShrank(gone);
}

void ItemTable::reorder(const QHash<ItemId, std::size_t>& ranks)
{
    const auto rank = [&ranks](const ItemPtr& item) {
        return ranks.value(item->id(), std::numeric_limits<std::size_t>::max());
    };
    std::stable_sort(m_items.begin(), m_items.end(),
                     [&rank](const ItemPtr& a, const ItemPtr& b) { return rank(a) < rank(b); });
    indexFrom(0);
    m_sets.reorder();
    m_listener.tableReordered();
}

void ItemTable::indexFrom(std::size_t first)
{
    for (std::size_t i = first; i < m_items.size(); ++i) {
        m_rows[i] = rowOf(*m_items[i]);
        m_positions[m_items[i]->id()] = i;
    }
}

void ItemTable::observeItem(const ItemPtr& item)
{
    item->setWatcher(this);
    m_activeCount += slotsHeld(item->status().kind());
    if (item->speedBytesPerSec() != 0)
        m_speeds.insert(item->id(), item->speedBytesPerSec());
}

void ItemTable::removeItemObserver(const ItemPtr& item)
{
    item->setWatcher(nullptr);
    m_activeCount -= slotsHeld(item->status().kind());
    m_speeds.remove(item->id());
}

void ItemTable::updateRow(DownloadItem& item)
{
    Row& row = m_rows[m_positions.at(item.id())];
    const Row now = rowOf(item);
    const qint64 taken = slotsHeld(now.status) - slotsHeld(row.status);
    m_activeCount += taken;
    row = now;
    if (taken < 0)
        m_listener.tableSlotFreed(item);
}

void ItemTable::updateIndexes(const DownloadItem& item, ItemField field)
{
    if (field == ItemField::filename)
        m_sets.renamed(find(item.id()));
    if (field == ItemField::status || field == ItemField::extractionStatus)
        m_sets.recount(item);
    if (field == ItemField::localPath)
        m_files.update(find(item.id()));
}

void ItemTable::itemChanged(DownloadItem& item, ItemField field)
{
    updateIndexes(item, field);
    if (field == ItemField::status || field == ItemField::filename)
        updateRow(item);
    if (field == ItemField::speed) {
        if (item.speedBytesPerSec() == 0)
            m_speeds.remove(item.id());
        else
            m_speeds.insert(item.id(), item.speedBytesPerSec());
    }
    m_listener.tableItemChanged(item, field);
}

} // namespace vormel
