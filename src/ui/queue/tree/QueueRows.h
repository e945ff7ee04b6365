#pragma once

#include "engine/groups/DownloadGroup.h"
#include "ui/queue/rows/RowPresenter.h"

#include <QHash>

#include <memory>
#include <vector>

namespace vormel {

/// One row at the top of the list: a plain row of one item, or the header of a group with the rows of its items below.
struct QueueEntry
{
    DownloadGroup group;
    QString set; ///< the base name that the members share; empty for a plain file
    int row = 0;
    RowLines ownLines;             ///< of the header or plain row, as the views were told last
    std::vector<RowLines> members; ///< lines of the items of a header, as the views were told last

    [[nodiscard]] bool isHeader() const { return group.items.size() > 1; }
    [[nodiscard]] const ItemPtr& item(int member) const { return group.items[static_cast<std::size_t>(member)]; }
    /// How many rows stand below it.
    [[nodiscard]] int memberCount() const { return isHeader() ? static_cast<int>(group.items.size()) : 0; }
    /// Reads the lines anew.
    void readLines();
};

/// The base name of a member of a set; empty for a plain file.
[[nodiscard]] QString setKey(const DownloadItem& item);

/// The groups in display order, with the place of each item. Entries stay where they are in memory for as long as they
/// have a row. Knows nothing of views.
class QueueRows
{
public:
    struct Place
    {
        QueueEntry* entry = nullptr; ///< null for an item without a row
        int member = 0;              ///< its place in the group
    };

    [[nodiscard]] int count() const { return static_cast<int>(m_entries.size()); }
    [[nodiscard]] QueueEntry& at(int row) const { return *m_entries[static_cast<std::size_t>(row)]; }
    [[nodiscard]] Place find(const ItemId& id) const { return m_places.value(id); }
    /// Null if no member of the set has a row.
    [[nodiscard]] QueueEntry* findSet(const QString& set) const { return m_sets.value(set); }

    void assign(std::vector<DownloadGroup> groups);
    void insert(int row, std::vector<DownloadGroup> groups);
    void remove(int first, int count);
    void setGroup(QueueEntry& entry, DownloadGroup group);
    void setId(QueueEntry& entry, const QString& id);

private:
    void numberFrom(int row) const;
    void place(QueueEntry& entry);
    void forget(const QueueEntry& entry);

    std::vector<std::unique_ptr<QueueEntry>> m_entries;
    QHash<ItemId, Place> m_places;
    QHash<QString, QueueEntry*> m_sets;
};

/// Which of the items of the longer list are missing in the shorter one; nothing if the rest differs in items or order.
[[nodiscard]] std::optional<std::vector<int>> surplus(const std::vector<ItemPtr>& longer,
                                                      const std::vector<ItemPtr>& shorter);

} // namespace vormel
