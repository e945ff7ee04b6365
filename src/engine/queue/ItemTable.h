#pragma once

#include "engine/queue/FileIndex.h"
#include "engine/queue/SetIndex.h"
#include "model/DownloadItem.h"

#include <QHash>
#include <QSet>

#include <span>
#include <unordered_map>
#include <vector>

namespace vormel {

/// The items of the queue in display order, which is also the scheduling order, with the indexes that keep every
/// look-up and every scheduler pass cheap. Watches each item from the moment it is added until it is removed. UI thread
/// only.
class ItemTable final : private ItemWatcher
{
public:
    class Listener
    {
    public:
        virtual void tableGrew(qsizetype first, qsizetype count) = 0;
        /// The item is about to leave the queue for good.
        virtual void tableWillRemove(DownloadItem& /*item*/) {}
        virtual void tableShrank(const QSet<ItemId>& ids) = 0;
        /// Items came to places among the others.
        virtual void tableFilledUp(const QSet<ItemId>& /*ids*/) {}
        virtual void tableReordered() = 0;
        virtual void tableItemChanged(DownloadItem& item, ItemField field) = 0;
        /// The item was resolving or downloading, and is so no more.
        virtual void tableSlotFreed(DownloadItem& /*item*/) {}

    protected:
        ~Listener() = default;
    };

    /// What a scheduler pass needs of an item, side by side in memory.
    struct Row
    {
        DownloadStatus::Kind status;
        bool isRev;
    };

    /// May what is removed come back?
    enum class Departure : quint8
    {
        forGood,
        forNow,
    };

    /// An item and the place that it is to have.
    struct Placed
    {
        std::size_t place = 0;
        ItemPtr item;
    };

    /// The listener must outlive the table.
    explicit ItemTable(Listener& listener);
    ItemTable(const ItemTable&) = delete;
    ItemTable& operator=(const ItemTable&) = delete;
    ~ItemTable();

    [[nodiscard]] const std::vector<ItemPtr>& items() const { return m_items; }
    [[nodiscard]] std::span<const Row> rows() const { return m_rows; }
    /// Null for an id that is not in the queue.
    [[nodiscard]] ItemPtr find(const ItemId& id) const;
    /// Of an item that is in the queue.
    [[nodiscard]] std::size_t position(const ItemId& id) const { return m_positions.at(id); }
    /// Every item whose name has this base name, in queue order. Valid until the table changes.
    [[nodiscard]] std::span<const ItemPtr> itemsOfSet(const QString& base) const { return m_sets.find(base); }

    /// How far the item's set has come.
    [[nodiscard]] SetTally tallyOf(const DownloadItem& item) const { return m_sets.tallyOf(item.id()); }
    /// Every item whose finished file has this name. Valid until the table or the place of such a file changes.
    [[nodiscard]] std::span<const ItemPtr> holdersOf(const QString& name) const { return m_files.find(name); }

    void append(std::vector<ItemPtr> items);
    /// Puts all items in with one pass over the queue. Their places ascend, and are those that they have afterwards;
    /// what would lie beyond the end comes to the end.
    void insert(const std::vector<Placed>& placed);
    /// Ids that are not there are ignored. Each item falls silent before the listener hears of it.
    void remove(const QSet<ItemId>& ids, Departure departure = Departure::forGood);
    /// Puts the items into ascending order of their ranks; those without one go to the end. Equal ranks keep their
    /// order.
    void reorder(const QHash<ItemId, std::size_t>& ranks);

    /// How many items hold a slot: those that are resolving or downloading.
    [[nodiscard]] qint64 activeCount() const { return m_activeCount; }
    /// The sum of the speeds of all items.
    [[nodiscard]] double totalSpeed() const;

private:
    void itemChanged(DownloadItem& item, ItemField field) override;
    void observeItem(const ItemPtr& item);
    void removeItemObserver(const ItemPtr& item);
    void updateRow(DownloadItem& item);
    void updateIndexes(const DownloadItem& item, ItemField field);
    /// Takes up the places of the items from there on.
    void indexFrom(std::size_t first);
    [[nodiscard]] static Row rowOf(const DownloadItem& item);

    Listener& m_listener;
    std::vector<ItemPtr> m_items;
    std::vector<Row> m_rows;
    std::unordered_map<ItemId, std::size_t> m_positions;
    SetIndex m_sets;
    FileIndex m_files;
    QHash<ItemId, double> m_speeds; ///< of the items that have one
    qint64 m_activeCount = 0;
};

} // namespace vormel
