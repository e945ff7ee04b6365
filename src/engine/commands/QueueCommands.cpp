#include "engine/commands/QueueCommands.h"

#include "archive/pipeline/PostDownload.h"
#include "engine/commands/DiskState.h"
#include "engine/commands/GroupOrder.h"
#include "engine/commands/GroupVerification.h"
#include "engine/commands/ItemChoices.h"
#include "engine/commands/RemovedItems.h"
#include "engine/completion/FinishedFile.h"
#include "engine/completion/TransferCompletion.h"
#include "engine/groups/VisibleGroups.h"
#include "engine/intake/LinkIntake.h"
#include "engine/recovery/NetworkRecovery.h"
#include "engine/schedule/DownloadStarter.h"
#include "engine/schedule/QueuePasses.h"
#include "engine/transfer/ItemPart.h"
#include "engine/transfer/TransferSession.h"
#include "engine/tries/Tries.h"
#include "model/AppSettings.h"
#include "model/DownloadPaths.h"
#include "platform/storage/Trash.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace vormel {

namespace {

bool isOnItsWay(const DownloadItem& item)
{
    const DownloadStatus::Kind status = item.status().kind();
    return status == DownloadStatus::resolving || status == DownloadStatus::expanding ||
           status == DownloadStatus::downloading;
}

} // namespace

QueueCommands::QueueCommands(const Ports& ports)
    : m_ports(ports)
{}

void QueueCommands::startAll()
{
    m_ports.tries.goAheadWithAll();
    for (const ItemPtr& item : m_ports.table.items()) {
        if (item->status() == DownloadStatus::paused)
            item->setStatus(DownloadStatus::queued);
    }
    m_ports.queue.processQueue();
}

void QueueCommands::pauseAll()
{
    for (const ItemPtr& item : m_ports.table.items()) {
        if (item->status() == DownloadStatus::queued)
            item->setStatus(DownloadStatus::paused);
    }
    pauseItems(m_ports.table.items());
}

void QueueCommands::clearCompleted()
{
    const QSet<ItemId> completed = completedItems(m_ports.table);
    m_ports.completion.forget(completed);
    m_ports.table.remove(completed);
    m_ports.queue.saveQueue();
}

void QueueCommands::clearExtracted()
{
    removeItems(extractedItems(m_ports.table));
}

void QueueCommands::pauseItems(const Items& items)
{
    QSet<QString> names;
    for (const ItemPtr& item : items) {
        if (item->status() != DownloadStatus::downloading)
            continue;
        names.insert(item->filename());
        interruptItem(*item, DownloadStatus::paused);
    }
    // A pause starts nothing else, but who waited for the file of this name waited for no slot.
    Items waiting;
    std::copy_if(m_ports.table.items().begin(), m_ports.table.items().end(), std::back_inserter(waiting),
                 [&names](const ItemPtr& item) {
                     return item->status() == DownloadStatus::queued && names.contains(item->filename());
                 });
    m_ports.passes.startAhead(waiting);
}

void QueueCommands::resumeItem(DownloadItem& item)
{
    if (item.status() != DownloadStatus::paused)
        return;
    m_ports.tries.goAhead(item);
    item.setStatus(DownloadStatus::queued);
    m_ports.queue.processQueue();
}

void QueueCommands::startItems(const Items& items)
{
    for (const ItemPtr& item : items) {
        const DownloadStatus::Kind status = item->status().kind();
        if (status != DownloadStatus::queued && status != DownloadStatus::paused && status != DownloadStatus::stopped)
            continue;
        m_ports.completion.forget({item->id()});
        m_ports.tries.goAhead(*item);
        item->setStatus(DownloadStatus::queued);
    }
    m_ports.passes.startAhead(items);
    m_ports.queue.processQueue();
}

void QueueCommands::stopItems(const Items& items)
{
    for (const ItemPtr& item : items) {
        const DownloadStatus::Kind status = item->status().kind();
        if (status == DownloadStatus::queued || status == DownloadStatus::paused)
            item->setStatus(DownloadStatus::stopped);
        else if (status == DownloadStatus::resolving || status == DownloadStatus::downloading)
            interruptItem(*item, DownloadStatus::stopped);
    }
    m_ports.queue.processQueue();
    m_ports.queue.saveQueue();
}

void QueueCommands::requeue(DownloadItem& item)
{
    m_ports.completion.forget({item.id()});
    m_ports.tries.goAhead(item);
    item.setResolvedURL(std::nullopt);
    item.setProgress(0);
    item.setBytesReceived(0);
    item.setSpeedBytesPerSec(0);
    item.setStatus(DownloadStatus::queued);
}

void QueueCommands::retryItem(DownloadItem& item)
{
    if (m_ports.intake.readAgain(item))
        return;
    m_ports.recovery.cancelCountdown(item);
    interruptItem(item, DownloadStatus::queued);
    removePart(item, m_ports.settings.paths().partFile(item.filename()));
    item.setPartPlace(std::nullopt);
    requeue(item);
    m_ports.queue.processQueue();
}

