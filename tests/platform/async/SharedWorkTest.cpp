#include "platform/async/SharedWork.h"

#include "platform/async/Eventual.h"

#include <gtest/gtest.h>

#include <vector>

namespace vormel {
namespace {

QCoro::Task<int> await(Eventual<int> eventual)
{
    co_return co_await eventual;
}

QCoro::Task<> collect(SharedEventual<int> result, std::vector<int>& results)
{
    results.push_back(co_await result);
}

TEST(SharedWork, BeginsOnceForAllWhoAskMeanwhileAndAnewAfterwards)
{
    SharedWork<int> work;
    int begun = 0;
    std::unique_ptr<EventualSource<int>> source;
    const auto begin = [&] {
        ++begun;
        source = std::make_unique<EventualSource<int>>(-1);
        return await(source->eventual());
    };
    std::vector<int> results;
    spawn(collect(work.join(begin), results));
    spawn(collect(work.join(begin), results));
    EXPECT_EQ(begun, 1);
    source->deliver(5);
    EXPECT_EQ(results, (std::vector{5, 5}));
    spawn(collect(work.join(begin), results));
    EXPECT_EQ(begun, 2);
    source->deliver(6);
    EXPECT_EQ(results.back(), 6);
}

TEST(SharedWork, LetsWhoGoesOnAskForItAnew)
{
    SharedWork<int> work;
    const auto begin = []() -> QCoro::Task<int> { co_return 7; };
    std::vector<int> results;
    const auto twice = [&]() -> QCoro::Task<> {
        results.push_back(co_await work.join(begin));
        results.push_back(co_await work.join(begin));
    };
    spawn(twice());
    EXPECT_EQ(results, (std::vector{7, 7}));
}

} // namespace
} // namespace vormel
