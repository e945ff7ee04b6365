#pragma once

#include "sites/FileDescriptor.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vormel::sites {

// Speaks to a server byte by byte. Whatever takes longer than five seconds counts as a timeout.
class RawClient
{
public:
    enum class End
    {
        open, // as much as was asked for has come
        fin,
        reset,
        timeout,
    };

    struct Received
    {
        std::string bytes;
        End end = End::open;
    };

    explicit RawClient(std::uint16_t port); // throws std::system_error

    void send(std::string_view text);
    void get(std::string_view path, std::string_view headers = {});
    [[nodiscard]] Received receive(std::size_t count);
    [[nodiscard]] Received receiveAll();
    // Up to and with the blank line.
    [[nodiscard]] std::string receiveHead();
    [[nodiscard]] int socket() const { return m_socket.get(); }
    void hangUp() { m_socket.close(); }

private:
    FileDescriptor m_socket;
};

// The part of a whole answer behind the blank line.
[[nodiscard]] std::string bodyOf(const std::string& answer);

} // namespace vormel::sites
