#include "platform/http/OpenSockets.h"

#include <sys/socket.h>

#include <netinet/in.h>

namespace vormel {

namespace {

using NameOf = int (*)(int, sockaddr*, socklen_t*);

/// The port of one end of a socket; -1 for what is no socket of the internet, or none any more.
int portOf(NameOf nameOf, curl_socket_t socket)
{
    sockaddr_storage name = {};
    socklen_t size = sizeof name;
    if (nameOf(socket, reinterpret_cast<sockaddr*>(&name), &size) != 0)
        return -1;
    if (name.ss_family == AF_INET)
        return ntohs(reinterpret_cast<const sockaddr_in*>(&name)->sin_port);
    return name.ss_family == AF_INET6 ? ntohs(reinterpret_cast<const sockaddr_in6*>(&name)->sin6_port) : -1;
}

bool isReadable(curl_socket_t socket)
{
    char byte = 0;
    return ::recv(socket, &byte, 1, MSG_PEEK | MSG_DONTWAIT) > 0;
}

} // namespace

bool OpenSockets::hasUnread(int localPort, int remotePort)
{
    bool isKnown = false;
    bool isUnread = false;
    // Numbers of closed sockets may stand for something else by now; what has no ports is forgotten.
    std::erase_if(m_sockets, [&](curl_socket_t socket) {
        const int local = portOf(&::getsockname, socket);
        if (local == localPort && portOf(&::getpeername, socket) == remotePort) {
            isKnown = true;
            isUnread = isUnread || isReadable(socket);
        }
        return local < 0;
    });
    return !isKnown || isUnread;
}

} // namespace vormel
