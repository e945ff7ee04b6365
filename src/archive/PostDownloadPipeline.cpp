#include "archive/PostDownloadPipeline.h"

#include "archive/ArchiveExtractor.h"
#include "archive/ExtractedNames.h"
#include "archive/ExtractionError.h"
#include "archive/SourceDisposal.h"
#include "model/AppSettings.h"
#include "model/SetName.h"
#include "platform/async/Spawn.h"
#include "platform/storage/FarMove.h"
#include "platform/storage/Trash.h"

#include <QCoroFuture>
#include <QFileInfo>
#include <QtConcurrentRun>

namespace vormel {

namespace {

/// Whatever else goes wrong than the tools themselves.
QString wordsOf(const std::exception& error)
{
    return QString::fromUtf8(error.what());
}

} // namespace

PostDownloadPipeline::PostDownloadPipeline(const Ports& ports)
    : m_ports(ports)
{}

void PostDownloadPipeline::autoExtractAfterDownload(const ItemId& id)
{
    if (const ItemPtr item = m_ports.queue.item(id))
        spawn(autoExtract(item, std::nullopt));
}

void PostDownloadPipeline::extractWithPassword(const ItemId& id, const QString& password)
{
    if (const ItemPtr item = m_ports.queue.item(id))
        spawn(autoExtract(item, password));
}

void PostDownloadPipeline::retryExtraction(const ItemId& id)
{
    const ItemPtr item = m_ports.queue.item(id);
    if (!item || !(item->status() == DownloadStatus::completed) || !item->localPath())
        return;
    item->setExtractionStatus(ExtractionStatus::idle);
    item->setExtractionProgress(0);
    spawn(autoExtract(item, std::nullopt));
}

QCoro::Task<> PostDownloadPipeline::autoExtract(ItemPtr item, std::optional<QString> password)
{
    const ArchiveSources sources{m_ports.queue.itemsOfSet(setBaseName(item->filename())),
                                 [this](const DownloadItem& rev) { return m_ports.queue.isRevComing(rev); }};
    const std::optional<ReadyArchive> archive = readyArchive(item, sources);
    if (!archive || !(archive->target->extractionStatus() == ExtractionStatus::idle))
        co_return;
    const Lifetime::Watch lifetime = m_lifetime.watch();
    const Run run = begin(*archive, password);
    co_await gatherVolumes(run.archive);
    if (lifetime.isOver())
        co_return;
    const std::optional<Failure> failure = co_await tryExtract(run, true);
    if (lifetime.isOver())
        co_return;
    if (!failure)
        co_await finish(run);
    else if (failure->wantsPassword)
        askPassword(run, *failure);
    else if (run.archive.isSet && m_ports.extractor.canRepair())
        co_await rescue(run);
    else
        giveUp(run, *failure);
}

QCoro::Task<> PostDownloadPipeline::gatherVolumes(ReadyArchive archive)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    const QString folder = QFileInfo(archive.path).path();
    for (const ItemPtr& volume : archive.elsewhere) {
        const QString from = *volume->localPath();
        const QString to = folder + u'/' + QFileInfo(from).fileName();
        const QFuture<int> moved = QtConcurrent::run(&m_disposer, [from, to] { return moveFar(from, to); });
        const int systemError = co_await moved;
        if (lifetime.isOver())
            co_return;
        if (systemError == 0 && volume->localPath() == from)
            volume->setLocalPath(to);
    }
    if (!archive.elsewhere.empty())
        m_ports.queue.saveQueue();
}

PostDownloadPipeline::Run PostDownloadPipeline::begin(const ReadyArchive& archive,
                                                      const std::optional<QString>& password)
{
    archive.target->setExtractionProgress(0);
    archive.target->setExtractionStartedAt(m_ports.clock.wallNow());
    archive.target->setExtractionStatus(ExtractionStatus::extracting);
    const QString destination = destinationOf(archive);
    const QSet<QString> before = namesIn(destination) - m_leftovers.value(archive.path);
    return {archive, destination, before, password};
}

QCoro::Task<std::optional<PostDownloadPipeline::Failure>> PostDownloadPipeline::tryExtract(Run run, bool showsProgress)
{
    std::function<void(double)> onProgress;
    if (showsProgress) {
        onProgress = [target = std::weak_ptr(run.archive.target)](double share) {
            if (const ItemPtr item = target.lock())
                item->setExtractionProgress(share);
        };
    }
    std::optional<Failure> failure;
    try {
        co_await m_ports.extractor.extract(run.archive.path, run.destination, run.password, onProgress);
    } catch (const ExtractionError& error) {
        const bool wasWrong = error.kind() == ExtractionError::Kind::wrongPassword;
        const bool wantsPassword = wasWrong || error.kind() == ExtractionError::Kind::passwordRequired;
        failure = Failure{error.errorDescription(), wantsPassword, wasWrong};
    } catch (const std::exception& error) {
        failure = Failure{wordsOf(error)};
    }
    co_return failure;
}

