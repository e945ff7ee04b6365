#include "engine/schedule/QueuePasses.h"

#include "engine/questions/Questions.h"
#include "engine/queue/QueueTurn.h"
#include "engine/recovery/RevFiles.h"
#include "engine/schedule/DownloadStarter.h"
#include "engine/schedule/SameNames.h"
#include "engine/tries/AskedHost.h"
#include "engine/tries/HostRests.h"
#include "engine/tries/Offline.h"
#include "engine/tries/Tries.h"
#include "model/AppSettings.h"
#include "model/SetName.h"
#include "platform/async/Spawn.h"

namespace vormel {

QueuePasses::QueuePasses(const Ports& ports)
    : m_ports(ports)
{}

void QueuePasses::run()
{
    m_ports.sameNames.review();
    chooseProbes();
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
    m_ports.sameNames.review();
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

bool QueuePasses::isHeldBack(DownloadItem& item)
{
    return m_startsUnderWay.contains(item.id()) || isHostResting(item) || isHeldBackItself(item);
}

bool QueuePasses::isHeldBackItself(DownloadItem& item)
{
    return m_ports.questions.isLoginAwaited(item.id()) || m_ports.tries.isWaiting(item.id()) ||
           m_ports.offline.holdsBack(lastAddress(item)) || m_ports.sameNames.holdBack(item);
}

bool QueuePasses::isHostResting(const DownloadItem& item) const
{
    if (m_ports.hosts.isEmpty())
        return false;
    const auto holdsBack = [&](const Link& address) { return m_ports.hosts.holdsBack(hostKey(address), item.id()); };
    if (hasFreshAddress(item, m_ports.clock.wallNow()))
        return holdsBack(*item.resolvedURL());
    // Its page will most likely lead to where it led before, which this item may be the one to ask.
    return holdsBack(item.originalURL()) && (!item.resolvedURL() || holdsBack(*item.resolvedURL()));
}

bool QueuePasses::mayAsk(DownloadItem& item)
{
    return (!isRevName(item.filename()) || mayFetchRev(item)) && !isHeldBackItself(item);
}

QVarLengthArray<QString, 2> QueuePasses::hostsFor(const DownloadItem& item) const
{
    QVarLengthArray<QString, 2> hosts{hostKey(lastAddress(item))};
    if (item.resolvedURL() && !hasFreshAddress(item, m_ports.clock.wallNow()))
        hosts.append(hostKey(item.originalURL()));
    return hosts;
}

void QueuePasses::handOverProbes()
{
    for (const ItemId& id : m_ports.hosts.dueProbes()) {
        const ItemPtr probe = m_ports.table.find(id);
        if (!probe || (probe->status() == DownloadStatus::queued && !mayAsk(*probe)))
            m_ports.hosts.left(id);
    }
}

void QueuePasses::chooseProbes()
{
    handOverProbes();
    const QSet<QString> resting = m_ports.hosts.withoutProbe();
    if (resting.isEmpty())
        return;
    QHash<QString, ItemPtr> probes;
    const std::span<const ItemTable::Row> rows = m_ports.table.rows();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].status != DownloadStatus::queued)
            continue;
        const ItemPtr& item = m_ports.table.items()[i];
        for (const QString& host : hostsFor(*item)) {
            if (!resting.contains(host))
                continue;
            const ItemPtr best = probes.value(host);
            const bool isBetter = !best || (m_ports.hosts.isAwayForLong(host) &&
                                            m_ports.tries.spent(item->id()) < m_ports.tries.spent(best->id()));
            if (isBetter && mayAsk(*item))
                probes.insert(host, item);
        }
    }
    for (const QString& host : resting) {
        if (const ItemPtr probe = probes.value(host))
            m_ports.hosts.setProbe(host, probe->id());
        else // nobody wants anything of it any more
            m_ports.hosts.end(host);
    }
}

bool QueuePasses::mayFetchRev(const DownloadItem& item) const
{
    return m_ports.revFiles.mayFetch(item);
}

} // namespace vormel
