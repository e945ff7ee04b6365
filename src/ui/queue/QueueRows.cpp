#include "ui/queue/QueueRows.h"

namespace vormel {

void QueueRows::placeFrom(int row)
{
    for (int i = row; i < count(); ++i)
        m_places.insert(at(i).item->id(), i);
}

void QueueRows::insert(int row, const std::vector<ItemPtr>& items)
{
    std::vector<Row> fresh;
    fresh.reserve(items.size());
    for (const ItemPtr& item : items)
        fresh.push_back({item, rowLines(*item)});
    m_places.reserve(m_places.size() + static_cast<qsizetype>(items.size()));
    m_rows.insert(m_rows.begin() + row, std::make_move_iterator(fresh.begin()), std::make_move_iterator(fresh.end()));
    placeFrom(row);
}

void QueueRows::remove(int first, int count)
{
    for (int row = first; row < first + count; ++row)
        m_places.remove(at(row).item->id());
    m_rows.erase(m_rows.begin() + first, m_rows.begin() + first + count);
    placeFrom(first);
}

void QueueRows::assign(const std::vector<ItemPtr>& items)
{
    m_rows.clear();
    m_places.clear();
    insert(0, items);
}

} // namespace vormel
