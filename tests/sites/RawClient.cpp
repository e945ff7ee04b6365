#include "RawClient.h"

#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>
#include <netinet/in.h>
#include <system_error>

namespace vormel::sites {

namespace {

void require(bool done, const char* step)
{
    if (!done)
        throw std::system_error(errno, std::generic_category(), step);
}

} // namespace

RawClient::RawClient(std::uint16_t port)
    : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    const timeval patience{.tv_sec = 5, .tv_usec = 0};
    require(setsockopt(m_socket.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience) == 0, "SO_RCVTIMEO");
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    require(::connect(m_socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) == 0, "connect");
}

void RawClient::send(std::string_view text)
{
    const auto sent = ::send(m_socket.get(), text.data(), text.size(), MSG_NOSIGNAL);
    require(sent == static_cast<ssize_t>(text.size()), "send");
}

void RawClient::get(std::string_view path, std::string_view headers)
{
    send("GET " + std::string(path) + " HTTP/1.1\r\nHost: test\r\n" + std::string(headers) + "\r\n");
}

RawClient::Received RawClient::receive(std::size_t count)
{
    Received received;
    std::array<char, 64 * 1024> block{};
    while (received.bytes.size() < count) {
        const auto most = std::min(block.size(), count - received.bytes.size());
        const auto got = ::recv(m_socket.get(), block.data(), most, 0);
        if (got <= 0) {
            received.end = got == 0 ? End::fin : errno == ECONNRESET ? End::reset : End::timeout;
            break;
        }
        received.bytes.append(block.data(), static_cast<std::size_t>(got));
    }
    return received;
}

RawClient::Received RawClient::receiveAll()
{
    return receive(std::numeric_limits<std::size_t>::max());
}

std::string RawClient::receiveHead()
{
    std::string head;
    while (!head.ends_with("\r\n\r\n")) {
        const auto next = receive(1);
        if (next.bytes.empty())
            break;
        head += next.bytes;
    }
    return head;
}

std::string bodyOf(const std::string& answer)
{
    const auto blank = answer.find("\r\n\r\n");
    return blank == std::string::npos ? std::string() : answer.substr(blank + 4);
}

} // namespace vormel::sites
