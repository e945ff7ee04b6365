#pragma once

#include "sites/Interrupt.h"
#include "sites/Listener.h"
#include "sites/PhoneCall.h"

#include <cstdint>
#include <list>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace vormel::sites {

// One port of 127.0.0.1 for servers of many names: each client is put through to the server that stands for the name it
// asks for, in its TLS greeting or its HTTP request. For clients that can be told of one port only, once and for all,
// while servers come and go. A client of another name is hung up on. Runs on threads of its own; any thread.
class Switchboard
{
public:
    // From "name:443" or "name:80" to "127.0.0.1:port", as the stand-ins tell.
    using Places = std::map<std::string, std::string>;

    Switchboard(); // throws std::system_error if it cannot listen
    Switchboard(const Switchboard&) = delete;
    Switchboard& operator=(const Switchboard&) = delete;
    // Cuts all connections.
    ~Switchboard();

    [[nodiscard]] std::uint16_t port() const { return m_listener.port(); }
    // What a browser's --host-resolver-rules need to have every name lead here.
    [[nodiscard]] std::string resolverRules() const;

    // From the next connection on; places of the same names are replaced.
    void lead(const Places& places);
    // Forgets these places. Connections that are there go on.
    void forget(const Places& places);
    // The places that somebody asked for in vain, in their order.
    [[nodiscard]] std::vector<std::string> unknownPlaces() const;

private:
    void acceptCalls();
    [[nodiscard]] std::uint16_t portOf(const std::string& place);

    Interrupt m_interrupt;
    Listener m_listener;
    mutable std::mutex m_mutex; // guards all up to the calls
    Places m_places;
    std::vector<std::string> m_unknown;
    std::list<PhoneCall> m_calls; // of m_thread alone
    std::thread m_thread;         // last: it uses all the others
};

} // namespace vormel::sites
