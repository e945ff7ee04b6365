#pragma once

#include "engine/queue/ItemTable.h"
#include "engine/queue/QueueTurn.h"

#include <functional>

namespace vormel {

class AppSettings;

/// The recovery volumes of the queue, and which of them may be fetched. UI thread only.
class RevFiles
{
public:
    /// All must outlive this.
    RevFiles(const ItemTable& table, const AppSettings& settings, QueueTurn& queue);

    /// The recovery volumes of a set, in queue order.
    [[nodiscard]] std::vector<ItemPtr> revItems(const QString& base) const;

    /// Has somebody asked for this very volume, whatever the settings and its set say?
    [[nodiscard]] bool isAllowed(const ItemId& id) const { return m_revAllowlist.contains(id); }
    /// May this recovery volume be fetched now?
    [[nodiscard]] bool mayFetch(const DownloadItem& item) const;

    /// Is this a recovery volume that must not be fetched now?
    [[nodiscard]] bool isHeldBack(const DownloadItem& item) const;

    /// Is this recovery volume on its way, or may it be fetched as soon as it is its turn, or goes on? Nothing waits
    /// for one that is not.
    [[nodiscard]] bool isComing(const DownloadItem& item) const;

    /// Lets the set's volumes through and queues them. False if there is none that was not let through before, or if
    /// all of those are there or coming.
    bool allowRevFiles(const QString& base);
    /// The user's wish: the same also for volumes that were let through before and do not go on.
    void fetchRevFiles(const QString& base);
    /// Has the set recovery volumes, of which none is left to fetch?
    [[nodiscard]] bool areAllThere(const QString& base) const;
    /// Has any set of these items a volume that is neither there nor coming?
    [[nodiscard]] bool hasPendingRevFiles(const std::vector<ItemPtr>& items) const;

    /// Is a volume of any set of these items still to come?
    [[nodiscard]] bool areRevFilesComing(const std::vector<ItemPtr>& items) const;

    void forget(const QSet<ItemId>& ids) { m_revAllowlist.subtract(ids); }

private:
    bool release(const QString& base, const std::function<bool(const DownloadItem&)>& isWanted);

    const ItemTable& m_table;
    const AppSettings& m_settings;
    QueueTurn& m_queue;
    QSet<ItemId> m_revAllowlist;
};

/// The base names of the items, each once.
[[nodiscard]] QSet<QString> baseNames(const std::vector<ItemPtr>& items);

} // namespace vormel
