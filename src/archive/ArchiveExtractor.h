#pragma once

#include "archive/VolumeTest.h"
#include "archive/tools/ToolArguments.h"
#include "archive/tools/ToolRunner.h"
#include "platform/async/Lifetime.h"

#include <QCoroTask>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace vormel {

/// Unpacks, tests and repairs archives with the tools of the machine. UI thread only; what takes long happens in the
/// tools. Paths are absolute. Everything throws ArchiveError and its kinds.
class ArchiveExtractor
{
public:
    /// Takes the lines of the developer's trace.
    using Trace = std::function<void(const QString&)>;

    /// The tools outlive the extractor.
    explicit ArchiveExtractor(ToolRunner& tools);
    ArchiveExtractor(ToolRunner& tools, Trace trace);

    /// Unpacks into the destination, which is made when needed. onProgress, which may be empty, gets fractions from 0
    /// to 1 where the tool tells. What was unpacked before a failure stays, but never a symbolic link that leads out of
    /// the destination.
    QCoro::Task<> extract(QString archive, QString destination, Password password,
                          std::function<void(double)> onProgress);

    /// Tests a set of RAR volumes by its first one.
    QCoro::Task<VolumeTest> verify(QString archive);

    /// Rebuilds missing and damaged volumes of a set out of its recovery volumes, by its first volume.
    QCoro::Task<> repair(QString archive);

    /// Is the tool there that can?
    [[nodiscard]] bool canRepair() const;

    [[nodiscard]] const ToolRunner& tools() const { return m_tools; }

private:
    using Progress = std::function<void(double)>;

    QCoro::Task<> unpack(QString archive, QString destination, Password password, Progress onProgress);
    QCoro::Task<> unpackZip(QString archive, QString destination, Password password);
    QCoro::Task<> runClassified(QString tool, QStringList args, bool passwordGiven, Progress onProgress);
    [[nodiscard]] std::optional<QString> firstTool(const QStringList& names) const;
    void traceRepair(const QString& archive) const;

    ToolRunner& m_tools;
    Trace m_trace;
    Lifetime m_lifetime;
};

} // namespace vormel
