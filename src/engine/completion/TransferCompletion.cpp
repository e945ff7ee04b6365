#include "engine/completion/TransferCompletion.h"

#include "archive/pipeline/PostDownload.h"
#include "engine/completion/RecoveryPlace.h"
#include "engine/queue/SetPartners.h"
#include "engine/recovery/NetworkRecovery.h"
#include "engine/transfer/PartMarks.h"
#include "engine/transfer/TransferTexts.h"
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

} // namespace

TransferCompletion::TransferCompletion(ItemTable& table, const AppSettings& settings, Clock& clock, Trash& trash,
                                       PostDownload& postDownload, NetworkRecovery& recovery, QueueTurn& queue)
    : m_table(table)
    , m_settings(settings)
    , m_trash(trash)
    , m_postDownload(postDownload)
    , m_recovery(recovery)
    , m_queue(queue)
    , m_nextTries(clock, [this] { m_queue.processQueue(); })
{}

void TransferCompletion::finishTransfer(DownloadItem& item, const TransferEnd& end)
{
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
        m_retries.restore(id);
        m_nextTries.forget(id);
        m_startedOver.remove(id);
    }
}

void TransferCompletion::fail(DownloadItem& item, const QString& message)
{
    item.setSpeedBytesPerSec(0);
    item.setStatus(DownloadStatus::failure(message));
    // Nothing else may happen to the item's set any more, and its recovery volumes can still save it.
    m_recovery.scheduleRecoveryCheck(item);
    m_queue.processQueue();
}

void TransferCompletion::webPageCame(DownloadItem& item, const TransferEnd& end)
{
    // A page is of no use as a partial file: a later try starts from nothing.
    if (end.partPath)
        QFile::remove(*end.partPath);
    item.setPartPlace(std::nullopt);
    fail(item, webPageText(end.page, m_settings.language.value()));
}

bool TransferCompletion::mayStartOver(const ItemId& id)
{
    const qsizetype known = m_startedOver.size();
    m_startedOver.insert(id);
    return m_startedOver.size() > known;
}

bool TransferCompletion::retryLater(DownloadItem& item)
{
    const std::optional<std::chrono::seconds> delay = m_retries.spend(item.id());
    if (!delay)
        return false;
    m_nextTries.wait(item.id(), *delay);
    item.setStatus(DownloadStatus::queued);
    return true;
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
    if (retryLater(item))
        return;
    m_retries.restore(item.id());
    const qint64 size = end.partPath ? sizeOnDisk(*end.partPath) : 0;
    const bool isShort =
        end.reason == TransferEnd::Reason::errorAnswer && item.totalBytes() >= 1 && size < item.totalBytes();
    const QString message = isShort ? incompleteText(size, item.totalBytes()) : endText(end, m_settings);
    item.setStatus(DownloadStatus::failure(message));
    m_recovery.startRecoveryCountdown(item, recoveryCountdownSeconds);
    m_recovery.scheduleRecoveryCheck(item);
    m_queue.processQueue();
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
    if (isFinal || !retryLater(item)) {
        m_retries.restore(item.id());
        const bool isShort = isTotalKnown && size < item.totalBytes() && !end.areBytesGivenUp;
        const QString message = isShort ? incompleteText(size, item.totalBytes()) : endText(end, m_settings);
        item.setStatus(DownloadStatus::failure(message));
        m_recovery.scheduleRecoveryCheck(item);
    }
    m_queue.processQueue();
}

QString TransferCompletion::destinationFor(DownloadItem& item, const TransferEnd& end)
{
    const std::optional<QString>& suggested = end.suggestedName;
    QString destination = *end.finalPath;
    if (suggested && *suggested != lastComponent(destination)) {
        item.setFilename(*suggested);
        destination = m_settings.paths().finalFile(*suggested);
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
        return fail(item, fileErrorText(moved.systemError, m_settings));
    removeMarks(moved.path);
    item.setPartPlace(std::nullopt);
    const bool isRev = isRevName(moved.path);
    if (isRev)
        moved.path = broughtToItsArchive(item, moved.path, m_table, m_trash);
    item.setLocalPath(moved.path);
    item.setProgress(1.0);
    item.setStatus(DownloadStatus::completed);
    item.setSpeedBytesPerSec(0);
    item.setWantedAnew(false);
    m_queue.processQueue();
    m_queue.saveQueue();
    m_recovery.scheduleRecoveryCheck(item);
    startExtraction(item);
}

void TransferCompletion::startExtraction(const DownloadItem& item)
{
    if (!m_settings.autoExtract.value())
        return;
    m_postDownload.autoExtractAfterDownload(item.id());
    if (!isRevName(*item.localPath()))
        return;
    // A recovery volume that has arrived starts its archive again.
    if (const ItemPtr first = firstVolumeBeside(item, m_table))
        m_postDownload.autoExtractAfterDownload(first->id());
}

} // namespace vormel
