#include "engine/commands/RemovedItems.h"

#include "archive/pipeline/PostDownload.h"
#include "engine/commands/FormerPlaces.h"
#include "engine/commands/ItemChoices.h"
#include "engine/completion/FinishedFile.h"
#include "engine/completion/TransferCompletion.h"
#include "engine/intake/KnownLinks.h"
#include "engine/intake/LinkIntake.h"
#include "engine/questions/Questions.h"
#include "engine/queue/ItemFiles.h"
#include "engine/recovery/NetworkRecovery.h"
#include "engine/recovery/WaitingArchives.h"
#include "engine/schedule/DownloadStarter.h"
#include "engine/transfer/ItemPart.h"
#include "engine/transfer/TransferSession.h"
#include "model/SetName.h"
#include "text/FileName.h"

#include <algorithm>
#include <utility>

namespace vormel {

namespace {

constexpr std::chrono::seconds timeToThink{10};

/// Nothing is attached to the item any more: what it was doing waits to be taken up again.
void comeToRest(DownloadItem& item)
{
    if (item.status() == DownloadStatus::resolving || item.status() == DownloadStatus::downloading)
        item.setStatus(DownloadStatus::queued);
    // Whoever held it back knows it no more, and says so anew.
    item.setWait({});
    item.setSpeedBytesPerSec(0);
}

bool isUnpacked(const DownloadItem& item)
{
    return item.extractionStatus() == ExtractionStatus::extracting ||
           item.extractionStatus() == ExtractionStatus::repairing;
}

} // namespace

RemovedItems::RemovedItems(const Ports& ports)
    : m_ports(ports)
{}

RemovedItems::~RemovedItems() = default;

void RemovedItems::remove(const QSet<ItemId>& ids)
{
    if (!take(ids))
        return;
    m_ports.queue.processQueue();
    m_ports.queue.saveQueue();
}

void RemovedItems::removeGroup(const QString& id)
{
    remove(membersOf(m_ports.table, id));
}

void RemovedItems::clearCompleted()
{
    // What is completed made way long ago: nothing starts because of it.
    if (take(completedItems(m_ports.table)))
        m_ports.queue.saveQueue();
}

void RemovedItems::clearExtracted()
{
    remove(extractedItems(m_ports.table));
}

QSet<ItemId> RemovedItems::failed() const
{
    return failedItems(m_ports.table);
}

QSet<ItemId> RemovedItems::unfinished() const
{
    return unfinishedItems(m_ports.table);
}

QSet<ItemId> RemovedItems::all() const
{
    return allItems(m_ports.table);
}

QSet<ItemId> RemovedItems::ids() const
{
    QSet<ItemId> all;
    for (const Removed& removed : m_removed)
        all.insert(removed.item->id());
    return all;
}

bool RemovedItems::take(const QSet<ItemId>& ids)
{
    std::vector<Removed> taken;
    noteUnfinishedSets(ids);
    for (const ItemId& id : ids) {
        if (const ItemPtr item = m_ports.table.find(id))
            taken.push_back(detach(item));
    }
    if (taken.empty())
        return false;
    m_wholeOrder =
        m_removed.empty() ? m_ports.table.items() : orderWithMissing(m_wholeOrder, m_ports.table, this->ids());
    m_ports.table.remove(ids, ItemTable::Departure::forNow);
    for (Removed& removed : taken) {
        comeToRest(*removed.item); // unseen by anybody
        m_removed.push_back(std::move(removed));
    }
    m_end = m_ports.clock.after(timeToThink, [this] { finish(); });
    Q_EMIT changed();
    return true;
}

/// What makes such a set whole while rows of it are away does not find all of it, and nobody would look at it again.
void RemovedItems::noteUnfinishedSets(const QSet<ItemId>& ids)
{
    QSet<QString> seen;
    for (const ItemId& id : ids) {
        const ItemPtr item = m_ports.table.find(id);
        if (!item || !isSetMember(item->filename()))
            continue;
        const QString base = setBaseName(item->filename());
        if (seen.contains(base))
            continue;
        seen.insert(base);
        if (m_ports.waitingArchives.isWaiting(base))
            m_unfinishedSets.insert(base);
    }
}

RemovedItems::Removed RemovedItems::detach(const ItemPtr& item)
{
    Removed removed{item,
                    m_ports.session.partFileURL(item->id()),
                    m_ports.intake.passwordOf(item->id()),
                    item->recoveryCountdown(),
                    m_ports.waitingArchives.setAwaiting(*item),
                    isUnpacked(*item) || m_ports.questions.isPasswordAskedFor(item->id())};
    m_ports.recovery.cancelCountdown(*item);
    m_ports.session.drop(item->id());
    m_ports.starter.abandon(item->id());
    m_ports.completion.forget({item->id()});
    return removed;
}

bool RemovedItems::mayVolumeComeBack(const QString& base) const
{
    return std::any_of(m_removed.begin(), m_removed.end(),
                       [&base](const Removed& removed) { return removed.awaitingSet == base; });
}

bool RemovedItems::isTheirFile(const QString& path) const
{
    const QString name = lastComponent(path);
    return std::any_of(m_removed.begin(), m_removed.end(), [&](const Removed& removed) {
        const std::optional<QString>& theirs = removed.item->localPath();
        return theirs && lastComponent(*theirs) == name && isSameFile(*theirs, path);
    });
}

QSet<QString> RemovedItems::files(const DownloadPaths& paths) const
{
    std::vector<ItemPtr> items;
    for (const Removed& removed : m_removed)
        items.push_back(removed.item);
    return filesOfItems(items, paths, {});
}

void RemovedItems::putBack()
{
    m_end.cancel();
    std::vector<Removed> returning = std::exchange(m_removed, {});
    const std::vector<ItemPtr> order = std::exchange(m_wholeOrder, {});
    // Where a link was removed, added and removed once more, its newest item comes back.
    std::reverse(returning.begin(), returning.end());
    KnownLinks known(m_ports.table.items());
    std::erase_if(returning, [&known](const Removed& removed) { return !known.insert(removed.item->originalURL()); });
    QSet<ItemId> missing;
    for (const Removed& removed : returning)
        missing.insert(removed.item->id());
    m_ports.table.insert(formerPlaces(order, m_ports.table, missing));
    for (const Removed& removed : returning)
        resume(removed);
    for (const QString& base : std::exchange(m_unfinishedSets, {}))
        m_ports.waitingArchives.lookLaterAt(base);
    m_ports.queue.processQueue();
    m_ports.queue.saveQueue();
    Q_EMIT changed();
}

void RemovedItems::resume(const Removed& removed)
{
    DownloadItem& item = *removed.item;
    m_ports.intake.takeUpContainer(removed.item, removed.containerPassword);
    if (removed.recoveryCountdown)
        m_ports.recovery.startRecoveryCountdown(item, *removed.recoveryCountdown);
    if (item.status() == DownloadStatus::failed)
        m_ports.recovery.scheduleRecoveryCheck(item);
    // A run that waited for its turn did not begin without its row; one that goes on needs nothing.
    const bool isRunOver = removed.wasUnpacked && !m_ports.postDownload.isWorkingOn(item.id());
    if (isRunOver && item.extractionStatus() == ExtractionStatus::idle)
        m_ports.postDownload.autoExtractAfterDownload(item.id());
}

void RemovedItems::finish()
{
    if (m_removed.empty())
        return;
    m_end.cancel();
    m_wholeOrder.clear();
    m_unfinishedSets.clear();
    const std::vector<Removed> removed = std::exchange(m_removed, {});
    deleteParts(removed);
    for (const Removed& one : removed) {
        if (one.awaitingSet)
            m_ports.waitingArchives.lookLaterAt(*one.awaitingSet);
    }
    Q_EMIT changed();
}

void RemovedItems::deleteParts(const std::vector<Removed>& removed) const
{
    if (std::none_of(removed.begin(), removed.end(), [](const Removed& one) { return one.partPath.has_value(); }))
        return;
    const KnownLinks known(m_ports.table.items());
    QSet<QString> taken = m_ports.session.partFiles();
    for (const ItemPtr& item : m_ports.table.items()) {
        if (item->partPlace())
            taken.insert(item->partPlace()->path);
    }
    for (const Removed& one : removed) {
        if (one.partPath && !taken.contains(*one.partPath) && !known.contains(one.item->originalURL()))
            removePart(*one.item, *one.partPath);
    }
}

} // namespace vormel
