#include "archive/tools/PercentOutput.h"

#include "fixtures/ProcessorTime.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace vormel {
namespace {

TEST(PercentOutput, TheFirstFigureOfAPieceCounts)
{
    EXPECT_EQ(firstFraction("  5%\r 10%\r"), 0.05);
    EXPECT_EQ(firstFraction("name\n 42%\n"), 0.42);
}

TEST(PercentOutput, RedrawingWithBackspacesIsRead)
{
    EXPECT_EQ(firstFraction("\b\b\b\b 23%"), 0.23);
    EXPECT_EQ(firstFraction("\b\b\b\b100%\b\b\b\b\b  OK "), 1.0);
}

TEST(PercentOutput, FiguresAboveAHundredAreSkippedAndTheNextLineIsLookedAt)
{
    EXPECT_EQ(firstFraction("101%"), std::nullopt);
    EXPECT_EQ(firstFraction("100%"), 1.0);
    EXPECT_EQ(firstFraction("0%"), 0.0);
    EXPECT_EQ(firstFraction("999%\r7%"), 0.07);
    EXPECT_EQ(firstFraction("999% 7%"), std::nullopt);
}

TEST(PercentOutput, ALongerNumberIsNoPercentage)
{
    EXPECT_EQ(firstFraction("1000%"), std::nullopt);
    EXPECT_EQ(firstFraction("a50%"), std::nullopt);
}

TEST(PercentOutput, TextWithoutAFigureGivesNone)
{
    EXPECT_EQ(firstFraction(""), std::nullopt);
    EXPECT_EQ(firstFraction("%"), std::nullopt);
    EXPECT_EQ(firstFraction("5 %\r\n5\n%"), std::nullopt);
}

TEST(PercentOutput, APieceThatIsNoUtf8GivesNone)
{
    EXPECT_EQ(firstFraction("\xff 5%"), std::nullopt);
    EXPECT_EQ(firstFraction(" 5% \xc3"), std::nullopt);
    EXPECT_EQ(firstFraction("\xc3\xa9 5%"), 0.05);
}

TEST(PercentOutput, AHostilePieceOfAMegabyteIsReadInTime)
{
    for (const QByteArray& piece : {QByteArray("1"), QByteArray("999%\r"), QByteArray("%"), QByteArray("1 ")}) {
        const fixtures::ProcessorTime watch;
        static_cast<void>(firstFraction(piece.repeated(1024 * 1024 / piece.size()) + '%'));
        EXPECT_LT(watch.elapsed(), 10s) << piece.constData();
    }
}

} // namespace
} // namespace vormel
