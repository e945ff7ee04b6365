#pragma once

#include "archive/pipeline/PostDownloadPipeline.h"
#include "engine/ArchiveQueue.h"
#include "engine/accounts/Accounts.h"
#include "engine/commands/GroupVerification.h"
#include "engine/commands/QueueCommands.h"
#include "engine/commands/RemovedItems.h"
#include "engine/completion/TransferCompletion.h"
#include "engine/completion/TransferReports.h"
#include "engine/groups/DownloadGroup.h"
#include "engine/groups/GroupNames.h"
#include "engine/intake/Additions.h"
#include "engine/intake/FilenamePrefetch.h"
#include "engine/intake/LinkIntake.h"
#include "engine/questions/Questions.h"
#include "engine/queue/ItemTable.h"
#include "engine/queue/QueueFile.h"
#include "engine/recovery/NetworkRecovery.h"
#include "engine/recovery/RevFiles.h"
#include "engine/recovery/WaitingArchives.h"
#include "engine/schedule/DownloadStarter.h"
#include "engine/schedule/Outages.h"
#include "engine/schedule/QueuePasses.h"
#include "engine/schedule/SameNames.h"
#include "engine/transfer/TransferSession.h"
#include "engine/tries/HostRests.h"
#include "engine/tries/Offline.h"
#include "engine/tries/Tries.h"
#include "model/AppSettings.h"
#include "model/PremiumAccountInfo.h"
#include "platform/Platform.h"

#include <QCoroTask>
#include <QObject>

#include <stop_token>

namespace vormel {

/// Owns the queue and everything that works on it; the one object that views talk to. Created once, on the UI thread,
/// and used there alone. Construction restores the queue; nothing starts by itself.
class DownloadManager final : public QObject, private ItemTable::Listener, private QueueTurn
{
    Q_OBJECT

public:
    /// What the queue calls on beside the machine. All outlive the manager.
    struct Ports
    {
        const ResolverTables& resolvers;
        ArchiveExtractor& extractor;
    };

    DownloadManager(const Platform& platform, const Ports& ports);
    ~DownloadManager() override;

    [[nodiscard]] AppSettings& settings() { return m_settings; }
    [[nodiscard]] const ResolverTables& resolvers() const { return m_resolvers; }
    [[nodiscard]] const std::vector<ItemPtr>& items() const { return m_table.items(); }
    [[nodiscard]] ItemPtr item(const ItemId& id) const { return m_table.find(id); }
    /// The place in the queue of an item that is in it.
    [[nodiscard]] std::size_t position(const ItemId& id) const { return m_table.position(id); }

    /// The groups as the list shows them; made anew from the whole queue.
    [[nodiscard]] std::vector<DownloadGroup> visibleGroups() const;
    /// The group of one item, without a look at the rest of the queue; nothing if all of it is hidden.
    [[nodiscard]] std::optional<DownloadGroup> visibleGroupOf(const DownloadItem& item) const;
    [[nodiscard]] const GroupNames& groupNames() const { return m_groupNames; }
    void renameGroup(const QString& id, const QString& name);
    [[nodiscard]] bool hasPendingRevFiles(const std::vector<ItemPtr>& items) const;
    [[nodiscard]] bool areRevFilesComing(const std::vector<ItemPtr>& items) const;

    [[nodiscard]] double totalSpeedBytesPerSec() const { return m_reports.totalSpeedBytesPerSec(); }
    [[nodiscard]] const QString& queueFileURL() const { return m_queueFile.queueFileURL(); }
    [[nodiscard]] Accounts& accounts() { return m_accounts; }
    /// Has the account's host tell of its plan. Throws ResolverError; one that is stopped throws soon after.
    [[nodiscard]] QCoro::Task<PremiumAccountInfo> checkAccount(HostAccount account, std::stop_token stop) const;

    void addURLs(const std::vector<Link>& urls, const std::optional<QString>& containerPassword);
    void addDirectURLs(const std::vector<Link>& urls);
    /// Those of the links that adding would not refuse, as they would be added. One pass over the queue.
    [[nodiscard]] std::vector<Link> newAmong(const std::vector<Link>& urls) const
    {
        return m_intake.filterNewURLs(urls);
    }

    void processQueue() override;
    void saveQueue() override;
    /// What the user can do to the queue, to items and to groups.
    [[nodiscard]] QueueCommands& commands() { return m_commands; }

    /// What the user takes out of the queue, and may put back.
    [[nodiscard]] RemovedItems& removed() { return m_removed; }
    /// What the user's links have brought.
    [[nodiscard]] const Additions& additions() const { return m_additions; }

    /// What the user is asked. While a question is put, its sheet is shown.
    [[nodiscard]] Questions& questions() { return m_questions; }

    /// Does anything wait because the desktop says that there is no network?
    [[nodiscard]] bool isWaitingForNetwork() const { return m_outages.isAnythingHeldBack(); }
    /// The user knows that there is one.
    void goOnThoughOffline();
    /// The machine has slept: nothing is waited for any more, and connections are made anew.
    void machineWokeUp() { m_outages.machineWokeUp(); }

    /// The orderly end: closes every part file and has the queue on disk before it returns.
    void shutDown();

Q_SIGNALS:
    /// Anything that all views may show has changed: a setting, an account, a question.
    void changed();
    void itemsInserted(qsizetype first, qsizetype count);
    void itemsRemoved(const QSet<vormel::ItemId>& ids);
    void itemsReordered();
    /// Items came to places among the others.
    void itemsPutBack(const QSet<vormel::ItemId>& ids);
    void groupRenamed(const QString& id);
    /// During the change; views gather these and repaint later.
    void itemChanged(const vormel::ItemId& id, vormel::ItemField field);
    void totalSpeedChanged();
    /// There is no network any more, or one again.
    void networkChanged();

private:
    // ItemTable::Listener
    void tableGrew(qsizetype first, qsizetype count) override;
    void tableWillRemove(DownloadItem& item) override;
    void tableShrank(const QSet<ItemId>& ids) override;
    void tableFilledUp(const QSet<ItemId>& ids) override;
    void tableReordered() override;
    void tableItemChanged(DownloadItem& item, ItemField field) override;
    void tableSlotFreed(DownloadItem& item) override;
    // QueueTurn
    void later(std::function<void()> action) override;

    void restoreQueue();
    void followQuestions();
    void signedIn(const QSet<ItemId>& waited);
    void signInCancelled(const QSet<ItemId>& waiting);
    void applySpeedLimit();
    void statusChanged(DownloadItem& item);
    void followNetwork();

    const ResolverTables& m_resolvers;
    Platform m_platform;
    AppSettings m_settings;
    ItemTable m_table;
    Questions m_questions;
    Accounts m_accounts;
    QueueFile m_queueFile;
    GroupNames m_groupNames;
    RevFiles m_revFiles;
    NetworkRecovery m_recovery;
    ArchiveQueue m_archiveQueue;
    PostDownloadPipeline m_pipeline;
    WaitingArchives m_waitingArchives;
    Offline m_offline;
    HostRests m_hosts;
    Tries m_tries;
    TransferReports m_reports; ///< outlives the transfers that report
    TransferSession m_session;
    SameNames m_sameNames;
    TransferCompletion m_completion;
    DownloadStarter m_starter;
    QueuePasses m_passes;
    Outages m_outages;
    FilenamePrefetch m_prefetch;
    Additions m_additions;
    LinkIntake m_intake;
    QueueCommands m_commands;
    RemovedItems m_removed;
    GroupVerification m_verification;
};

} // namespace vormel