QCoro::Task<std::optional<PostDownloadPipeline::Failure>> PostDownloadPipeline::tryRepair(QString archive)
{
    std::optional<Failure> failure;
    try {
        co_await m_ports.extractor.repair(archive);
    } catch (const std::exception& error) {
        failure = Failure{wordsOf(error)};
    }
    co_return failure;
}

QCoro::Task<> PostDownloadPipeline::rescue(Run run)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    const ItemPtr target = run.archive.target;
    target->setExtractionStartedAt(m_ports.clock.wallNow());
    target->setExtractionStatus(ExtractionStatus::repairing);
    std::optional<Failure> failure = co_await tryRepair(run.archive.path);
    if (!failure && !lifetime.isOver())
        failure = co_await tryExtract(run, false);
    if (lifetime.isOver())
        co_return;
    if (!failure) {
        co_await finish(run);
        co_return;
    }
    noteLeftovers(run);
    // Idle before the volumes are let through: one that is there at once starts the archive again.
    target->setExtractionStatus(ExtractionStatus::idle);
    if (!m_ports.queue.allowRevFiles(run.archive.base))
        giveUp(run, *failure);
}

void PostDownloadPipeline::giveUp(const Run& run, const Failure& failure)
{
    noteLeftovers(run);
    run.archive.target->setExtractionStatus(ExtractionStatus::failure(failure.message));
}

void PostDownloadPipeline::askPassword(const Run& run, const Failure& failure)
{
    noteLeftovers(run);
    run.archive.target->setExtractionStatus(ExtractionStatus::idle);
    const QString name = run.archive.isSet ? run.archive.base : QFileInfo(run.archive.path).fileName();
    m_ports.queue.askExtractionPassword({run.archive.target->id(), name, failure.wasWrongPassword});
}

void PostDownloadPipeline::noteLeftovers(const Run& run)
{
    m_leftovers.insert(run.archive.path, namesIn(run.destination) - run.before);
}

QCoro::Task<> PostDownloadPipeline::finish(Run run)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    nameResults(run);
    m_leftovers.remove(run.archive.path);
    run.archive.target->setExtractionStatus(ExtractionStatus::done);
    const QStringList spent = removeRevItems(run.archive.base) + spentSources(run);
    co_await moveToTrash(spent);
    if (!lifetime.isOver() && m_ports.settings.removeGroupAfterExtract.value())
        m_ports.queue.clearExtracted();
}

void PostDownloadPipeline::nameResults(const Run& run) const
{
    const AppSettings& settings = m_ports.settings;
    const QString name = customName(run.archive);
    const bool clean = settings.cleanExtractedNames.value();
    const bool dotsToSpaces = settings.extractedNamesDotsToSpaces.value();
    if (!name.isEmpty())
        applyCustomName(name, run.destination, run.before);
    else if (clean || dotsToSpaces)
        renameExtractedFiles(run.destination, run.before, clean, dotsToSpaces);
}

QString PostDownloadPipeline::customName(const ReadyArchive& archive) const
{
    return archive.isSet ? m_ports.queue.customGroupName(archive.base) : QString();
}

QString PostDownloadPipeline::destinationOf(const ReadyArchive& archive) const
{
    const std::optional<QString> chosen = m_ports.settings.effectiveExtractionFolder();
    const QString name = customName(archive);
    if (name.isEmpty())
        return chosen.value_or(QFileInfo(archive.path).path());
    return chosen.value_or(m_ports.settings.downloadFolderPath.value()) + u'/' + folderNameOf(name);
}

/// The recovery volumes are of no more use. Their files come back.
QStringList PostDownloadPipeline::removeRevItems(const QString& base)
{
    QSet<ItemId> ids;
    QStringList paths;
    for (const ItemPtr& item : m_ports.queue.itemsOfSet(base)) {
        if (!isRevName(item->filename()))
            continue;
        ids.insert(item->id());
        if (item->localPath())
            paths << *item->localPath();
    }
    if (!ids.isEmpty())
        m_ports.queue.dropRevItems(ids);
    return paths;
}

QStringList PostDownloadPipeline::spentSources(const Run& run) const
{
    const AppSettings& settings = m_ports.settings;
    if (!settings.deleteArchiveAfterExtract.value())
        return {};
    // What was just extracted must not go with the folder that it came in.
    return sourcesToTrash(run.archive.path, settings.trashSourceFolderAfterExtract.value(),
                          {run.destination, settings.downloadFolderPath.value()});
}

QCoro::Task<> PostDownloadPipeline::moveToTrash(QStringList paths)
{
    if (paths.isEmpty())
        co_return;
    Trash& trash = m_ports.trash;
    const QFuture<void> moved = QtConcurrent::run(&m_disposer, [&trash, paths] {
        for (const QString& path : paths) {
            if (QFileInfo::exists(path))
                (void)trash.moveToTrash(path);
        }
    });
    co_await moved;
}

} // namespace vormel
