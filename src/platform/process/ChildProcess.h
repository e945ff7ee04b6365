#pragma once

#include "platform/async/Eventual.h"

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace vormel {

/// How a program ended.
struct ChildEnd
{
    /// Set when it could not be started, in the system's words, or was given up; the rest means nothing then.
    std::optional<QString> launchError;
    /// Its exit code, or 128 + the number of the signal that ended it.
    int status = 0;
    /// Standard output and standard error, interleaved as they were written. Beyond two MiB the middle is left out.
    QByteArray output;
};

/// Runs programs to their end and owns those that run: destroying it kills each one with all that it started, and
/// whoever waits goes on with a launchError. UI thread only.
class ChildProcesses
{
public:
    /// All programs get this environment, as a rule that of this program.
    explicit ChildProcesses(
        const QProcessEnvironment& environment = QProcessEnvironment(QProcessEnvironment::InheritFromParent));
    ChildProcesses(const ChildProcesses&) = delete;
    ChildProcesses& operator=(const ChildProcesses&) = delete;
    ~ChildProcesses();

    /// Starts the program at an absolute path, in a session and process group of its own, with nothing to read on
    /// standard input. It does not outlive this program. onOutput, which may be empty, gets each piece of output as it
    /// comes, all of them before the result is there. A stop, asked for on the UI thread, kills the program with all
    /// that it started; the result then tells of the signal.
    [[nodiscard]] Eventual<ChildEnd> run(const QString& path, const QStringList& args,
                                         std::function<void(const QByteArray&)> onOutput, std::stop_token stop = {});

private:
    class Running;

    [[nodiscard]] std::unique_ptr<Running> takeOut(const Running& running);

    QProcessEnvironment m_environment;
    std::vector<std::unique_ptr<Running>> m_running;
};

} // namespace vormel
