#include "text/ByteCount.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace vormel {
namespace {

constexpr qint64 kib = 1024;
constexpr qint64 mib = 1024 * kib;
constexpr qint64 gib = 1024 * mib;
constexpr qint64 tib = 1024 * gib;

struct Row
{
    qint64 bytes;
    const char* text;
};

void expectTexts(const std::vector<Row>& rows)
{
    for (const Row& row : rows)
        EXPECT_EQ(byteCountText(row.bytes).toStdString(), row.text) << row.bytes;
}

TEST(ByteCount, CountsBelowAKilobyteAreWrittenInBytes)
{
    expectTexts({{0, "Zero KB"},
                 {1, "1 byte"},
                 {2, "2 bytes"},
                 {999, "999 bytes"},
                 {1000, "1,000 bytes"},
                 {1023, "1,023 bytes"}});
}

TEST(ByteCount, KilobytesHaveNoDecimals)
{
    expectTexts(
        {{kib, "1 KB"}, {kib + 511, "1 KB"}, {kib + 512, "2 KB"}, {1000 * kib, "1,000 KB"}, {1023 * kib, "1,023 KB"}});
}

TEST(ByteCount, MegabytesHaveAtMostOneDecimal)
{
    expectTexts({{mib, "1 MB"}, {mib + mib / 2, "1.5 MB"}, {12 * mib + mib / 3, "12.3 MB"}, {1000 * mib, "1,000 MB"}});
}

TEST(ByteCount, GigabytesAndAboveHaveAtMostTwoDecimals)
{
    expectTexts({{gib, "1 GB"},
                 {gib + gib / 2, "1.5 GB"},
                 {gib + gib / 3, "1.33 GB"},
                 {tib + tib / 4, "1.25 TB"},
                 {1024 * tib, "1 PB"},
                 {1024 * 1024 * tib, "1 EB"}});
}

TEST(ByteCount, ZerosAtTheEndOfTheDecimalsAreDropped)
{
    expectTexts({{10 * mib, "10 MB"}, {10 * mib + 1, "10 MB"}, {gib + gib / 10, "1.1 GB"}, {100 * gib, "100 GB"}});
}

TEST(ByteCount, AFigureThatRoundsToAThousandAndTwentyFourMovesToTheNextUnit)
{
    expectTexts({{mib - 513, "1,023 KB"},
                 {mib - 512, "1 MB"},
                 {mib - 1, "1 MB"},
                 {gib - mib / 10, "1,023.9 MB"},
                 {gib - 1, "1 GB"},
                 {tib - gib / 100, "1,023.99 GB"},
                 {tib - 1, "1 TB"}});
}

TEST(ByteCount, NegativeCountsCarryAMinus)
{
    expectTexts({{-1, "-1 byte"}, {-1000, "-1,000 bytes"}, {-mib, "-1 MB"}});
}

TEST(ByteCount, TheLargestAndTheSmallestCountAreWritten)
{
    expectTexts({{std::numeric_limits<qint64>::max(), "8 EB"}, {std::numeric_limits<qint64>::min(), "-8 EB"}});
}

TEST(ByteCount, ASpeedIsACountForEachSecondAndNoneIsNotShown)
{
    EXPECT_EQ(speedText(1.5 * static_cast<double>(mib)), u"1.5 MB/s");
    EXPECT_EQ(speedText(0), u"");
    EXPECT_EQ(speedText(-1), u"");
    EXPECT_EQ(speedText(std::numeric_limits<double>::quiet_NaN()), u"");
    EXPECT_EQ(speedText(std::numeric_limits<double>::infinity()), u"7.98 EB/s");
}

TEST(ByteCount, ProgressNamesTheTotalWhereItIsKnown)
{
    EXPECT_EQ(progressText(mib, 3 * mib), u"1 MB / 3 MB");
    EXPECT_EQ(progressText(mib, 0), u"1 MB");
}

} // namespace
} // namespace vormel
