#include "archive/tools/ArchiveExtractor.h"

#include "archive/sources/ArchiveFormat.h"
#include "archive/tools/ExtractionError.h"
#include "archive/tools/PlainPaths.h"
#include "archive/tools/UnpackingTools.h"
#include "archive/workspace/DestinationError.h"
#include "archive/workspace/HarmlessTree.h"
#include "archive/workspace/RepairFolder.h"
#include "archive/workspace/WorkFolder.h"
#include "archive/workspace/ZipNames.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <functional>
#include <system_error>
#include <utility>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

void printTrace(const QString& line)
{
    std::puts(line.toUtf8().constData());
}

QString repairTool()
{
    return u"rar"_s;
}

/// Above it are the signals that end a tool.
constexpr int lastOrdinaryCode = 128;

struct RepairStart
{
    QStringList trace;
    std::shared_ptr<RepairFolder> folder;
};

RepairStart beginRepair(const QString& archive)
{
    const QDir folder = QFileInfo(archive).dir();
    // The listing is sorted by name; the pattern takes any letter case.
    constexpr QDir::Filters all = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    const auto count = folder.entryList({u"*.rar"_s}, all, QDir::Name).size();
    const QStringList revs = folder.entryList({u"*.rev"_s}, all, QDir::Name);
    return {{u"[Repair] dir=%1 rar=%2 rev=%3"_s.arg(folder.dirName()).arg(count).arg(revs.size()),
             u"[Repair] revs="_s + revs.join(u", "_s)},
            std::make_shared<RepairFolder>(RepairFolder::make(archive))};
}

QString failureText(const ExtractionError& error)
{
    return u" FAILED (code "_s + QString::number(error.exitCode()) + u"):\n"_s + error.output();
}

ExtractionError reasonOf(const ExtractionError& error, const UnpackingTool& tool, bool isPasswordGiven)
{
    return tool.tellsOfPassword ? classifyToolError(error, isPasswordGiven) : error;
}

/// On a thread that may take its time: what a tool left of a failed run goes, and what it made is looked over.
std::shared_ptr<WorkFolder> settled(std::shared_ptr<WorkFolder> folder, ArchiveFormat format, bool isFailed)
{
    if (isFailed) {
        folder.reset();
    } else if (const int error = makeHarmless(folder->path(), format)) {
        folder.reset();
        throw DestinationError(QString::fromStdString(std::generic_category().message(error)));
    }
    return folder;
}

} // namespace

ArchiveExtractor::ArchiveExtractor(ToolRunner& tools)
    : ArchiveExtractor(tools, printTrace)
{}

ArchiveExtractor::ArchiveExtractor(ToolRunner& tools, Trace trace)
    : m_tools(tools)
    , m_trace(std::move(trace))
{}

QCoro::Task<std::shared_ptr<WorkFolder>> ArchiveExtractor::extract(QString archive, QString destination,
                                                                   Password password, Progress onProgress,
                                                                   std::stop_token stop)
{
    const Lifetime::Watch watch = m_lifetime.watch();
    std::vector<UnpackingTool> tools = unpackingTools(archive, password, m_tools);
    const ArchiveFormat format = formatOf(archive).value();
    if (tools.empty()) {
        co_await makeWorkFolder(destination); // where that fails, it is told first
        throw ExtractionError::toolNotFound(missingTool(archive));
    }
    const auto spoils = [archive, format] { return format == ArchiveFormat::zip && hasNamesThatUnzipSpoils(archive); };
    const bool isUnzipLast = co_await m_background.run(spoils);
    if (watch.isOver())
        throw ToolStopped();
    if (isUnzipLast)
        std::stable_partition(tools.begin(), tools.end(), std::mem_fn(&UnpackingTool::keepsForeignNames));
    std::exception_ptr failure;
    for (const UnpackingTool& tool : tools) {
        const Attempt attempt{tool, archive, format, password.has_value(), onProgress, stop};
        try {
            std::shared_ptr<WorkFolder> unpacked = co_await unpack(attempt, destination);
            co_return unpacked;
        } catch (const ExtractionError&) {
            failure = std::current_exception();
        } catch (const ToolLaunchError&) {
            failure = std::current_exception();
        }
        if (watch.isOver())
            break;
    }
    std::rethrow_exception(failure);
}

QCoro::Task<std::shared_ptr<WorkFolder>> ArchiveExtractor::makeWorkFolder(const QString& destination)
{
    const auto make = [destination] { return std::make_shared<WorkFolder>(WorkFolder::make(destination)); };
    return m_background.run(make);
}

QCoro::Task<std::shared_ptr<PlainPaths>> ArchiveExtractor::makePlainPaths(const QString& archive,
                                                                          const QString& destination, Recovery recovery)
{
    const auto link = [archive, destination, recovery] {
        return std::make_shared<PlainPaths>(archive, destination, recovery);
    };
    return m_background.run(link);
}

