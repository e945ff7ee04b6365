#include "engine/transfer/TransferSession.h"

#include "platform/storage/CarefulMove.h"

#include <QDir>
#include <QFileInfo>

namespace vormel {

namespace {

/// A capped stream is cut finer, so that it flows instead of coming in gulps.
qsizetype blockSizeFor(qint64 limit)
{
    constexpr auto largest = qint64{256} * 1024;
    constexpr auto smallest = qint64{16} * 1024;
    constexpr qint64 blocksPerSecond = 32;
    return limit < 1 ? largest : std::clamp(limit / blocksPerSecond, smallest, largest);
}

HttpRequest requestFor(const Link& address, qint64 offset)
{
    HttpRequest request;
    request.url = address.toUrl();
    if (offset > 0)
        request.headers.push_back({"Range", "bytes=" + QByteArray::number(offset) + '-'});
    return request;
}

} // namespace

TransferSession::TransferSession(HttpClient& client, Clock& clock, Owner& owner)
    : m_client(client)
    , m_clock(clock)
    , m_owner(owner)
    , globalThrottle(clock.steadyNow())
{}

TransferSession::~TransferSession()
{
    activeTasks.clear();
}

int TransferSession::start(TransferOrder order)
{
    auto file = std::make_unique<PartFile>(order.partPath);
    if (!file->isOpen())
        return file->error();
    const ItemId id = order.id;
    HttpRequest request = requestFor(order.address, file->size());
    Running running;
    running.partPath = order.partPath;
    running.finalPath = order.finalPath;
    Transfer::Listener& listener = *this;
    running.transfer =
        std::make_unique<Transfer>(std::move(order), ++m_lastSerial, std::move(file), ioLock, m_clock, listener);
    running.task = m_client.makeTask(std::move(request), *running.transfer);
    m_partPaths.insert(running.partPath);
    HttpTask& task = *running.task;
    activeTasks.insert_or_assign(id, std::move(running));
    task.resume();
    return 0;
}

void TransferSession::drop(const ItemId& id)
{
    const auto found = activeTasks.find(id);
    if (found == activeTasks.end())
        return;
    m_partPaths.remove(found->second.partPath);
    activeTasks.erase(found);
}

bool TransferSession::isRunning(const ItemId& id) const
{
    return activeTasks.contains(id);
}

std::optional<QString> TransferSession::partFileURL(const ItemId& id) const
{
    const auto found = activeTasks.find(id);
    return found == activeTasks.end() ? std::nullopt : std::optional(found->second.partPath);
}

bool TransferSession::isWriting(const QString& partPath) const
{
    return m_partPaths.contains(partPath);
}

void TransferSession::rename(const ItemId& id, const QString& partPath, const QString& finalPath)
{
    const auto found = activeTasks.find(id);
    if (found == activeTasks.end() || isWriting(partPath))
        return;
    Running& running = found->second;
    QDir().mkpath(QFileInfo(partPath).path());
    if (moveWithoutReplacing(running.partPath, partPath) != 0)
        return;
    m_partPaths.remove(running.partPath);
    m_partPaths.insert(partPath);
    running.partPath = partPath;
    running.finalPath = finalPath;
}

void TransferSession::setLimit(qint64 bytesPerSecond)
{
    m_limit = bytesPerSecond;
    m_client.setBlockSize(blockSizeFor(bytesPerSecond));
}

void TransferSession::closeFiles()
{
    for (const auto& [id, running] : activeTasks)
        running.transfer->closeFile();
}

template <typename Action>
void TransferSession::post(const Transfer& transfer, Action action)
{
    const auto guarded = [this, id = transfer.order().id, serial = transfer.serial(), action = std::move(action)] {
        const auto found = activeTasks.find(id);
        if (found != activeTasks.end() && found->second.transfer->serial() == serial)
            action(id);
    };
    QMetaObject::invokeMethod(&m_uiThread, guarded, Qt::QueuedConnection);
}

void TransferSession::headArrived(const Transfer& transfer, const HeadFacts& facts)
{
    post(transfer, [this, facts](const ItemId& id) { m_owner.transferAnswered(id, facts); });
}

void TransferSession::ticked(const Transfer& transfer, qint64 bytes, double bytesPerSecond)
{
    post(transfer,
         [this, bytes, bytesPerSecond](const ItemId& id) { m_owner.transferTicked(id, bytes, bytesPerSecond); });
}

bool TransferSession::mustRest(const Transfer& transfer, qint64 bytes)
{
    const qint64 limit = m_limit;
    if (limit < 1)
        return false;
    const double wait = globalThrottle.consume(bytes, limit, m_clock.steadyNow());
    if (wait <= leastPause)
        return false;
    post(transfer, [this, wait](const ItemId& id) {
        Running& running = activeTasks.at(id);
        const auto delay = std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::duration<double>(wait));
        running.rest = m_clock.after(delay, [&task = *running.task] { task.resume(); });
    });
    return true;
}

void TransferSession::ended(const Transfer& transfer)
{
    post(transfer, [this](const ItemId& id) { finish(id); });
}

void TransferSession::finish(const ItemId& id)
{
    auto node = activeTasks.extract(id);
    Running& running = node.mapped();
    m_partPaths.remove(running.partPath);
    TransferEnd end = running.transfer->takeEnd(running.partPath);
    end.partPath = running.partPath;
    end.finalPath = running.finalPath;
    m_owner.transferEnded(id, std::move(end));
}

} // namespace vormel
