#include "engine/OneTransfer.h"
#include "fixtures/FakeResolvers.h"

#include <algorithm>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// What a desktop says of the network, and what the queue makes of it.
class OutageTest : public OneTransfer
{
protected:
    void goOffline()
    {
        engine.network.setOnline(false);
        turnEventLoop();
    }
    void goOnline()
    {
        engine.network.setOnline(true);
        turnEventLoop();
    }
    void lose()
    {
        server().fail(HttpError::Kind::connectionLost);
        turnEventLoop();
    }
    /// How many failures in a row the item stands from here.
    int failuresUntilTheLast(const ItemPtr& item)
    {
        int failures = 0;
        for (; item->status() != DownloadStatus::failed && failures < 20; ++failures) {
            lose();
            engine.clock.advance(10s);
        }
        return failures;
    }
    [[nodiscard]] std::size_t requests() const { return engine.http.exchanges().size(); }
};

} // namespace

TEST_F(OutageTest, NothingStartsUntilThereIsANetworkAgain)
{
    goOffline();
    const ItemPtr item = engine.start(rarLink);
    engine.clock.advance(1h);
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    EXPECT_EQ(requests(), 0U);
    EXPECT_TRUE(engine.manager().isWaitingForNetwork());
    goOnline();
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
    EXPECT_FALSE(engine.manager().isWaitingForNetwork());
}

TEST_F(OutageTest, NothingWaitsWhereOnlyRecoveryVolumesLie)
{
    const ItemPtr volume = engine.start(u"http://h/m.part1.rev"_s);
    ASSERT_EQ(volume->status(), DownloadStatus::queued);
    goOffline();
    EXPECT_FALSE(engine.manager().isWaitingForNetwork());
}

TEST_F(OutageTest, AFailureWithoutANetworkSpendsNoTry)
{
    const ItemPtr item = engine.start(rarLink);
    for (int night = 0; night < 12; ++night) {
        goOffline();
        lose();
        EXPECT_EQ(item->status(), DownloadStatus::queued);
        EXPECT_EQ(item->wait(), ItemWait());
        engine.clock.advance(1min);
        goOnline();
        ASSERT_EQ(item->status(), DownloadStatus::downloading) << night;
    }
    EXPECT_EQ(failuresUntilTheLast(item), 9);
}

TEST_F(OutageTest, NorDoesOneThatComesAFewSecondsBeforeTheDesktopKnows)
{
    const ItemPtr item = engine.start(rarLink);
    for (int night = 0; night < 12; ++night) {
        lose();
        engine.clock.advance(1s);
        goOffline();
        EXPECT_EQ(item->wait(), ItemWait());
        goOnline();
        ASSERT_EQ(item->status(), DownloadStatus::downloading) << night;
    }
    EXPECT_EQ(failuresUntilTheLast(item), 9);
}

TEST_F(OutageTest, OneThatCameLongBeforeIsSpent)
{
    const ItemPtr item = engine.start(rarLink);
    lose();
    engine.clock.advance(10s);
    goOffline();
    lose();
    goOnline();
    EXPECT_EQ(failuresUntilTheLast(item), 8);
}

TEST_F(OutageTest, TakesALastFailureBackThatWasTheNetworks)
{
    const ItemPtr item = engine.start(rarLink);
    for (int i = 0; i < 8; ++i) {
        lose();
        engine.clock.advance(10s);
    }
    lose();
    ASSERT_EQ(item->status(), DownloadStatus::failed);
    engine.clock.advance(2s);
    goOffline();
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    goOnline();
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
}

TEST_F(OutageTest, LeavesAnItemFailedThatFailedForAReasonOfItsOwn)
{
    const ItemPtr item = engine.start(rarLink);
    lose();
    engine.clock.advance(2s);
    say(200, {{"Content-Type", "text/html"}});
    close();
    ASSERT_EQ(item->status(), DownloadStatus::failed);
    goOffline();
    EXPECT_EQ(item->status(), DownloadStatus::failed);
}

