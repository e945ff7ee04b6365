#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

class RevFilesTest : public ::testing::Test
{
protected:
    RevFilesTest()
        : set(engine.add({u"http://h/m.part1.rar"_s, u"http://h/m.part1.rev"_s, u"http://h/m.part2.REV"_s}))
    {
        engine.settings().maxConcurrentDownloads.set(1);
    }

    /// How many volumes were released by this wish to repair.
    qsizetype release()
    {
        std::vector<DownloadStatus::Kind> before;
        for (const ItemPtr& item : set)
            item->setStatus(item->status() == DownloadStatus::queued ? DownloadStatus::paused : item->status());
        engine.manager().commands().retryWithRevFiles({set[0]});
        return std::count_if(set.begin(), set.end(),
                             [](const ItemPtr& item) { return item->status() == DownloadStatus::queued; });
    }

    EngineOnScript engine;
    std::vector<ItemPtr> set;
};

} // namespace

TEST_F(RevFilesTest, LetsTheVolumesOfASetThroughOnceByItself)
{
    engine.clock.advance(std::chrono::minutes(5));
    const auto partFails = [this] {
        engine.manager().commands().retryItem(*set[0]);
        turnEventLoop();
        engine.http.last().head(403, {{"Content-Type", "text/html"}});
        engine.http.last().finish();
        turnEventLoop();
        ASSERT_EQ(set[0]->status(), DownloadStatus::failed);
        engine.clock.advance(std::chrono::minutes(1));
    };
    partFails();
    for (const ItemPtr& volume : {set[1], set[2]}) {
        EXPECT_NE(volume->status(), DownloadStatus::paused);
        volume->setStatus(DownloadStatus::stopped);
    }
    partFails();
    for (const ItemPtr& volume : {set[1], set[2]})
        EXPECT_EQ(volume->status(), DownloadStatus::stopped);
}

TEST_F(RevFilesTest, FetchesThemAgainWhenTheUserWantsThough)
{
    for (const DownloadStatus& status : {DownloadStatus(DownloadStatus::stopped),
                                         DownloadStatus(DownloadStatus::paused), DownloadStatus::failure(u"gone"_s)}) {
        engine.manager().commands().retryWithRevFiles({set[0]});
        set[1]->setStatus(status);
        set[2]->setStatus(DownloadStatus::completed);
        engine.manager().commands().retryWithRevFiles({set[0]});
        turnEventLoop();
        EXPECT_EQ(set[1]->status(), DownloadStatus::downloading);
        EXPECT_EQ(set[2]->status(), DownloadStatus::completed);
        engine.manager().commands().interruptItem(*set[1], DownloadStatus::paused);
    }
}

TEST_F(RevFilesTest, LeavesVolumesAloneThatAreThereOrComing)
{
    set[1]->setStatus(DownloadStatus::completed);
    set[2]->setStatus(DownloadStatus::downloading);
    EXPECT_EQ(release(), 0);
    EXPECT_EQ(set[2]->status(), DownloadStatus::downloading);
}

TEST_F(RevFilesTest, FetchesAReleasedVolumeThoughTheSettingIsOff)
{
    release();
    turnEventLoop();
    EXPECT_EQ(set[1]->status(), DownloadStatus::downloading);
}

TEST_F(RevFilesTest, LeavesAWaitingVolumeInTheQueueWhileTheSettingIsOff)
{
    set[0]->setStatus(DownloadStatus::completed);
    set[1]->setStatus(DownloadStatus::queued);
    engine.manager().processQueue();
    turnEventLoop();
    EXPECT_EQ(set[1]->status(), DownloadStatus::queued);
    EXPECT_TRUE(engine.http.exchanges().empty());
}

TEST_F(RevFilesTest, StaysSilentAfterARestartUntilReleasedAgain)
{
    release();
    engine.restart();
    engine.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(engine.http.exchanges().size(), 1U); // the part
}

TEST_F(RevFilesTest, KnowsWhetherASetHasVolumesLeftToFetch)
{
    EXPECT_TRUE(engine.manager().hasPendingRevFiles({set[0]}));
    set[1]->setStatus(DownloadStatus::completed);
    EXPECT_TRUE(engine.manager().hasPendingRevFiles({set[0]}));
    set[2]->setStatus(DownloadStatus::downloading);
    EXPECT_FALSE(engine.manager().hasPendingRevFiles({set[0]}));
    EXPECT_FALSE(engine.manager().hasPendingRevFiles({engine.add(u"http://h/alone.zip"_s)}));
}
