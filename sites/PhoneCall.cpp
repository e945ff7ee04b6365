#include "sites/PhoneCall.h"

#include "sites/Greeting.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <string_view>
#include <system_error>
#include <utility>

namespace vormel::sites {

namespace {

constexpr std::size_t blockBytes = std::size_t{64} * 1024;

ssize_t receive(int socket, std::array<char, blockBytes>& block)
{
    while (true) {
        const ssize_t count = ::recv(socket, block.data(), block.size(), MSG_DONTWAIT);
        if (count >= 0 || (errno != EAGAIN && errno != EINTR))
            return count;
        pollfd watched{.fd = socket, .events = POLLIN, .revents = 0};
        ::poll(&watched, 1, -1);
    }
}

bool sendAll(int socket, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
            continue;
        }
        if (errno != EAGAIN && errno != EINTR)
            return false;
        pollfd watched{.fd = socket, .events = POLLOUT, .revents = 0};
        ::poll(&watched, 1, -1);
    }
    return true;
}

void cut(int socket)
{
    ::shutdown(socket, SHUT_RDWR);
}

// What broke on one side breaks on the other, too, instead of ending in order.
void breakOff(int socket)
{
    const sockaddr nobody{.sa_family = AF_UNSPEC, .sa_data = {}};
    static_cast<void>(::connect(socket, &nobody, sizeof nobody));
}

} // namespace

PhoneCall::PhoneCall(FileDescriptor client, PortOf portOf)
    : m_client(std::move(client))
    , m_server(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    if (!m_server.isOpen())
        throw std::system_error(errno, std::generic_category(), "socket");
    m_thread = std::thread([this, portOf = std::move(portOf)] { run(portOf); });
}

PhoneCall::~PhoneCall()
{
    cut(m_client.get());
    cut(m_server.get());
    m_thread.join();
}

void PhoneCall::run(const PortOf& portOf)
{
    std::string bytes;
    const std::string place = listen(bytes);
    const std::uint16_t port = place.empty() ? 0 : portOf(place);
    if (port != 0 && dial(port) && sendAll(m_server.get(), bytes))
        relay();
    cut(m_client.get());
    cut(m_server.get());
    m_isOver = true;
}

std::string PhoneCall::listen(std::string& bytes) const
{
    std::array<char, blockBytes> block{};
    while (true) {
        const ssize_t count = receive(m_client.get(), block);
        if (count <= 0)
            return {};
        bytes.append(block.data(), static_cast<std::size_t>(count));
        const Greeting greeting = Greeting::read(bytes);
        if (greeting.isWhole)
            return greeting.place.value_or("");
    }
}

bool PhoneCall::dial(std::uint16_t port) const
{
    const int on = 1;
    setsockopt(m_server.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return ::connect(m_server.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
}

void PhoneCall::relay() const
{
    std::array<char, blockBytes> block{};
    std::array<pollfd, 2> ends{pollfd{.fd = m_client.get(), .events = POLLIN, .revents = 0},
                               pollfd{.fd = m_server.get(), .events = POLLIN, .revents = 0}};
    // Whoever has said its last is not listened to any more.
    while (ends[0].fd >= 0 || ends[1].fd >= 0) {
        if (::poll(ends.data(), ends.size(), -1) < 0)
            continue;
        for (auto& end : ends) {
            if (end.fd < 0 || end.revents == 0)
                continue;
            const int other = end.fd == m_client.get() ? m_server.get() : m_client.get();
            const ssize_t count = receive(end.fd, block);
            if (count < 0 || (count > 0 && !sendAll(other, {block.data(), static_cast<std::size_t>(count)})))
                return breakOff(other);
            if (count == 0) {
                ::shutdown(other, SHUT_WR);
                end.fd = -1;
            }
        }
    }
}

} // namespace vormel::sites
