#include "engine/DownloadManager.h"

#include "engine/groups/VisibleGroups.h"
#include "model/DownloadPaths.h"
#include "platform/desktop/NetworkState.h"
#include "platform/storage/FileWriter.h"
#include "resolvers/ResolverError.h"
#include "resolvers/ResolverTables.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// Is the item queued or on its way?
bool isWanted(const DownloadItem& item)
{
    return item.status() == DownloadStatus::queued || item.status() == DownloadStatus::resolving ||
           item.status() == DownloadStatus::downloading;
}

} // namespace

DownloadManager::DownloadManager(const Platform& platform, const Ports& ports)
    : m_resolvers(ports.resolvers)
    , m_platform(platform)
    , m_settings(platform.defaults, platform.folders.downloads)
    , m_table(*this)
    , m_questions(platform.clock)
    , m_accounts(platform.defaults, platform.secrets, m_resolvers.profiles())
    , m_queueFile(platform.folders.applicationSupport + u"/download_queue.json"_s, platform.fileWriter)
    , m_groupNames(platform.defaults)
    , m_revFiles(m_table, m_settings, *this)
    , m_recovery(m_table, m_settings, platform.clock, m_revFiles)
    , m_archiveQueue({m_table, m_settings, m_groupNames, m_revFiles, m_questions, m_commands, m_removed, *this})
    , m_pipeline({m_settings, platform.clock, ports.extractor, platform.trash, m_archiveQueue})
    , m_waitingArchives(m_table, m_settings, m_revFiles, m_pipeline, *this)
    , m_offline(platform.network)
    , m_hosts(platform.clock, [this] { processQueue(); })
    , m_tries({m_table, platform.clock, m_hosts, m_offline, m_recovery, *this})
    , m_reports({m_table, m_settings, m_session, m_completion, *this, [this] { Q_EMIT totalSpeedChanged(); }})
    , m_session(platform.http, platform.fileSync, platform.clock, m_resolvers.profiles(), m_reports)
    , m_sameNames(m_table, m_settings, m_session)
    , m_completion({m_table, m_settings, platform.trash, m_pipeline, m_recovery, m_tries, *this})
    , m_starter({m_table, m_settings, platform.clock, m_resolvers, m_session, m_pipeline, m_recovery, m_revFiles,
                 m_questions, m_accounts, m_tries, m_offline, m_hosts, m_sameNames, *this})
    , m_passes({m_table, m_settings, m_revFiles, m_questions, m_tries, m_offline, m_hosts, m_sameNames, platform.clock,
                m_starter, *this})
    , m_outages({m_table, platform.clock, platform.http, m_session, m_starter, m_offline, m_tries, *this})
    , m_prefetch(m_table, m_settings, m_resolvers, m_accounts, *this)
    , m_additions(*this)
    , m_intake({m_table, m_settings, m_resolvers, m_pipeline, m_questions, m_prefetch, m_additions, *this})
    , m_commands({m_table, m_settings, m_session, m_starter, m_completion, m_tries, m_recovery, m_pipeline, m_intake,
                  platform.trash, m_passes, m_verification, m_removed, *this})
    , m_removed({m_table, m_session, m_starter, m_completion, m_recovery, m_pipeline, m_waitingArchives, m_questions,
                 m_intake, *this, platform.clock})
    , m_verification(m_table, ports.extractor, m_commands, m_pipeline)
{
    applySpeedLimit();
    restoreQueue();
    m_prefetch.prefetchFilenames();
    followQuestions();
    followNetwork();
    connect(&m_settings, &AppSettings::changed, this, &DownloadManager::changed);
    connect(&m_accounts, &Accounts::changed, this, &DownloadManager::changed);
    connect(&m_settings, &AppSettings::downloadRevFilesSet, this, [this] { processQueue(); });
    // The queue leaves out where part files lie in this folder.
    connect(&m_settings, &AppSettings::downloadFolderSet, this, [this] { saveQueue(); });
    connect(&m_settings, &AppSettings::maxDownloadSpeedSet, this, [this] { applySpeedLimit(); });
}

DownloadManager::~DownloadManager() = default;

void DownloadManager::followQuestions()
{
    connect(&m_questions, &Questions::changed, this, &DownloadManager::changed);
    connect(&m_questions, &Questions::captchaSolved, this,
            [this](const PendingCaptcha& question, const auto& urls) { m_intake.addCaptchaLinks(question, urls); });
    connect(&m_questions, &Questions::captchaCancelled, this,
            [this](const PendingCaptcha& question) { m_intake.cancelCaptcha(question); });
    connect(
        &m_questions, &Questions::hostsChosen, this,
        [this](const PendingHostSelection& question, const auto& urls) { m_intake.addChosenLinks(question, urls); });
    connect(&m_questions, &Questions::hostsCancelled, this,
            [this](const PendingHostSelection& question) { m_additions.forget({question.containerID}); });
    connect(&m_questions, &Questions::extractionPasswordGiven, this,
            [this](const ItemId& id, const QString& password) { m_pipeline.extractWithPassword(id, password); });
    connect(&m_questions, &Questions::signedIn, this, &DownloadManager::signedIn);
    connect(&m_questions, &Questions::signInCancelled, this, &DownloadManager::signInCancelled);
}

void DownloadManager::followNetwork()
{
    connect(&m_platform.network, &NetworkState::changed, this, [this] {
        if (m_outages.networkChanged())
            Q_EMIT networkChanged();
    });
}

void DownloadManager::goOnThoughOffline()
{
    m_outages.goOnThoughOffline();
    Q_EMIT networkChanged();
}

