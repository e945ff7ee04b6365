#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;
using namespace std::chrono_literals;

namespace {

const DownloadStatus gone = DownloadStatus::failure(u"gone"_s);

class NetworkRecoveryTest : public ::testing::Test
{
protected:
    /// A set of two parts and a recovery volume, of which nothing runs.
    void SetUp() override
    {
        set = engine.add({u"http://h/m.part1.rar"_s, u"http://h/m.part2.rar"_s, u"http://h/m.part1.rev"_s});
        part = set[0];
        rev = set[2];
    }

    /// Lets an item fail for good on its way.
    void fail(const ItemPtr& item)
    {
        engine.manager().commands().startItems({item});
        turnEventLoop();
        while (item->status() != DownloadStatus::failed) {
            exchangeOf(item).fail(HttpError::Kind::connectionLost);
            turnEventLoop();
            if (item->status() == DownloadStatus::queued)
                engine.clock.advance(10s);
        }
    }

    /// Takes no time.
    void failAtItsStart(const ItemPtr& item)
    {
        engine.sandbox.write(u"blocked"_s, "a file where the folder should be");
        engine.settings().downloadFolderPath.set(engine.sandbox.path(u"blocked"_s));
        engine.manager().commands().startItems({item});
        turnEventLoop();
        ASSERT_EQ(item->status(), DownloadStatus::failed);
    }

    ScriptedHttpClient::Exchange& exchangeOf(const ItemPtr& item)
    {
        const auto& all = engine.http.exchanges();
        const auto latest = std::find_if(all.rbegin(), all.rend(), [&item](const auto& exchange) {
            return exchange->request.url.path().endsWith(item->filename());
        });
        return **latest;
    }

    /// Is the recovery volume on its way?
    [[nodiscard]] bool isRevFetched() const { return rev->status() == DownloadStatus::downloading; }

    EngineOnScript engine;
    std::vector<ItemPtr> set;
    ItemPtr part;
    ItemPtr rev;
};

} // namespace

TEST_F(NetworkRecoveryTest, CountsDownOnAPartThatFailedForGoodAndThenFetchesTheRecoveryVolumes)
{
    fail(part);
    EXPECT_EQ(part->recoveryCountdown(), 10);
    engine.clock.advance(1s);
    EXPECT_EQ(part->recoveryCountdown(), 9);
    engine.clock.advance(8s);
    EXPECT_EQ(part->recoveryCountdown(), 1);
    EXPECT_EQ(rev->status(), DownloadStatus::paused);
    engine.clock.advance(1s);
    EXPECT_EQ(part->recoveryCountdown(), std::nullopt);
    EXPECT_TRUE(isRevFetched());
}

TEST_F(NetworkRecoveryTest, CountsDownAlsoWhenAStartFails)
{
    failAtItsStart(part);
    EXPECT_EQ(part->recoveryCountdown(), 10);
}

TEST_F(NetworkRecoveryTest, StartsNoCountdownForAPageThatCameInstead)
{
    engine.manager().commands().startItems({part});
    turnEventLoop();
    engine.http.last().head(403, {{"Content-Type", "text/html"}});
    engine.http.last().data("<html>");
    engine.http.last().finish();
    turnEventLoop();
    ASSERT_EQ(part->status(), DownloadStatus::failed);
    EXPECT_EQ(part->recoveryCountdown(), std::nullopt);
}

TEST_F(NetworkRecoveryTest, FetchesTheRecoveryVolumesAMinuteAfterTheLastPartHasStayedShort)
{
    set[1]->setStatus(DownloadStatus::completed);
    engine.manager().commands().startItems({part});
    turnEventLoop();
    while (part->status() != DownloadStatus::failed) {
        exchangeOf(part).head(200, {{"Content-Length", "10"}});
        exchangeOf(part).finish();
        turnEventLoop();
        if (part->status() == DownloadStatus::queued)
            engine.clock.advance(10s);
        turnEventLoop();
    }
    EXPECT_EQ(part->recoveryCountdown(), std::nullopt);
    engine.clock.advance(59s);
    EXPECT_FALSE(isRevFetched());
    engine.clock.advance(1s);
    turnEventLoop();
    EXPECT_TRUE(isRevFetched());
}

TEST_F(NetworkRecoveryTest, StartsNoCountdownWithoutRecoveryVolumes)
{
    engine.manager().commands().removeItems({rev->id()});
    fail(part);
    EXPECT_EQ(part->recoveryCountdown(), std::nullopt);
}

TEST_F(NetworkRecoveryTest, StartsNoCountdownWhenAllRecoveryVolumesAreThere)
{
    rev->setStatus(DownloadStatus::completed);
    fail(part);
    EXPECT_EQ(part->recoveryCountdown(), std::nullopt);
}

TEST_F(NetworkRecoveryTest, StartsNoCountdownWhenRecoveryVolumesAreFetchedAnyway)
{
    engine.settings().downloadRevFiles.set(true);
    rev->setStatus(DownloadStatus::stopped);
    fail(part);
    EXPECT_EQ(part->recoveryCountdown(), std::nullopt);
    engine.clock.advance(61s);
    EXPECT_EQ(rev->status(), DownloadStatus::stopped);
}