// Containers may be read to their end while this goes on, and items come and go: the list is one of its own.
void QueueCommands::tryFailedAgain(Items items) // NOLINT(performance-unnecessary-value-param)
{
    for (const ItemPtr& item : items) {
        if (item->status() != DownloadStatus::failed || m_ports.intake.readAgain(*item))
            continue;
        m_ports.recovery.cancelCountdown(*item);
        m_ports.completion.forget({item->id()});
        m_ports.tries.goAhead(*item);
        item->setResolvedURL(std::nullopt);
        item->setStatus(DownloadStatus::queued);
    }
    m_ports.queue.processQueue();
    m_ports.queue.saveQueue();
}

void QueueCommands::redownloadItem(DownloadItem& item)
{
    if (m_ports.intake.readAgain(item))
        return;
    m_ports.postDownload.stopWorkOn(item.id());
    discardTransfer(item);
    const DownloadPaths paths = m_ports.settings.paths();
    const std::optional<QString> file = finishedFileOf(item, m_ports.table, paths);
    if (file && (file == item.localPath() || !isNamelessFile(item.filename())))
        giveUpFile(item, *file);
    item.setLocalPath(std::nullopt);
    item.setResolvedAt(std::nullopt);
    item.setExtractionStatus(ExtractionStatus::idle);
    item.setWantedAnew(true);
    requeue(item);
    m_ports.queue.processQueue();
    m_ports.queue.saveQueue();
}

bool QueueCommands::giveUpFile(const DownloadItem& item, const QString& path) const
{
    // A link may lead to a disk that comes back.
    const bool isPlain = !QFileInfo(path).isSymLink();
    const bool isOfAnother = isFileOfAnother(item, path, m_ports.table) || m_ports.removed.isTheirFile(path);
    if (!isPlain || isOfAnother || !mayBeFileOf(item, path))
        return false;
    // What only has the item's name may be somebody's own.
    return path == item.localPath() ? QFile::remove(path) : m_ports.trash.moveToTrash(path);
}

void QueueCommands::resyncItem(DownloadItem& item, const DiskState& disk)
{
    if (isOnItsWay(item) || isNamelessFile(item.filename()) || m_ports.intake.isFailedContainer(item))
        return;
    const std::optional<QString> file = disk.path(item);
    if (disk.isWhole(item))
        return completeWithFile(item, *file);
    if (file && !giveUpFile(item, *file))
        item.setWantedAnew(true);
    item.setLocalPath(std::nullopt);
    item.setResolvedAt(std::nullopt);
    requeue(item);
}

void QueueCommands::resyncItems(const Items& items)
{
    const DiskState disk(items, m_ports.table, m_ports.settings.paths());
    for (const ItemPtr& item : items)
        resyncItem(*item, disk);
    m_ports.queue.processQueue();
    const auto completed = std::find_if(
        items.begin(), items.end(), [](const ItemPtr& item) { return item->status() == DownloadStatus::completed; });
    if (m_ports.settings.autoExtract.value() && completed != items.end())
        m_ports.postDownload.autoExtractAfterDownload((*completed)->id());
    m_ports.queue.saveQueue();
}

void QueueCommands::verifyGroup(const Items& items)
{
    m_ports.verification.verifyGroup(items);
}

void QueueCommands::retryWithRevFiles(const Items& items)
{
    m_ports.recovery.retryWithRevFiles(items);
}

void QueueCommands::retryExtraction(const ItemId& id)
{
    m_ports.postDownload.retryExtraction(id);
}

void QueueCommands::stopExtraction(const ItemId& id)
{
    m_ports.postDownload.stopWorkOn(id);
}

void QueueCommands::removeItems(const QSet<ItemId>& ids)
{
    for (const ItemId& id : ids) {
        if (const ItemPtr item = m_ports.table.find(id))
            discardTransfer(*item);
    }
    m_ports.table.remove(ids);
    m_ports.queue.processQueue();
    m_ports.queue.saveQueue();
}

void QueueCommands::removeGroup(const QString& id)
{
    removeItems(membersOf(m_ports.table, id));
}

void QueueCommands::moveGroups(const std::set<qsizetype>& sources, qsizetype destination, const QStringList& groupIDs)
{
    const std::vector<DownloadGroup> groups =
        inDisplayOrder(visibleGroups(m_ports.table, m_ports.settings.downloadRevFiles.value()), groupIDs);
    m_ports.table.reorder(ranksAfterMove(groups, sources, destination));
    m_ports.queue.saveQueue();
}

void QueueCommands::interruptItem(DownloadItem& item, const DownloadStatus& status)
{
    m_ports.session.drop(item.id());
    m_ports.starter.abandon(item.id());
    item.setStatus(status);
    item.setSpeedBytesPerSec(0);
}

void QueueCommands::discardTransfer(DownloadItem& item)
{
    const std::optional<QString> partPath = m_ports.session.partFileURL(item.id());
    m_ports.recovery.cancelCountdown(item);
    m_ports.session.drop(item.id());
    m_ports.starter.abandon(item.id());
    m_ports.completion.forget({item.id()});
    if (partPath) {
        QFile::remove(*partPath);
        item.setPartPlace(std::nullopt);
    }
}

} // namespace vormel
