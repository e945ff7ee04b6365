#include "sites/NginxServer.h"

#include "sites/FileDescriptor.h"
#include "sites/Interrupt.h"
#include "sites/Listener.h"
#include "sites/NginxConfiguration.h"
#include "sites/TextFile.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <stdexcept>
#include <system_error>
#include <thread>

namespace vormel::sites {

namespace {

using std::chrono::steady_clock;
constexpr std::chrono::milliseconds pollInterval(2);
constexpr std::chrono::milliseconds reminderInterval(100);

// Turns the forked child into the program. Only what is allowed between fork and exec in a program with threads.
[[noreturn]] void become(const char* const* arguments)
{
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    setpgid(0, 0); // with its workers
    // A crashing test must not leave it behind.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    const int nowhere = open("/dev/null", O_RDWR);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        dup2(nowhere, standard);
    execv(arguments[0], const_cast<char* const*>(arguments)); // does not change them
    _exit(127);
}

pid_t run(const std::filesystem::path& executable, const std::filesystem::path& folder,
          const std::filesystem::path& configuration)
{
    const auto errorLog = nginxErrorLog(folder);
    const std::array<const char*, 8> arguments{executable.c_str(), "-p", folder.c_str(),        "-e",
                                               errorLog.c_str(),   "-c", configuration.c_str(), nullptr};
    const auto process = fork();
    if (process == 0)
        become(arguments.data());
    if (process < 0)
        throw std::system_error(errno, std::generic_category(), "fork");
    return process;
}

} // namespace

bool NginxServer::isAvailable(const std::filesystem::path& executable)
{
    return access(executable.c_str(), X_OK) == 0;
}

NginxServer::NginxServer(const Options& options)
    : m_folder(std::filesystem::absolute(options.folder))
    , m_tls(options.tls.has_value())
{
    std::filesystem::create_directories(m_folder);
    // A port found free may be taken by another program the moment after.
    constexpr int attempts = 3;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (start(options))
            return;
    }
    throw std::runtime_error("nginx does not start: " + readTextFile(nginxErrorLog(m_folder)));
}

NginxServer::~NginxServer()
{
    stop();
}

std::string NginxServer::url(std::string_view path) const
{
    return std::string(m_tls ? "https" : "http").append("://127.0.0.1:").append(std::to_string(m_port)).append(path);
}

bool NginxServer::start(const Options& options)
{
    m_port = Listener(0).port();
    const auto configuration = writeNginxConfiguration(options, m_port);
    std::filesystem::remove(nginxPidFile(m_folder));
    m_process = run(options.executable, m_folder, configuration);
    if (waitUntilReady())
        return true;
    stop();
    return false;
}

// It writes its process id after it has begun to listen; just connecting could reach another program on the port.
bool NginxServer::waitUntilReady()
{
    const auto end = steady_clock::now() + std::chrono::seconds(10);
    const auto ownId = std::to_string(m_process) + "\n";
    while (!hasExited() && steady_clock::now() < end) {
        if (readTextFile(nginxPidFile(m_folder)) == ownId)
            return true;
        std::this_thread::sleep_for(pollInterval);
    }
    return false;
}

bool NginxServer::hasExited()
{
    if (m_process > 0 && waitpid(m_process, nullptr, WNOHANG) != 0)
        m_process = -1;
    return m_process < 0;
}

void NginxServer::stop()
{
    if (hasExited())
        return;
    const auto end = steady_clock::now() + std::chrono::seconds(3);
    auto nextReminder = steady_clock::now();
    while (!hasExited() && steady_clock::now() < end) {
        // One that is told to end just before its workers are started forgets it, and goes on until the next signal.
        if (steady_clock::now() >= nextReminder) {
            kill(m_process, SIGTERM);
            nextReminder += reminderInterval;
        }
        std::this_thread::sleep_for(pollInterval);
    }
    if (!hasExited()) {
        kill(-m_process, SIGKILL); // its workers, too, which would go on without it
        waitpid(m_process, nullptr, 0);
        m_process = -1;
    }
}

} // namespace vormel::sites
