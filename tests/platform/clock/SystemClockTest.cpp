#include "platform/clock/SystemClock.h"

#include "fixtures/EventLoop.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace vormel {
namespace {

using namespace std::chrono_literals;
using fixtures::waitUntil;

TEST(SystemClock, ATimerFiresOnceAndNotEarly)
{
    SystemClock clock;
    for (const std::chrono::nanoseconds delay :
         std::vector<std::chrono::nanoseconds>{0ns, 1ns, 1ms, 2'500us, 5ms, 20ms}) {
        const SteadyTime start = clock.steadyNow();
        std::vector<SteadyTime> fired;
        const Timer timer = clock.after(delay, [&] { fired.push_back(clock.steadyNow()); });
        EXPECT_TRUE(fired.empty()) << "fired before the event loop turned";
        ASSERT_TRUE(waitUntil([&] { return !fired.empty(); }));
        EXPECT_GE(fired[0] - start, delay);
        EXPECT_FALSE(timer.isPending());
        fixtures::turnEventLoop();
        EXPECT_EQ(fired.size(), 1U);
    }
}

TEST(SystemClock, ANegativeDelayFiresAtOnce)
{
    SystemClock clock;
    bool hasFired = false;
    const Timer timer = clock.after(-1h, [&] { hasFired = true; });
    EXPECT_TRUE(waitUntil([&] { return hasFired; }));
}

TEST(SystemClock, ADelayOfMonthsDoesNotFireAtOnce)
{
    SystemClock clock;
    bool hasFired = false;
    bool isReached = false;
    const Timer late = clock.after(24h * 365, [&] { hasFired = true; });
    const Timer longest = clock.after(std::chrono::nanoseconds::max(), [&] { hasFired = true; });
    const Timer soon = clock.after(5ms, [&] { isReached = true; });
    ASSERT_TRUE(waitUntil([&] { return isReached; }));
    EXPECT_FALSE(hasFired);
    EXPECT_TRUE(late.isPending());
    EXPECT_TRUE(longest.isPending());
}

TEST(SystemClock, DestroyingOrCancellingATimerMeansItNeverFires)
{
    SystemClock clock;
    int fired = 0;
    bool isReached = false;
    {
        const Timer destroyed = clock.after(1ms, [&] { ++fired; });
    }
    Timer cancelled = clock.after(1ms, [&] { ++fired; });
    cancelled.cancel();
    EXPECT_FALSE(cancelled.isPending());
    Timer replaced = clock.after(1ms, [&] { ++fired; });
    replaced = Timer();
    const Timer later = clock.after(5ms, [&] { isReached = true; });
    ASSERT_TRUE(waitUntil([&] { return isReached; }));
    EXPECT_EQ(fired, 0);
}

TEST(SystemClock, AnActionMayArmItsOwnTimerAgain)
{
    SystemClock clock;
    int fired = 0;
    Timer timer;
    const std::function<void()> action = [&] {
        if (++fired < 3)
            timer = clock.after(1ms, action);
    };
    timer = clock.after(1ms, action);
    EXPECT_TRUE(waitUntil([&] { return fired == 3; }));
    EXPECT_FALSE(timer.isPending());
}

TEST(SystemClock, ATimerMayOutliveTheClock)
{
    std::optional<SystemClock> clock(std::in_place);
    bool hasFired = false;
    const Timer timer = clock->after(0ns, [&] { hasFired = true; });
    clock.reset();
    fixtures::turnEventLoop();
    EXPECT_FALSE(hasFired);
}

TEST(SystemClock, TellsTheTimeOfTheMachine)
{
    const SystemClock clock;
    const auto wall = std::chrono::system_clock::now();
    const auto steady = std::chrono::steady_clock::now();
    EXPECT_GE(clock.wallNow(), wall);
    EXPECT_GE(clock.steadyNow(), steady);
    EXPECT_LT(clock.wallNow() - wall, 10s);
    EXPECT_LT(clock.steadyNow() - steady, 10s);
}

} // namespace
} // namespace vormel
