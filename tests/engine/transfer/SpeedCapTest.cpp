#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;

namespace {

class SpeedCap : public ::testing::Test
{
protected:
    ItemPtr startCapped(qint64 kiloBytesPerSecond)
    {
        engine.settings().maxDownloadSpeedKBps.set(kiloBytesPerSecond);
        const ItemPtr item = engine.start(u"http://h/x.bin"_s);
        server().head(200, {{"Content-Length", "100000000"}});
        turnEventLoop();
        return item;
    }
    void send(qsizetype bytes)
    {
        server().data(QByteArray(bytes, 'x'));
        turnEventLoop();
    }
    ScriptedHttpClient::Exchange& server() { return engine.http.last(); }

    EngineOnScript engine;
};

} // namespace

TEST_F(SpeedCap, IsInUnitsOf1024Bytes)
{
    startCapped(512);
    engine.clock.advance(1h);
    send(524288);
    EXPECT_EQ(server().suspensions, 0);
    // One more and a whole second's worth is in debt by 524288 * 0.05 and a bit.
    send(26215);
    EXPECT_EQ(server().suspensions, 1);
}

TEST_F(SpeedCap, LetsAWaitOfExactlyAFiftiethPass)
{
    startCapped(1000);
    engine.clock.advance(1h);
    send(1024000 + 51200);
    EXPECT_EQ(server().suspensions, 0);
    send(1);
    EXPECT_EQ(server().suspensions, 1);
}

TEST_F(SpeedCap, RestsForAsLongAsTheDebtTakes)
{
    startCapped(1);
    send(1024);
    EXPECT_FALSE(server().isRunning);
    engine.clock.advance(999ms);
    EXPECT_FALSE(server().isRunning);
    engine.clock.advance(2ms);
    EXPECT_TRUE(server().isRunning);
}

TEST_F(SpeedCap, IsNoneWhereTheStoredOneIsNoSpeed)
{
    // In bytes the last two would come out as small positive numbers if they were let run over.
    for (const qint64 none :
         {qint64{-1}, qint64{-9'100'000'000'000'000}, -(qint64{1} << 54) + 1, (qint64{1} << 54) + 1}) {
        EngineOnScript other;
        other.settings().maxDownloadSpeedKBps.set(none);
        EXPECT_NO_FATAL_FAILURE(other.start(u"http://h/x.bin"_s));
        other.http.last().head(200, {{"Content-Length", "100000000"}});
        for (int i = 0; i < 4; ++i)
            other.http.last().data(QByteArray(1024 * 1024, 'x'));
        EXPECT_EQ(other.http.last().suspensions, 0) << none;
    }
}

TEST_F(SpeedCap, NeverSuspendsWithoutACap)
{
    startCapped(0);
    for (int i = 0; i < 100; ++i)
        send(1000000);
    EXPECT_EQ(server().suspensions, 0);
    EXPECT_EQ(engine.http.blockSize(), 256 * 1024);
}

TEST_F(SpeedCap, WakesNobodyBeforeTheTimerWhenTheCapIsLifted)
{
    startCapped(1);
    send(10240);
    engine.settings().maxDownloadSpeedKBps.set(0);
    engine.clock.advance(5s);
    EXPECT_FALSE(server().isRunning);
    engine.clock.advance(6s);
    EXPECT_TRUE(server().isRunning);
}

TEST_F(SpeedCap, ResumesNoTaskThatWasCancelledWhileItRested)
{
    const ItemPtr item = startCapped(1);
    send(10240);
    engine.manager().commands().pauseAll();
    EXPECT_TRUE(server().isDropped);
    engine.clock.advance(1min);
    EXPECT_FALSE(server().isRunning);
    EXPECT_EQ(item->status(), DownloadStatus::paused);
}

TEST_F(SpeedCap, ChargesAllTransfersToOneBudget)
{
    engine.settings().maxDownloadSpeedKBps.set(1);
    engine.add({u"http://h/a"_s, u"http://h/b"_s});
    engine.manager().commands().startAll();
    turnEventLoop();
    auto& first = *engine.http.exchanges()[0];
    auto& second = *engine.http.exchanges()[1];
    first.head(200);
    second.head(200);
    first.data(QByteArray(1024, 'x'));
    second.data(QByteArray(1024, 'x'));
    turnEventLoop();
    engine.clock.advance(1001ms);
    EXPECT_TRUE(first.isRunning);
    EXPECT_FALSE(second.isRunning);
    engine.clock.advance(1s);
    EXPECT_TRUE(second.isRunning);
}

TEST_F(SpeedCap, CutsTheStreamFinerTheLowerItIs)
{
    startCapped(512);
    EXPECT_EQ(engine.http.blockSize(), 16 * 1024);
    engine.settings().maxDownloadSpeedKBps.set(51200);
    EXPECT_EQ(engine.http.blockSize(), 256 * 1024);
}

TEST_F(SpeedCap, TakesAnAbsurdStoredValueForNoCap)
{
    startCapped(std::numeric_limits<qint64>::max());
    send(1000000);
    EXPECT_EQ(server().suspensions, 0);
    engine.settings().maxDownloadSpeedKBps.set(-5);
    send(1000000);
    EXPECT_EQ(server().suspensions, 0);
}
