#include "platform/async/Sleep.h"

#include "fixtures/ManualClock.h"
#include "platform/async/Spawn.h"

#include <gtest/gtest.h>

namespace vormel {
namespace {

using namespace std::chrono_literals;

QCoro::Task<> sleepTwice(Clock& clock, int& count)
{
    for (count = 0; count < 2; ++count)
        co_await sleepFor(clock, 3s);
}

TEST(Sleep, GoesOnWhenTheTimeHasPassed)
{
    fixtures::ManualClock clock;
    int count = -1;
    spawn(sleepTwice(clock, count));
    clock.advance(2999ms);
    EXPECT_EQ(count, 0);
    clock.advance(1ms);
    EXPECT_EQ(count, 1);
    clock.advance(3s);
    EXPECT_EQ(count, 2);
}

} // namespace
} // namespace vormel
