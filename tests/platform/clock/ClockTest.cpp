#include "platform/clock/Clock.h"

#include "fixtures/EventLoop.h"
#include "fixtures/ManualClock.h"

#include <QObject>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vormel {
namespace {

using namespace std::chrono_literals;
using fixtures::ManualClock;

TEST(Timer, WithoutAnActionIsNotPendingAndMayBeCancelled)
{
    Timer timer;
    EXPECT_FALSE(timer.isPending());
    timer.cancel();
    EXPECT_FALSE(timer.isPending());
}

TEST(Timer, MovedElsewhereStillFires)
{
    ManualClock clock;
    int fired = 0;
    Timer first = clock.after(1s, [&] { ++fired; });
    const Timer second = std::move(first);
    EXPECT_TRUE(second.isPending());
    clock.advance(1s);
    EXPECT_EQ(fired, 1);
}

TEST(Timer, AnotherTakingItsPlaceCancelsIt)
{
    ManualClock clock;
    std::string fired;
    Timer timer = clock.after(1s, [&] { fired += "old"; });
    timer = clock.after(2s, [&] { fired += "new"; });
    clock.advance(3s);
    EXPECT_EQ(fired, "new");
}

TEST(Timer, IsNoLongerPendingInsideItsAction)
{
    ManualClock clock;
    Timer timer;
    bool wasPending = true;
    timer = clock.after(1s, [&] { wasPending = timer.isPending(); });
    clock.advance(1s);
    EXPECT_FALSE(wasPending);
}

TEST(Timer, MayBeDestroyedByItsOwnAction)
{
    ManualClock clock;
    std::vector<Timer> timers;
    int fired = 0;
    const auto guard = std::make_shared<int>(1);
    timers.push_back(clock.after(1s, [&, guard] {
        timers.clear();
        fired += *guard;
    }));
    clock.advance(1s);
    EXPECT_EQ(fired, 1);
}

TEST(ManualClock, StandsStillUntilItIsMoved)
{
    ManualClock clock;
    const SteadyTime steady = clock.steadyNow();
    const WallTime wall = clock.wallNow();
    fixtures::turnEventLoop();
    EXPECT_EQ(clock.steadyNow(), steady);
    clock.advance(90s);
    EXPECT_EQ(clock.steadyNow() - steady, 90s);
    EXPECT_EQ(clock.wallNow() - wall, 90s);
}

TEST(ManualClock, RunsTimersWhenDueInTheOrderInWhichTheyAreDue)
{
    ManualClock clock;
    std::string fired;
    const Timer b = clock.after(2s, [&] { fired += "b"; });
    const Timer a = clock.after(1s, [&] { fired += "a"; });
    const Timer c = clock.after(2s, [&] { fired += "c"; });
    clock.advance(1s - 1ns);
    EXPECT_EQ(fired, "");
    clock.advance(1ns);
    EXPECT_EQ(fired, "a");
    EXPECT_EQ(clock.pendingTimers(), 2);
    clock.advance(5s);
    EXPECT_EQ(fired, "abc");
    EXPECT_EQ(clock.pendingTimers(), 0);
}

TEST(ManualClock, ShowsEachActionTheTimeAtWhichItWasDue)
{
    ManualClock clock;
    const SteadyTime start = clock.steadyNow();
    std::vector<std::chrono::nanoseconds> times;
    const Timer a = clock.after(1s, [&] { times.push_back(clock.steadyNow() - start); });
    const Timer b = clock.after(3s, [&] { times.push_back(clock.steadyNow() - start); });
    clock.advance(10s);
    EXPECT_EQ(times, (std::vector<std::chrono::nanoseconds>{1s, 3s}));
}

TEST(ManualClock, RunsWhatAnActionArmsIfItIsDueOnTheWay)
{
    ManualClock clock;
    int fired = 0;
    Timer timer;
    const std::function<void()> action = [&] {
        ++fired;
        timer = clock.after(1s, action);
    };
    timer = clock.after(1s, action);
    clock.advance(5s);
    EXPECT_EQ(fired, 5);
    EXPECT_EQ(clock.pendingTimers(), 1);
}

TEST(ManualClock, LetsTheEventLoopTurnAfterEachTimer)
{
    ManualClock clock;
    QObject context;
    std::string order;
    const Timer a = clock.after(1s, [&] {
        QMetaObject::invokeMethod(
            &context, [&] { order += "posted "; }, Qt::QueuedConnection);
        order += "first ";
    });
    const Timer b = clock.after(2s, [&] { order += "second"; });
    clock.advance(2s);
    EXPECT_EQ(order, "first posted second");
}

TEST(ManualClock, DoesNotCountOrRunDestroyedTimers)
{
    ManualClock clock;
    int fired = 0;
    {
        const Timer timer = clock.after(1s, [&] { ++fired; });
        EXPECT_EQ(clock.pendingTimers(), 1);
    }
    EXPECT_EQ(clock.pendingTimers(), 0);
    clock.advance(2s);
    EXPECT_EQ(fired, 0);
}

} // namespace
} // namespace vormel
