#include "engine/schedule/QueuePasses.h"

#include "engine/completion/TransferCompletion.h"
#include "engine/questions/Questions.h"
#include "engine/queue/QueueTurn.h"
#include "engine/recovery/RevFiles.h"
#include "engine/schedule/DownloadStarter.h"
#include "engine/transfer/TransferSession.h"
#include "model/AppSettings.h"
#include "model/DownloadPaths.h"
#include "platform/async/Spawn.h"

namespace vormel {

QueuePasses::QueuePasses(const Ports& ports)
    : m_ports(ports)
{}

void QueuePasses::run()
{
    const qint64 limit = m_ports.settings.maxConcurrentDownloads.value();
    for (const ItemPtr& item : chooseStarts(m_ports.table, limit, m_startsUnderWay.size(), *this)) {
        m_startsUnderWay.insert(item->id());
        startLater(item, DownloadStatus::queued);
    }
}

void QueuePasses::runLater()
{
    if (std::exchange(m_isDue, true))
        return;
    m_ports.queue.later([this] {
        m_isDue = false;
        run();
    });
}

void QueuePasses::startAhead(const std::vector<ItemPtr>& items)
{
    const qint64 limit = m_ports.settings.maxConcurrentDownloads.value();
    for (const ItemPtr& item : chooseStartsAhead(items, m_ports.table, limit, m_startsUnderWay.size(), *this)) {
        item->setStatus(DownloadStatus::resolving);
        startLater(item, DownloadStatus::resolving);
    }
}

void QueuePasses::startLater(const ItemPtr& item, DownloadStatus::Kind expected)
{
    m_ports.queue.later([this, item, expected] {
        m_startsUnderWay.remove(item->id());
        // A command may have come between the choice and this turn; the slot then goes to another item.
        if (m_ports.table.find(item->id()) == item && item->status() == expected)
            spawn(m_ports.starter.startDownload(item));
        else
            run();
    });
}

bool QueuePasses::isHeldBack(const DownloadItem& item) const
{
    if (m_startsUnderWay.contains(item.id()) || m_ports.questions.isLoginAwaited(item.id()) ||
        m_ports.completion.isWaiting(item.id()))
        return true;
    const DownloadPaths paths = m_ports.settings.paths();
    return m_ports.session.isFetching(paths.finalFile(item.filename()));
}

bool QueuePasses::mayFetchRev(const DownloadItem& item) const
{
    return m_ports.revFiles.mayFetch(item);
}

} // namespace vormel
