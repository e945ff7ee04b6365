#pragma once

#include "engine/commands/QueueCommands.h"
#include "engine/completion/FailureRecovery.h"
#include "engine/completion/TransferCompletion.h"
#include "engine/intake/FilenamePrefetch.h"
#include "engine/intake/LinkIntake.h"
#include "engine/queue/ItemTable.h"
#include "engine/queue/QueueFile.h"
#include "engine/schedule/DownloadStarter.h"
#include "engine/schedule/Scheduler.h"
#include "engine/transfer/TransferSession.h"
#include "model/AppSettings.h"
#include "platform/Platform.h"

#include <QObject>

namespace vormel {

/// Owns the queue and everything that works on it; the one object that views talk to. Created once, on the UI thread,
/// and used there alone. Construction restores the queue; nothing starts by itself.
class DownloadManager final : public QObject,
                              private ItemTable::Listener,
                              private SchedulingRules,
                              private TransferSession::Owner,
                              private TransferCompletion::Queue,
                              private DownloadStarter::Queue,
                              private FilenamePrefetch::Queue,
                              private LinkIntake::Queue,
                              private QueueCommands::Queue
{
    Q_OBJECT

public:
    /// What the queue calls on that is not the machine's. All outlive the manager.
    struct Collaborators
    {
        const ResolverTables& resolvers;
        PostDownload& postDownload;
        FailureRecovery& recovery;
    };

    DownloadManager(const Platform& platform, const Collaborators& collaborators);
    ~DownloadManager() override;

    [[nodiscard]] AppSettings& settings() { return m_settings; }
    [[nodiscard]] const ResolverTables& resolvers() const { return m_resolvers; }
    [[nodiscard]] const std::vector<ItemPtr>& items() const { return m_table.items(); }
    [[nodiscard]] ItemPtr item(const ItemId& id) const { return m_table.find(id); }
    [[nodiscard]] double totalSpeedBytesPerSec() const { return m_totalSpeedBytesPerSec; }
    [[nodiscard]] const QString& queueFileURL() const { return m_queueFile.queueFileURL(); }
    [[nodiscard]] const std::vector<HostAccount>& accounts() const override { return m_accounts; }
    void setAccounts(std::vector<HostAccount> accounts);

    void addURLs(const std::vector<Link>& urls, const std::optional<QString>& containerPassword);
    void addDirectURLs(const std::vector<Link>& urls);

    void processQueue() override;
    void saveQueue() override;
    [[nodiscard]] QueueCommands& commands() { return m_commands; }
    void startAll() { m_commands.startAll(); }
    void pauseAll() { m_commands.pauseAll(); }
    void clearCompleted() { m_commands.clearCompleted(); }

    // The questions to the user. While one is set, its sheet is shown; the answer is one of the operations below it.
    [[nodiscard]] const std::optional<PendingCaptcha>& pendingCaptcha() const { return m_pendingCaptcha; }
    void addCaptchaLinks(const std::vector<Link>& urls);
    void cancelCaptcha();
    [[nodiscard]] const std::optional<PendingHostSelection>& pendingHostSelection() const
    {
        return m_pendingHostSelection;
    }
    void confirmHostSelection(const std::vector<Link>& urls);
    void cancelHostSelection();
    [[nodiscard]] const std::optional<SupportedHost>& pendingLogin() const { return m_pendingLogin; }
    void loginSucceeded();
    void cancelLogin();

    /// The orderly end: closes every part file and has the queue on disk before it returns.
    void shutDown();

Q_SIGNALS:
    /// Anything that all views may show has changed: a setting, an account, a question.
    void changed();
    void itemsInserted(qsizetype first, qsizetype count);
    void itemsRemoved(const QSet<vormel::ItemId>& ids);
    /// During the change; views gather these and repaint later.
    void itemChanged(const vormel::ItemId& id, vormel::ItemField field);
    void totalSpeedChanged();

private:
    // ItemTable::Listener
    void tableGrew(qsizetype first, qsizetype count) override;
    void tableShrank(const QSet<ItemId>& ids) override;
    void tableItemChanged(DownloadItem& item, ItemField field) override;
    // SchedulingRules
    [[nodiscard]] bool isHeldBack(const DownloadItem& item) const override;
    [[nodiscard]] bool mayFetchRev(const DownloadItem& item) const override;
    // TransferSession::Owner
    void transferAnswered(const ItemId& id, const HeadFacts& facts) override;
    void transferTicked(const ItemId& id, qint64 bytes, double bytesPerSecond) override;
    void transferEnded(const ItemId& id, TransferEnd end) override;
    // DownloadStarter::Queue
    [[nodiscard]] bool isRevHeldBack(const DownloadItem& item) const override;
    void awaitLogin(const ItemId& id, SupportedHost host) override;
    // FilenamePrefetch::Queue and LinkIntake::Queue
    void prefetchFilenames() override;
    void dropDuplicates(const QSet<ItemId>& ids) override;
    void later(std::function<void()> action) override;
    void setPendingCaptcha(std::optional<PendingCaptcha> question) override;
    void setPendingHostSelection(std::optional<PendingHostSelection> question) override;

    void restoreQueue();
    void applySpeedLimit();
    void startNow(const ItemPtr& item);

    const ResolverTables& m_resolvers;
    Platform m_platform;
    AppSettings m_settings;
    ItemTable m_table;
    std::vector<HostAccount> m_accounts;
    std::optional<PendingCaptcha> m_pendingCaptcha;
    std::optional<PendingHostSelection> m_pendingHostSelection;
    std::optional<SupportedHost> m_pendingLogin;
    double m_totalSpeedBytesPerSec = 0;
    QSet<ItemId> itemsAwaitingLogin;
    QSet<ItemId> revAllowlist;
    QSet<ItemId> m_startsUnderWay; ///< chosen by a pass, start task not yet run

    QueueFile m_queueFile;
    TransferSession m_session;
    TransferCompletion m_completion;
    DownloadStarter m_starter;
    FilenamePrefetch m_prefetch;
    LinkIntake m_intake;
    QueueCommands m_commands;
};

} // namespace vormel
