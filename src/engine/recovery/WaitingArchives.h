#pragma once

#include "engine/queue/ItemTable.h"
#include "engine/queue/QueueTurn.h"

namespace vormel {

class AppSettings;
class PostDownload;
class RevFiles;

/// Archives that wait for a volume are looked at once more when it will not come: what is there may still be enough. UI
/// thread only.
class WaitingArchives
{
public:
    /// All must outlive this.
    WaitingArchives(const ItemTable& table, const AppSettings& settings, const RevFiles& revFiles,
                    PostDownload& postDownload, QueueTurn& queue);

    /// The item has failed.
    void failed(const DownloadItem& item);
    /// The item was resolving or downloading, and is so no more.
    void offItsWay(const DownloadItem& item);
    /// The item is about to leave the queue for good.
    void willBeRemoved(const DownloadItem& item);

    /// The set of which the item is a volume that is not there yet, but is to come.
    [[nodiscard]] std::optional<QString> setAwaiting(const DownloadItem& item) const;
    /// Is a volume of the set still to come?
    [[nodiscard]] bool isWaiting(const QString& base) const;
    /// One look for however often it is asked for in this turn.
    void lookLaterAt(const QString& base);

private:
    void lookAt(const QString& base);

    const ItemTable& m_table;
    const AppSettings& m_settings;
    const RevFiles& m_revFiles;
    PostDownload& m_postDownload;
    QueueTurn& m_queue;
    QSet<QString> m_due; ///< base names of sets that are about to be looked at
};

} // namespace vormel
