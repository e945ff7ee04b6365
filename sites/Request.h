#pragma once

#include "sites/Header.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vormel::sites {

// A request as it came in.
struct Request
{
    std::string method;
    std::string target; // as sent: usually path and query, a whole address when sent to a proxy
    std::string version;
    std::vector<Header> headers; // in the order sent
    std::string body;
    int connection = 0; // 1 for the first connection the server accepted
    std::chrono::steady_clock::time_point time;

    // The target without scheme, host and query.
    [[nodiscard]] std::string_view path() const;
    // The target without scheme and host.
    [[nodiscard]] std::string_view pathAndQuery() const;
    // The value of the first header of that name.
    [[nodiscard]] std::optional<std::string> header(std::string_view name) const;
};

} // namespace vormel::sites
