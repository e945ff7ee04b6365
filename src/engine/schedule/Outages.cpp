#include "engine/schedule/Outages.h"

#include "engine/schedule/DownloadStarter.h"
#include "engine/transfer/TransferSession.h"
#include "engine/tries/AskedHost.h"
#include "engine/tries/Offline.h"
#include "engine/tries/Tries.h"
#include "platform/http/HttpClient.h"

#include <utility>

namespace vormel {

namespace {

/// A connection that outlived the outage moves something within this time.
constexpr std::chrono::seconds patience(5);

} // namespace

Outages::Outages(const Ports& ports)
    : m_ports(ports)
    , m_wasOffline(ports.offline.isOffline())
{}

bool Outages::networkChanged()
{
    m_ports.offline.believe();
    const bool isOffline = m_ports.offline.isOffline();
    if (std::exchange(m_wasOffline, isOffline) == isOffline)
        return false;
    if (isOffline) {
        m_ports.tries.networkWent();
        m_ports.queue.processQueue(); // what lies on this machine may go on
        return true;
    }
    m_ports.tries.networkCame();
    renewConnections();
    m_ports.queue.processQueue();
    return true;
}

void Outages::goOnThoughOffline()
{
    m_ports.offline.doubt();
    m_wasOffline = false;
    m_ports.tries.networkCame();
    m_ports.queue.processQueue();
}

void Outages::machineWokeUp()
{
    m_ports.tries.goAheadWithAll();
    renewConnections();
    m_ports.queue.processQueue();
}

bool Outages::isAnythingHeldBack() const
{
    if (!m_ports.offline.isOffline())
        return false;
    const std::span<const ItemTable::Row> rows = m_ports.table.rows();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const DownloadStatus::Kind status = rows[i].status;
        // A queued recovery volume may never be fetched.
        const bool isWanted = (status == DownloadStatus::queued && !rows[i].isRev) ||
                              status == DownloadStatus::resolving || status == DownloadStatus::downloading;
        if (isWanted && m_ports.offline.holdsBack(lastAddress(*m_ports.table.items()[i])))
            return true;
    }
    return false;
}

/// A transfer shows soon whether its connection has outlived the outage. What is still looking for its address would
/// fail for good if it has not, and loses little by a new start.
void Outages::renewConnections()
{
    m_ports.http.connectAnew();
    m_doubtful.clear();
    const std::span<const ItemTable::Row> rows = m_ports.table.rows();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        DownloadItem& item = *m_ports.table.items()[i];
        const bool isOnItsWay =
            rows[i].status == DownloadStatus::resolving || rows[i].status == DownloadStatus::downloading;
        if (!isOnItsWay || isOnThisMachine(lastAddress(item)))
            continue;
        if (rows[i].status == DownloadStatus::resolving)
            putBack(item);
        else
            m_doubtful.push_back({item.id(), m_ports.session.runOf(item.id()), item.bytesReceived()});
    }
    m_look = m_ports.clock.after(patience, [this] { beginAnewWhatHangs(); });
}

void Outages::beginAnewWhatHangs()
{
    for (const Doubtful& then : std::exchange(m_doubtful, {})) {
        const ItemPtr item = m_ports.table.find(then.id);
        const bool isSameRun = item && then.run != 0 && m_ports.session.runOf(then.id) == then.run;
        if (isSameRun && item->bytesReceived() == then.bytes)
            putBack(*item);
    }
    m_ports.queue.processQueue();
}

void Outages::putBack(DownloadItem& item)
{
    m_ports.session.drop(item.id());
    m_ports.starter.abandon(item.id());
    item.setSpeedBytesPerSec(0);
    item.setStatus(DownloadStatus::queued);
}

} // namespace vormel
