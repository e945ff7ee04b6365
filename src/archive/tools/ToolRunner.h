#pragma once

#include "platform/process/ChildProcess.h"

#include <QCoroTask>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <stop_token>

namespace vormel {

/// Finds the command-line programs that do all archive work, and runs them. UI thread only. Destroying it kills the
/// tools that run; their callers get a ToolLaunchError.
class ToolRunner
{
public:
    /// Each with a "/" at its end.
    struct Folders
    {
        QStringList searched{QStringLiteral("/usr/bin/"), QStringLiteral("/usr/local/bin/"),
                             QStringLiteral("/opt/homebrew/bin/")};
        /// Where the tools are that belong to the system: ditto, unzip, tar.
        QString fixed{QStringLiteral("/usr/bin/")};
    };

    explicit ToolRunner(Folders folders);
    ToolRunner()
        : ToolRunner(Folders())
    {}

    [[nodiscard]] const QStringList& searchedFolders() const { return m_folders.searched; }
    /// The path of the tool in the first folder that has it. Asked of the disk each time, as tools come and go.
    [[nodiscard]] std::optional<QString> findTool(const QString& name) const;
    /// The path of a tool of the system, whether or not it is there.
    [[nodiscard]] QString fixedTool(const QString& name) const;

    /// Runs a tool to its end, in an environment that does not depend on the user's. onProgress, which may be empty,
    /// gets fractions from 0 to 1 out of the percentages that it prints; onLine, which may be empty, gets each line of
    /// its output as it comes. A stop kills the tool. Throws ExtractionError::extractionFailed for a status other than
    /// 0, ToolStopped, and ToolLaunchError.
    QCoro::Task<> run(QString path, QStringList args, std::function<void(double)> onProgress, std::stop_token stop = {},
                      std::function<void(const QByteArray&)> onLine = nullptr);

private:
    Folders m_folders;
    ChildProcesses m_processes;
};

} // namespace vormel
