#include "archive/pipeline/PostDownloadPipeline.h"

#include "archive/pipeline/ExtractionFolder.h"
#include "archive/pipeline/SourceDisposal.h"
#include "archive/sources/SetVolumes.h"
#include "archive/tools/ArchiveExtractor.h"
#include "archive/tools/ExtractionError.h"
#include "archive/workspace/AbandonedRuns.h"
#include "archive/workspace/CustomName.h"
#include "archive/workspace/Placement.h"
#include "archive/workspace/ResultNames.h"
#include "archive/workspace/WorkFolder.h"
#include "model/AppSettings.h"
#include "model/SetName.h"
#include "platform/async/Spawn.h"
#include "platform/storage/Trash.h"

#include <QFileInfo>

#include <algorithm>
#include <system_error>
#include <utility>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

QString nameOf(const QString& path)
{
    return QFileInfo(path).fileName();
}

} // namespace

PostDownloadPipeline::PostDownloadPipeline(const Ports& ports)
    : m_ports(ports)
    , m_gathering([&queue = m_ports.queue] { queue.saveQueue(); })
    , m_turns([&queue = m_ports.queue](const ItemId& id) { return queue.placeOf(id); })
{}

PostDownloadPipeline::~PostDownloadPipeline()
{
    // What can be stopped is not waited for.
    for (const RunPtr& run : std::vector(m_runs))
        run->stopping.request_stop();
}

void PostDownloadPipeline::autoExtractAfterDownload(const ItemId& id)
{
    if (const ItemPtr item = m_ports.queue.item(id))
        spawn(autoExtract(item, std::nullopt, Wish::ofNobody));
}

void PostDownloadPipeline::extractWithPassword(const ItemId& id, const QString& password)
{
    if (const ItemPtr item = m_ports.queue.item(id))
        spawn(autoExtract(item, password, Wish::ofUser));
}

void PostDownloadPipeline::retryExtraction(const ItemId& id)
{
    const ItemPtr item = m_ports.queue.item(id);
    if (!item || item->status() != DownloadStatus::completed || !item->localPath() || isWorkingOn(id))
        return;
    const std::optional<ReadyArchive> archive = archiveOf(item, Wish::ofUser);
    for (const ItemPtr& one : {item, archive ? archive->target : item}) {
        one->setExtractionStatus(ExtractionStatus::idle);
        one->setExtractionProgress(0);
    }
    spawn(autoExtract(item, std::nullopt, Wish::ofUser));
}

bool PostDownloadPipeline::isWorkingOn(const ItemId& id) const
{
    return runOf(id) != nullptr;
}

void PostDownloadPipeline::stopWorkOn(const ItemId& id)
{
    const RunPtr run = runOf(id);
    if (!run)
        return;
    run->next.reset();
    run->stopping.request_stop();
    m_turns.withdraw(run->archive.target->id());
}

void PostDownloadPipeline::removeAbandonedRuns(const QStringList& folders)
{
    const auto remove = [folders] { vormel::removeAbandonedRuns(folders); };
    spawn(m_background.run(remove));
}

PostDownloadPipeline::RunPtr PostDownloadPipeline::runOf(const ItemId& id) const
{
    const ItemPtr item = m_ports.queue.item(id);
    const QString file = item ? item->localPath().value_or(QString()) : QString();
    // Two rows may have one file.
    const auto found = std::find_if(m_runs.begin(), m_runs.end(), [&](const RunPtr& run) {
        return run->archive.target->id() == id || run->members.contains(id) ||
               (!run->isSettled && (run->archive.path == file || run->sources.contains(file)));
    });
    return found == m_runs.end() ? nullptr : *found;
}

std::optional<ReadyArchive> PostDownloadPipeline::archiveOf(const ItemPtr& item, Wish wish) const
{
    const ArchiveSources sources{m_ports.queue.itemsOfSet(setBaseName(item->filename())),
                                 [this](const DownloadItem& rev) { return m_ports.queue.isRevComing(rev); }};
    std::optional<ReadyArchive> archive = readyArchive(item, sources);
    // Whoever has just removed the volume and wants the rest unpacked does not wait for it.
    if (archive && archive->isSet && wish == Wish::ofNobody && m_ports.queue.mayVolumeComeBack(archive->base))
        archive.reset();
    return archive;
}

