#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace vormel::sites {

// A file of any size that needs no memory: the byte at each offset follows from the seed alone. Every 64 KiB tile
// differs from every other, so bytes that end up shifted, swapped or repeated do not match. Sizes and offsets are in
// bytes. A cheap, immutable value: copy it freely and read it from any thread.
class PatternContent
{
public:
    PatternContent(std::uint64_t seed, std::int64_t size);

    [[nodiscard]] std::int64_t size() const { return m_size; }
    [[nodiscard]] char byteAt(std::int64_t offset) const;

    // Fills `out` with the bytes from `offset` on; the pattern goes on beyond size(), the caller keeps within it.
    void fill(std::int64_t offset, std::span<char> out) const;

    // The file offset of the first byte of `data`, which lies at `offset` in the file, that is not the pattern's.
    [[nodiscard]] std::optional<std::int64_t> firstMismatch(std::int64_t offset, std::span<const char> data) const;

private:
    void fillWithinTile(std::uint64_t tile, std::uint64_t start, std::span<char> out) const;

    std::uint64_t m_seed;
    std::int64_t m_size;
    std::shared_ptr<const std::vector<std::uint64_t>> m_words;
};

} // namespace vormel::sites
