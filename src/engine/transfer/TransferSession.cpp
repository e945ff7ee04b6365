#include "engine/transfer/TransferSession.h"

#include "platform/storage/FileSync.h"

#include <algorithm>

namespace vormel {

namespace {

/// A capped stream is cut finer, so that it flows instead of coming in gulps.
qsizetype blockSizeFor(qint64 limit)
{
    constexpr auto maxBlock = qint64{256} * 1024;
    constexpr auto minBlock = qint64{16} * 1024;
    constexpr qint64 blocksPerSecond = 32;
    return limit < 1 ? maxBlock : std::clamp(limit / blocksPerSecond, minBlock, maxBlock);
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

TransferSession::TransferSession(HttpClient& client, FileSync& fileSync, Clock& clock, const HostProfiles& profiles,
                                 Owner& owner)
    : m_client(client)
    , m_fileSync(fileSync)
    , m_clock(clock)
    , m_profiles(profiles)
    , m_owner(owner)
    , m_globalThrottle(clock.steadyNow())
{}

TransferSession::~TransferSession()
{
    m_activeTasks.clear();
    m_fileSync.flush(); // what it tells would find nobody
}

void TransferSession::start(TransferOrder order, std::unique_ptr<PartFile> file)
{
    const ItemId id = order.id;
    HttpRequest request = requestFor(order.address, file->size());
    Running running;
    running.partPath = file->path();
    running.finalPath = order.finalPath;
    Transfer::Listener& listener = *this;
    running.transfer = std::make_unique<Transfer>(std::move(order), ++m_lastSerial, std::move(file), m_ioLock, m_clock,
                                                  m_profiles, listener);
    Transfer& transfer = *running.transfer;
    if (!transfer.isWhole())
        running.task = m_client.makeTask(std::move(request), transfer);
    const Running& started = m_activeTasks.insert_or_assign(id, std::move(running)).first->second;
    if (started.task)
        started.task->resume();
    else
        ended(transfer);
}

void TransferSession::drop(const ItemId& id)
{
    const auto found = m_activeTasks.find(id);
    if (found == m_activeTasks.end())
        return;
    closeFile(id, *found->second.transfer);
    m_activeTasks.erase(found);
}

std::optional<QString> TransferSession::partFileURL(const ItemId& id) const
{
    const auto found = m_activeTasks.find(id);
    return found == m_activeTasks.end() ? std::nullopt : std::optional(found->second.partPath);
}

QSet<QString> TransferSession::partFiles() const
{
    QSet<QString> paths;
    for (const auto& [id, running] : m_activeTasks)
        paths.insert(running.partPath);
    return paths;
}

bool TransferSession::isFetching(const QString& finalPath) const
{
    return std::any_of(m_activeTasks.begin(), m_activeTasks.end(),
                       [&finalPath](const auto& entry) { return entry.second.finalPath == finalPath; });
}

void TransferSession::retarget(const ItemId& id, const QString& finalPath)
{
    const auto found = m_activeTasks.find(id);
    if (found != m_activeTasks.end())
        found->second.finalPath = finalPath;
}

quint64 TransferSession::runOf(const ItemId& id) const
{
    const auto found = m_activeTasks.find(id);
    return found == m_activeTasks.end() || !found->second.task ? 0 : found->second.transfer->serial();
}

void TransferSession::setLimit(qint64 bytesPerSecond)
{
    m_limit = bytesPerSecond;
    m_client.setBlockSize(blockSizeFor(bytesPerSecond));
}

void TransferSession::closeFiles()
{
    for (const auto& [id, running] : m_activeTasks)
        closeFile(id, *running.transfer);
}

void TransferSession::closeFile(const ItemId& id, Transfer& transfer)
{
    if (transfer.closeFile())
        m_owner.partIsGone(id);
}

bool TransferSession::isCurrent(const ItemId& id, quint64 serial) const
{
    const auto found = m_activeTasks.find(id);
    return found != m_activeTasks.end() && found->second.transfer->serial() == serial;
}

template <typename Action>
void TransferSession::post(const Transfer& transfer, Action action)
{
    const auto guarded = [this, id = transfer.order().id, serial = transfer.serial(), action = std::move(action)] {
        if (isCurrent(id, serial))
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
    const double wait = m_globalThrottle.consume(bytes, limit, m_clock.steadyNow());
    if (wait <= minPause)
        return false;
    post(transfer, [this, wait](const ItemId& id) {
        Running& running = m_activeTasks.at(id);
        const auto delay = std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::duration<double>(wait));
        running.rest = m_clock.after(delay, [&task = *running.task] { task.resume(); });
    });
    return true;
}

void TransferSession::ended(const Transfer& transfer)
{
    const auto finishWith = [this, id = transfer.order().id, serial = transfer.serial()](int syncError) {
        const auto end = [this, id, serial, syncError] {
            if (isCurrent(id, serial))
                finish(id, syncError);
        };
        QMetaObject::invokeMethod(&m_uiThread, end, Qt::QueuedConnection);
    };
    if (auto file = transfer.fileToSync())
        m_fileSync.sync(std::move(file), finishWith);
    else
        finishWith(0);
}

void TransferSession::finish(const ItemId& id, int syncError)
{
    auto node = m_activeTasks.extract(id);
    Running& running = node.mapped();
    TransferEnd end = running.transfer->takeEnd(syncError);
    end.partPath = running.partPath;
    end.finalPath = running.finalPath;
    if (end.isPartGone)
        m_owner.partIsGone(id);
    m_owner.transferEnded(id, std::move(end));
}

} // namespace vormel
