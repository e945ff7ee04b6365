#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"
#include "fixtures/Workshop.h"

#include <gtest/gtest.h>

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
        item = shop.start(QStringLiteral("http://away/x.bin"));
        lose();
    }
    void lose()
    {
        shop.http.last().fail(HttpError::Kind::connectionLost);
        turnEventLoop();
        ASSERT_EQ(item->status(), DownloadStatus::queued);
    }
    /// Another item that comes down at once.
    void letANeighbourFinish()
    {
        const ItemPtr neighbour = shop.add(QStringLiteral("http://near/%1").arg(++neighbours));
        shop.manager().commands().startItems({neighbour});
        turnEventLoop();
        shop.http.last().head(200, {{"Content-Length", "1"}});
        shop.http.last().data("x");
        shop.http.last().finish();
        turnEventLoop();
        ASSERT_EQ(neighbour->status(), DownloadStatus::completed);
    }
    /// How often the item was asked for.
    [[nodiscard]] std::ptrdiff_t tries() const
    {
        const auto& all = shop.http.exchanges();
        return std::count_if(all.begin(), all.end(), [](const auto& exchange) {
            return exchange->request.url.host() == QStringLiteral("away");
        });
    }
    /// How many failures in a row the item stands from now on.
    int failuresLeft()
    {
        constexpr int farTooMany = 20;
        for (int failures = 0; failures < farTooMany; ++failures) {
            if (item->status() == DownloadStatus::failed)
                return failures - 1;
            if (item->status() == DownloadStatus::queued)
                shop.clock.advance(10s);
            shop.http.last().fail(HttpError::Kind::connectionLost);
            turnEventLoop();
        }
        return farTooMany;
    }

    Workshop shop;
    ItemPtr item;
    int neighbours = 0;
};

} // namespace

TEST_F(NextTriesTest, IsNotTakenBeforeItsTimeWhoeverRunsAPass)
{
    for (int i = 0; i < 10; ++i)
        letANeighbourFinish();
    shop.manager().processQueue();
    shop.clock.advance(1999ms);
    EXPECT_EQ(tries(), 1);
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    shop.clock.advance(1ms);
    EXPECT_EQ(tries(), 2);
}

TEST_F(NextTriesTest, OutlivesAHostThatIsAwayForFiftySecondsBesideABusyQueue)
{
    for (int second = 0; second < 50; ++second) {
        letANeighbourFinish();
        shop.clock.advance(1s);
        if (item->status() == DownloadStatus::downloading) {
            const auto& all = shop.http.exchanges();
            std::find_if(all.rbegin(), all.rend(),
                         [](const auto& exchange) { return exchange->request.url.host() == QStringLiteral("away"); })
                ->get()
                ->fail(HttpError::Kind::cannotConnect);
            turnEventLoop();
        }
        ASSERT_NE(item->status().kind(), DownloadStatus::failed) << second;
    }
}

TEST_F(NextTriesTest, GivesItsSlotToOthersMeanwhile)
{
    shop.settings().maxConcurrentDownloads.set(1);
    const ItemPtr next = shop.add(QStringLiteral("http://near/next"));
    next->setStatus(DownloadStatus::queued);
    shop.manager().processQueue();
    turnEventLoop();
    EXPECT_EQ(next->status(), DownloadStatus::downloading);
    // Its time comes while no slot is free; then the next pass takes it.
    shop.clock.advance(2s);
    EXPECT_EQ(tries(), 1);
    shop.manager().commands().stopItems({next});
    turnEventLoop();
    EXPECT_EQ(tries(), 2);
}

