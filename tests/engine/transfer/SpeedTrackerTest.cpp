#include "engine/transfer/SpeedTracker.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using vormel::SpeedTracker;
using vormel::SteadyTime;

TEST(SpeedTracker, GivesAFigureAtExactlyHalfASecond)
{
    SpeedTracker tracker(SteadyTime(10s));
    EXPECT_EQ(tracker.record(1000, SteadyTime(10s + 500ms)), 2000.0);
}

TEST(SpeedTracker, KeepsCountingBeforeHalfASecond)
{
    SpeedTracker tracker(SteadyTime(10s));
    EXPECT_EQ(tracker.record(1000, SteadyTime(10s + 490ms)), std::nullopt);
    EXPECT_EQ(tracker.record(1000, SteadyTime(11s)), 2000.0);
}

TEST(SpeedTracker, AveragesSinceTheLastFigureOnly)
{
    SpeedTracker tracker(SteadyTime(0s));
    EXPECT_EQ(tracker.record(8000, SteadyTime(1s)), 8000.0);
    EXPECT_EQ(tracker.record(100, SteadyTime(2s)), 100.0);
}

TEST(SpeedTracker, CountsAWholeStallIntoTheNextFigure)
{
    SpeedTracker tracker(SteadyTime(0s));
    EXPECT_EQ(tracker.record(1000, SteadyTime(10s)), 100.0);
}