QCoro::Task<std::shared_ptr<WorkFolder>> ArchiveExtractor::settle(std::shared_ptr<WorkFolder> folder,
                                                                  std::shared_ptr<PlainPaths> paths,
                                                                  ArchiveFormat format, bool isFailed)
{
    // The last references must end over there.
    auto work = [unsettled = std::move(folder), links = std::move(paths), format, isFailed]() mutable {
        links.reset();
        return settled(std::move(unsettled), format, isFailed);
    };
    return m_background.run(std::move(work));
}

QCoro::Task<std::shared_ptr<WorkFolder>> ArchiveExtractor::unpack(Attempt attempt, QString destination)
{
    const Lifetime::Watch watch = m_lifetime.watch();
    std::shared_ptr<WorkFolder> folder = co_await makeWorkFolder(destination);
    if (watch.isOver())
        throw ToolStopped();
    const UnpackingTool& tool = attempt.tool;
    // Our own repair works in a folder of its own, and leaves nothing half made.
    const Recovery recovery = canRepair() ? Recovery::keptAway : Recovery::leftBeside;
    std::shared_ptr<PlainPaths> paths = co_await makePlainPaths(attempt.archive, folder->path(), recovery);
    if (watch.isOver())
        throw ToolStopped();
    const QStringList args = tool.arguments(paths->archive(), paths->destination());
    const Progress progress = tool.tellsProgress ? attempt.onProgress : Progress();
    std::exception_ptr failure;
    try {
        co_await m_tools.run(tool.path, args, progress, attempt.stop);
    } catch (const ExtractionError& error) {
        if (!isMereWarning(error))
            failure = std::make_exception_ptr(reasonOf(error, tool, attempt.isPasswordGiven));
    } catch (const ArchiveError&) {
        failure = std::current_exception();
    }
    if (watch.isOver()) // with it the threads are gone
        std::rethrow_exception(failure ? failure : std::make_exception_ptr(ToolStopped()));
    QCoro::Task<std::shared_ptr<WorkFolder>> settling =
        settle(std::move(folder), std::move(paths), attempt.format, failure != nullptr);
    folder = co_await settling;
    if (failure)
        std::rethrow_exception(failure);
    co_return folder;
}

QCoro::Task<VolumeTest> ArchiveExtractor::verify(QString archive, Progress onProgress)
{
    const Lifetime::Watch watch = m_lifetime.watch();
    std::shared_ptr<PlainPaths> paths = co_await makePlainPaths(archive, QString(), Recovery::keptAway);
    if (watch.isOver())
        throw ToolStopped();
    const VolumeTest test = co_await testVolumes(m_tools, paths, onProgress, m_trace);
    auto unlink = [links = std::move(paths)]() mutable { links.reset(); };
    if (!watch.isOver())
        co_await m_background.run(std::move(unlink));
    co_return test;
}

bool ArchiveExtractor::canRepair() const
{
    return m_tools.findTool(repairTool()).has_value();
}

QCoro::Task<QStringList> ArchiveExtractor::repair(QString archive, std::stop_token stop)
{
    const Lifetime::Watch watch = m_lifetime.watch();
    const std::optional<QString> tool = m_tools.findTool(repairTool());
    if (!tool)
        throw ExtractionError::repairToolNotFound();
    const auto begin = [archive] { return beginRepair(archive); };
    RepairStart repair = co_await m_background.run(begin);
    if (watch.isOver())
        throw ToolStopped();
    for (const QString& line : repair.trace)
        m_trace(line);
    const Rebuilding rebuilding = co_await rebuild(*tool, repair.folder->archive(), stop);
    if (watch.isOver())
        throw ToolStopped();
    const bool isAdopted = rebuilding.isTrusted && !stop.stop_requested();
    auto adopt = [folder = std::move(repair.folder), isAdopted]() mutable {
        QStringList changed = isAdopted ? folder->adopt() : QStringList();
        folder.reset(); // takes as long as what was made is large
        return changed;
    };
    const QStringList rebuilt = co_await m_background.run(std::move(adopt));
    if (rebuilding.failure && rebuilt.isEmpty())
        std::rethrow_exception(rebuilding.failure);
    co_return rebuilt;
}

QCoro::Task<ArchiveExtractor::Rebuilding> ArchiveExtractor::rebuild(QString tool, QString archive, std::stop_token stop)
{
    const Trace trace = m_trace;
    const QStringList args{u"rc"_s, u"-y"_s, archive};
    Rebuilding rebuilding;
    try {
        co_await m_tools.run(tool, args, {}, stop);
        trace(u"[Repair] rar rc succeeded"_s);
    } catch (const ExtractionError& error) {
        trace(u"[Repair] rar rc"_s + failureText(error));
        // One that was killed leaves what it was about to write.
        rebuilding = {std::current_exception(), error.exitCode() <= lastOrdinaryCode};
    } catch (const ArchiveError& error) {
        trace(u"[Repair] rar rc FAILED: "_s + error.errorDescription());
        rebuilding = {std::current_exception(), false};
    }
    co_return rebuilding;
}

} // namespace vormel
