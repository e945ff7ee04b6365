#pragma once

#include "engine/queue/ItemTable.h"
#include "engine/queue/QueueTurn.h"

#include <QObject>

namespace vormel {

class DownloadPaths;
class DownloadStarter;
class LinkIntake;
class NetworkRecovery;
class PostDownload;
class Questions;
class TransferCompletion;
class TransferSession;
class WaitingArchives;

/// What the user takes out of the queue: it goes at once, and can be put back for ten seconds from the last removal.
/// Only then are the part files deleted that go with it. UI thread only.
class RemovedItems final : public QObject
{
    Q_OBJECT

public:
    /// All must outlive this.
    struct Ports
    {
        ItemTable& table;
        TransferSession& session;
        DownloadStarter& starter;
        TransferCompletion& completion;
        NetworkRecovery& recovery;
        PostDownload& postDownload;
        WaitingArchives& waitingArchives;
        const Questions& questions;
        LinkIntake& intake;
        QueueTurn& queue;
        Clock& clock;
    };
    explicit RemovedItems(const Ports& ports);
    ~RemovedItems() override;

    /// Ids that are not there are ignored.
    void remove(const QSet<ItemId>& ids);
    /// A whole set, hidden volumes included, or one plain file.
    void removeGroup(const QString& id);
    void clearCompleted();
    /// Takes out every group of which a member is extracted, with all its members.
    void clearExtracted();

    // What can be removed in one go. Each looks at the whole queue.
    [[nodiscard]] QSet<ItemId> failed() const;
    /// Everything but what is completed.
    [[nodiscard]] QSet<ItemId> unfinished() const;
    [[nodiscard]] QSet<ItemId> all() const;

    /// How many items can be put back.
    [[nodiscard]] qsizetype count() const { return static_cast<qsizetype>(m_removed.size()); }
    /// Can a volume be put back for which the archive of the set was waiting?
    [[nodiscard]] bool mayVolumeComeBack(const QString& base) const;
    /// Is it the finished file of an item that can be put back? Looks at the disk.
    [[nodiscard]] bool isTheirFile(const QString& path) const;
    /// Where the files and part files lie of those that can be put back.
    [[nodiscard]] QSet<QString> files(const DownloadPaths& paths) const;
    /// All of them, to the places they had among those that are left. What was on its way is queued. A link that was
    /// added again meanwhile stays with its newer item.
    void putBack();
    /// Nothing can be put back any more. Deletes the part file of each item that was being fetched, unless its link is
    /// in the queue again or another item goes on with that file. Archives stop waiting for volumes only now.
    void finish();

Q_SIGNALS:
    /// Another number of items can be put back, or others.
    void changed();

private:
    struct Removed
    {
        ItemPtr item;
        std::optional<QString> partPath; ///< that its transfer was writing
        std::optional<QString> containerPassword;
        std::optional<int> recoveryCountdown;
        std::optional<QString> awaitingSet; ///< whose archive waits for this volume
        bool wasUnpacked = false;           ///< as the target of a run that had not ended, or waits for a password
    };

    /// False if none of them is there.
    bool take(const QSet<ItemId>& ids);
    [[nodiscard]] Removed detach(const ItemPtr& item);
    void noteUnfinishedSets(const QSet<ItemId>& ids);
    void resume(const Removed& removed);
    [[nodiscard]] QSet<ItemId> ids() const;
    void deleteParts(const std::vector<Removed>& removed) const;

    Ports m_ports;
    std::vector<Removed> m_removed;    ///< the newest last
    std::vector<ItemPtr> m_wholeOrder; ///< the queue with all of them
    QSet<QString> m_unfinishedSets;    ///< base names of those that lost a volume while one was still to come
    Timer m_end;
};

} // namespace vormel
