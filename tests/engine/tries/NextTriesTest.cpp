#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// An item whose connection was lost, and which waits two seconds for its next try.
class NextTriesTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        item = engine.start(u"http://away/x.bin"_s);
        lose();
    }
    void lose()
    {
        engine.http.last().fail(HttpError::Kind::connectionLost);
        turnEventLoop();
        ASSERT_EQ(item->status(), DownloadStatus::queued);
    }
    /// Another item that comes down at once.
    void letANeighbourFinish()
    {
        const ItemPtr neighbour = engine.add(u"http://near/%1"_s.arg(++neighbours));
        engine.manager().commands().startItems({neighbour});
        turnEventLoop();
        engine.http.last().head(200, {{"Content-Length", "1"}});
        engine.http.last().data("x");
        engine.http.last().finish();
        turnEventLoop();
        ASSERT_EQ(neighbour->status(), DownloadStatus::completed);
    }
    /// How often the item was asked for.
    [[nodiscard]] std::ptrdiff_t tries() const
    {
        const auto& all = engine.http.exchanges();
        return std::count_if(all.begin(), all.end(),
                             [](const auto& exchange) { return exchange->request.url.host() == u"away"_s; });
    }
    /// How many failures in a row the item stands from now on.
    int failuresLeft()
    {
        constexpr int farTooMany = 20;
        for (int failures = 0; failures < farTooMany; ++failures) {
            if (item->status() == DownloadStatus::failed)
                return failures - 1;
            if (item->status() == DownloadStatus::queued)
                engine.clock.advance(10s);
            engine.http.last().fail(HttpError::Kind::connectionLost);
            turnEventLoop();
        }
        return farTooMany;
    }

    EngineOnScript engine;
    ItemPtr item;
    int neighbours = 0;
};

} // namespace

TEST_F(NextTriesTest, IsNotTakenBeforeItsTimeWhoeverRunsAPass)
{
    for (int i = 0; i < 10; ++i)
        letANeighbourFinish();
    engine.manager().processQueue();
    engine.clock.advance(1999ms);
    EXPECT_EQ(tries(), 1);
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    engine.clock.advance(1ms);
    EXPECT_EQ(tries(), 2);
}

TEST_F(NextTriesTest, OutlivesAHostThatIsAwayForFiftySecondsBesideABusyQueue)
{
    for (int second = 0; second < 50; ++second) {
        letANeighbourFinish();
        engine.clock.advance(1s);
        if (item->status() == DownloadStatus::downloading) {
            const auto& all = engine.http.exchanges();
            std::find_if(all.rbegin(), all.rend(),
                         [](const auto& exchange) { return exchange->request.url.host() == u"away"_s; })
                ->get()
                ->fail(HttpError::Kind::cannotConnect);
            turnEventLoop();
        }
        ASSERT_NE(item->status().kind(), DownloadStatus::failed) << second;
    }
}

TEST_F(NextTriesTest, GivesItsSlotToOthersMeanwhile)
{
    engine.settings().maxConcurrentDownloads.set(1);
    const ItemPtr next = engine.add(u"http://near/next"_s);
    next->setStatus(DownloadStatus::queued);
    engine.manager().processQueue();
    turnEventLoop();
    EXPECT_EQ(next->status(), DownloadStatus::downloading);
    // Its time comes while no slot is free; then the next pass takes it.
    engine.clock.advance(2s);
    EXPECT_EQ(tries(), 1);
    engine.manager().commands().stopItems({next});
    turnEventLoop();
    EXPECT_EQ(tries(), 2);
}

TEST_F(NextTriesTest, WaitsToThoughItsFileWasOnlyShortAndOthersGoOnAtOnce)
{
    engine.clock.advance(2s);
    engine.settings().maxConcurrentDownloads.set(1);
    const ItemPtr next = engine.add(u"http://near/next"_s);
    next->setStatus(DownloadStatus::queued);
    engine.http.last().head(200, {{"Content-Length", "6"}});
    engine.http.last().data("abc");
    engine.http.last().finish();
    turnEventLoop();
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    EXPECT_EQ(next->status(), DownloadStatus::downloading);
    engine.settings().maxConcurrentDownloads.set(2);
    engine.manager().processQueue();
    engine.clock.advance(3999ms);
    EXPECT_EQ(tries(), 2);
    engine.clock.advance(1ms);
    EXPECT_EQ(tries(), 3);
}

