#include "sites/PatternContent.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <stdexcept>

namespace vormel::sites {

namespace {

static_assert(std::endian::native == std::endian::little, "words are copied to bytes in memory order");

constexpr std::uint64_t tileBytes = 64 * 1024;
constexpr std::uint64_t wordBytes = sizeof(std::uint64_t);

// The finaliser of a splitmix generator: neighbouring inputs give unrelated outputs.
std::uint64_t scramble(std::uint64_t value)
{
    value += 0x9e3779b97f4a7c15U;
    value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9U;
    value = (value ^ (value >> 27)) * 0x94d049bb133111ebU;
    return value ^ (value >> 31);
}

std::uint64_t tileKey(std::uint64_t seed, std::uint64_t tile)
{
    return scramble(scramble(seed) ^ tile);
}

std::shared_ptr<const std::vector<std::uint64_t>> makeWords(std::uint64_t seed)
{
    auto words = std::make_shared<std::vector<std::uint64_t>>(tileBytes / wordBytes);
    auto state = scramble(~seed);
    for (auto& word : *words)
        word = state = scramble(state);
    return words;
}

char byteOf(std::uint64_t word, std::uint64_t position)
{
    return static_cast<char>(static_cast<unsigned char>(word >> (8 * (position % wordBytes))));
}

} // namespace

PatternContent::PatternContent(std::uint64_t seed, std::int64_t size)
    : m_seed(seed)
    , m_size(size)
    , m_words(makeWords(seed))
{
    if (size < 0)
        throw std::invalid_argument("a file cannot have a negative size");
}

char PatternContent::byteAt(std::int64_t offset) const
{
    char byte = 0;
    fill(offset, {&byte, 1});
    return byte;
}

void PatternContent::fill(std::int64_t offset, std::span<char> out) const
{
    auto position = static_cast<std::uint64_t>(offset);
    while (!out.empty()) {
        const auto start = position % tileBytes;
        const auto count = std::min<std::uint64_t>(out.size(), tileBytes - start);
        fillWithinTile(position / tileBytes, start, out.first(count));
        out = out.subspan(count);
        position += count;
    }
}

void PatternContent::fillWithinTile(std::uint64_t tile, std::uint64_t start, std::span<char> out) const
{
    const auto key = tileKey(m_seed, tile);
    // Plain pointers: this loop feeds the benchmarks and must stay fast in unoptimised builds too.
    const auto* words = m_words->data();
    auto* bytes = out.data();
    const auto count = out.size();
    std::uint64_t at = 0;
    for (; at < count && (start + at) % wordBytes != 0; ++at)
        bytes[at] = byteOf(words[(start + at) / wordBytes] ^ key, start + at);
    for (; at + wordBytes <= count; at += wordBytes) {
        const auto word = words[(start + at) / wordBytes] ^ key;
        std::memcpy(bytes + at, &word, wordBytes);
    }
    for (; at < count; ++at)
        bytes[at] = byteOf(words[(start + at) / wordBytes] ^ key, start + at);
}

std::optional<std::int64_t> PatternContent::firstMismatch(std::int64_t offset, std::span<const char> data) const
{
    std::array<char, 16 * 1024> expected{};
    while (!data.empty()) {
        const auto part = data.first(std::min(data.size(), expected.size()));
        fill(offset, std::span(expected).first(part.size()));
        const auto difference = std::mismatch(part.begin(), part.end(), expected.begin()).first;
        if (difference != part.end())
            return offset + (difference - part.begin());
        offset += static_cast<std::int64_t>(part.size());
        data = data.subspan(part.size());
    }
    return std::nullopt;
}

} // namespace vormel::sites
