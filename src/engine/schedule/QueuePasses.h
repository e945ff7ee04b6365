#pragma once

#include "engine/schedule/Scheduler.h"

namespace vormel {

class AppSettings;
class DownloadStarter;
class Questions;
class QueueTurn;
class RevFiles;
class TransferCompletion;
class TransferSession;

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
        const TransferCompletion& completion;
        const TransferSession& session;
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
    [[nodiscard]] bool isHeldBack(const DownloadItem& item) const override;
    [[nodiscard]] bool mayFetchRev(const DownloadItem& item) const override;
    void startLater(const ItemPtr& item, DownloadStatus::Kind expected);

    Ports m_ports;
    QSet<ItemId> m_startsUnderWay; ///< chosen by a pass, start task not yet run
    bool m_isDue = false;
};

} // namespace vormel
