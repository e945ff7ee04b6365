#include "sites/ByteRange.h"

#include <gtest/gtest.h>

namespace vormel::sites {
namespace {

using Kind = ByteRange::Kind;

void expectRange(const char* header, std::int64_t size, std::int64_t first, std::int64_t last)
{
    const auto range = parseByteRange(header, size);
    EXPECT_EQ(range.kind, Kind::satisfiable) << header;
    EXPECT_EQ(range.first, first) << header;
    EXPECT_EQ(range.last, last) << header;
}

TEST(ByteRangeTest, ReadsTheThreeForms)
{
    expectRange("bytes=10-19", 100, 10, 19);
    expectRange("bytes=10-", 100, 10, 99);
    expectRange("bytes=-10", 100, 90, 99);
}

TEST(ByteRangeTest, EndsWithTheFile)
{
    expectRange("bytes=10-1000", 100, 10, 99);
    expectRange("bytes=-1000", 100, 0, 99);
    expectRange("bytes=99-99", 100, 99, 99);
}

TEST(ByteRangeTest, CannotBeSatisfiedBehindTheEnd)
{
    EXPECT_EQ(parseByteRange("bytes=100-", 100).kind, Kind::unsatisfiable);
    EXPECT_EQ(parseByteRange("bytes=0-", 0).kind, Kind::unsatisfiable);
    EXPECT_EQ(parseByteRange("bytes=-0", 100).kind, Kind::unsatisfiable);
}

TEST(ByteRangeTest, IsNoneWhenMalformedOrOfSeveralParts)
{
    for (const auto* header : {"", "bytes", "bytes=", "bytes=-", "bytes=a-b", "bytes=5-4", "items=0-1", "bytes=0-1,4-5",
                               "bytes=--5", "bytes=0-99999999999999999999"})
        EXPECT_EQ(parseByteRange(header, 100).kind, Kind::none) << header;
}

} // namespace
} // namespace vormel::sites