void DownloadManager::restoreQueue()
{
    m_table.append(m_queueFile.restore(m_settings.paths()));
    QSet<QString> folders{m_settings.downloadFolderPath.value(),
                          m_settings.effectiveExtractionFolder().value_or(m_settings.downloadFolderPath.value())};
    for (const ItemPtr& item : m_table.items())
        if (item->localPath())
            folders.insert(QFileInfo(*item->localPath()).path());
    m_pipeline.removeAbandonedRuns(folders.values());
}

void DownloadManager::saveQueue()
{
    m_queueFile.save(m_table, m_settings.paths());
}

void DownloadManager::shutDown()
{
    m_removed.finish();
    m_session.closeFiles();
    saveQueue();
    m_platform.fileWriter.flush();
}

void DownloadManager::applySpeedLimit()
{
    constexpr qint64 unit = 1024;
    const qint64 cap = m_settings.maxDownloadSpeedKBps.value();
    m_session.setLimit(cap > 0 && cap < std::numeric_limits<qint64>::max() / unit ? cap * unit : 0);
}

QCoro::Task<PremiumAccountInfo> DownloadManager::checkAccount(HostAccount account, std::stop_token stop) const
{
    const HostResolver* const resolver = m_resolvers.hostResolver(account.host);
    if (!resolver)
        throw ResolverError::unsupportedHost();
    co_return co_await resolver->checkAccount(account, stop);
}

void DownloadManager::addURLs(const std::vector<Link>& urls, const std::optional<QString>& containerPassword)
{
    m_intake.addURLs(urls, containerPassword);
}

void DownloadManager::addDirectURLs(const std::vector<Link>& urls)
{
    m_intake.addDirectURLs(urls);
}

void DownloadManager::processQueue()
{
    m_passes.run();
}

std::vector<DownloadGroup> DownloadManager::visibleGroups() const
{
    return vormel::visibleGroups(m_table, m_settings.downloadRevFiles.value());
}

std::optional<DownloadGroup> DownloadManager::visibleGroupOf(const DownloadItem& item) const
{
    const ItemPtr known = m_table.find(item.id());
    return known ? vormel::visibleGroupOf(known, m_table, m_settings.downloadRevFiles.value()) : std::nullopt;
}

void DownloadManager::renameGroup(const QString& id, const QString& name)
{
    m_groupNames.renameGroup(id, name);
    Q_EMIT groupRenamed(id);
}

bool DownloadManager::hasPendingRevFiles(const std::vector<ItemPtr>& items) const
{
    return m_revFiles.hasPendingRevFiles(items);
}

bool DownloadManager::areRevFilesComing(const std::vector<ItemPtr>& items) const
{
    return m_revFiles.areRevFilesComing(items);
}

void DownloadManager::later(std::function<void()> action)
{
    QMetaObject::invokeMethod(this, std::move(action), Qt::QueuedConnection);
}

void DownloadManager::tableGrew(qsizetype first, qsizetype count)
{
    Q_EMIT itemsInserted(first, count);
}

void DownloadManager::tableWillRemove(DownloadItem& item)
{
    m_waitingArchives.willBeRemoved(item);
}

void DownloadManager::tableShrank(const QSet<ItemId>& ids)
{
    m_queueFile.noteRemoval(ids);
    m_intake.forget(ids);
    for (const ItemId& id : ids)
        m_hosts.left(id);
    m_additions.forget(ids);
    Q_EMIT itemsRemoved(ids);
    m_questions.forget(ids);
}

void DownloadManager::tableFilledUp(const QSet<ItemId>& ids)
{
    Q_EMIT itemsPutBack(ids);
    later([this] { m_prefetch.prefetchFilenames(); });
}

void DownloadManager::tableReordered()
{
    Q_EMIT itemsReordered();
}

void DownloadManager::tableItemChanged(DownloadItem& item, ItemField field)
{
    m_queueFile.noteChange(item, field);
    Q_EMIT itemChanged(item.id(), field);
    // Another transfer may have written under the name that is free now, or the item itself may have waited for one.
    if (field == ItemField::filename)
        m_passes.runLater();
    if (field == ItemField::status)
        statusChanged(item);
}

void DownloadManager::statusChanged(DownloadItem& item)
{
    if (item.status() != DownloadStatus::queued) {
        m_tries.endWait(item.id());
        m_questions.forgetLogin(item.id());
    }
    if (!isWanted(item))
        m_hosts.left(item.id());
    if (item.status() != DownloadStatus::expanding)
        m_intake.stopReading(item.id());
    if (item.status() == DownloadStatus::failed)
        m_waitingArchives.failed(item);
    if (item.status() == DownloadStatus::completed)
        m_completion.forget({item.id()});
    else
        m_verification.fileIsGone(item.id());
}

void DownloadManager::tableSlotFreed(DownloadItem& item)
{
    m_waitingArchives.offItsWay(item);
}

void DownloadManager::signedIn(const QSet<ItemId>& waited)
{
    for (const ItemId& id : waited) {
        if (const ItemPtr item = m_table.find(id))
            item->setWait({});
    }
    processQueue();
}

void DownloadManager::signInCancelled(const QSet<ItemId>& waiting)
{
    for (const ItemId& id : waiting) {
        DownloadItem& item = *m_table.find(id);
        item.setStatus(DownloadStatus::failure(ResolverError::authenticationFailed().errorDescription()));
        m_recovery.scheduleRecoveryCheck(item);
    }
}

} // namespace vormel
