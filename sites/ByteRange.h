#pragma once

#include <cstdint>
#include <string_view>

namespace vormel::sites {

// What a Range header asks of a file of known size; both ends are offsets of bytes and belong to the range.
struct ByteRange
{
    enum class Kind
    {
        none, // absent, malformed or of several parts: the whole file is due
        satisfiable,
        unsatisfiable,
    };

    Kind kind = Kind::none;
    std::int64_t first = 0;
    std::int64_t last = -1;
};

[[nodiscard]] ByteRange parseByteRange(std::string_view header, std::int64_t fileSize);

} // namespace vormel::sites
