#pragma once

#include "engine/queue/ItemTable.h"
#include "engine/queue/QueueTurn.h"
#include "engine/tries/NextTries.h"
#include "engine/tries/RecentFailures.h"
#include "engine/tries/RetryBudget.h"

namespace vormel {

class HostRests;
class NetworkRecovery;
class Offline;

/// When an item that has failed is tried again, and how often: its own budget and delays, the rest of its host, and the
/// outages of the network, which spend nothing. Tells each item why it waits. UI thread only.
class Tries
{
public:
    /// All must outlive this.
    struct Ports
    {
        const ItemTable& table;
        Clock& clock;
        HostRests& hosts;
        const Offline& offline;
        NetworkRecovery& recovery;
        QueueTurn& queue;
    };
    explicit Tries(const Ports& ports);

    /// Queues the item for another try if it has one left. The server may have asked for a longer delay.
    [[nodiscard]] bool tryLater(DownloadItem& item, std::optional<std::chrono::seconds> retryAfter);
    /// The same for an item whose host was away; that rests now.
    [[nodiscard]] bool tryLaterAsHostIsAway(DownloadItem& item);
    /// An item without a network has failed to find its address; queues it only if that is why.
    [[nodiscard]] bool awaitNetwork(DownloadItem& item);

    /// The item's host is there.
    void hostAnswered(const DownloadItem& item);
    /// No address was found for the item: either its page was away, or that has said so.
    void pageWasAway(const DownloadItem& item);
    void pageAnswered(const DownloadItem& item);
    /// The user wants the item now, whatever its host did.
    void goAhead(const DownloadItem& item);
    /// Nothing is waited for any more, neither hosts nor times.
    void goAheadWithAll();

    /// The whole budget is there again.
    void restore(const ItemId& id) { m_budget.restore(id); }
    /// The same, and no next try is waited for.
    void forget(const ItemId& id);
    [[nodiscard]] int spent(const ItemId& id) const { return m_budget.spent(id); }
    /// Is the item queued for a try whose time has not come?
    [[nodiscard]] bool isWaiting(const ItemId& id) const { return m_next.isWaiting(id); }
    /// The next try may be at once; what is left of the budget stays.
    void endWait(const ItemId& id);

    /// The desktop says that there is no network: nobody's fault any more, also of the last seconds.
    void networkWent();
    /// There is one, another perhaps: what hosts did before counts no more, but what they asked for does.
    void networkCame();

private:
    void showWait(const ItemId& id);
    void showWaits(const QSet<ItemId>& ids);
    void giveBack(const ItemId& id);

    Ports m_ports;
    RetryBudget m_budget;
    NextTries m_next;
    RecentFailures m_recent;
};

} // namespace vormel
