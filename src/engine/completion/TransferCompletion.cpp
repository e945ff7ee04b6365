#include "engine/completion/TransferCompletion.h"

#include "archive/pipeline/PostDownload.h"
#include "engine/completion/RecoveryPlace.h"
#include "engine/queue/SetPartners.h"
#include "engine/recovery/NetworkRecovery.h"
#include "engine/transfer/PartMarks.h"
#include "engine/transfer/TransferTexts.h"
#include "engine/tries/Tries.h"
#include "model/AppSettings.h"
#include "model/DownloadPaths.h"
#include "model/SetName.h"
#include "platform/storage/UniqueDestination.h"
#include "text/FileName.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

qint64 sizeOnDisk(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() ? info.size() : 0;
}

/// The answers of an address that is of no use any more.
bool isDead(int statusCode)
{
    return statusCode == 401 || statusCode == 403 || statusCode == 404 || statusCode == 410;
}

bool isFailure(TransferEnd::Reason reason)
{
    return reason == TransferEnd::Reason::networkError || reason == TransferEnd::Reason::errorAnswer ||
           reason == TransferEnd::Reason::foreignRange || reason == TransferEnd::Reason::sourceChanged;
}

/// Did nobody answer, who could have told something about this one file?
bool isAway(const TransferEnd& end)
{
    const HttpError::Kind kind = end.error.kind;
    return end.reason == TransferEnd::Reason::networkError &&
           (kind == HttpError::Kind::timedOut || kind == HttpError::Kind::cannotFindHost ||
            kind == HttpError::Kind::cannotConnect || kind == HttpError::Kind::connectionLost);
}

} // namespace

TransferCompletion::TransferCompletion(const Ports& ports)
    : m_ports(ports)
{}

void TransferCompletion::noteAnswer(const DownloadItem& item)
{
    m_ports.tries.hostAnswered(item);
}

void TransferCompletion::noteProgress(const DownloadItem& item)
{
    m_ports.tries.restore(item.id());
    m_ports.tries.hostAnswered(item);
}

void TransferCompletion::finishTransfer(DownloadItem& item, const TransferEnd& end)
{
    if (end.statusCode != 0 && !isAway(end))
        m_ports.tries.hostAnswered(item);
    if (end.reason == TransferEnd::Reason::webPage)
        return webPageCame(item, end);
    if (isFailure(end.reason))
        return transferFailed(item, end);
    if (!end.partPath || !end.finalPath)
        return fail(item, u"Internal error: missing path"_s);
    const qint64 size = sizeOnDisk(*end.partPath);
    const bool isWhole = item.totalBytes() < 1 || size == item.totalBytes();
    if (!isWhole || end.reason != TransferEnd::Reason::finished)
        return fileIsShort(item, end, size);
    fileIsComplete(item, end);
}

void TransferCompletion::forget(const QSet<ItemId>& ids)
{
    for (const ItemId& id : ids) {
        m_ports.tries.forget(id);
        m_startedOver.remove(id);
    }
}

void TransferCompletion::fail(DownloadItem& item, const QString& message)
{
    item.setSpeedBytesPerSec(0);
    item.setStatus(DownloadStatus::failure(message));
    // Nothing else may happen to the item's set any more, and its recovery volumes can still save it.
    m_ports.recovery.scheduleRecoveryCheck(item);
    m_ports.queue.processQueue();
}

void TransferCompletion::webPageCame(DownloadItem& item, const TransferEnd& end)
{
    // A page is of no use as a partial file: a later try starts from nothing.
    if (end.partPath)
        QFile::remove(*end.partPath);
    item.setPartPlace(std::nullopt);
    fail(item, webPageText(end.page, m_ports.settings.language.value()));
}

bool TransferCompletion::mayStartOver(const ItemId& id)
{
    const qsizetype known = m_startedOver.size();
    m_startedOver.insert(id);
    return m_startedOver.size() > known;
}

void TransferCompletion::prepareNextTry(DownloadItem& item, const TransferEnd& end)
{
    if (end.reason == TransferEnd::Reason::errorAnswer && isDead(end.statusCode)) {
        item.setResolvedURL(std::nullopt);
        item.setResolvedAt(std::nullopt);
    }
    if (end.reason != TransferEnd::Reason::sourceChanged || !mayStartOver(item.id()))
        return;
    if (end.partPath)
        QFile::remove(*end.partPath);
    item.setPartPlace(std::nullopt);
    item.setTotalBytes(0);
    item.setBytesReceived(0);
    item.setProgress(0);
}