QCoro::Task<> PostDownloadPipeline::autoExtract(ItemPtr item, std::optional<QString> password, Wish wish)
{
    const std::optional<ReadyArchive> archive = archiveOf(item, wish);
    if (!archive)
        co_return;
    if (const RunPtr running = runOf(archive->target->id())) {
        if (password || !running->next)
            running->next = Next{archive->target->id(), password, wish};
        co_return;
    }
    if (!(archive->target->extractionStatus() == ExtractionStatus::idle))
        co_return;
    const RunPtr run = begin(*archive, password);
    co_await work(run);
}

PostDownloadPipeline::RunPtr PostDownloadPipeline::begin(const ReadyArchive& archive,
                                                         const std::optional<QString>& password)
{
    auto run = std::make_shared<Run>();
    run->archive = archive;
    if (archive.isSet) {
        for (const ItemPtr& member : m_ports.queue.itemsOfSet(archive.base))
            run->members.insert(member->id());
        run->customName = m_ports.queue.customGroupName(archive.base);
    }
    run->destination = extractionFolder(m_ports.settings, archive.path, run->customName);
    run->password = password;
    if (!password) // whoever starts from the beginning may be asked from the beginning
        m_passwordTrials.forget(archive.path);
    m_runs.push_back(run);
    archive.target->setExtractionProgress(0);
    archive.target->setExtractionStartedAt(m_ports.clock.wallNow());
    archive.target->setAwaitsExtractionTurn(!m_turns.isAnyFree());
    archive.target->setExtractionStatus(ExtractionStatus::extracting);
    return run;
}

QCoro::Task<> PostDownloadPipeline::work(RunPtr run)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    const ItemPtr target = run->archive.target;
    const Turn turn = co_await m_turns.take(target->id());
    if (lifetime.isOver())
        co_return;
    target->setAwaitsExtractionTurn(false);
    // Nobody could stop a run that began without its row.
    if (turn.isGiven() && m_ports.queue.item(target->id()) == target) {
        target->setExtractionStartedAt(m_ports.clock.wallNow());
        co_await extractAndFinish(run);
    }
    if (!lifetime.isOver())
        end(run);
}

void PostDownloadPipeline::end(const RunPtr& run)
{
    std::erase(m_runs, run);
    const ItemPtr target = run->archive.target;
    // A run that was stopped has not said how it ended.
    if (target->extractionStatus() == ExtractionStatus::extracting ||
        target->extractionStatus() == ExtractionStatus::repairing)
        target->setExtractionStatus(ExtractionStatus::idle);
    const ItemPtr next = run->next ? m_ports.queue.item(run->next->by) : nullptr;
    if (!next)
        return;
    if (next != target && target->extractionStatus() == ExtractionStatus::done &&
        next->localPath() == run->archive.path)
        settle(*next, ExtractionStatus::done);
    else
        spawn(autoExtract(next, run->next->password, run->next->wish));
}

QCoro::Task<> PostDownloadPipeline::extractAndFinish(RunPtr run)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    co_await m_gathering.gather(run->archive, run->stopping.get_token());
    if (lifetime.isOver())
        co_return;
    const auto listSources = [path = run->archive.path] { return sourcesOf(path); };
    run->sources = co_await m_background.run(listSources);
    if (lifetime.isOver())
        co_return;
    Unpacked unpacked = co_await tryExtract(run, true);
    if (lifetime.isOver() || isStopped(*run))
        co_return;
    if (unpacked.folder)
        co_await finish(run, std::move(unpacked.folder));
    else if (unpacked.failure.wantsPassword)
        askPassword(*run, unpacked.failure);
    else if (run->archive.isSet && m_ports.extractor.canRepair())
        co_await rescue(run);
    else
        fail(*run, unpacked.failure.message);
}

