#include "engine/transfer/GlobalThrottleTracker.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using vormel::GlobalThrottleTracker;
using vormel::SteadyTime;

TEST(GlobalThrottleTracker, GivesTheTimeThatTheDebtTakes)
{
    GlobalThrottleTracker throttle(SteadyTime(0s));
    EXPECT_DOUBLE_EQ(throttle.consume(1500, 1000, SteadyTime(500ms)), 1.0);
    EXPECT_DOUBLE_EQ(throttle.availableBytes(), -1000.0);
}

TEST(GlobalThrottleTracker, AsksForNoWaitWhileTheBudgetLasts)
{
    GlobalThrottleTracker throttle(SteadyTime(0s));
    EXPECT_DOUBLE_EQ(throttle.consume(900, 1000, SteadyTime(1s)), 0.0);
    EXPECT_DOUBLE_EQ(throttle.availableBytes(), 100.0);
}

TEST(GlobalThrottleTracker, HoldsAtMostOneSecondAfterAnIdleHour)
{
    GlobalThrottleTracker throttle(SteadyTime(0s));
    EXPECT_DOUBLE_EQ(throttle.consume(0, 1000, SteadyTime(1h)), 0.0);
    EXPECT_DOUBLE_EQ(throttle.availableBytes(), 1000.0);
}

TEST(GlobalThrottleTracker, KeepsADebtUntilTimeHasPaidIt)
{
    GlobalThrottleTracker throttle(SteadyTime(0s));
    EXPECT_DOUBLE_EQ(throttle.consume(2000, 1000, SteadyTime(0s)), 2.0);
    EXPECT_DOUBLE_EQ(throttle.consume(0, 1000, SteadyTime(1s)), 1.0);
    EXPECT_DOUBLE_EQ(throttle.consume(0, 1000, SteadyTime(2s)), 0.0);
}