void TransferCompletion::transferFailed(DownloadItem& item, const TransferEnd& end)
{
    item.setSpeedBytesPerSec(0);
    prepareNextTry(item, end);
    const bool isTriedAgain =
        isAway(end) ? m_ports.tries.tryLaterAsHostIsAway(item) : m_ports.tries.tryLater(item, end.retryAfter);
    if (isTriedAgain)
        return;
    m_ports.tries.restore(item.id());
    const qint64 size = end.partPath ? sizeOnDisk(*end.partPath) : 0;
    const bool isShort =
        end.reason == TransferEnd::Reason::errorAnswer && item.totalBytes() >= 1 && size < item.totalBytes();
    const QString message = isShort ? incompleteText(size, item.totalBytes()) : endText(end, m_ports.settings);
    item.setStatus(DownloadStatus::failure(message));
    m_ports.recovery.startRecoveryCountdown(item, recoveryCountdownSeconds);
    m_ports.recovery.scheduleRecoveryCheck(item);
    m_ports.queue.processQueue();
}

void TransferCompletion::fileIsShort(DownloadItem& item, const TransferEnd& end, qint64 size)
{
    const bool isTotalKnown = item.totalBytes() >= 1;
    item.setBytesReceived(size);
    item.setProgress(isTotalKnown ? std::min(static_cast<double>(size) / static_cast<double>(item.totalBytes()), 1.0)
                                  : 0);
    item.setSpeedBytesPerSec(0);
    // Each such answer moves data and so earns the budget back; without another bound there would be no end to it.
    const bool isFinal = end.areBytesGivenUp && !mayStartOver(item.id());
    if (isFinal || !m_ports.tries.tryLater(item, {})) {
        m_ports.tries.restore(item.id());
        const bool isShort = isTotalKnown && size < item.totalBytes() && !end.areBytesGivenUp;
        const QString message = isShort ? incompleteText(size, item.totalBytes()) : endText(end, m_ports.settings);
        item.setStatus(DownloadStatus::failure(message));
        m_ports.recovery.scheduleRecoveryCheck(item);
    }
    m_ports.queue.processQueue();
}

QString TransferCompletion::destinationFor(DownloadItem& item, const TransferEnd& end)
{
    const std::optional<QString>& suggested = end.suggestedName;
    QString destination = *end.finalPath;
    if (suggested && *suggested != lastComponent(destination)) {
        item.setFilename(*suggested);
        destination = m_ports.settings.paths().finalFile(*suggested);
    }
    QDir().mkpath(QFileInfo(destination).path());
    return destination;
}

void TransferCompletion::fileIsComplete(DownloadItem& item, const TransferEnd& end)
{
    const QString destination = destinationFor(item, end);
    MoveResult moved = moveToFinalPlace(*end.partPath, destination);
    if (moved.systemError == EXDEV) // the folder has changed since; a copy of what may be large takes its time
        moved = moveToFinalPlace(*end.partPath, QFileInfo(*end.partPath).path() + u'/' + lastComponent(destination));
    if (moved.systemError != 0)
        return fail(item, fileErrorText(moved.systemError, m_ports.settings));
    removeMarks(moved.path);
    item.setPartPlace(std::nullopt);
    const bool isRev = isRevName(moved.path);
    if (isRev)
        moved.path = broughtToItsArchive(item, moved.path, m_ports.table, m_ports.trash);
    item.setLocalPath(moved.path);
    item.setProgress(1.0);
    item.setStatus(DownloadStatus::completed);
    item.setSpeedBytesPerSec(0);
    item.setWantedAnew(false);
    m_ports.queue.processQueue();
    m_ports.queue.saveQueue();
    m_ports.recovery.scheduleRecoveryCheck(item);
    startExtraction(item);
}

void TransferCompletion::startExtraction(const DownloadItem& item)
{
    if (!m_ports.settings.autoExtract.value())
        return;
    m_ports.postDownload.autoExtractAfterDownload(item.id());
    if (!isRevName(*item.localPath()))
        return;
    // A recovery volume that has arrived starts its archive again.
    if (const ItemPtr first = firstVolumeBeside(item, m_ports.table))
        m_ports.postDownload.autoExtractAfterDownload(first->id());
}

} // namespace vormel
