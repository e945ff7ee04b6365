#include "platform/process/ChildProcess.h"

#include "platform/async/Lifetime.h"
#include "platform/process/BoundedOutput.h"
#include "platform/process/DefaultSignals.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>

#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// What a shell adds to a signal's number, so that no crash is taken for an exit code of the program's own.
constexpr int statusOfSignals = 128;

ChildEnd notRun(const QString& why)
{
    ChildEnd end;
    end.launchError = why;
    return end;
}

/// Runs between fork and exec, in memory that may be shared with this program: nothing but calls that are safe there.
void prepareChild(pid_t parent)
{
    // Away from a terminal of ours, which a tool would ask for a password.
    ::setsid();
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent)
        ::_exit(1);
    restoreDefaultSignals();
}

/// Qt puts the name of the failed call before the system's words.
QString systemWords(const QString& error)
{
    const qsizetype colon = error.indexOf(u": ");
    return colon < 0 ? error : error.mid(colon + 2);
}

} // namespace

class ChildProcesses::Running
{
public:
    using Output = std::function<void(const QByteArray&)>;

    Running(ChildProcesses& owner, Output onOutput, std::stop_token stop)
        : m_owner(owner)
        , m_onOutput(std::move(onOutput))
        , m_source(notRun(u"The program was ended"_s))
        , m_process(std::make_unique<QProcess>())
        , m_onStop(std::move(stop), [this] { kill(); })
    {
        m_process->setProcessEnvironment(owner.m_environment);
        m_process->setProcessChannelMode(QProcess::MergedChannels);
        m_process->setStandardInputFile(QProcess::nullDevice());
        m_process->setChildProcessModifier([parent = ::getpid()] { prepareChild(parent); });
        QObject::connect(m_process.get(), &QProcess::readyRead, [this] { take(); });
        QObject::connect(m_process.get(), &QProcess::errorOccurred, [this](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart)
                end(notRun(systemWords(m_process->errorString())));
        });
        QObject::connect(m_process.get(), &QProcess::finished, [this](int code, QProcess::ExitStatus status) {
            finish(status == QProcess::CrashExit ? statusOfSignals + code : code);
        });
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running()
    {
        m_process->disconnect();
        kill();
        // It may be one of its own signals that leads here, so it goes later. The posted call owns it: deleteLater()
        // would do nothing for one that failed to start before the event loop ran.
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [process = std::shared_ptr<QProcess>(std::move(m_process))] { process->waitForFinished(); },
            Qt::QueuedConnection);
    }

    void start(const QString& path, const QStringList& args)
    {
        // For each program that it cannot start, QProcess leaves a descriptor open.
        if (::access(QFile::encodeName(path).constData(), X_OK) == 0)
            m_process->start(path, args, QProcess::ReadOnly);
        else
            giveUpLater(QString::fromStdString(std::generic_category().message(errno)));
    }
    [[nodiscard]] Eventual<ChildEnd> eventual() const { return m_source.eventual(); }

private:
    void kill() const
    {
        // The child is not waited for yet, so its number is still its own; it may not have made its group yet.
        const auto child = static_cast<pid_t>(m_process->processId());
        if (child > 0 && ::kill(-child, SIGKILL) != 0)
            ::kill(child, SIGKILL);
    }

    /// As QProcess does: whoever starts a program has returned before its end is there.
    void giveUpLater(const QString& why)
    {
        const auto giveUp = [this, why, watch = m_lifetime.watch()] {
            if (!watch.isOver())
                end(notRun(why));
        };
        QMetaObject::invokeMethod(m_process.get(), giveUp, Qt::QueuedConnection);
    }

    /// The receiver may do away with this object.
    void take()
    {
        const QByteArray piece = m_process->readAll();
        m_output.append(piece);
        const Output onOutput = m_onOutput;
        if (onOutput && !piece.isEmpty())
            onOutput(piece);
    }

    void finish(int status)
    {
        const Lifetime::Watch watch = m_lifetime.watch();
        take();
        if (watch.isOver())
            return;
        ChildEnd result;
        result.status = status;
        result.output = m_output.text();
        end(std::move(result));
    }

    void end(ChildEnd result)
    {
        // Whoever waits may do away with the owner.
        const std::unique_ptr<Running> self = m_owner.takeOut(*this);
        m_source.deliver(std::move(result));
    }

    ChildProcesses& m_owner;
    Output m_onOutput;
    EventualSource<ChildEnd> m_source;
    BoundedOutput m_output;
    std::unique_ptr<QProcess> m_process;
    std::stop_callback<std::function<void()>> m_onStop;
    Lifetime m_lifetime;
};

ChildProcesses::ChildProcesses(const QProcessEnvironment& environment)
    : m_environment(environment)
{}

ChildProcesses::~ChildProcesses()
{
    // Whoever waits goes on in here and must find a whole object.
    const std::vector<std::unique_ptr<Running>> ended = std::exchange(m_running, {});
}

Eventual<ChildEnd> ChildProcesses::run(const QString& path, const QStringList& args,
                                       std::function<void(const QByteArray&)> onOutput, std::stop_token stop)
{
    const bool isStopped = stop.stop_requested();
    Running& running = *m_running.emplace_back(std::make_unique<Running>(*this, std::move(onOutput), std::move(stop)));
    Eventual<ChildEnd> eventual = running.eventual();
    if (isStopped)
        static_cast<void>(takeOut(running)); // whoever waits hears that it was given up
    else
        running.start(path, args);
    return eventual;
}

std::unique_ptr<ChildProcesses::Running> ChildProcesses::takeOut(const Running& running)
{
    const auto found = std::find_if(m_running.begin(), m_running.end(),
                                    [&](const std::unique_ptr<Running>& each) { return each.get() == &running; });
    std::unique_ptr<Running> taken = std::move(*found);
    m_running.erase(found);
    return taken;
}

} // namespace vormel