TEST_F(NetworkRecoveryTest, StartsNoRecoveryForASingleArchive)
{
    engine.add(u"http://h/a.rev"_s);
    const ItemPtr single = engine.add(u"http://h/a.rar"_s);
    fail(single);
    EXPECT_EQ(single->recoveryCountdown(), std::nullopt);
}

TEST_F(NetworkRecoveryTest, StartsNoRecoveryForARecoveryVolume)
{
    engine.add(u"http://h/m.part2.rev"_s);
    engine.manager().commands().retryWithRevFiles({part});
    turnEventLoop();
    fail(rev);
    EXPECT_EQ(rev->recoveryCountdown(), std::nullopt);
}

TEST_F(NetworkRecoveryTest, TellsSetsApartByLetterCase)
{
    const ItemPtr other = engine.add(u"http://h/M.part9.rar"_s);
    fail(other);
    EXPECT_EQ(other->recoveryCountdown(), std::nullopt);
}

TEST_F(NetworkRecoveryTest, StopsTheCountdownWhenThePartIsTriedAgain)
{
    fail(part);
    engine.clock.advance(3s);
    part->setStatus(DownloadStatus::stopped);
    EXPECT_EQ(part->recoveryCountdown(), 7);
    engine.clock.advance(1s);
    EXPECT_EQ(part->recoveryCountdown(), std::nullopt);
    engine.clock.advance(30s);
    EXPECT_FALSE(isRevFetched());
}

TEST_F(NetworkRecoveryTest, StopsTheCountdownAtOnceWhenTheUserRetries)
{
    fail(part);
    engine.manager().commands().retryItem(*part);
    EXPECT_EQ(part->recoveryCountdown(), std::nullopt);
    engine.clock.advance(30s);
    EXPECT_FALSE(isRevFetched());
}

TEST_F(NetworkRecoveryTest, LetsACountdownGoOnThatIsRunning)
{
    fail(part);
    engine.clock.advance(4s);
    part->setStatus(DownloadStatus::stopped);
    failAtItsStart(part);
    EXPECT_EQ(part->recoveryCountdown(), 6);
    engine.clock.advance(1s);
    EXPECT_EQ(part->recoveryCountdown(), 5);
}

TEST_F(NetworkRecoveryTest, ForgetsTheCountdownOfAPartThatIsRemoved)
{
    fail(part);
    engine.manager().commands().removeItems({part->id()});
    engine.clock.advance(70s);
    EXPECT_FALSE(isRevFetched());
}

TEST_F(NetworkRecoveryTest, ChecksTheSetAMinuteAfterAPartHasFailed)
{
    // Without the countdown, which comes first.
    fail(part);
    part->setStatus(DownloadStatus::stopped);
    engine.clock.advance(2s);
    part->setStatus(gone);
    engine.clock.advance(57s);
    EXPECT_FALSE(isRevFetched());
    engine.clock.advance(1s);
    EXPECT_TRUE(isRevFetched());
}

TEST_F(NetworkRecoveryTest, ChecksTheSetAlsoWhenAnotherPartIsPaused)
{
    fail(part);
    engine.manager().commands().retryItem(*part);
    engine.manager().commands().interruptItem(*part, gone);
    ASSERT_EQ(set[1]->status(), DownloadStatus::paused);
    engine.clock.advance(60s);
    EXPECT_TRUE(isRevFetched());
}

TEST_F(NetworkRecoveryTest, HoldsTheCheckBackWhileAPartIsAtWork)
{
    for (const auto status : {DownloadStatus::queued, DownloadStatus::resolving, DownloadStatus::downloading}) {
        fail(part);
        part->setStatus(DownloadStatus::stopped);
        engine.clock.advance(2s);
        part->setStatus(gone);
        set[1]->setStatus(status);
        engine.clock.advance(70s);
        EXPECT_EQ(rev->status(), DownloadStatus::paused) << status;
        set[1]->setStatus(DownloadStatus::paused);
        part->setStatus(DownloadStatus::paused);
    }
}

TEST_F(NetworkRecoveryTest, QueuesNothingWhenAllPartsAreComplete)
{
    set[1]->setStatus(DownloadStatus::completed);
    engine.manager().commands().startItems({part});
    turnEventLoop();
    engine.http.last().head(200, {{"Content-Length", "1"}});
    engine.http.last().data("x");
    engine.http.last().finish();
    turnEventLoop();
    ASSERT_EQ(part->status(), DownloadStatus::completed);
    rev->setStatus(DownloadStatus::queued);
    engine.clock.advance(120s);
    EXPECT_EQ(rev->status(), DownloadStatus::queued);
}

TEST_F(NetworkRecoveryTest, RepairsTheSetsOfTheItemsOnTheUsersWish)
{
    const ExtractionStatus broken = ExtractionStatus::failure(u"broken"_s);
    part->setExtractionStatus(broken);
    const ItemPtr other = engine.add(u"http://h/other.part1.rar"_s);
    other->setExtractionStatus(broken);
    engine.manager().commands().retryWithRevFiles({set[0], set[1]});
    turnEventLoop();
    EXPECT_EQ(part->extractionStatus(), ExtractionStatus::idle);
    EXPECT_EQ(other->extractionStatus(), broken);
    EXPECT_TRUE(isRevFetched());
}
