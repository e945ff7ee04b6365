#pragma once

#include "ui/queue/tree/QueueRows.h"

#include <QSet>

#include <optional>

namespace vormel {

class DownloadManager;

/// Finds out which rows of the list have other groups now, by asking the queue for the groups of single items alone.
/// Lives for one change; both references outlive it.
class GroupChanges
{
public:
    struct Change
    {
        QueueEntry* entry = nullptr;        ///< null: a row that is missing so far
        std::optional<DownloadGroup> group; ///< nothing: the row goes
    };

    GroupChanges(const DownloadManager& manager, const QueueRows& rows);

    /// The item is new, or what decides its group has changed.
    void noteItem(const ItemPtr& item);
    void noteRemoval(const ItemId& id);
    /// Something that has no row of its own may have changed in the set of this one.
    void noteEntry(QueueEntry* entry);

    /// Each row at most once. Rows that stay as they are may be among them.
    [[nodiscard]] std::vector<Change>& changes() { return m_changes; }

private:
    [[nodiscard]] QueueEntry* rowOf(const DownloadItem& item, const QString& set) const;
    [[nodiscard]] bool mayTakeOver(const QueueEntry* entry) const;
    void put(QueueEntry* entry, std::optional<DownloadGroup> group);

    const DownloadManager& m_manager;
    const QueueRows& m_rows;
    std::vector<Change> m_changes;
    QHash<const QueueEntry*, std::size_t> m_places; ///< in the changes
    QSet<const QueueEntry*> m_takenOver;            ///< by a set that had no row
    QSet<QString> m_sets;                           ///< that have been looked at
};

} // namespace vormel
