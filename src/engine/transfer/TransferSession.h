#pragma once

#include "engine/transfer/GlobalThrottleTracker.h"
#include "engine/transfer/Transfer.h"

#include <QObject>
#include <QSet>

#include <atomic>
#include <unordered_map>

namespace vormel {

class FileSync;

/// All running transfers and the lock, the budget and the client that they share. Operations belong to the UI thread;
/// what happens on the client's thread reaches the owner as calls on the UI thread, in order.
class TransferSession final : private Transfer::Listener
{
public:
    /// Hears of the transfers, on the UI thread. A transfer that was dropped is not heard of again.
    class Owner
    {
    public:
        virtual void transferAnswered(const ItemId& id, const HeadFacts& facts) = 0;
        virtual void transferTicked(const ItemId& id, qint64 bytes, double bytesPerSecond) = 0;
        /// Its part file was empty, and was removed: whoever writes there next is another.
        virtual void partIsGone(const ItemId& id) = 0;
        /// The transfer is gone by now, its file closed.
        virtual void transferEnded(const ItemId& id, TransferEnd end) = 0;

    protected:
        ~Owner() = default;
    };

    /// All must outlive the session.
    TransferSession(HttpClient& client, FileSync& fileSync, Clock& clock, const HostProfiles& profiles, Owner& owner);
    TransferSession(const TransferSession&) = delete;
    TransferSession& operator=(const TransferSession&) = delete;
    ~TransferSession();

    /// Begins a transfer into the open part file, behind what that holds already; nothing is asked of the server if
    /// that is all. At most one transfer for an item and for a part file. A file is on disk for good before it is told
    /// to be finished.
    void start(TransferOrder order, std::unique_ptr<PartFile> file);
    /// Ends the item's transfer, if any, at once and in silence. Its part file stays, unless it is empty.
    void drop(const ItemId& id);

    /// The part file of a running transfer.
    [[nodiscard]] std::optional<QString> partFileURL(const ItemId& id) const;
    /// Those of all running transfers.
    [[nodiscard]] QSet<QString> partFiles() const;
    /// Is a transfer to end in a file of this path?
    [[nodiscard]] bool isFetching(const QString& finalPath) const;
    /// Gives the finished file of a running transfer another name. The part file keeps its own: to rename it would
    /// leave a moment in which a kill parts it from its item.
    void retarget(const ItemId& id, const QString& finalPath);

    /// The number of the item's running transfer, which no other ever has; 0 if there is none, or if it asks nobody.
    [[nodiscard]] quint64 runOf(const ItemId& id) const;

    /// The cap of all transfers together in bytes per second; below 1 for none.
    void setLimit(qint64 bytesPerSecond);

    /// Closes every part file, at the end of the program.
    void closeFiles();

private:
    struct Running
    {
        std::unique_ptr<Transfer> transfer;
        QString partPath;
        QString finalPath;
        std::unique_ptr<HttpTask>
            task; ///< goes before the transfer that it reports to; none if nothing is to be fetched
        Timer rest;
    };

    void closeFile(const ItemId& id, Transfer& transfer);
    void headArrived(const Transfer& transfer, const HeadFacts& facts) override;
    void ticked(const Transfer& transfer, qint64 bytes, double bytesPerSecond) override;
    bool mustRest(const Transfer& transfer, qint64 bytes) override;
    void ended(const Transfer& transfer) override;

    /// Runs the action on the UI thread if this very transfer is still running then.
    template <typename Action>
    void post(const Transfer& transfer, Action action);
    [[nodiscard]] bool isCurrent(const ItemId& id, quint64 serial) const;
    void finish(const ItemId& id, int syncError);

    HttpClient& m_client;
    FileSync& m_fileSync;
    Clock& m_clock;
    const HostProfiles& m_profiles;
    Owner& m_owner;
    QObject m_uiThread;
    std::mutex m_ioLock;
    std::atomic<qint64> m_limit{0};
    GlobalThrottleTracker m_globalThrottle; ///< client's thread
    quint64 m_lastSerial = 0;
    std::unordered_map<ItemId, Running> m_activeTasks;
};

} // namespace vormel
