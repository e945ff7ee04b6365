#pragma once

#include "sites/Activity.h"
#include "sites/Answer.h"
#include "sites/Connection.h"
#include "sites/FileDescriptor.h"
#include "sites/Interrupt.h"
#include "sites/Listener.h"
#include "sites/Request.h"
#include "sites/Resource.h"
#include "sites/Routes.h"
#include "sites/TlsContext.h"
#include "sites/TlsIdentity.h"

#include <chrono>
#include <cstdint>
#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace vormel::sites {

// An HTTP/1.1 server on 127.0.0.1 that serves what it is told to, well or badly. It runs on threads of its own from
// construction to destruction, needs no event loop, and all its functions may be called from any thread.
class FileServer
{
public:
    struct Options
    {
        std::optional<TlsIdentity> tls{};                          // https if given
        std::uint16_t port = 0;                                    // 0 takes a free one
        std::vector<std::pair<std::string, Resource>> resources{}; // served from the first request on
    };

    // Throws std::system_error if it cannot listen, std::runtime_error if the identity is unusable.
    FileServer();
    explicit FileServer(const Options& options);
    FileServer(const FileServer&) = delete;
    FileServer& operator=(const FileServer&) = delete;
    // Cuts all connections at once, whatever they are doing.
    ~FileServer();

    [[nodiscard]] std::uint16_t port() const { return m_listener.port(); }
    // The address of a path, which starts with a slash; of 127.0.0.1 unless a host name is given.
    [[nodiscard]] std::string url(std::string_view path) const;
    [[nodiscard]] std::string url(std::string_view host, std::string_view path) const;

    // Serves the resource from the next request on, instead of what was there. A path with a query serves only
    // requests with that very query, one without all the others.
    void serve(std::string path, Resource resource);
    // Changes the behaviour from the next request on, which gets the first answer. Throws std::out_of_range for a path
    // that is not served.
    void setAnswers(const std::string& path, std::vector<Answer> answers);
    // Lets all answers that stall at this moment go on; later ones stall again.
    void release();

    // The requests so far, in the order they came in: all, or those for a path.
    [[nodiscard]] std::vector<Request> requests() const { return m_activity.requests(); }
    [[nodiscard]] std::vector<Request> requests(std::string_view path) const { return m_activity.requests(path); }
    // Whether there were so many requests for the path, at the latest after the time.
    [[nodiscard]] bool waitForRequests(std::string_view path, std::size_t count, std::chrono::milliseconds time) const;
    // Whether so many answers stall, at the latest after the time.
    [[nodiscard]] bool waitForStalled(int count, std::chrono::milliseconds time) const;

    [[nodiscard]] int connectionsAccepted() const { return m_activity.accepted(); }
    [[nodiscard]] int connectionsOpen() const { return m_activity.open(); }
    [[nodiscard]] int mostConnectionsOpen() const { return m_activity.mostOpen(); }
    // Bytes of bodies given to the system, without the framing of chunks; a block on its way counts already.
    [[nodiscard]] std::int64_t bodyBytesSent() const { return m_activity.bodyBytes(); }

private:
    void acceptConnections();
    void startConnection(FileDescriptor socket);
    void dropEndedConnections();

    std::optional<TlsContext> m_tls;
    Routes m_routes;
    Activity m_activity;
    Interrupt m_interrupt;
    Listener m_listener;
    std::mutex m_mutex; // guards m_connections
    std::list<Connection> m_connections;
    std::thread m_thread; // last: it uses all the others
};

} // namespace vormel::sites
