#include "sites/PatternContent.h"

#include "sites/Content.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace vormel::sites {
namespace {

constexpr std::int64_t mebibyte = 1024 * 1024;

std::string slice(const PatternContent& pattern, std::int64_t offset, std::size_t count)
{
    std::string bytes(count, '\0');
    pattern.fill(offset, bytes);
    return bytes;
}

TEST(PatternContentTest, EverySliceHasTheBytesOfTheWhole)
{
    const PatternContent pattern(7, mebibyte);
    const auto whole = slice(pattern, 0, mebibyte);
    for (const std::int64_t offset : {0, 1, 7, 8, 9, 65533, 65535, 65536, 65537, 131071}) {
        for (const std::size_t count : {0U, 1U, 2U, 7U, 8U, 9U, 17U, 65536U, 70001U})
            ASSERT_EQ(slice(pattern, offset, count), whole.substr(static_cast<std::size_t>(offset), count))
                << offset << " " << count;
    }
}

TEST(PatternContentTest, ByteAtIsTheByteOfTheWhole)
{
    const PatternContent pattern(8, mebibyte);
    const auto whole = slice(pattern, 0, mebibyte);
    for (std::size_t offset = 0; offset < whole.size(); offset += 997)
        ASSERT_EQ(pattern.byteAt(static_cast<std::int64_t>(offset)), whole[offset]) << offset;
}

TEST(PatternContentTest, FollowsFromTheSeedAlone)
{
    EXPECT_EQ(slice(PatternContent(1, 100), 0, 100), slice(PatternContent(1, 5000), 0, 100));
    EXPECT_NE(slice(PatternContent(1, 100), 0, 100), slice(PatternContent(2, 100), 0, 100));
}

TEST(PatternContentTest, ShiftedDataDoesNotMatch)
{
    const PatternContent pattern(3, 64 * mebibyte);
    const auto data = slice(pattern, 2 * mebibyte, 4096);
    EXPECT_FALSE(pattern.firstMismatch(2 * mebibyte, data));
    for (const std::int64_t shift : {1L, 2L, 8L, 4096L, 65536L, 131072L, mebibyte, 32 * mebibyte}) {
        EXPECT_TRUE(pattern.firstMismatch(2 * mebibyte + shift, data)) << shift;
        EXPECT_TRUE(pattern.firstMismatch(2 * mebibyte - std::min(shift, mebibyte), data)) << shift;
    }
}

TEST(PatternContentTest, FirstMismatchTellsTheOffsetOfTheWrongByte)
{
    const PatternContent pattern(4, mebibyte);
    auto data = slice(pattern, 1000, 100'000);
    data[70'000] = static_cast<char>(data[70'000] ^ 1);
    EXPECT_EQ(pattern.firstMismatch(1000, data), 71'000);
}

TEST(PatternContentTest, WorksFarBeyondFourGibibytes)
{
    const PatternContent pattern(5, std::int64_t{1} << 50);
    const auto far = (std::int64_t{1} << 49) + 12'345;
    const auto data = slice(pattern, far, 1000);
    EXPECT_EQ(pattern.byteAt(far + 999), data[999]);
    EXPECT_NE(data, slice(pattern, 12'345, 1000));
}

TEST(PatternContentTest, ContentReadsPatternAndBytesAlike)
{
    const PatternContent pattern(6, 100);
    for (const Content& content : {Content(pattern), Content(slice(pattern, 0, 100))}) {
        std::string part(30, '\0');
        content.read(50, part);
        EXPECT_EQ(content.size(), 100);
        EXPECT_FALSE(pattern.firstMismatch(50, part));
    }
}

TEST(PatternContentTest, RefusesANegativeSize)
{
    EXPECT_THROW(PatternContent(1, -1), std::invalid_argument);
}

} // namespace
} // namespace vormel::sites
