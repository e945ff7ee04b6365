#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vormel::sites {

// What the first bytes of a client say of the server that it wants.
struct Greeting
{
    bool isWhole = false; // else more bytes are needed
    std::optional<std::string>
        place; // "name:443" for TLS, for an HTTP request "name:80" or with the port that it names

    // Bytes that are neither are whole, without a place.
    [[nodiscard]] static Greeting read(std::string_view bytes);
};

} // namespace vormel::sites
