#include "sites/Greeting.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>

namespace vormel::sites {

namespace {

constexpr std::size_t limit = std::size_t{64} * 1024;

// The fields of a message, one after the other. Reading past the end gives zeros and nothing.
class Fields
{
public:
    explicit Fields(std::string_view bytes)
        : m_rest(bytes)
    {}

    [[nodiscard]] bool isEmpty() const { return m_rest.empty(); }
    std::string_view take(std::size_t count)
    {
        const auto taken = m_rest.substr(0, count);
        m_rest.remove_prefix(taken.size());
        return taken;
    }
    std::size_t number(std::size_t width)
    {
        std::size_t value = 0;
        for (const char byte : take(width))
            value = value * 256 + static_cast<std::uint8_t>(byte);
        return value;
    }
    // What is preceded by its length.
    Fields nested(std::size_t width) { return Fields(take(number(width))); }

private:
    std::string_view m_rest;
};

// The name in a ClientHello without its record and handshake heads.
std::optional<std::string> serverName(Fields hello)
{
    constexpr std::size_t versionAndRandom = 2 + 32;
    constexpr std::size_t serverNameExtension = 0;
    hello.take(versionAndRandom);
    hello.nested(1); // session
    hello.nested(2); // ciphers
    hello.nested(1); // compressions
    for (Fields extensions = hello.nested(2); !extensions.isEmpty();) {
        const std::size_t type = extensions.number(2);
        Fields extension = extensions.nested(2);
        if (type != serverNameExtension)
            continue;
        Fields names = extension.nested(2);
        names.take(1); // the kind of name; there is only one
        return std::string(names.take(names.number(2)));
    }
    return std::nullopt;
}

Greeting readTls(std::string_view bytes)
{
    constexpr std::size_t recordHead = 5;
    constexpr std::size_t handshakeHead = 4;
    Fields record(bytes);
    record.take(3); // type and version
    const std::size_t length = record.number(2);
    if (bytes.size() < recordHead + length)
        return {};
    const auto name = serverName(Fields(bytes.substr(recordHead).substr(std::min(handshakeHead, length))));
    return {true, name ? std::optional(*name + ":443") : std::nullopt};
}

Greeting readHttp(std::string_view bytes)
{
    constexpr std::string_view field = "\nhost:";
    if (bytes.find("\r\n\r\n") == std::string_view::npos)
        return {};
    std::string head(bytes);
    std::transform(head.begin(), head.end(), head.begin(),
                   [](char letter) { return static_cast<char>(std::tolower(static_cast<unsigned char>(letter))); });
    const std::size_t at = head.find(field);
    if (at == std::string::npos)
        return {true, std::nullopt};
    const std::size_t begin = std::min(head.find_first_not_of(' ', at + field.size()), head.size());
    const std::string host = head.substr(begin, head.find('\r', begin) - begin);
    return {true, host.find(':') == std::string::npos ? host + ":80" : host};
}

} // namespace

Greeting Greeting::read(std::string_view bytes)
{
    constexpr char tlsHandshake = 22;
    if (bytes.size() > limit)
        return {true, std::nullopt};
    if (bytes.empty())
        return {};
    return bytes.front() == tlsHandshake ? readTls(bytes) : readHttp(bytes);
}

} // namespace vormel::sites
