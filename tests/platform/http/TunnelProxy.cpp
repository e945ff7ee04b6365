#include "platform/http/TunnelProxy.h"

#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <netinet/in.h>
#include <poll.h>
#include <string>
#include <string_view>

namespace vormel {

namespace {

sockaddr_in loopback(std::uint16_t port)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

bool sendAll(int socket, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t sent = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

/// The port of "CONNECT host:port HTTP/1.1"; 0 if it was something else.
std::uint16_t wantedPort(int client)
{
    std::string head;
    while (head.find("\r\n\r\n") == std::string::npos) {
        std::array<char, 4096> piece{};
        const ssize_t count = ::recv(client, piece.data(), piece.size(), 0);
        if (count <= 0)
            return 0;
        head.append(piece.data(), static_cast<std::size_t>(count));
    }
    const std::size_t colon = head.find(':');
    return head.starts_with("CONNECT ") && colon != std::string::npos
               ? static_cast<std::uint16_t>(std::atoi(head.c_str() + colon + 1))
               : std::uint16_t{0};
}

} // namespace

TunnelProxy::TunnelProxy()
    : m_listening(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    , m_stopping(::eventfd(0, EFD_CLOEXEC))
{
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    constexpr int backlog = 16;
    if (::bind(m_listening.get(), generic, size) != 0 || ::listen(m_listening.get(), backlog) != 0 ||
        ::getsockname(m_listening.get(), generic, &size) != 0)
        std::abort();
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { serve(); });
}

TunnelProxy::~TunnelProxy()
{
    ::eventfd_write(m_stopping.get(), 1);
    m_thread.join();
}

void TunnelProxy::serve() const
{
    while (true) {
        std::array<pollfd, 2> waits{{{m_listening.get(), POLLIN, 0}, {m_stopping.get(), POLLIN, 0}}};
        ::poll(waits.data(), waits.size(), -1);
        if (waits[1].revents != 0)
            return;
        const FileDescriptor client(::accept4(m_listening.get(), nullptr, nullptr, SOCK_CLOEXEC));
        if (client.isOpen())
            tunnel(client.get());
    }
}

void TunnelProxy::tunnel(int client) const
{
    const FileDescriptor server(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const sockaddr_in address = loopback(wantedPort(client));
    if (::connect(server.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        !sendAll(client, "HTTP/1.1 200 Connection established\r\nX-Proxy: here\r\n\r\n"))
        return;
    while (true) {
        std::array<pollfd, 3> waits{{{client, POLLIN, 0}, {server.get(), POLLIN, 0}, {m_stopping.get(), POLLIN, 0}}};
        ::poll(waits.data(), waits.size(), -1);
        if (waits[2].revents != 0)
            return;
        for (const std::size_t from : {std::size_t{0}, std::size_t{1}}) {
            if (waits[from].revents == 0)
                continue;
            std::array<char, 65536> piece{};
            const ssize_t count = ::recv(waits[from].fd, piece.data(), piece.size(), 0);
            if (count <= 0 || !sendAll(waits[1 - from].fd, {piece.data(), static_cast<std::size_t>(count)}))
                return;
        }
    }
}

} // namespace vormel
