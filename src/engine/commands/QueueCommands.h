#pragma once

#include "engine/queue/ItemTable.h"
#include "engine/queue/QueueTurn.h"

#include <set>

namespace vormel {

class AppSettings;
class DiskState;
class DownloadStarter;
class GroupVerification;
class LinkIntake;
class NetworkRecovery;
class PostDownload;
class QueuePasses;
class TransferCompletion;
class TransferSession;
class RemovedItems;
class Trash;
class Tries;

/// What the user can do to the queue, its items and its groups. Paused items come back with Start All; stopped ones
/// stay out until started by row or group. File errors are not reported. UI thread only.
class QueueCommands
{
public:
    using Items = std::vector<ItemPtr>;

    /// All must outlive this.
    struct Ports
    {
        ItemTable& table;
        const AppSettings& settings;
        TransferSession& session;
        DownloadStarter& starter;
        TransferCompletion& completion;
        Tries& tries;
        NetworkRecovery& recovery;
        PostDownload& postDownload;
        LinkIntake& intake;
        Trash& trash;
        QueuePasses& passes;
        GroupVerification& verification;
        const RemovedItems& removed;
        QueueTurn& queue;
    };
    explicit QueueCommands(const Ports& ports);

    void startAll();
    void pauseAll();
    void clearCompleted();
    /// Takes out every group of which a member is extracted, with all its members.
    void clearExtracted();

    /// Only what is downloading.
    void pauseItems(const Items& items);
    /// Only a paused item.
    void resumeItem(DownloadItem& item);
    /// The one command that goes ahead of the order of the queue.
    void startItems(const Items& items);
    void stopItems(const Items& items);
    /// From the first byte. A container that could not be read is read again.
    void retryItem(DownloadItem& item);
    /// Everything of these that has failed, from where it was: what is on disk stays. Containers are read again.
    void tryFailedAgain(Items items);
    /// Deletes the finished file as well.
    void redownloadItem(DownloadItem& item);
    /// Corrects what the queue believes of these items from what lies on the disk.
    void resyncItems(const Items& items);

    /// Has the set of these items tested.
    void verifyGroup(const Items& items);
    /// Has the sets of these items repaired: fetches their recovery volumes, and failed archives may be tried again.
    void retryWithRevFiles(const Items& items);
    /// Tries a failed extraction once more, or one that was never tried.
    void retryExtraction(const ItemId& id);
    void stopExtraction(const ItemId& id);

    // What these take out is gone for good; what the user removes goes by RemovedItems.
    void removeItems(const QSet<ItemId>& ids);
    /// A whole set, hidden volumes included, or one plain file.
    void removeGroup(const QString& id);
    /// Moves the groups at these offsets in front of the one that stands at the destination. `groupIDs` are the groups
    /// as they are displayed.
    void moveGroups(const std::set<qsizetype>& sources, qsizetype destination, const QStringList& groupIDs);

    /// Ends a running transfer by hand. The part file stays.
    void interruptItem(DownloadItem& item, const DownloadStatus& status);

    /// Ends everything that is attached to the item, and deletes the part file of a running transfer.
    void discardTransfer(DownloadItem& item);

private:
    void requeue(DownloadItem& item);
    void resyncItem(DownloadItem& item, const DiskState& disk);
    /// Takes a regular file away that no other item has: deletes the item's own, and moves what only has its name to
    /// the Trash. False if it stays.
    bool giveUpFile(const DownloadItem& item, const QString& path) const;

    Ports m_ports;
};

} // namespace vormel
