#include "engine/OneTransfer.h"
#include "fixtures/FakeResolvers.h"

#include <QFile>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// How often an item is tried, and what gives all its tries back.
class TriesTest : public OneTransfer
{
protected:
    void SetUp() override { item = engine.start(rarLink); }

    void loseConnection()
    {
        server().fail(HttpError::Kind::connectionLost);
        turnEventLoop();
    }
    /// The next failure is the last.
    void spendAllTries()
    {
        for (int i = 0; i < 8; ++i) {
            loseConnection();
            ASSERT_EQ(item->status(), DownloadStatus::queued);
            engine.clock.advance(10s);
        }
        ASSERT_EQ(item->status(), DownloadStatus::downloading);
    }
    /// How many failures in a row the item takes from here until it fails for good.
    int failuresUntilTheLast()
    {
        int failures = 0;
        while (item->status() != DownloadStatus::failed && failures < 20) {
            loseConnection();
            engine.clock.advance(10s);
            ++failures;
        }
        return failures;
    }

    ItemPtr item;
};

} // namespace

TEST_F(TriesTest, AreNineInARow)
{
    EXPECT_EQ(failuresUntilTheLast(), 9);
}

TEST_F(TriesTest, AreAllThereAgainAfterStopAndStart)
{
    spendAllTries();
    engine.manager().commands().stopItems({item});
    engine.manager().commands().startItems({item});
    turnEventLoop();
    EXPECT_EQ(failuresUntilTheLast(), 9);
}

TEST_F(TriesTest, AreAllThereAgainAfterPauseAndStart)
{
    spendAllTries();
    engine.manager().commands().pauseItems({item});
    engine.manager().commands().startItems({item});
    turnEventLoop();
    EXPECT_EQ(failuresUntilTheLast(), 9);
}

TEST_F(TriesTest, AreAllThereAgainAfterARetry)
{
    spendAllTries();
    engine.manager().commands().retryItem(*item);
    turnEventLoop();
    EXPECT_EQ(failuresUntilTheLast(), 9);
}

TEST_F(TriesTest, AreAllThereAgainAfterARetryOfWhatFailedForGood)
{
    failuresUntilTheLast();
    engine.manager().commands().retryItem(*item);
    turnEventLoop();
    EXPECT_EQ(failuresUntilTheLast(), 9);
}

TEST_F(TriesTest, AreAllThereAgainAfterARedownload)
{
    spendAllTries();
    engine.manager().commands().redownloadItem(*item);
    turnEventLoop();
    EXPECT_EQ(failuresUntilTheLast(), 9);
}

TEST_F(TriesTest, AreSharedBetweenLostConnectionsAndShortFiles)
{
    say(200, {{"Content-Length", "6"}});
    send("abc");
    for (int i = 0; i < 4; ++i) {
        loseConnection();
        engine.clock.advance(10s);
        say(206, {{"Content-Range", "bytes 3-5/6"}});
        close();
        engine.clock.advance(10s);
    }
    EXPECT_EQ(failuresUntilTheLast(), 1);
}

TEST_F(TriesTest, AreCountedForEachItemAlone)
{
    spendAllTries();
    const ItemPtr other = engine.start(u"http://h/other.bin"_s);
    loseConnection();
    EXPECT_EQ(other->status(), DownloadStatus::queued);
}

namespace {

/// An item of a premium host, whose address was found and lost its transfer.
class AddressTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        engine.manager().accounts().set({account(SupportedHost::filestore)});
        item = engine.add(u"https://filestore.example/f/x.rar"_s);
        log->resolves[0].answer->deliver(ResolverError::unsupportedHost());
        turnEventLoop();
        engine.manager().commands().startAll();
        turnEventLoop();
        answerWithAddress(log->resolves[1], u"http://cdn/x.rar"_s, u"x.rar"_s);
        turnEventLoop();
        ASSERT_EQ(item->status(), DownloadStatus::downloading);
    }

    std::shared_ptr<ServiceLog> log = std::make_shared<ServiceLog>();
    EngineOnScript engine{fakeServices(log)};
    ItemPtr item;
};

} // namespace

TEST_F(AddressTest, IsKeptForTheNextTryAfterALostConnection)
{
    engine.http.last().fail(HttpError::Kind::connectionLost);
    turnEventLoop();
    engine.clock.advance(2s);
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
    EXPECT_EQ(log->resolves.size(), 2U);
}

TEST_F(AddressTest, IsAskedForAnewByARetry)
{
    engine.manager().commands().interruptItem(*item, DownloadStatus::failure(u"gone"_s));
    engine.manager().commands().retryItem(*item);
    EXPECT_FALSE(item->resolvedURL());
    turnEventLoop();
    EXPECT_EQ(log->resolves.size(), 3U);
}

TEST_F(AddressTest, IsAskedForAnewByARedownload)
{
    engine.manager().commands().redownloadItem(*item);
    EXPECT_FALSE(item->resolvedURL());
    EXPECT_FALSE(item->resolvedAt());
    turnEventLoop();
    EXPECT_EQ(log->resolves.size(), 3U);
}

TEST_F(AddressTest, IsAskedForAnewByAResyncThatFindsNoFile)
{
    engine.manager().commands().stopItems({item});
    engine.manager().commands().resyncItems({item});
    EXPECT_FALSE(item->resolvedURL());
    EXPECT_FALSE(item->resolvedAt());
    turnEventLoop();
    EXPECT_EQ(log->resolves.size(), 3U);
}
