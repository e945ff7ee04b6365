#pragma once

#include "sites/TlsIdentity.h"

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vormel::sites {

// The installed nginx, serving a folder on a free port of 127.0.0.1 from construction to destruction: one worker,
// sendfile, nothing logged but errors. It also ends with the thread that made it.
class NginxServer
{
public:
    struct Options
    {
        std::filesystem::path folder;       // for its configuration, error log and certificate; made if missing
        std::filesystem::path documentRoot; // what it serves
        std::optional<TlsIdentity> tls{};   // https if given
        std::filesystem::path executable = "/usr/sbin/nginx";
    };

    // Whether there is something to run.
    [[nodiscard]] static bool isAvailable(const std::filesystem::path& executable = "/usr/sbin/nginx");

    // Returns once it takes connections. Throws std::runtime_error, with nginx' own words, if it does not start, and
    // std::invalid_argument for paths its configuration cannot name.
    explicit NginxServer(const Options& options);
    NginxServer(const NginxServer&) = delete;
    NginxServer& operator=(const NginxServer&) = delete;
    ~NginxServer();

    [[nodiscard]] std::uint16_t port() const { return m_port; }
    [[nodiscard]] pid_t processId() const { return m_process; }
    // The address of a path below the document root, which starts with a slash.
    [[nodiscard]] std::string url(std::string_view path) const;

private:
    [[nodiscard]] bool start(const Options& options);
    [[nodiscard]] bool waitUntilReady();
    [[nodiscard]] bool hasExited();
    void stop();

    std::filesystem::path m_folder;
    bool m_tls;
    std::uint16_t m_port = 0;
    pid_t m_process = -1;
};

} // namespace vormel::sites