TEST_F(NextTriesTest, IsTakenAtOnceWhenTheUserStartsItAndHasItsWholeBudgetAgain)
{
    engine.manager().commands().startItems({item});
    turnEventLoop();
    EXPECT_EQ(tries(), 2);
    EXPECT_EQ(failuresLeft(), 8);
}

TEST_F(NextTriesTest, IsTakenAtOnceByStartAllAndKeepsItsBudget)
{
    engine.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(tries(), 2);
    EXPECT_EQ(failuresLeft(), 7);
}

TEST_F(NextTriesTest, IsTakenAtOnceByARetry)
{
    engine.manager().commands().retryItem(*item);
    turnEventLoop();
    EXPECT_EQ(tries(), 2);
    EXPECT_EQ(failuresLeft(), 8);
}

TEST_F(NextTriesTest, IsNotWokenOncePausedOrStopped)
{
    engine.manager().commands().pauseAll();
    engine.clock.advance(1min);
    EXPECT_EQ(item->status(), DownloadStatus::paused);
    engine.manager().commands().resumeItem(*item);
    turnEventLoop();
    EXPECT_EQ(tries(), 2);
    lose();
    engine.manager().commands().stopItems({item});
    engine.clock.advance(1min);
    EXPECT_EQ(item->status(), DownloadStatus::stopped);
    EXPECT_EQ(tries(), 2);
}

TEST_F(NextTriesTest, IsTakenAtOnceAfterAPause)
{
    engine.manager().commands().pauseAll();
    engine.manager().commands().resumeItem(*item);
    turnEventLoop();
    EXPECT_EQ(tries(), 2);
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
}

namespace {

class DeadAddressTest : public ::testing::TestWithParam<int>
{
protected:
    void resolveTo(const QString& url)
    {
        answerWithAddress(log->resolves.back(), url);
        turnEventLoop();
    }

    std::shared_ptr<ServiceLog> log = std::make_shared<ServiceLog>();
    EngineOnScript engine{fakeServices(log)};
};

} // namespace

TEST_P(DeadAddressTest, IsResolvedAnewAndTheFileGoesOnFromTheSameByte)
{
    engine.manager().accounts().set({account(SupportedHost::filestore)});
    const ItemPtr item = engine.add(u"https://filestore.example/f/abc"_s);
    resolveTo(u"https://cdn.example/none"_s);
    engine.manager().commands().startAll();
    turnEventLoop();
    resolveTo(u"https://cdn1.example/movie.rar"_s);
    engine.http.last().head(200, {{"Content-Length", "6"}});
    engine.http.last().data("abc");
    engine.http.last().fail(HttpError::Kind::connectionLost);
    turnEventLoop();
    engine.clock.advance(2s);
    ASSERT_EQ(log->resolves.size(), 2U);
    engine.http.last().head(GetParam(), {{"Content-Type", "text/plain"}});
    turnEventLoop();
    EXPECT_FALSE(item->resolvedURL());
    engine.clock.advance(4s);
    ASSERT_EQ(log->resolves.size(), 3U);
    resolveTo(u"https://cdn2.example/movie.rar"_s);
    EXPECT_EQ(engine.http.last().request.url.host(), u"cdn2.example"_s);
    EXPECT_EQ(engine.http.last().header("Range"), "bytes=3-");
    engine.http.last().head(206, {{"Content-Range", "bytes 3-5/6"}});
    engine.http.last().data("def");
    engine.http.last().finish();
    turnEventLoop();
    EXPECT_EQ(engine.sandbox.read(u"Downloads/movie.rar"_s), "abcdef");
}

INSTANTIATE_TEST_SUITE_P(All, DeadAddressTest, ::testing::Values(401, 403, 404, 410));
