#pragma once

#include "engine/queue/ItemTable.h"
#include "engine/queue/QueueTurn.h"
#include "engine/transfer/TransferEnd.h"

namespace vormel {

class AppSettings;
class NetworkRecovery;
class PostDownload;
class Trash;
class Tries;

/// Decides what the end of a transfer means for its item: a finished file, a page that came instead, a short file, a
/// failure to try again, or one for good. UI thread only.
class TransferCompletion
{
public:
    /// All must outlive this.
    struct Ports
    {
        ItemTable& table;
        const AppSettings& settings;
        Trash& trash;
        PostDownload& postDownload;
        NetworkRecovery& recovery;
        Tries& tries;
        QueueTurn& queue;
    };
    explicit TransferCompletion(const Ports& ports);

    void finishTransfer(DownloadItem& item, const TransferEnd& end);

    /// The item's host has begun to answer.
    void noteAnswer(const DownloadItem& item);
    /// A transfer that moves data earns back its whole budget of retries.
    void noteProgress(const DownloadItem& item);
    /// The whole budget is there again, and no next try is waited for.
    void forget(const QSet<ItemId>& ids);

private:
    void webPageCame(DownloadItem& item, const TransferEnd& end);
    void transferFailed(DownloadItem& item, const TransferEnd& end);
    void fileIsShort(DownloadItem& item, const TransferEnd& end, qint64 size);
    void fileIsComplete(DownloadItem& item, const TransferEnd& end);
    void fail(DownloadItem& item, const QString& message);
    /// True for the first time that bytes of the item are given up: between servers that never agree there would be no
    /// end to it.
    [[nodiscard]] bool mayStartOver(const ItemId& id);
    /// What the end says about where and from which byte to try again.
    void prepareNextTry(DownloadItem& item, const TransferEnd& end);
    [[nodiscard]] QString destinationFor(DownloadItem& item, const TransferEnd& end);
    void startExtraction(const DownloadItem& item);

    Ports m_ports;
    QSet<ItemId> m_startedOver; ///< items that have given bytes up once
};

} // namespace vormel
