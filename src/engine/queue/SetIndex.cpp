#include "engine/queue/SetIndex.h"

#include "model/SetName.h"

#include <algorithm>

namespace vormel {

void SetIndex::insert(const ItemPtr& item)
{
    const QString base = setBaseName(item->filename());
    std::vector<ItemPtr>& set = m_sets[base];
    set.insert(std::upper_bound(set.begin(), set.end(), item, m_order), item);
    m_bases.insert(item->id(), base);
}

void SetIndex::remove(const ItemId& id)
{
    const auto set = m_sets.find(m_bases.take(id));
    if (set == m_sets.end())
        return;
    std::erase_if(set.value(), [&id](const ItemPtr& item) { return item->id() == id; });
    if (set->empty())
        m_sets.erase(set);
}

void SetIndex::update(const ItemPtr& item)
{
    if (setBaseName(item->filename()) == m_bases.value(item->id()))
        return;
    remove(item->id());
    insert(item);
}

void SetIndex::reorder()
{
    for (std::vector<ItemPtr>& set : m_sets)
        std::sort(set.begin(), set.end(), m_order);
}

std::span<const ItemPtr> SetIndex::find(const QString& base) const
{
    const auto set = m_sets.find(base);
    return set == m_sets.end() ? std::span<const ItemPtr>() : std::span<const ItemPtr>(set.value());
}

} // namespace vormel
