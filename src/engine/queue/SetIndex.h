#pragma once

#include "model/DownloadItem.h"

#include <QHash>

#include <functional>
#include <span>
#include <vector>

namespace vormel {

/// How far the items of one base name have come, kept up with each change so that nobody has to count.
struct SetTally
{
    qsizetype rarParts = 0;
    qsizetype rarPartsMissing = 0; ///< those that are not complete
    qsizetype extracted = 0;
};

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
    /// The item's place must still be known.
    void remove(const ItemPtr& item);
    void renamed(const ItemPtr& item);
    /// The item's status, or that of its archive, has changed.
    void recount(const DownloadItem& item);
    /// Every place may have changed.
    void reorder();

    [[nodiscard]] std::span<const ItemPtr> find(const QString& base) const;
    /// Of the set that an item is in.
    [[nodiscard]] SetTally tallyOf(const ItemId& id) const;

private:
    struct Set
    {
        std::vector<ItemPtr> items;
        SetTally tally;
    };
    /// What an item has been counted as.
    struct Entry
    {
        QString base;
        SetTally share;
    };

    Order m_order;
    QHash<QString, Set> m_sets;
    QHash<ItemId, Entry> m_entries;
};

} // namespace vormel
