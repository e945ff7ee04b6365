#pragma once

#include <curl/curl.h>

#include <set>

namespace vormel {

/// The sockets that one client has opened, so that a connection may be looked at before it is used again; libcurl
/// itself does not say which socket a request is about to take. Client's thread only.
class OpenSockets
{
public:
    void add(curl_socket_t socket) { m_sockets.insert(socket); }
    /// No connection of before is known any more, so that none is used again.
    void forgetAll() { m_sockets.clear(); }

    /// Has the server sent something on this connection that nobody asked for? Also true of one that is not known.
    [[nodiscard]] bool hasUnread(int localPort, int remotePort);

private:
    std::set<curl_socket_t> m_sockets;
};

} // namespace vormel
