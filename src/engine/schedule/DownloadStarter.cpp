#include "engine/schedule/DownloadStarter.h"

#include "archive/pipeline/PostDownload.h"
#include "engine/accounts/Accounts.h"
#include "engine/completion/FinishedFile.h"
#include "engine/questions/Questions.h"
#include "engine/recovery/NetworkRecovery.h"
#include "engine/recovery/RevFiles.h"
#include "engine/schedule/SameNames.h"
#include "engine/transfer/ItemPart.h"
#include "engine/transfer/TransferSession.h"
#include "engine/transfer/TransferTexts.h"
#include "engine/tries/AskedHost.h"
#include "engine/tries/HostRests.h"
#include "engine/tries/Offline.h"
#include "engine/tries/Tries.h"
#include "model/AppSettings.h"
#include "model/DownloadPaths.h"
#include "resolvers/ResolverError.h"
#include "resolvers/ResolverTables.h"

#include <QDir>
#include <QFileInfo>

namespace vormel {

namespace {

/// Thrown when the item was removed, stopped or started anew while its start was waiting for something.
struct StartAbandoned
{};

void applyResolved(DownloadItem& item, const ResolvedDownload& found, WallTime now)
{
    const QString name = found.url.lastPathComponent();
    if (name.contains(u'.'))
        item.setToldFilename(name);
    else if (found.filename && !found.filename->isEmpty())
        item.setToldFilename(*found.filename);
    item.setResolvedURL(found.url);
    item.setResolvedAt(now);
}

} // namespace

DownloadStarter::DownloadStarter(const Ports& ports)
    : m_ports(ports)
{}

DownloadStarter::~DownloadStarter()
{
    for (auto& [id, attempt] : m_attempts)
        attempt.request_stop();
}

QCoro::Task<> DownloadStarter::startDownload(ItemPtr item)
{
    if (m_ports.revFiles.isHeldBack(*item)) {
        item->setStatus(DownloadStatus::queued);
        co_return;
    }
    abandon(item->id());
    const Attempt attempt;
    const SteadyTime beganAt = m_ports.clock.steadyNow();
    m_attempts.emplace(item->id(), attempt);
    item->setStatus(DownloadStatus::resolving);
    try {
        const Link address = co_await downloadAddress(item, attempt);
        m_attempts.erase(item->id());
        if (m_ports.revFiles.isHeldBack(*item)) {
            item->setStatus(DownloadStatus::queued);
            m_ports.queue.processQueue();
            co_return;
        }
        beginTransfer(*item, address);
    } catch (const StartAbandoned&) {
        // Whoever took the item away has put the queue right already.
    } catch (const ResolverError& error) {
        m_attempts.erase(item->id());
        resolveFailed(*item, error, beganAt);
    } catch (const std::exception& error) {
        m_attempts.erase(item->id());
        startFailed(*item, QString::fromUtf8(error.what()));
    }
}

void DownloadStarter::resolveFailed(DownloadItem& item, const ResolverError& error, SteadyTime beganAt)
{
    const bool isAway = error.kind() == ResolverError::Kind::networkError;
    if (isAway && m_ports.tries.awaitNetwork(item))
        return m_ports.queue.processQueue();
    if (isAway)
        m_ports.tries.pageWasAway(item);
    else
        m_ports.tries.pageAnswered(item);
    if (error.kind() != ResolverError::Kind::loginRequired)
        return startFailed(item, error.errorDescription());
    item.setStatus(DownloadStatus::queued);
    item.setSpeedBytesPerSec(0);
    if (!m_ports.questions.awaitLogin(item.id(), error.host(), beganAt))
        return startFailed(item, error.errorDescription());
    if (m_ports.questions.isLoginAwaited(item.id()))
        item.setWait({ItemWait::signIn, {}, m_ports.resolvers.profiles().displayName(error.host())});
    m_ports.queue.processQueue();
}

QCoro::Task<Link> DownloadStarter::downloadAddress(ItemPtr item, Attempt attempt)
{
    const HostResolver* const resolver = m_ports.resolvers.hostResolverForURL(item->originalURL());
    if (!resolver)
        co_return item->originalURL();
    const HostAccount* const account = m_ports.accounts.firstEnabled(resolver->supportedHost());
    if (!account)
        throw ResolverError::noAccountConfigured(m_ports.resolvers.profiles().displayName(resolver->supportedHost()));
    const std::optional<Link> known =
        hasFreshAddress(*item, m_ports.clock.wallNow()) ? item->resolvedURL() : std::nullopt;
    const Lifetime::Watch lifetime = m_lifetime.watch();
    std::exception_ptr failure;
    std::optional<ResolvedDownload> found;
    try {
        if (known)
            co_await resolver->prepareTransfer(attempt.get_token());
        else
            found = co_await resolver->resolveDownload(item->originalURL(), *account, attempt.get_token());
    } catch (...) {
        failure = std::current_exception();
    }
    if (lifetime.isOver() || !isCurrent(item, attempt))
        throw StartAbandoned();
    if (failure)
        std::rethrow_exception(failure);
    if (known)
        co_return *known;
    applyResolved(*item, *found, m_ports.clock.wallNow());
    co_return found->url;
}

void DownloadStarter::abandon(const ItemId& id)
{
    if (auto attempt = m_attempts.extract(id))
        attempt.mapped().request_stop();
}

bool DownloadStarter::isCurrent(const ItemPtr& item, const Attempt& attempt) const
{
    return !attempt.stop_requested() && m_ports.table.find(item->id()) == item &&
           item->status() == DownloadStatus::resolving;
}

void DownloadStarter::beginTransfer(DownloadItem& item, const Link& address)
{
    const DownloadPaths paths = m_ports.settings.paths();
    QDir().mkpath(paths.groupFolder(item.filename()));
    const auto finished = item.isWantedAnew() ? std::nullopt : finishedFileOf(item, m_ports.table, paths);
    if (finished && mayBeFileOf(item, *finished)) {
        completeWithFile(item, *finished);
        m_ports.queue.processQueue();
        m_ports.queue.saveQueue();
        if (m_ports.settings.autoExtract.value())
            m_ports.postDownload.autoExtractAfterDownload(item.id());
        return;
    }
    if (mustWait(item, address)) {
        item.setStatus(DownloadStatus::queued);
        static_cast<void>(m_ports.sameNames.holdBack(item)); // which tells it
        m_ports.queue.processQueue();
        return;
    }
    const QString usualPart = paths.partFile(item.filename());
    OpenedPart part = openPart(item, usualPart, m_ports.session.partFiles());
    if (!part.file)
        return startFailed(item, fileErrorText(part.systemError, m_ports.settings));
    takeOver(item, *part.file, usualPart);
    TransferOrder order{item.id(), address, item.filename(), paths.finalFile(item.filename()), item.totalBytes(), true};
    order.isDirectLink = !m_ports.resolvers.hostResolverForURL(item.originalURL());
    item.setStatus(DownloadStatus::downloading);
    m_ports.session.start(std::move(order), std::move(part.file));
}

bool DownloadStarter::mustWait(const DownloadItem& item, const Link& address)
{
    const QString host = hostKey(address);
    if (m_ports.hosts.leads(hostKey(item.originalURL()), item.id(), host))
        m_ports.queue.later([this] { m_ports.queue.processQueue(); });
    // Two links of one name: the second waits, and is complete when the first is.
    return m_ports.sameNames.isTaken(item) || m_ports.offline.holdsBack(address) ||
           m_ports.hosts.holdsBack(host, item.id());
}

void DownloadStarter::takeOver(DownloadItem& item, PartFile& file, const QString& usualPath)
{
    const PartPlace place{file.path(), file.isMarked()};
    const bool isSurprise = item.partPlace() != place && (place.path != usualPath || !place.isMarked);
    item.setPartPlace(place);
    if (const qint64 total = file.marks().total; total >= 1)
        item.setTotalBytes(total);
    // More than the source has cannot be its beginning.
    if (item.totalBytes() >= 1 && file.size() > item.totalBytes() && file.restart())
        item.setBytesReceived(0);
    if (file.size() >= 1)
        item.setBytesReceived(file.size());
    // Saved before the first byte comes, as nothing else may lead to this file after a kill.
    if (isSurprise)
        m_ports.queue.saveQueue();
}

void DownloadStarter::startFailed(DownloadItem& item, const QString& message)
{
    item.setStatus(DownloadStatus::failure(message));
    m_ports.recovery.startRecoveryCountdown(item, recoveryCountdownSeconds);
    m_ports.recovery.scheduleRecoveryCheck(item);
    m_ports.queue.processQueue();
}

} // namespace vormel