TEST_F(OutageTest, LocalServersGoOn)
{
    engine.settings().maxConcurrentDownloads.set(10);
    goOffline();
    for (const QString& host : {u"127.0.0.1:8080"_s, u"localhost"_s, u"[::1]:99"_s, u"files.localhost"_s})
        EXPECT_EQ(engine.start(u"http://%1/x-%2"_s.arg(host).arg(host.size()))->status(), DownloadStatus::downloading);
    EXPECT_FALSE(engine.manager().isWaitingForNetwork());
    EXPECT_EQ(engine.start(u"http://127.0.0.1.example/y"_s)->status(), DownloadStatus::queued);
}

TEST_F(OutageTest, ALocalServerThatIsAwaySpendsTriesAsEver)
{
    goOffline();
    const ItemPtr item = engine.start(u"http://127.0.0.1:9/x.rar"_s);
    EXPECT_EQ(failuresUntilTheLast(item), 9);
}

TEST_F(OutageTest, ALocalServerThatIsWaitedForIsAskedWhenTheNetworkGoes)
{
    const ItemPtr item = engine.start(u"http://127.0.0.1/film.rar"_s);
    lose();
    ASSERT_EQ(item->status(), DownloadStatus::queued);
    goOffline();
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
}

TEST_F(OutageTest, ALocalServerGetsTheSlotOfWhatWaitsForTheNetwork)
{
    const ItemPtr item = engine.start(rarLink);
    const ItemPtr local = engine.add(u"http://127.0.0.1/other.rar"_s);
    engine.settings().maxConcurrentDownloads.set(1);
    startAll();
    goOffline();
    ASSERT_EQ(item->status(), DownloadStatus::downloading);
    lose();
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    EXPECT_EQ(local->status(), DownloadStatus::downloading);
}

TEST_F(OutageTest, TheUserMayKnowBetterUntilTheDesktopSpeaksAgain)
{
    goOffline();
    const ItemPtr item = engine.start(rarLink);
    engine.manager().goOnThoughOffline();
    turnEventLoop();
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
    EXPECT_FALSE(engine.manager().isWaitingForNetwork());
    goOnline();
    goOffline();
    EXPECT_TRUE(engine.manager().isWaitingForNetwork());
}

TEST_F(OutageTest, ATransferThatHangsAfterwardsBeginsAnewFromWhereItIsAndSpendsNothing)
{
    const ItemPtr item = engine.start(rarLink);
    say(200, {{"Content-Length", "6"}});
    send("abc");
    goOffline();
    goOnline();
    engine.clock.advance(4999ms);
    EXPECT_EQ(requests(), 1U);
    engine.clock.advance(1ms);
    ASSERT_EQ(requests(), 2U);
    EXPECT_TRUE(engine.http.exchanges()[0]->isDropped);
    EXPECT_EQ(server().header("Range"), "bytes=3-");
    EXPECT_EQ(engine.http.timesConnectedAnew(), 1);
    EXPECT_EQ(failuresUntilTheLast(item), 9);
}

TEST_F(OutageTest, ATransferThatHasOutlivedItGoesOn)
{
    engine.start(rarLink);
    say(200, {{"Content-Length", "6"}});
    send("abc");
    engine.manager().machineWokeUp();
    send("d", 1s);
    engine.clock.advance(10s);
    EXPECT_EQ(requests(), 1U);
    EXPECT_FALSE(server().isDropped);
}

TEST_F(OutageTest, ATransferThatWasPausedMeanwhileStaysPaused)
{
    const ItemPtr item = engine.start(rarLink);
    engine.manager().machineWokeUp();
    engine.manager().commands().pauseItems({item});
    engine.clock.advance(10s);
    EXPECT_EQ(item->status(), DownloadStatus::paused);
    EXPECT_EQ(requests(), 1U);
}

TEST_F(OutageTest, ATransferThatWasStartedAnewMeanwhileIsLeftAlone)
{
    const ItemPtr item = engine.start(rarLink);
    engine.manager().machineWokeUp();
    engine.manager().commands().pauseItems({item});
    engine.manager().commands().startItems({item});
    turnEventLoop();
    ASSERT_EQ(requests(), 2U);
    engine.clock.advance(10s);
    EXPECT_EQ(requests(), 2U);
}

