#include "platform/async/Eventual.h"

#include "platform/async/Spawn.h"

#include <QCoroTask>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace vormel {
namespace {

QCoro::Task<> collect(Eventual<int> eventual, std::vector<int>& results)
{
    results.push_back(co_await eventual);
}

TEST(Eventual, TheAwaitingCoroutineGoesOnInsideTheDelivery)
{
    EventualSource<int> source(-1);
    std::vector<int> results;
    spawn(collect(source.eventual(), results));
    EXPECT_TRUE(results.empty());
    source.deliver(5);
    EXPECT_EQ(results, std::vector{5});
}

TEST(Eventual, AResultThatIsThereAlreadyIsTakenAtOnce)
{
    EventualSource<int> source(-1);
    source.deliver(5);
    std::vector<int> results;
    spawn(collect(source.eventual(), results));
    EXPECT_EQ(results, std::vector{5});
}

TEST(Eventual, ASourceThatGoesAwayUnansweredDeliversItsFallback)
{
    std::vector<int> results;
    {
        const EventualSource<int> source(-1);
        spawn(collect(source.eventual(), results));
        EXPECT_TRUE(results.empty());
    }
    EXPECT_EQ(results, std::vector{-1});
}

TEST(Eventual, TheFallbackOfAnAbandonedSourceWaitsForTheOneWhoAsksLate)
{
    auto source = std::make_unique<EventualSource<int>>(-1);
    const Eventual<int> eventual = source->eventual();
    source.reset();
    std::vector<int> results;
    spawn(collect(eventual, results));
    EXPECT_EQ(results, std::vector{-1});
}

TEST(Eventual, OnlyTheFirstDeliveryCounts)
{
    std::vector<int> results;
    {
        EventualSource<int> source(-1);
        spawn(collect(source.eventual(), results));
        source.deliver(1);
        source.deliver(2);
    }
    EXPECT_EQ(results, std::vector{1});
}

TEST(Eventual, AResultMayBeMovableOnly)
{
    EventualSource<std::unique_ptr<int>> source(nullptr);
    int seen = 0;
    const auto take = [](Eventual<std::unique_ptr<int>> eventual, int& out) -> QCoro::Task<> {
        out = *co_await eventual;
    };
    spawn(take(source.eventual(), seen));
    source.deliver(std::make_unique<int>(7));
    EXPECT_EQ(seen, 7);
}

TEST(Eventual, TheSourceMayBeDestroyedByTheOneWhoGoesOn)
{
    auto source = std::make_unique<EventualSource<int>>(-1);
    bool isGone = false;
    const auto destroy = [](Eventual<int> eventual, std::unique_ptr<EventualSource<int>>& owner,
                            bool& gone) -> QCoro::Task<> {
        co_await eventual;
        owner.reset();
        gone = true;
    };
    spawn(destroy(source->eventual(), source, isGone));
    source->deliver(1);
    EXPECT_TRUE(isGone);
}

} // namespace
} // namespace vormel
