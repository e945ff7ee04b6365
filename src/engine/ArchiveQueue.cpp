#include "engine/ArchiveQueue.h"

#include "engine/commands/QueueCommands.h"
#include "engine/commands/RemovedItems.h"
#include "engine/groups/GroupNames.h"
#include "engine/questions/Questions.h"
#include "engine/queue/ItemFiles.h"
#include "engine/queue/QueueTurn.h"
#include "engine/recovery/RevFiles.h"
#include "engine/transfer/ItemPart.h"
#include "model/AppSettings.h"
#include "model/DownloadPaths.h"

namespace vormel {

ArchiveQueue::ArchiveQueue(const Ports& ports)
    : m_ports(ports)
{}

const std::vector<ItemPtr>& ArchiveQueue::items() const
{
    return m_ports.table.items();
}

ItemPtr ArchiveQueue::item(const ItemId& id) const
{
    return m_ports.table.find(id);
}

std::size_t ArchiveQueue::placeOf(const ItemId& id) const
{
    return m_ports.table.find(id) ? m_ports.table.position(id) : std::numeric_limits<std::size_t>::max();
}

std::span<const ItemPtr> ArchiveQueue::itemsOfSet(const QString& base) const
{
    return m_ports.table.itemsOfSet(base);
}

bool ArchiveQueue::isRevComing(const DownloadItem& item) const
{
    return m_ports.revFiles.isComing(item);
}

bool ArchiveQueue::mayVolumeComeBack(const QString& base) const
{
    return m_ports.removed.mayVolumeComeBack(base);
}

QString ArchiveQueue::customGroupName(const QString& base) const
{
    return m_ports.groupNames.customName(base);
}

QSet<QString> ArchiveQueue::filesOfItems(const QSet<ItemId>& leftOut) const
{
    const DownloadPaths paths = m_ports.settings.paths();
    return vormel::filesOfItems(m_ports.table.items(), paths, leftOut) | m_ports.removed.files(paths);
}

bool ArchiveQueue::allowRevFiles(const QString& base)
{
    return m_ports.revFiles.allowRevFiles(base);
}

void ArchiveQueue::askExtractionPassword(PendingExtractionPassword question)
{
    if (m_ports.table.find(question.itemID))
        m_ports.questions.ask(std::move(question));
}

QStringList ArchiveQueue::dropRevItems(const QString& base)
{
    const DownloadPaths paths = m_ports.settings.paths();
    QSet<ItemId> ids;
    QStringList files;
    for (const ItemPtr& item : m_ports.revFiles.revItems(base)) {
        removePart(*item, paths.partFile(item->filename()));
        ids.insert(item->id());
        if (item->localPath())
            files << *item->localPath();
    }
    m_ports.revFiles.forget(ids);
    if (!ids.isEmpty())
        m_ports.commands.removeItems(ids);
    return files;
}

void ArchiveQueue::clearExtracted()
{
    m_ports.commands.clearExtracted();
}

void ArchiveQueue::saveQueue()
{
    m_ports.queue.saveQueue();
}

} // namespace vormel
