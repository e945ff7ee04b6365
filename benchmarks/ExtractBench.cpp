#include "Benchmarks.h"
#include "Measure.h"
#include "PatternFile.h"
#include "ProgramInProfile.h"
#include "archive/tools/ToolArguments.h"
#include "engine/queue/QueueRecords.h"
#include "platform/storage/WholeFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace vormel::bench {

namespace {

constexpr qint64 filmSize = qint64{1024} * 1024 * 1024;
constexpr int rounds = 7;
constexpr QLatin1StringView packer("/usr/bin/rar");
constexpr QLatin1StringView unpacker("/usr/bin/unrar");

QDir setFolder(const QString& downloads)
{
    return {downloads + u"/film"_s};
}

QString film(const QDir& folder)
{
    return folder.filePath(u"film.bin"_s);
}

/// A stored set in 100 MB volumes, as if it had just come down.
QStringList makeSet(const QDir& folder)
{
    folder.mkpath(u"."_s);
    writePatternFile(film(folder), filmSize);
    (void)costOfProgram(
        packer, {u"a"_s, u"-idq"_s, u"-m0"_s, u"-ep"_s, u"-v100m"_s, folder.filePath(u"film.rar"_s), film(folder)});
    QStringList volumes;
    for (const QString& name : folder.entryList({u"*.rar"_s}, QDir::Files, QDir::Name))
        volumes << folder.filePath(name);
    return volumes;
}

/// The profile of somebody to whom the set has come down.
void furnish(const Folders& folders)
{
    std::vector<std::shared_ptr<const QueueRecord>> records;
    for (const QString& volume : makeSet(setFolder(folders.downloads))) {
        const QString url = u"http://films.example/"_s + QFileInfo(volume).fileName();
        DownloadItem item(*Link::parse(url), ItemId::make());
        item.setLocalPath(volume);
        item.setTotalBytes(QFileInfo(volume).size());
        item.setBytesReceived(item.totalBytes());
        item.setProgress(1);
        item.setStatus(DownloadStatus::completed);
        records.push_back(encodeRecord(item, DownloadPaths(QString())));
    }
    QDir().mkpath(folders.applicationSupport);
    if (!replaceWholeFile(folders.applicationSupport + u"/download_queue.json"_s, encodeQueue(records)))
        giveUp(u"cannot write the queue file"_s);
}

Cost ours(DownloadManager& manager)
{
    const ItemPtr first = manager.items().front();
    // The last run is tidied up behind its end; until then no other one begins.
    turnFor(std::chrono::milliseconds(200));
    return costOf([&manager, &first] {
        manager.commands().retryExtraction(first->id());
        turnUntil([&first] {
            if (first->extractionStatus() == ExtractionStatus::failed)
                giveUp(first->extractionStatus().message());
            return first->extractionStatus() == ExtractionStatus::done;
        });
    });
}

/// In a session of its own, as Vormel starts its tools: the kernel shares a busy machine out by sessions.
Cost bare(const DownloadManager& manager)
{
    const QString first = manager.items().front()->localPath().value();
    const QStringList arguments = rarArguments(first, QFileInfo(first).path(), std::nullopt);
    return costOfProgram(u"setsid"_s, QStringList{u"-w"_s, unpacker} + arguments);
}

/// Each run writes the film anew.
template <typename Run>
void addRun(std::vector<Cost>& costs, const QDir& folder, Run run)
{
    QFile::remove(film(folder));
    settleDisk();
    costs.push_back(run());
    if (QFileInfo(film(folder)).size() != filmSize)
        giveUp(u"the film was not unpacked"_s);
}

} // namespace

void benchExtract(Report& report)
{
    report.note(u"Unpacking a stored set of 1 GiB, median of %1 runs in turns:"_s.arg(rounds));
    for (const QLatin1StringView tool : {packer, unpacker}) {
        if (!QFileInfo(tool).isExecutable())
            return report.note(u"  NOT MEASURED: %1 is not installed"_s.arg(tool));
    }
    ProgramInProfile program({}, furnish);
    const QDir folder = setFolder(program.downloads());
    std::vector<Cost> vormel;
    std::vector<Cost> unrar;
    for (int round = 0; round < rounds; ++round) {
        addRun(vormel, folder, [&program] { return ours(program.manager()); });
        addRun(unrar, folder, [&program] { return bare(program.manager()); });
    }
    const double ourWall = median(vormel).wall;
    const double bareWall = median(unrar).wall;
    report.note(u"  Vormel %1 s, of which %2 s CPU of its own; unrar %3 s, %4 s CPU"_s.arg(ourWall, 0, 'f', 3)
                    .arg(median(vormel).cpu, 0, 'f', 3)
                    .arg(bareWall, 0, 'f', 3)
                    .arg(median(unrar).cpu, 0, 'f', 3));
    report.add(u"extract_overhead_percent"_s, (ourWall / bareWall - 1) * 100, 2);
}

} // namespace vormel::bench
