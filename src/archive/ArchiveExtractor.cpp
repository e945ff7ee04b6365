#include "archive/ArchiveExtractor.h"

#include "archive/ArchiveFormat.h"
#include "archive/EscapingLinks.h"
#include "archive/ExtractionError.h"
#include "archive/tools/ToolArguments.h"

#include <QCoroFuture>
#include <QDir>
#include <QFileInfo>
#include <QtConcurrentRun>

#include <cerrno>
#include <cstdio>
#include <exception>
#include <system_error>
#include <utility>

namespace vormel {

namespace {

void printTrace(const QString& line)
{
    std::puts(line.toUtf8().constData());
}

QStringList rarTools()
{
    return {QStringLiteral("unrar"), QStringLiteral("rar")};
}

QStringList sevenZipTools()
{
    return {QStringLiteral("7z"), QStringLiteral("7za"), QStringLiteral("7zz")};
}

QString tarLetters(ArchiveFormat format)
{
    switch (format) {
    case ArchiveFormat::tarGz:
        return QStringLiteral("-xzf");
    case ArchiveFormat::tarBz2:
        return QStringLiteral("-xjf");
    case ArchiveFormat::tarXz:
        return QStringLiteral("-xJf");
    default:
        return QStringLiteral("-xf");
    }
}

void makeFolder(const QString& folder)
{
    errno = 0;
    if (!QDir().mkpath(folder)) {
        const int reason = errno != 0 ? errno : ENOTDIR;
        throw DestinationError(QString::fromStdString(std::generic_category().message(reason)));
    }
}

QString repairTool()
{
    return QStringLiteral("rar");
}

QString failureText(const ExtractionError& error)
{
    return QStringLiteral(" FAILED (code ") + QString::number(error.exitCode()) + QStringLiteral("):\n") +
           error.output();
}

} // namespace

ArchiveExtractor::ArchiveExtractor(ToolRunner& tools)
    : ArchiveExtractor(tools, printTrace)
{}

ArchiveExtractor::ArchiveExtractor(ToolRunner& tools, Trace trace)
    : m_tools(tools)
    , m_trace(std::move(trace))
{}

QCoro::Task<> ArchiveExtractor::extract(QString archive, QString destination, Password password, Progress onProgress)
{
    if (!formatOf(archive))
        throw ExtractionError::unsupportedFormat();
    makeFolder(destination);
    const timespec start = fileSystemMoment(destination);
    std::exception_ptr failure;
    try {
        co_await unpack(archive, destination, password, onProgress);
    } catch (const ArchiveError&) {
        failure = std::current_exception();
    }
    const QFuture<void> cleaned = QtConcurrent::run([destination, start] { removeEscapingLinks(destination, start); });
    co_await cleaned;
    if (failure)
        std::rethrow_exception(failure);
}

QCoro::Task<> ArchiveExtractor::unpack(QString archive, QString destination, Password password, Progress onProgress)
{
    const ArchiveFormat format = formatOf(archive).value();
    switch (format) {
    case ArchiveFormat::zip:
        co_await unpackZip(archive, destination, password);
        break;
    case ArchiveFormat::rar: {
        const std::optional<QString> tool = firstTool(rarTools());
        if (!tool)
            throw ExtractionError::toolNotFound(QStringLiteral("unrar"));
        const QStringList args = rarArguments(archive, destination, password);
        co_await runClassified(*tool, args, password.has_value(), onProgress);
        break;
    }
    case ArchiveFormat::sevenZip: {
        const std::optional<QString> tool = firstTool(sevenZipTools());
        if (!tool)
            throw ExtractionError::toolNotFound(QStringLiteral("7z"));
        const QStringList args = sevenZipArguments(archive, destination, password);
        co_await runClassified(*tool, args, password.has_value(), onProgress);
        break;
    }
    default: {
        const QString tar = m_tools.fixedTool(QStringLiteral("tar"));
        const QStringList args = tarArguments(tarLetters(format), archive, destination);
        co_await m_tools.run(tar, args, {});
    }
    }
}

QCoro::Task<> ArchiveExtractor::unpackZip(QString archive, QString destination, Password password)
{
    const Lifetime::Watch watch = m_lifetime.watch();
    if (!password) {
        std::exception_ptr failure;
        try {
            const QStringList args = dittoArguments(archive, destination);
            co_await m_tools.run(m_tools.fixedTool(QStringLiteral("ditto")), args, {});
            co_return;
        } catch (const ArchiveError&) {
            failure = std::current_exception();
        }
        if (watch.isOver())
            std::rethrow_exception(failure);
    }
    std::exception_ptr failure;
    try {
        const QStringList args = unzipArguments(archive, destination, password);
        co_await runClassified(m_tools.fixedTool(QStringLiteral("unzip")), args, password.has_value(), {});
        co_return;
    } catch (const ArchiveError&) {
        failure = std::current_exception();
    }
    const std::optional<QString> tool = watch.isOver() ? std::nullopt : firstTool(sevenZipTools());
    if (!tool)
        std::rethrow_exception(failure);
    const QStringList args = sevenZipArguments(archive, destination, password);
    co_await runClassified(*tool, args, password.has_value(), {});
}

QCoro::Task<> ArchiveExtractor::runClassified(QString tool, QStringList args, bool passwordGiven, Progress onProgress)
{
    try {
        co_await m_tools.run(tool, args, onProgress);
    } catch (const ExtractionError& error) {
        throw classifyToolError(error, passwordGiven);
    }
}

QCoro::Task<VolumeTest> ArchiveExtractor::verify(QString archive)
{
    return testVolumes(m_tools, archive, m_trace);
}

bool ArchiveExtractor::canRepair() const
{
    return m_tools.findTool(repairTool()).has_value();
}

QCoro::Task<> ArchiveExtractor::repair(QString archive)
{
    const std::optional<QString> tool = m_tools.findTool(repairTool());
    if (!tool)
        throw ExtractionError::repairToolNotFound();
    const Trace trace = m_trace;
    traceRepair(archive);
    const QStringList args{QStringLiteral("rc"), QStringLiteral("-y"), archive};
    try {
        co_await m_tools.run(*tool, args, {});
        trace(QStringLiteral("[Repair] rar rc succeeded"));
    } catch (const ExtractionError& error) {
        trace(QStringLiteral("[Repair] rar rc") + failureText(error));
        throw;
    } catch (const ArchiveError& error) {
        trace(QStringLiteral("[Repair] rar rc FAILED: ") + error.errorDescription());
        throw;
    }
}

void ArchiveExtractor::traceRepair(const QString& archive) const
{
    const QDir folder = QFileInfo(archive).dir();
    // The listing is sorted by name; the pattern takes any letter case.
    constexpr QDir::Filters all = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    const auto count = folder.entryList({QStringLiteral("*.rar")}, all, QDir::Name).size();
    const QStringList revs = folder.entryList({QStringLiteral("*.rev")}, all, QDir::Name);
    m_trace(QStringLiteral("[Repair] dir=%1 rar=%2 rev=%3").arg(folder.dirName()).arg(count).arg(revs.size()));
    m_trace(QStringLiteral("[Repair] revs=") + revs.join(QStringLiteral(", ")));
}

std::optional<QString> ArchiveExtractor::firstTool(const QStringList& names) const
{
    for (const QString& name : names)
        if (std::optional<QString> path = m_tools.findTool(name))
            return path;
    return std::nullopt;
}

} // namespace vormel
