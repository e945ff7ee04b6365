#include "engine/completion/TransferReports.h"

#include "engine/completion/TransferCompletion.h"
#include "engine/queue/QueueTurn.h"
#include "model/AppSettings.h"
#include "model/DownloadPaths.h"

#include <algorithm>

namespace vormel {

TransferReports::TransferReports(Ports ports)
    : m_ports(std::move(ports))
{}

void TransferReports::transferAnswered(const ItemId& id, const HeadFacts& facts)
{
    const ItemPtr item = m_ports.table.find(id);
    m_ports.completion.noteAnswer(*item);
    if (facts.isRestart) {
        item->setBytesReceived(0);
        item->setProgress(0);
    }
    if (facts.total >= 0)
        item->setTotalBytes(facts.total);
    if (facts.name && item->bytesReceived() == 0 && *facts.name != item->filename()) {
        item->setFilename(*facts.name);
        m_ports.session.retarget(id, m_ports.settings.paths().finalFile(*facts.name));
    }
    // Size and name are what a start after a kill needs to know to go on from the part file.
    m_ports.queue.saveQueue();
}

void TransferReports::transferTicked(const ItemId& id, qint64 bytes, double bytesPerSecond)
{
    const ItemPtr item = m_ports.table.find(id);
    item->setBytesReceived(item->bytesReceived() + bytes);
    if (item->totalBytes() >= 1) {
        const double fraction = static_cast<double>(item->bytesReceived()) / static_cast<double>(item->totalBytes());
        item->setProgress(std::min(fraction, 1.0));
    }
    item->setSpeedBytesPerSec(bytesPerSecond);
    m_totalSpeedBytesPerSec = m_ports.table.totalSpeed();
    m_ports.completion.noteProgress(*item);
    m_ports.speedChanged();
}

void TransferReports::partIsGone(const ItemId& id)
{
    if (const ItemPtr item = m_ports.table.find(id))
        item->setPartPlace(std::nullopt);
}

void TransferReports::transferEnded(const ItemId& id, TransferEnd end)
{
    m_ports.completion.finishTransfer(*m_ports.table.find(id), end);
}

} // namespace vormel
