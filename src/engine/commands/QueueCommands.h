#pragma once

#include "engine/queue/ItemTable.h"

namespace vormel {

class DownloadStarter;
class TransferCompletion;
class TransferSession;

/// What the user can do to the queue. Paused items come back with Start All; stopped ones stay out until started one by
/// one. UI thread only.
class QueueCommands
{
public:
    class Queue
    {
    public:
        virtual void processQueue() = 0;
        virtual void saveQueue() = 0;

    protected:
        ~Queue() = default;
    };

    /// All must outlive this.
    QueueCommands(ItemTable& table, TransferSession& session, DownloadStarter& starter, TransferCompletion& completion,
                  Queue& queue);

    void startAll();
    void pauseAll();
    void clearCompleted();
    void removeItems(const QSet<ItemId>& ids);

    /// Ends a running transfer by hand. The part file stays.
    void interruptItem(DownloadItem& item, const DownloadStatus& status);

    /// Ends everything that is attached to the item, and deletes the part file of a running transfer.
    void discardTransfer(const DownloadItem& item);

private:
    ItemTable& m_table;
    TransferSession& m_session;
    DownloadStarter& m_starter;
    TransferCompletion& m_completion;
    Queue& m_queue;
};

} // namespace vormel
