#pragma once

#include "engine/queue/ItemTable.h"

#include <functional>

namespace vormel {

class AppSettings;
class PostDownload;
class RevFiles;

/// Archives that wait for a volume are looked at once more when it will not come: what is there may still be enough. UI
/// thread only.
class WaitingArchives
{
public:
    /// Runs an action in a later turn of the event loop.
    using Later = std::function<void(std::function<void()>)>;

    /// All must outlive this.
    WaitingArchives(const ItemTable& table, const AppSettings& settings, const RevFiles& revFiles,
                    PostDownload& postDownload, Later later);

    /// The item has failed.
    void failed(const DownloadItem& item);
    /// The item was resolving or downloading, and is so no more.
    void offItsWay(const DownloadItem& item);
    /// The item is about to leave the queue.
    void willBeRemoved(const DownloadItem& item);

private:
    void lookLaterAt(const QString& base);
    void lookAt(const QString& base);

    const ItemTable& m_table;
    const AppSettings& m_settings;
    const RevFiles& m_revFiles;
    PostDownload& m_postDownload;
    Later m_later;
    QSet<QString> m_due; ///< base names of sets that are about to be looked at
};

} // namespace vormel
