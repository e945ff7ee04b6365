#pragma once

#include "app/attention/GroupEnd.h"
#include "engine/DownloadManager.h"

#include <QHash>
#include <QObject>
#include <QSet>

#include <functional>
#include <unordered_map>
#include <vector>

namespace vormel {

/// Notices which sets and files come to their end while the user looks elsewhere. Only what was on its way since this
/// was made can do that. Each change of an item costs the same, whatever the length of the queue. UI thread only.
class EndWatch final : public QObject
{
    Q_OBJECT

public:
    /// Manager and clock must outlive this. Does the user look at the program now?
    EndWatch(DownloadManager& manager, Clock& clock, std::function<bool()> isLookedAt);

Q_SIGNALS:
    /// All that has ended within two seconds, if the user still looks elsewhere then. Never empty.
    void ended(const std::vector<vormel::GroupEnd>& ends);

private:
    /// What is known of an item at whose change its group may have come to its end.
    struct Sign
    {
        std::optional<GroupEnd> extracted{}; ///< it, since its rows may be taken out of the list for that
        bool isLast = false;                 ///< nothing that could save it is waited for any more
    };

    void itemChanged(const ItemId& id, ItemField field);
    void statusChanged(const DownloadItem& item);
    void forget(const QSet<ItemId>& ids);
    void note(const DownloadItem& item);
    void note(const ItemId& id, const Sign& sign);
    [[nodiscard]] std::optional<GroupEnd> currentEnd(const DownloadItem& item) const;
    [[nodiscard]] bool isAwaited() const;
    [[nodiscard]] bool mayBeSaved(const DownloadItem& item, const GroupEnd& end) const;
    void waitForRecovery(const ItemId& id);
    /// For the recovery of any part of the item's group.
    void stopWaiting(const DownloadItem& item);
    void tell();

    DownloadManager& m_manager;
    Clock& m_clock;
    std::function<bool()> m_isLookedAt;
    QSet<ItemId> m_onTheirWay;
    QHash<ItemId, Sign> m_signs;
    std::unordered_map<ItemId, Timer> m_recoveries;
    Timer m_tell;
};

} // namespace vormel
