#include "ui/queue/rows/RowCountdowns.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace vormel {
namespace {

constexpr SteadyTime countTime{50h};

class RowCountdownsTest : public ::testing::Test
{
protected:
    const ItemId first = ItemId::make();
    const ItemId second = ItemId::make();
    RowCountdowns countdowns;
};

TEST_F(RowCountdownsTest, TheFirstOneIsNext)
{
    EXPECT_EQ(countdowns.next(), std::nullopt);
    countdowns.note(first, countTime + 700ms);
    countdowns.note(second, countTime + 300ms);
    EXPECT_EQ(countdowns.next(), countTime + 300ms);
}

TEST_F(RowCountdownsTest, OnlyWhatIsOutOfDateIsOver)
{
    countdowns.note(first, countTime + 700ms);
    countdowns.note(second, countTime + 300ms);
    EXPECT_TRUE(countdowns.isOver(second, countTime + 300ms));
    EXPECT_FALSE(countdowns.isOver(second, countTime + 299ms));
    EXPECT_FALSE(countdowns.isOver(first, countTime + 300ms));
    EXPECT_FALSE(countdowns.isOver(ItemId::make(), countTime + 300ms));
}

TEST_F(RowCountdownsTest, ARowThatWasPaintedWithoutACountdownIsForgotten)
{
    countdowns.note(first, countTime);
    countdowns.note(first, std::nullopt);
    EXPECT_EQ(countdowns.next(), std::nullopt);
    EXPECT_FALSE(countdowns.isOver(first, countTime + 1s));
}

TEST_F(RowCountdownsTest, TheLastPaintingCounts)
{
    countdowns.note(first, countTime + 300ms);
    countdowns.note(first, countTime + 1300ms);
    EXPECT_EQ(countdowns.next(), countTime + 1300ms);
}

TEST_F(RowCountdownsTest, WhatIsOverIsForgottenAndTheRestIsNot)
{
    countdowns.note(first, countTime + 700ms);
    countdowns.note(second, countTime + 300ms);
    countdowns.forgetOver(countTime + 300ms);
    EXPECT_FALSE(countdowns.isOver(second, countTime + 300ms));
    EXPECT_EQ(countdowns.next(), countTime + 700ms);
}

} // namespace
} // namespace vormel
