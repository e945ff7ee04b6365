#pragma once

#include "engine/completion/NextTries.h"
#include "engine/completion/RetryBudget.h"
#include "engine/queue/ItemTable.h"
#include "engine/queue/QueueTurn.h"
#include "engine/transfer/TransferEnd.h"

namespace vormel {

class AppSettings;
class NetworkRecovery;
class PostDownload;
class Trash;

/// Decides what the end of a transfer means for its item: a finished file, a page that came instead, a short file, a
/// failure to try again, or one for good. UI thread only.
class TransferCompletion
{
public:
    /// All must outlive this.
    TransferCompletion(ItemTable& table, const AppSettings& settings, Clock& clock, Trash& trash,
                       PostDownload& postDownload, NetworkRecovery& recovery, QueueTurn& queue);

    void finishTransfer(DownloadItem& item, const TransferEnd& end);

    /// A transfer that moves data earns back its whole budget of retries.
    void noteProgress(const ItemId& id) { m_retries.restore(id); }
    /// The whole budget is there again, and no next try is waited for.
    void forget(const QSet<ItemId>& ids);

    /// Is the item queued for a try whose time has not come?
    [[nodiscard]] bool isWaiting(const ItemId& id) const { return m_nextTries.isWaiting(id); }
    /// The next try may be at once; what is left of the budget stays.
    void endWait(const ItemId& id) { m_nextTries.forget(id); }

private:
    void webPageCame(DownloadItem& item, const TransferEnd& end);
    void transferFailed(DownloadItem& item, const TransferEnd& end);
    void fileIsShort(DownloadItem& item, const TransferEnd& end, qint64 size);
    void fileIsComplete(DownloadItem& item, const TransferEnd& end);
    void fail(DownloadItem& item, const QString& message);
    /// True for the first time that bytes of the item are given up: between servers that never agree there would be no
    /// end to it.
    [[nodiscard]] bool mayStartOver(const ItemId& id);
    /// True if the item waits for another attempt.
    bool retryLater(DownloadItem& item);
    /// What the end says about where and from which byte to try again.
    void prepareNextTry(DownloadItem& item, const TransferEnd& end);
    [[nodiscard]] QString destinationFor(DownloadItem& item, const TransferEnd& end);
    void startExtraction(const DownloadItem& item);

    ItemTable& m_table;
    const AppSettings& m_settings;
    Trash& m_trash;
    PostDownload& m_postDownload;
    NetworkRecovery& m_recovery;
    QueueTurn& m_queue;
    RetryBudget m_retries;
    NextTries m_nextTries;
    QSet<ItemId> m_startedOver; ///< items that have given bytes up once
};

} // namespace vormel
