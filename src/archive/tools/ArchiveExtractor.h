#pragma once

#include "archive/sources/ArchiveFormat.h"
#include "archive/tools/ToolRunner.h"
#include "archive/tools/UnpackingTools.h"
#include "archive/tools/VolumeTest.h"
#include "platform/async/Background.h"
#include "platform/async/Lifetime.h"

#include <QCoroTask>
#include <QString>
#include <QStringList>

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace vormel {

class PlainPaths;
class WorkFolder;
enum class Recovery;

/// Unpacks, tests and repairs archives with the tools of the machine. UI thread only; what takes long happens in the
/// tools and on threads of its own. Paths are absolute. Everything throws kinds of DescribedError.
class ArchiveExtractor
{
public:
    /// Takes the lines of the developer's trace.
    using Trace = std::function<void(const QString&)>;
    using Progress = std::function<void(double)>;

    /// The tools outlive the extractor.
    explicit ArchiveExtractor(ToolRunner& tools);
    ArchiveExtractor(ToolRunner& tools, Trace trace);

    /// Unpacks into a work folder in the destination and looks over what came. onProgress, which may be empty, gets
    /// fractions from 0 to 1 where the tool tells. Nothing is left of a run that fails or is stopped.
    [[nodiscard]] QCoro::Task<std::shared_ptr<WorkFolder>>
    extract(QString archive, QString destination, Password password, Progress onProgress, std::stop_token stop = {});

    /// Tests a set of RAR volumes by its first one. onProgress may be empty.
    QCoro::Task<VolumeTest> verify(QString archive, Progress onProgress = {});

    /// Rebuilds missing and damaged volumes of a set out of its recovery volumes, by its first volume. Gives the paths
    /// of what was rebuilt and of what that replaced. Whatever the tool says, what it rebuilt is kept, unless it was
    /// killed. Throws when it failed and rebuilt nothing.
    [[nodiscard]] QCoro::Task<QStringList> repair(QString archive, std::stop_token stop = {});

    /// Is the tool there that can?
    [[nodiscard]] bool canRepair() const;

    [[nodiscard]] const ToolRunner& tools() const { return m_tools; }

private:
    /// One tool's try at an archive.
    struct Attempt
    {
        UnpackingTool tool;
        QString archive;
        ArchiveFormat format = ArchiveFormat::zip;
        bool isPasswordGiven = false;
        Progress onProgress;
        std::stop_token stop;
    };

    [[nodiscard]] QCoro::Task<std::shared_ptr<WorkFolder>> makeWorkFolder(const QString& destination);
    [[nodiscard]] QCoro::Task<std::shared_ptr<PlainPaths>>
    makePlainPaths(const QString& archive, const QString& destination, Recovery recovery);
    /// Lets go of what a tool was shown, and looks over what it made.
    [[nodiscard]] QCoro::Task<std::shared_ptr<WorkFolder>>
    settle(std::shared_ptr<WorkFolder> folder, std::shared_ptr<PlainPaths> paths, ArchiveFormat format, bool isFailed);
    [[nodiscard]] QCoro::Task<std::shared_ptr<WorkFolder>> unpack(Attempt attempt, QString destination);
    /// How a tool that rebuilds volumes has ended.
    struct Rebuilding
    {
        std::exception_ptr failure;
        bool isTrusted = true; ///< what it made is whole
    };
    [[nodiscard]] QCoro::Task<Rebuilding> rebuild(QString tool, QString archive, std::stop_token stop);

    ToolRunner& m_tools;
    Trace m_trace;
    Background m_background;
    Lifetime m_lifetime;
};

} // namespace vormel
