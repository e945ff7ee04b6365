#include "engine/tries/Tries.h"

#include "engine/recovery/NetworkRecovery.h"
#include "engine/tries/AskedHost.h"
#include "engine/tries/HostRests.h"
#include "engine/tries/Offline.h"

#include <algorithm>

namespace vormel {

Tries::Tries(const Ports& ports)
    : m_ports(ports)
    , m_next(ports.clock, [this](const ItemId& id) {
        showWait(id);
        m_ports.queue.processQueue();
    })
{}

bool Tries::tryLater(DownloadItem& item, std::optional<std::chrono::seconds> retryAfter)
{
    const std::optional<std::chrono::seconds> delay = m_budget.spend(item.id());
    if (!delay)
        return false;
    const bool isAskedFor = retryAfter && *retryAfter > *delay;
    m_next.wait(item.id(), isAskedFor ? *retryAfter : *delay, isAskedFor ? ItemWait::serverRest : ItemWait::nextTry);
    item.setStatus(DownloadStatus::queued);
    showWait(item.id());
    return true;
}

bool Tries::tryLaterAsHostIsAway(DownloadItem& item)
{
    if (awaitNetwork(item)) {
        m_ports.queue.later([this] { m_ports.queue.processQueue(); });
        return true;
    }
    const QString host = hostKey(lastAddress(item));
    const std::optional<std::chrono::seconds> delay = m_budget.spend(item.id());
    if (delay) {
        m_next.wait(item.id(), *delay);
        m_ports.hosts.failed(host, item.id(), *delay);
        item.setStatus(DownloadStatus::queued);
        showWait(item.id());
    } else {
        m_ports.hosts.failedForGood(host, item.id());
    }
    showWaits(m_ports.hosts.failedItems(host));
    // Its slot belongs to other hosts now.
    m_ports.queue.later([this] { m_ports.queue.processQueue(); });
    return delay.has_value();
}

bool Tries::awaitNetwork(DownloadItem& item)
{
    m_recent.note(item.id(), m_ports.clock.steadyNow());
    if (!m_ports.offline.holdsBack(lastAddress(item)))
        return false;
    item.setStatus(DownloadStatus::queued);
    return true;
}

void Tries::hostAnswered(const DownloadItem& item)
{
    m_recent.forget(item.id());
    if (m_ports.hosts.isEmpty())
        return;
    const QString host = hostKey(lastAddress(item));
    if (!m_ports.hosts.due(host))
        return;
    showWaits(m_ports.hosts.end(host));
    // Whoever tells of the answer may be about to give a slot back.
    m_ports.queue.later([this] { m_ports.queue.processQueue(); });
}

void Tries::pageWasAway(const DownloadItem& item)
{
    m_ports.hosts.pageFailed(hostKey(item.originalURL()), item.id());
}

void Tries::pageAnswered(const DownloadItem& item)
{
    const QString page = hostKey(item.originalURL());
    if (!m_ports.hosts.behind(page))
        showWaits(m_ports.hosts.end(page));
}

void Tries::goAhead(const DownloadItem& item)
{
    if (m_ports.hosts.isEmpty())
        return;
    const QString host = hostKey(lastAddress(item));
    if (const std::optional<QString> behind = m_ports.hosts.behind(host))
        showWaits(m_ports.hosts.end(*behind));
    showWaits(m_ports.hosts.end(host));
}

void Tries::goAheadWithAll()
{
    networkCame();
    for (const ItemId& id : m_next.waiting(ItemWait::serverRest))
        endWait(id);
}

void Tries::forget(const ItemId& id)
{
    m_budget.restore(id);
    m_recent.forget(id);
    endWait(id);
}

void Tries::endWait(const ItemId& id)
{
    m_next.forget(id);
    showWait(id);
}

void Tries::networkWent()
{
    for (const ItemId& id : m_recent.take(m_ports.clock.steadyNow()))
        giveBack(id);
    networkCame();
}

void Tries::giveBack(const ItemId& id)
{
    const ItemPtr item = m_ports.table.find(id);
    if (!item || isOnThisMachine(lastAddress(*item)))
        return;
    m_budget.giveBack(id);
    if (item->status() != DownloadStatus::failed)
        return;
    m_ports.recovery.cancelCountdown(*item);
    item->setStatus(DownloadStatus::queued);
}

void Tries::networkCame()
{
    showWaits(m_ports.hosts.endAll());
    for (const ItemId& id : m_next.waiting(ItemWait::nextTry))
        endWait(id);
}

void Tries::showWaits(const QSet<ItemId>& ids)
{
    for (const ItemId& id : ids)
        showWait(id);
}

/// The countdowns alone are shown here; what else an item waits for is told by whoever holds it back.
void Tries::showWait(const ItemId& id)
{
    const ItemPtr item = m_ports.table.find(id);
    if (!item || item->status() != DownloadStatus::queued)
        return;
    ItemWait wait = m_next.waitOf(id);
    const QString host = m_ports.hosts.isEmpty() ? QString() : hostKey(lastAddress(*item));
    const std::optional<SteadyTime> due = host.isEmpty() ? std::nullopt : m_ports.hosts.due(host);
    const bool isHeldLonger = due && *due > std::max(wait.due, m_ports.clock.steadyNow());
    if (isHeldLonger && m_ports.hosts.failedItems(host).contains(id))
        wait = {ItemWait::nextTry, *due, {}};
    const ItemWait::Kind shown = item->wait().kind;
    const bool isCountdown = shown == ItemWait::nextTry || shown == ItemWait::serverRest;
    if (wait.kind != ItemWait::none || isCountdown)
        item->setWait(std::move(wait));
}

} // namespace vormel
