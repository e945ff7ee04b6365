#pragma once

#include "model/DownloadItem.h"

#include <QHash>

#include <functional>
#include <span>
#include <vector>

namespace vormel {

/// Which items have one base name, in queue order. A plain file is the only one of its own. UI thread only.
class SetIndex
{
public:
    /// Does the first stand before the second in the queue?
    using Order = std::function<bool(const ItemPtr&, const ItemPtr&)>;

    explicit SetIndex(Order order)
        : m_order(std::move(order))
    {}

    /// The item's place in the queue must be known to the order already.
    void insert(const ItemPtr& item);
    void remove(const ItemId& id);
    /// The item may have another name now.
    void update(const ItemPtr& item);
    /// Every place may have changed.
    void reorder();

    [[nodiscard]] std::span<const ItemPtr> find(const QString& base) const;

private:
    Order m_order;
    QHash<QString, std::vector<ItemPtr>> m_sets;
    QHash<ItemId, QString> m_bases;
};

} // namespace vormel
