#pragma once

#include "sites/Channel.h"
#include "sites/Request.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace vormel::sites {

// Reads the requests of one connection, one after the other, with their bodies. Heads and bodies beyond 64 MiB and
// malformed ones end the connection.
class RequestReader
{
public:
    explicit RequestReader(Channel& channel);

    // None at the end of the connection.
    [[nodiscard]] std::optional<Request> next();

private:
    [[nodiscard]] bool readBody(Request& request);
    [[nodiscard]] bool readChunks(std::string& body);
    // The bytes up to the next `end`, which is taken too.
    [[nodiscard]] std::optional<std::string> takeUntil(std::string_view end);
    [[nodiscard]] std::optional<std::string> take(std::size_t count);
    [[nodiscard]] bool fetchMore();

    Channel& m_channel;
    std::string m_buffer; // read, not yet taken
};

} // namespace vormel::sites
