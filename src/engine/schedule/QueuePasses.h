#pragma once

#include "engine/schedule/Scheduler.h"

#include <QVarLengthArray>

namespace vormel {

class AppSettings;
class DownloadStarter;
class HostRests;
class Offline;
class Questions;
class QueueTurn;
class RevFiles;
class SameNames;
class Tries;

/// Goes through the queue and starts what may start now, each item in a turn of its own, if nothing has come between.
/// UI thread only.
class QueuePasses final : private SchedulingRules
{
public:
    /// All must outlive this.
    struct Ports
    {
        const ItemTable& table;
        const AppSettings& settings;
        const RevFiles& revFiles;
        const Questions& questions;
        const Tries& tries;
        const Offline& offline;
        HostRests& hosts;
        SameNames& sameNames;
        const Clock& clock;
        DownloadStarter& starter;
        QueueTurn& queue;
    };
    explicit QueuePasses(const Ports& ports);

    void run();
    /// In a later turn, however many ask for it in this one.
    void runLater();
    /// Starts as many of these queued items as there are free slots, ahead of the order of the queue.
    void startAhead(const std::vector<ItemPtr>& items);

private:
    [[nodiscard]] bool isHeldBack(DownloadItem& item) override;
    [[nodiscard]] bool mayFetchRev(const DownloadItem& item) const override;
    /// The item may not start though its host is there.
    [[nodiscard]] bool isHeldBackItself(DownloadItem& item);
    [[nodiscard]] bool isHostResting(const DownloadItem& item) const;
    /// Could the item ask its host, if that did not rest?
    [[nodiscard]] bool mayAsk(DownloadItem& item);
    /// Those that a start of the item asks, as far as it is known.
    [[nodiscard]] QVarLengthArray<QString, 2> hostsFor(const DownloadItem& item) const;
    /// One that cannot ask by now, because the user has to sign in for it or for any other reason, hands over.
    void handOverProbes();
    /// Has each host whose time has come asked by one item.
    void chooseProbes();
    void startLater(const ItemPtr& item, DownloadStatus::Kind expected);

    Ports m_ports;
    QSet<ItemId> m_startsUnderWay; ///< chosen by a pass, start task not yet run
    bool m_isDue = false;
};

} // namespace vormel