TEST_F(OutageTest, AfterASleepNoTimeIsWaitedForAndConnectionsAreMadeAnew)
{
    const ItemPtr item = engine.start(rarLink);
    say(503, {{"Content-Type", "text/plain"}, {"Retry-After", "600"}});
    ASSERT_EQ(item->status(), DownloadStatus::queued);
    engine.manager().machineWokeUp();
    turnEventLoop();
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
    EXPECT_EQ(engine.http.timesConnectedAnew(), 1);
}

TEST_F(OutageTest, WhatAServerAskedForOutlivesAnOutage)
{
    const ItemPtr item = engine.start(rarLink);
    say(429, {{"Content-Type", "text/plain"}, {"Retry-After", "60"}});
    goOffline();
    goOnline();
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    EXPECT_EQ(item->wait().kind, ItemWait::serverRest);
    engine.clock.advance(60s);
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
}

TEST_F(OutageTest, ANightLeavesTheQueueAsItWasInTheEvening)
{
    engine.settings().maxConcurrentDownloads.set(3);
    QStringList urls;
    for (int i = 0; i < 100; ++i)
        urls << u"http://h%1/%2.bin"_s.arg(i % 7).arg(i);
    const std::vector<ItemPtr> items = engine.add(urls);
    startAll();
    ASSERT_EQ(requests(), 3U);
    const auto failAll = [this] {
        for (const auto& exchange : std::vector(engine.http.exchanges()))
            exchange->fail(HttpError::Kind::connectionLost);
        turnEventLoop();
    };
    failAll();
    goOffline();
    failAll();
    const std::size_t before = requests();
    engine.clock.advance(8h);
    EXPECT_EQ(requests(), before);
    for (const ItemPtr& item : items)
        ASSERT_EQ(item->status(), DownloadStatus::queued);
    goOnline();
    for (int i = 0; i < 200; ++i) {
        for (const auto& exchange : std::vector(engine.http.exchanges())) {
            if (!exchange->isRunning)
                continue;
            exchange->head(200, {{"Content-Length", "3"}});
            exchange->data("abc");
            exchange->finish();
        }
        turnEventLoop();
    }
    for (const ItemPtr& item : items)
        EXPECT_EQ(item->status(), DownloadStatus::completed);
}

namespace {

/// An item whose host is looking for its address when the network goes.
class ResolvingOutageTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        engine.manager().accounts().set({account(SupportedHost::filestore)});
        item = engine.add(u"https://filestore.example/f/abc"_s);
        answerWithAddress(log->resolves[0], u"https://cdn.example/none"_s);
        turnEventLoop();
        item->setResolvedURL(std::nullopt);
        engine.manager().commands().startAll();
        turnEventLoop();
        ASSERT_EQ(log->resolves.size(), 2U);
    }
    void failToResolve()
    {
        log->resolves.back().answer->deliver(ResolverError::networkError(u"away"_s));
        turnEventLoop();
    }

    std::shared_ptr<ServiceLog> log = std::make_shared<ServiceLog>();
    EngineOnScript engine{fakeServices(log)};
    ItemPtr item;
};

} // namespace

TEST_F(ResolvingOutageTest, DoesNotFailForIt)
{
    engine.network.setOnline(false);
    failToResolve();
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    engine.network.setOnline(true);
    turnEventLoop();
    EXPECT_EQ(log->resolves.size(), 3U);
}

TEST_F(ResolvingOutageTest, IsTakenBackWhenTheDesktopNoticesLater)
{
    failToResolve();
    ASSERT_EQ(item->status(), DownloadStatus::failed);
    engine.clock.advance(2s);
    engine.network.setOnline(false);
    EXPECT_EQ(item->status(), DownloadStatus::queued);
}

TEST_F(ResolvingOutageTest, IsBegunAnewAfterwards)
{
    engine.manager().machineWokeUp();
    turnEventLoop();
    EXPECT_TRUE(log->resolves[1].stop.stop_requested());
    EXPECT_EQ(log->resolves.size(), 3U);
    EXPECT_EQ(item->status(), DownloadStatus::resolving);
}

TEST_F(ResolvingOutageTest, IsNotAskedForWhenItsAddressIsFoundTooLate)
{
    engine.network.setOnline(false);
    answerWithAddress(log->resolves[1], u"https://cdn.example/x.rar"_s);
    turnEventLoop();
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    EXPECT_TRUE(engine.http.exchanges().empty());
}
