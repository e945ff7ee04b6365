#include "engine/commands/QueueCommands.h"

#include "engine/completion/TransferCompletion.h"
#include "engine/schedule/DownloadStarter.h"
#include "engine/transfer/TransferSession.h"

#include <QFile>

namespace vormel {

QueueCommands::QueueCommands(ItemTable& table, TransferSession& session, DownloadStarter& starter,
                             TransferCompletion& completion, Queue& queue)
    : m_table(table)
    , m_session(session)
    , m_starter(starter)
    , m_completion(completion)
    , m_queue(queue)
{}

void QueueCommands::startAll()
{
    for (const ItemPtr& item : m_table.items()) {
        if (item->status() == DownloadStatus::paused)
            item->setStatus(DownloadStatus::queued);
    }
    m_queue.processQueue();
}

void QueueCommands::pauseAll()
{
    for (const ItemPtr& item : m_table.items()) {
        if (item->status() == DownloadStatus::queued)
            item->setStatus(DownloadStatus::paused);
        else if (item->status() == DownloadStatus::downloading)
            interruptItem(*item, DownloadStatus::paused);
    }
}

void QueueCommands::clearCompleted()
{
    QSet<ItemId> completed;
    for (const ItemPtr& item : m_table.items()) {
        if (item->status() == DownloadStatus::completed)
            completed.insert(item->id());
    }
    m_completion.forget(completed);
    m_table.remove(completed);
    m_queue.saveQueue();
}

void QueueCommands::removeItems(const QSet<ItemId>& ids)
{
    for (const ItemId& id : ids) {
        if (const ItemPtr item = m_table.find(id))
            discardTransfer(*item);
    }
    m_table.remove(ids);
    m_queue.processQueue();
    m_queue.saveQueue();
}

void QueueCommands::interruptItem(DownloadItem& item, const DownloadStatus& status)
{
    m_session.drop(item.id());
    m_starter.abandon(item.id());
    item.setStatus(status);
    item.setSpeedBytesPerSec(0);
}

void QueueCommands::discardTransfer(const DownloadItem& item)
{
    const std::optional<QString> partPath = m_session.partFileURL(item.id());
    m_session.drop(item.id());
    m_starter.abandon(item.id());
    m_completion.forget({item.id()});
    if (partPath)
        QFile::remove(*partPath);
}

} // namespace vormel
