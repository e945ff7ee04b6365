#pragma once

#include "sites/Content.h"

#include <cstdint>
#include <span>
#include <string>

namespace vormel::sites {

// The bytes of one answer's body: a slice of a content, between a prefix and a suffix where a multipart body needs
// them. Positions count from the start of the prefix.
struct Body
{
    std::string prefix{};
    Content content{};
    std::int64_t offset = 0;
    std::int64_t length = 0; // of the slice
    std::string suffix{};

    [[nodiscard]] std::int64_t size() const;
    // Copies the bytes from `position` on; `out` must lie within the body.
    void read(std::int64_t position, std::span<char> out) const;
};

} // namespace vormel::sites