TEST_F(NextTriesTest, WaitsToThoughItsFileWasOnlyShortAndOthersGoOnAtOnce)
{
    shop.clock.advance(2s);
    shop.settings().maxConcurrentDownloads.set(1);
    const ItemPtr next = shop.add(QStringLiteral("http://near/next"));
    next->setStatus(DownloadStatus::queued);
    shop.http.last().head(200, {{"Content-Length", "6"}});
    shop.http.last().data("abc");
    shop.http.last().finish();
    turnEventLoop();
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    EXPECT_EQ(next->status(), DownloadStatus::downloading);
    shop.settings().maxConcurrentDownloads.set(2);
    shop.manager().processQueue();
    shop.clock.advance(3999ms);
    EXPECT_EQ(tries(), 2);
    shop.clock.advance(1ms);
    EXPECT_EQ(tries(), 3);
}

TEST_F(NextTriesTest, IsTakenAtOnceWhenTheUserStartsItAndHasItsWholeBudgetAgain)
{
    shop.manager().commands().startItems({item});
    turnEventLoop();
    EXPECT_EQ(tries(), 2);
    EXPECT_EQ(failuresLeft(), 8);
}

TEST_F(NextTriesTest, IsTakenAtOnceByStartAllAndKeepsItsBudget)
{
    shop.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(tries(), 2);
    EXPECT_EQ(failuresLeft(), 7);
}

TEST_F(NextTriesTest, IsTakenAtOnceByARetry)
{
    shop.manager().commands().retryItem(*item);
    turnEventLoop();
    EXPECT_EQ(tries(), 2);
    EXPECT_EQ(failuresLeft(), 8);
}

TEST_F(NextTriesTest, IsNotWokenOncePausedOrStopped)
{
    shop.manager().commands().pauseAll();
    shop.clock.advance(1min);
    EXPECT_EQ(item->status(), DownloadStatus::paused);
    shop.manager().commands().resumeItem(*item);
    turnEventLoop();
    EXPECT_EQ(tries(), 2);
    lose();
    shop.manager().commands().stopItems({item});
    shop.clock.advance(1min);
    EXPECT_EQ(item->status(), DownloadStatus::stopped);
    EXPECT_EQ(tries(), 2);
}

TEST_F(NextTriesTest, IsTakenAtOnceAfterAPause)
{
    shop.manager().commands().pauseAll();
    shop.manager().commands().resumeItem(*item);
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
    Workshop shop{fakeServices(log)};
};

} // namespace

TEST_P(DeadAddressTest, IsResolvedAnewAndTheFileGoesOnFromTheSameByte)
{
    shop.manager().accounts().set({account(SupportedHost::filestore)});
    const ItemPtr item = shop.add(QStringLiteral("https://filestore.example/f/abc"));
    resolveTo(QStringLiteral("https://cdn.example/none"));
    shop.manager().commands().startAll();
    turnEventLoop();
    resolveTo(QStringLiteral("https://cdn1.example/movie.rar"));
    shop.http.last().head(200, {{"Content-Length", "6"}});
    shop.http.last().data("abc");
    shop.http.last().fail(HttpError::Kind::connectionLost);
    turnEventLoop();
    shop.clock.advance(2s);
    ASSERT_EQ(log->resolves.size(), 2U);
    shop.http.last().head(GetParam(), {{"Content-Type", "text/plain"}});
    turnEventLoop();
    EXPECT_FALSE(item->resolvedURL());
    shop.clock.advance(4s);
    ASSERT_EQ(log->resolves.size(), 3U);
    resolveTo(QStringLiteral("https://cdn2.example/movie.rar"));
    EXPECT_EQ(shop.http.last().request.url.host(), QStringLiteral("cdn2.example"));
    EXPECT_EQ(shop.http.last().header("Range"), "bytes=3-");
    shop.http.last().head(206, {{"Content-Range", "bytes 3-5/6"}});
    shop.http.last().data("def");
    shop.http.last().finish();
    turnEventLoop();
    EXPECT_EQ(shop.sandbox.read(QStringLiteral("Downloads/movie.rar")), "abcdef");
}

INSTANTIATE_TEST_SUITE_P(All, DeadAddressTest, ::testing::Values(401, 403, 404, 410));