QCoro::Task<PostDownloadPipeline::Unpacked> PostDownloadPipeline::tryExtract(RunPtr run, bool showsProgress)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    std::function<void(double)> onProgress;
    if (showsProgress) {
        onProgress = [target = std::weak_ptr(run->archive.target)](double share) {
            if (const ItemPtr item = target.lock())
                item->setExtractionProgress(share);
        };
    }
    Unpacked unpacked;
    try {
        unpacked.folder = co_await m_ports.extractor.extract(run->archive.path, run->destination, run->password,
                                                             onProgress, run->stopping.get_token());
    } catch (const ExtractionError& error) {
        unpacked.failure = lifetime.isOver() ? Failure() : failureOf(*run, error);
    } catch (const std::exception& error) {
        unpacked.failure = {QString::fromUtf8(error.what())};
    }
    if (unpacked.folder && !lifetime.isOver() && isStopped(*run)) {
        auto discard = [folder = std::move(unpacked.folder)]() mutable { folder.reset(); };
        co_await m_background.run(std::move(discard));
    }
    co_return unpacked;
}

PostDownloadPipeline::Failure PostDownloadPipeline::failureOf(const Run& run, const ExtractionError& error)
{
    const bool wasWrong = error.kind() == ExtractionError::Kind::wrongPassword;
    if (const std::optional<ExtractionError> damage = error.asDamage();
        damage && run.password && m_passwordTrials.hasFailedAgain(run.archive.path, *run.password))
        return {damage->errorDescription()};
    return {error.errorDescription(), wasWrong || error.kind() == ExtractionError::Kind::passwordRequired, wasWrong};
}

QCoro::Task<std::optional<PostDownloadPipeline::Failure>> PostDownloadPipeline::tryRepair(RunPtr run)
{
    std::optional<Failure> failure;
    try {
        const QStringList changed = co_await m_ports.extractor.repair(run->archive.path, run->stopping.get_token());
        run->sources += changed;
    } catch (const std::exception& error) {
        failure = Failure{QString::fromUtf8(error.what())};
    }
    co_return failure;
}

QCoro::Task<> PostDownloadPipeline::rescue(RunPtr run)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    const ItemPtr target = run->archive.target;
    target->setExtractionStartedAt(m_ports.clock.wallNow());
    target->setExtractionStatus(ExtractionStatus::repairing);
    Unpacked unpacked;
    if (const std::optional<Failure> failure = co_await tryRepair(run))
        unpacked.failure = *failure;
    else if (!lifetime.isOver() && !isStopped(*run))
        unpacked = co_await tryExtract(run, false);
    if (lifetime.isOver() || isStopped(*run))
        co_return;
    if (unpacked.folder) {
        co_await finish(run, std::move(unpacked.folder));
        co_return;
    }
    // Idle before the volumes are let through: one that is there at once starts the archive again.
    target->setExtractionStatus(ExtractionStatus::idle);
    if (!m_ports.queue.allowRevFiles(run->archive.base))
        fail(*run, unpacked.failure.message);
}

void PostDownloadPipeline::settle(DownloadItem& target, const ExtractionStatus& status)
{
    target.setExtractionStatus(status);
    m_ports.queue.saveQueue();
}

void PostDownloadPipeline::fail(const Run& run, const QString& message)
{
    // A row that is away takes its archive up again when it comes back, with its recovery volumes if it has some.
    const bool isAway = !m_ports.queue.item(run.archive.target->id());
    const bool isOver = !isAway && !isMoreToCome(run);
    settle(*run.archive.target, isOver ? ExtractionStatus::failure(message) : ExtractionStatus::idle);
}

/// What came during a run, or is still to come, starts the archive again, and finds only an idle one.
bool PostDownloadPipeline::isMoreToCome(const Run& run) const
{
    const std::span<const ItemPtr> set = m_ports.queue.itemsOfSet(run.archive.base);
    return run.next || (run.archive.isSet && std::any_of(set.begin(), set.end(), [this](const ItemPtr& item) {
                            return isRevName(item->filename()) && item->status() != DownloadStatus::completed &&
                                   m_ports.queue.isRevComing(*item);
                        }));
}

