#pragma once

#include <string>
#include <string_view>

namespace vormel::sites {

// One header field as it travels; the value may hold any bytes but line ends.
struct Header
{
    std::string name;
    std::string value;
};

// Compares header names, which do not mind upper or lower case.
[[nodiscard]] bool sameHeaderName(std::string_view left, std::string_view right);

} // namespace vormel::sites
