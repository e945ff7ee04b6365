#include "platform/async/Background.h"

#include "fixtures/EventLoop.h"
#include "platform/async/Spawn.h"

#include <QThread>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <stdexcept>

namespace vormel {
namespace {

QCoro::Task<> keep(QCoro::Task<int> task, int& result, QString& failure)
{
    try {
        result = co_await task;
    } catch (const std::runtime_error& error) {
        failure = QString::fromUtf8(error.what());
    }
}

class BackgroundTest : public ::testing::Test
{
protected:
    template <typename Work>
    void run(Work work)
    {
        spawn(keep(background.run(std::move(work)), result, failure));
        EXPECT_TRUE(fixtures::waitUntil([this] { return result != 0 || !failure.isEmpty(); }));
    }

    Background background;
    int result = 0;
    QString failure;
};

} // namespace

TEST_F(BackgroundTest, TheWorkIsDoneOnAnotherThreadAndItsResultComesBack)
{
    const QThread* worker = nullptr;
    run([&worker] {
        worker = QThread::currentThread();
        return 42;
    });
    EXPECT_EQ(result, 42);
    EXPECT_NE(worker, QThread::currentThread());
}

TEST_F(BackgroundTest, WhatTheWorkThrowsReachesWhoAwaitsIt)
{
    run([]() -> int { throw std::runtime_error("no room"); });
    EXPECT_EQ(failure, u"no room");
}

TEST_F(BackgroundTest, WhoBeginsWorkReturnsBeforeAnythingComesOfIt)
{
    constexpr int most = 5'000; // often enough for a thread to be done at once
    std::array<int, most> results{};
    int tooSoon = 0;
    for (int& one : results) {
        spawn(keep(background.run([] { return 1; }), one, failure));
        tooSoon += one;
    }
    EXPECT_EQ(tooSoon, 0);
    EXPECT_TRUE(fixtures::waitUntil([&results] { return std::ranges::count(results, 1) == most; }));
}

TEST_F(BackgroundTest, TheEndWaitsForWhatIsUnderWay)
{
    auto left = std::make_shared<std::atomic<int>>(2'000'000);
    {
        Background own;
        spawn(own.run([left] {
            while (--*left > 0)
                ;
        }));
    }
    EXPECT_EQ(*left, 0);
}

} // namespace vormel