void PostDownloadPipeline::askPassword(Run& run, const Failure& failure)
{
    run.archive.target->setExtractionStatus(ExtractionStatus::idle);
    if (run.next && run.next->password) // it has come meanwhile
        return;
    run.next.reset(); // without the password it would end the same way
    const QString name = run.archive.isSet ? run.archive.base : nameOf(run.archive.path);
    m_ports.queue.askExtractionPassword({run.archive.target->id(), name, failure.wasWrongPassword});
}

QCoro::Task<> PostDownloadPipeline::finish(RunPtr run, std::shared_ptr<WorkFolder> unpacked)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    auto deliver = delivery(*run, std::move(unpacked));
    const PlacementResult result = co_await m_background.run(std::move(deliver));
    // Whoever has a volume fetched again while the last files are placed wants all of it unpacked again.
    if (lifetime.isOver() || isStopped(*run))
        co_return;
    if (result.systemError != 0) {
        const std::string words = std::generic_category().message(result.systemError);
        settle(*run->archive.target, ExtractionStatus::failure(QString::fromStdString(words)));
        co_return;
    }
    m_passwordTrials.forget(run->archive.path);
    run->isSettled = true;
    settle(*run->archive.target, ExtractionStatus::done);
    const ItemPtr target = run->archive.target;
    // Who takes a row away while its archive is unpacked wants the archive left alone.
    if (m_ports.queue.item(target->id()) != target)
        co_return;
    auto dispose = disposal(*run, result.placed);
    co_await m_background.run(std::move(dispose));
    if (!lifetime.isOver() && !isStopped(*run) && m_ports.settings.removeGroupAfterExtract.value())
        m_ports.queue.clearExtracted();
}

/// The last steps in the work folder, and the way out of it.
std::function<PlacementResult()> PostDownloadPipeline::delivery(const Run& run,
                                                                std::shared_ptr<WorkFolder> unpacked) const
{
    const bool clean = m_ports.settings.cleanExtractedNames.value();
    const bool dotsToSpaces = m_ports.settings.extractedNamesDotsToSpaces.value();
    PlacementRules rules{m_ports.queue.filesOfItems({}), &m_ports.trash};
    rules.protectedPaths.unite(QSet<QString>(run.sources.begin(), run.sources.end()));
    for (const RunPtr& other : m_runs)
        rules.protectedPaths.insert(other->destination + u"/."_s); // work goes on there
    return [folder = std::move(unpacked), rules, name = run.customName, clean, dotsToSpaces]() mutable {
        if (!name.isEmpty())
            giveCustomName(*folder, folderNameOf(name));
        else if (clean || dotsToSpaces)
            cleanNames(*folder, clean, dotsToSpaces);
        PlacementResult result = placeInto(*folder, rules);
        folder.reset();
        return result;
    };
}

/// What came down for the archive goes to the Trash as far as the settings say so.
std::function<void()> PostDownloadPipeline::disposal(const Run& run, const QStringList& placed)
{
    const AppSettings& settings = m_ports.settings;
    const QStringList recoveryVolumes = m_ports.queue.dropRevItems(run.archive.base);
    SpentArchive spent{run.archive.path, run.sources, {run.destination, settings.downloadFolderPath.value()}};
    spent.filesOfOthers = m_ports.queue.filesOfItems(finishedMembers(run));
    spent.filesOfOthers.unite(QSet<QString>(placed.begin(), placed.end()));
    spent.areSourcesSpent = settings.deleteArchiveAfterExtract.value();
    spent.isFolderSpent = settings.trashSourceFolderAfterExtract.value();
    return [spent, recoveryVolumes, &trash = m_ports.trash] {
        for (const QString& path : recoveryVolumes + pathsToTrash(spent))
            if (QFileInfo::exists(path))
                (void)trash.moveToTrash(path);
    };
}

/// Without those that are on their way once more.
QSet<ItemId> PostDownloadPipeline::finishedMembers(const Run& run) const
{
    QSet<ItemId> finished = run.members + QSet{run.archive.target->id()};
    finished.removeIf([this](const ItemId& id) {
        const ItemPtr item = m_ports.queue.item(id);
        return item && item->status() != DownloadStatus::completed;
    });
    return finished;
}

} // namespace vormel
