#pragma once

#include "ui/queue/RowPresenter.h"

#include <QHash>

#include <vector>

namespace vormel {

/// The visible items in display order, with the place of each. Knows nothing of views.
class QueueRows
{
public:
    struct Row
    {
        ItemPtr item;
        RowLines lines; ///< as the views were told last
    };

    [[nodiscard]] int count() const { return static_cast<int>(m_rows.size()); }
    [[nodiscard]] Row& at(int row) { return m_rows[static_cast<std::size_t>(row)]; }
    [[nodiscard]] const Row& at(int row) const { return m_rows[static_cast<std::size_t>(row)]; }
    /// -1 for an item without a row.
    [[nodiscard]] int find(const ItemId& id) const { return m_places.value(id, -1); }

    void insert(int row, const std::vector<ItemPtr>& items);
    void remove(int first, int count);
    void assign(const std::vector<ItemPtr>& items);

private:
    void placeFrom(int row);

    std::vector<Row> m_rows;
    QHash<ItemId, int> m_places;
};

} // namespace vormel
