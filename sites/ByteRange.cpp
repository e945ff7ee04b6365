#include "sites/ByteRange.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace vormel::sites {

namespace {

std::optional<std::int64_t> parseOffset(std::string_view digits)
{
    std::int64_t value = 0;
    const auto* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value);
    if (error != std::errc() || stop != end || value < 0)
        return std::nullopt;
    return value;
}

ByteRange within(std::int64_t first, std::int64_t last, std::int64_t fileSize)
{
    if (first >= fileSize)
        return {.kind = ByteRange::Kind::unsatisfiable};
    return {.kind = ByteRange::Kind::satisfiable, .first = first, .last = std::min(last, fileSize - 1)};
}

} // namespace

ByteRange parseByteRange(std::string_view header, std::int64_t fileSize)
{
    constexpr std::string_view unit = "bytes=";
    const auto dash = header.find('-');
    if (!header.starts_with(unit) || dash == std::string_view::npos)
        return {};
    const auto first = parseOffset(header.substr(unit.size(), dash - unit.size()));
    const auto last = parseOffset(header.substr(dash + 1));
    const bool openEnd = dash + 1 == header.size();
    if (dash == unit.size()) // the last so many bytes; the last none are no range
        return last ? within(fileSize - std::min(*last, fileSize), fileSize - 1, fileSize) : ByteRange{};
    if (!first || (!last && !openEnd) || (last && *last < *first))
        return {};
    return within(*first, last.value_or(fileSize - 1), fileSize);
}

} // namespace vormel::sites
