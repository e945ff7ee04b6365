#include "sites/Body.h"

#include <algorithm>
#include <cstring>

namespace vormel::sites {

namespace {

// The part of `out`, which starts at `position` of the body, that the section [start, start + length) covers.
struct Overlap
{
    std::span<char> out;
    std::int64_t from = 0; // offset in the section
};

Overlap overlap(std::int64_t position, std::span<char> out, std::int64_t start, std::int64_t length)
{
    const auto begin = std::max(position, start);
    const auto end = std::min(position + static_cast<std::int64_t>(out.size()), start + length);
    if (begin >= end)
        return {};
    const auto part = out.subspan(static_cast<std::size_t>(begin - position), static_cast<std::size_t>(end - begin));
    return {.out = part, .from = begin - start};
}

void readText(const std::string& text, std::int64_t position, std::span<char> out, std::int64_t start)
{
    const auto part = overlap(position, out, start, static_cast<std::int64_t>(text.size()));
    if (!part.out.empty())
        std::memcpy(part.out.data(), text.data() + part.from, part.out.size());
}

} // namespace

std::int64_t Body::size() const
{
    return static_cast<std::int64_t>(prefix.size() + suffix.size()) + length;
}

void Body::read(std::int64_t position, std::span<char> out) const
{
    const auto sliceStart = static_cast<std::int64_t>(prefix.size());
    readText(prefix, position, out, 0);
    const auto slice = overlap(position, out, sliceStart, length);
    content.read(offset + slice.from, slice.out);
    readText(suffix, position, out, sliceStart + length);
}

} // namespace vormel::sites
