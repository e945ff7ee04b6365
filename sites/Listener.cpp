#include "sites/Listener.h"

#include <sys/socket.h>

#include <cerrno>
#include <chrono>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <system_error>

namespace vormel::sites {

namespace {

void requireDone(bool done, const char* step)
{
    if (!done)
        throw std::system_error(errno, std::generic_category(), step);
}

sockaddr* generic(sockaddr_in& address)
{
    return reinterpret_cast<sockaddr*>(&address);
}

} // namespace

Listener::Listener(std::uint16_t port)
    : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0))
{
    requireDone(m_socket.isOpen(), "socket");
    const int on = 1;
    requireDone(setsockopt(m_socket.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) == 0, "SO_REUSEADDR");
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    requireDone(bind(m_socket.get(), generic(address), sizeof address) == 0, "bind");
    requireDone(listen(m_socket.get(), SOMAXCONN) == 0, "listen");
    socklen_t length = sizeof address;
    requireDone(getsockname(m_socket.get(), generic(address), &length) == 0, "getsockname");
    m_port = ntohs(address.sin_port);
}

FileDescriptor Listener::accept(Interrupt& interrupt) const
{
    while (!interrupt.isStopped()) {
        FileDescriptor connection(::accept4(m_socket.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
        if (connection.isOpen()) {
            const int on = 1;
            setsockopt(connection.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
            return connection;
        }
        if (errno == EAGAIN)
            static_cast<void>(interrupt.wait(m_socket.get(), POLLIN));
        else // out of descriptors, say: the waiting client stays in the queue meanwhile
            static_cast<void>(interrupt.wait(-1, 0, std::chrono::milliseconds(10)));
    }
    return FileDescriptor();
}

} // namespace vormel::sites
