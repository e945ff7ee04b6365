#pragma once

#include "engine/completion/RetryBudget.h"
#include "engine/queue/ItemTable.h"
#include "engine/transfer/TransferEnd.h"

namespace vormel {

class AppSettings;
class NetworkRecovery;
class PostDownload;

/// Decides what the end of a transfer means for its item: a finished file, a page that came instead, a short file, a
/// failure to try again, or one for good. UI thread only.
class TransferCompletion
{
public:
    /// What the queue does when an end frees a slot or changes what is kept.
    class Queue
    {
    public:
        virtual void processQueue() = 0;
        virtual void saveQueue() = 0;

    protected:
        ~Queue() = default;
    };

    /// All must outlive this.
    TransferCompletion(ItemTable& table, const AppSettings& settings, Clock& clock, PostDownload& postDownload,
                       NetworkRecovery& recovery, Queue& queue);

    void finishTransfer(DownloadItem& item, const TransferEnd& end);

    /// A transfer that moves data earns back its whole budget of retries.
    void noteProgress(const ItemId& id) { m_retries.restore(id); }
    void forget(const QSet<ItemId>& ids);

    /// The item is done with a file that stands at its place already.
    void completeWithFile(DownloadItem& item, const QString& path);

private:
    void webPageCame(DownloadItem& item, const TransferEnd& end);
    void transferFailed(DownloadItem& item, const TransferEnd& end);
    void fileIsShort(DownloadItem& item, const TransferEnd& end, qint64 size);
    void fileIsComplete(DownloadItem& item, const TransferEnd& end);
    void fail(DownloadItem& item, const QString& message);
    /// An answer is thrown away whole, and another one asked for: once, or servers that never differ would be asked for
    /// ever.
    [[nodiscard]] bool mayGiveUpBytes(const ItemId& id);
    /// True if the item waits for another attempt.
    bool retryLater(DownloadItem& item);
    [[nodiscard]] QString destinationFor(DownloadItem& item, const TransferEnd& end);
    [[nodiscard]] QString broughtToItsArchive(const QString& path) const;
    void startExtraction(const DownloadItem& item);

    ItemTable& m_table;
    const AppSettings& m_settings;
    Clock& m_clock;
    PostDownload& m_postDownload;
    NetworkRecovery& m_recovery;
    Queue& m_queue;
    RetryBudget m_retries;
    std::unordered_map<ItemId, Timer> m_nextTries;
    QSet<ItemId> m_gaveUpBytes;
};

} // namespace vormel
