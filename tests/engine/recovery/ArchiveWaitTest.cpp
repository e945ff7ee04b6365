#include "fixtures/ArchiveStep.h"
#include "fixtures/EventLoop.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// A set that is down but for one part, with a recovery volume.
class ArchiveWaitTest : public ::testing::Test, protected ArchiveStep
{
protected:
    void SetUp() override
    {
        unpackerMakes("movie.mkv");
        first = onDisk(u"m.part1.rar"_s);
        second = engine.add(u"http://h/m.part2.rar"_s);
        rev = engine.add(u"http://h/m.part1.rev"_s);
    }
    void start(const ItemPtr& item)
    {
        engine.manager().commands().startItems({item});
        turnEventLoop();
        ASSERT_EQ(item->status(), DownloadStatus::downloading);
    }
    ScriptedHttpClient::Exchange& exchangeOf(const ItemPtr& item)
    {
        const auto& all = engine.http.exchanges();
        return **std::find_if(all.rbegin(), all.rend(), [&item](const auto& exchange) {
            return exchange->request.url.path().endsWith(item->filename());
        });
    }
    void finish(const ItemPtr& item)
    {
        exchangeOf(item).head(200, {{"Content-Length", "1"}});
        exchangeOf(item).data("x");
        exchangeOf(item).finish();
        turnEventLoop();
    }
    void sendAPage(const ItemPtr& item)
    {
        exchangeOf(item).head(403, {{"Content-Type", "text/html"}});
        exchangeOf(item).data("<html>");
        exchangeOf(item).finish();
        turnEventLoop();
        ASSERT_EQ(item->status(), DownloadStatus::failed);
    }
    /// The parts are here, and only a recovery volume that would not be begun any more is still on its way.
    void waitForTheVolumeAlone()
    {
        engine.settings().downloadRevFiles.set(true);
        start(rev);
        start(second);
        finish(second);
        ASSERT_EQ(first->extractionStatus(), ExtractionStatus::idle);
    }

    ItemPtr first;
    ItemPtr second;
    ItemPtr rev;
};

} // namespace

TEST_F(ArchiveWaitTest, FetchesTheRecoveryVolumesWhenAPageIsTheLastToHappen)
{
    start(second);
    engine.clock.advance(5min);
    sendAPage(second);
    EXPECT_EQ(second->recoveryCountdown(), std::nullopt);
    engine.clock.advance(59s);
    EXPECT_EQ(rev->status(), DownloadStatus::paused);
    engine.clock.advance(1s);
    ASSERT_EQ(rev->status(), DownloadStatus::downloading);
    finish(rev);
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(ArchiveWaitTest, GoesOnWhenAPageComesAfterTheRecoveryVolumes)
{
    engine.settings().downloadRevFiles.set(true);
    start(rev);
    finish(rev);
    start(second);
    sendAPage(second);
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(ArchiveWaitTest, StartsNothingForAFailedPartWhileRecoveryVolumesAreLeftToFetch)
{
    start(second);
    sendAPage(second);
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle);
}

TEST_F(ArchiveWaitTest, GoesOnWithoutARecoveryVolumeThatWasNotBegunWhenTheLastPartCame)
{
    engine.settings().downloadRevFiles.set(true);
    start(second);
    rev->setStatus(DownloadStatus::queued);
    finish(second);
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(ArchiveWaitTest, WaitsForTheRecoveryVolumeThatIsOnItsWayWhenTheLastPartComes)
{
    waitForTheVolumeAlone();
    finish(rev);
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(ArchiveWaitTest, GoesOnWhenTheLastRecoveryVolumeIsPaused)
{
    waitForTheVolumeAlone();
    engine.manager().commands().pauseItems({rev});
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(ArchiveWaitTest, GoesOnWhenTheLastRecoveryVolumeIsStopped)
{
    waitForTheVolumeAlone();
    engine.manager().commands().stopItems({rev});
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(ArchiveWaitTest, GoesOnWhenTheVolumeThatItWaitsForIsRemoved)
{
    waitForTheVolumeAlone();
    engine.manager().commands().removeItems({rev->id()});
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(ArchiveWaitTest, GoesOnWhenTheConnectionOfTheLastRecoveryVolumeIsLost)
{
    waitForTheVolumeAlone();
    exchangeOf(rev).fail(HttpError::Kind::connectionLost);
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(ArchiveWaitTest, LeavesAnArchiveAloneWhoseRecoveryVolumesOnlyChangeTheirPlaceInTheQueue)
{
    // The user did not tell the password, and starts the rest of the queue.
    second->setLocalPath(engine.sandbox.write(u"Downloads/m/m.part2.rar"_s, "x"));
    second->setStatus(DownloadStatus::completed);
    engine.manager().commands().startAll();
    turnEventLoop();
    engine.manager().commands().pauseAll();
    turnEventLoop();
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle);
}

TEST_F(ArchiveWaitTest, GoesOnWithoutAReleasedRecoveryVolumeThatTheUserStops)
{
    start(second);
    sendAPage(second);
    engine.manager().commands().retryWithRevFiles({first});
    turnEventLoop();
    ASSERT_EQ(rev->status(), DownloadStatus::downloading);
    engine.manager().commands().stopItems({rev});
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(ArchiveWaitTest, WaitsForAReleasedRecoveryVolumeThatIsPaused)
{
    start(second);
    sendAPage(second);
    engine.manager().commands().retryWithRevFiles({first});
    turnEventLoop();
    engine.manager().commands().pauseItems({rev});
    turnEventLoop();
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle);
    engine.manager().commands().resumeItem(*rev);
    turnEventLoop();
    finish(rev);
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(ArchiveWaitTest, GoesOnWhenTheRowOfTheLastPartIsRemoved)
{
    const ItemPtr mirror = engine.add(u"http://mirror/m.part2.rar"_s);
    start(second);
    finish(second);
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle);
    engine.manager().commands().removeItems({mirror->id()});
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(ArchiveWaitTest, IsLeftAloneWhenAFinishedRowIsRemoved)
{
    second->setLocalPath(engine.sandbox.write(u"Downloads/m/m.part2.rar"_s, "x"));
    second->setStatus(DownloadStatus::completed);
    engine.manager().commands().removeItems({second->id()});
    turnEventLoop();
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle);
}
