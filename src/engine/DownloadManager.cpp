#include "engine/DownloadManager.h"

#include "engine/groups/VisibleGroups.h"
#include "engine/queue/ItemFiles.h"
#include "engine/transfer/ItemPart.h"
#include "model/DownloadPaths.h"
#include "model/SetName.h"
#include "platform/async/Spawn.h"
#include "platform/storage/FileWriter.h"
#include "resolvers/ResolverError.h"

#include <QFileInfo>

#include <algorithm>

namespace vormel {

DownloadManager::DownloadManager(const Platform& platform, const Collaborators& collaborators)
    : m_resolvers(collaborators.resolvers)
    , m_platform(platform)
    , m_settings(platform.defaults, platform.folders.downloads)
    , m_table(*this)
    , m_accounts(platform.defaults)
    , m_queueFile(platform.folders.applicationSupport + QStringLiteral("/download_queue.json"), platform.fileWriter)
    , m_groupNames(platform.defaults)
    , m_revFiles(m_table, m_settings, *this)
    , m_recovery(m_table, m_settings, platform.clock, m_revFiles)
    , m_pipeline({m_settings, platform.clock, collaborators.extractor, platform.trash, *this})
    , m_waitingArchives(m_table, m_settings, m_revFiles, m_pipeline,
                        [this](std::function<void()> action) { later(std::move(action)); })
    , m_session(platform.http, platform.fileSync, platform.clock, *this)
    , m_completion(m_table, m_settings, platform.clock, platform.trash, m_pipeline, m_recovery, *this)
    , m_starter({m_table, m_settings, platform.clock, m_resolvers, m_session, m_completion, m_pipeline, m_recovery,
                 m_questions, m_accounts, *this})
    , m_prefetch(m_table, m_settings, m_resolvers, m_accounts, *this)
    , m_intake({m_table, m_settings, m_resolvers, m_completion, m_pipeline, m_questions, *this})
    , m_commands({m_table, m_settings, m_session, m_starter, m_completion, m_recovery, m_pipeline, m_intake,
                  platform.trash, *this})
    , m_verification(m_table, collaborators.extractor, m_commands, m_pipeline)
{
    applySpeedLimit();
    restoreQueue();
    prefetchFilenames();
    followQuestions();
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
    connect(&m_questions, &Questions::hostsChosen, this, &DownloadManager::addDirectURLs);
    connect(&m_questions, &Questions::extractionPasswordGiven, this,
            [this](const ItemId& id, const QString& password) { m_pipeline.extractWithPassword(id, password); });
    connect(&m_questions, &Questions::signedIn, this, &DownloadManager::processQueue);
    connect(&m_questions, &Questions::signInCancelled, this, &DownloadManager::signInCancelled);
}

void DownloadManager::restoreQueue()
{
    m_table.append(m_queueFile.restore(paths()));
    QSet<QString> folders{m_settings.downloadFolderPath.value(),
                          m_settings.effectiveExtractionFolder().value_or(m_settings.downloadFolderPath.value())};
    for (const ItemPtr& item : m_table.items())
        if (item->localPath())
            folders.insert(QFileInfo(*item->localPath()).path());
    m_pipeline.removeAbandonedRuns(folders.values());
}

void DownloadManager::saveQueue()
{
    m_queueFile.save(m_table, paths());
}

void DownloadManager::shutDown()
{
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
    const qint64 limit = m_settings.maxConcurrentDownloads.value();
    for (const ItemPtr& item : chooseStarts(m_table, limit, m_startsUnderWay.size(), *this)) {
        m_startsUnderWay.insert(item->id());
        later([this, item] { startChosen(item, DownloadStatus::queued); });
    }
}

void DownloadManager::processQueueLater()
{
    if (std::exchange(m_isPassDue, true))
        return;
    later([this] {
        m_isPassDue = false;
        processQueue();
    });
}

void DownloadManager::startAhead(const std::vector<ItemPtr>& items)
{
    const qint64 limit = m_settings.maxConcurrentDownloads.value();
    for (const ItemPtr& item : chooseStartsAhead(items, m_table, limit, m_startsUnderWay.size(), *this)) {
        item->setStatus(DownloadStatus::resolving);
        later([this, item] { startChosen(item, DownloadStatus::resolving); });
    }
}

void DownloadManager::startChosen(const ItemPtr& item, DownloadStatus::Kind expected)
{
    m_startsUnderWay.remove(item->id());
    // A command may have come between the choice and this turn; the slot then goes to another item.
    if (m_table.find(item->id()) == item && item->status() == expected)
        spawn(m_starter.startDownload(item));
    else
        processQueue();
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

void DownloadManager::prefetchFilenames()
{
    m_prefetch.prefetchFilenames();
}

void DownloadManager::dropDuplicates(const QSet<ItemId>& ids)
{
    m_table.remove(ids);
    saveQueue();
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
    Q_EMIT itemsRemoved(ids);
    m_questions.forget(ids);
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
    if (field == ItemField::Filename)
        processQueueLater();
    if (field == ItemField::Status)
        statusChanged(item);
}

void DownloadManager::statusChanged(DownloadItem& item)
{
    if (!(item.status() == DownloadStatus::queued)) {
        m_completion.endWait(item.id());
        m_questions.forgetLogin(item.id());
    }
    if (item.status() == DownloadStatus::failed)
        m_waitingArchives.failed(item);
    if (!(item.status() == DownloadStatus::completed))
        m_verification.fileIsGone(item.id());
}

void DownloadManager::tableSlotFreed(DownloadItem& item)
{
    m_waitingArchives.offItsWay(item);
}

bool DownloadManager::isHeldBack(const DownloadItem& item) const
{
    if (m_startsUnderWay.contains(item.id()) || m_questions.isLoginAwaited(item.id()) ||
        m_completion.isWaiting(item.id()))
        return true;
    return m_session.isFetching(paths().finalFile(item.filename()));
}

bool DownloadManager::mayFetchRev(const DownloadItem& item) const
{
    return m_revFiles.mayFetch(item);
}

bool DownloadManager::isRevHeldBack(const DownloadItem& item) const
{
    return isRevName(item.filename()) && !mayFetchRev(item);
}

void DownloadManager::transferAnswered(const ItemId& id, const HeadFacts& facts)
{
    const ItemPtr item = m_table.find(id);
    if (facts.isRestart) {
        item->setBytesReceived(0);
        item->setProgress(0);
    }
    if (facts.total >= 0)
        item->setTotalBytes(facts.total);
    if (facts.name && item->bytesReceived() == 0 && *facts.name != item->filename()) {
        item->setFilename(*facts.name);
        m_session.retarget(id, paths().finalFile(*facts.name));
    }
    // Size and name are what a start after a kill needs to know to go on from the part file.
    saveQueue();
}

void DownloadManager::transferTicked(const ItemId& id, qint64 bytes, double bytesPerSecond)
{
    const ItemPtr item = m_table.find(id);
    item->setBytesReceived(item->bytesReceived() + bytes);
    if (item->totalBytes() >= 1) {
        const double fraction = static_cast<double>(item->bytesReceived()) / static_cast<double>(item->totalBytes());
        item->setProgress(std::min(fraction, 1.0));
    }
    item->setSpeedBytesPerSec(bytesPerSecond);
    m_totalSpeedBytesPerSec = m_table.totalSpeed();
    m_completion.noteProgress(id);
    Q_EMIT totalSpeedChanged();
}

void DownloadManager::partIsGone(const ItemId& id)
{
    if (const ItemPtr item = m_table.find(id))
        item->setPartPlace(std::nullopt);
}

void DownloadManager::transferEnded(const ItemId& id, TransferEnd end)
{
    m_completion.finishTransfer(*m_table.find(id), end);
}

void DownloadManager::askExtractionPassword(PendingExtractionPassword question)
{
    if (m_table.find(question.itemID))
        m_questions.ask(std::move(question));
}

void DownloadManager::signInCancelled(const QSet<ItemId>& waiting)
{
    for (const ItemId& id : waiting) {
        DownloadItem& item = *m_table.find(id);
        item.setStatus(DownloadStatus::failure(ResolverError::authenticationFailed().errorDescription()));
        m_recovery.scheduleRecoveryCheck(item);
    }
}

std::span<const ItemPtr> DownloadManager::itemsOfSet(const QString& base) const
{
    return m_table.itemsOfSet(base);
}

QString DownloadManager::customGroupName(const QString& base) const
{
    return m_groupNames.customName(base);
}

std::size_t DownloadManager::placeOf(const ItemId& id) const
{
    return m_table.find(id) ? m_table.position(id) : std::numeric_limits<std::size_t>::max();
}

QSet<QString> DownloadManager::filesOfItems(const QSet<ItemId>& leftOut) const
{
    return vormel::filesOfItems(m_table.items(), paths(), leftOut);
}

QStringList DownloadManager::dropRevItems(const QString& base)
{
    QSet<ItemId> ids;
    QStringList files;
    for (const ItemPtr& item : m_revFiles.revItems(base)) {
        removePart(*item, paths().partFile(item->filename()));
        ids.insert(item->id());
        if (item->localPath())
            files << *item->localPath();
    }
    m_revFiles.forget(ids);
    if (!ids.isEmpty())
        m_commands.removeItems(ids);
    return files;
}

} // namespace vormel
