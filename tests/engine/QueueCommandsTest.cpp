#include "fixtures/EventLoop.h"
#include "fixtures/Workshop.h"

#include <gtest/gtest.h>

using namespace vormel;
using namespace vormel::fixtures;

namespace {

const QString partFile = QStringLiteral("Downloads/x.rar.download");

class QueueCommandsTest : public ::testing::Test
{
protected:
    ItemPtr downloading()
    {
        const ItemPtr item = shop.start(QStringLiteral("http://h/x.rar"));
        shop.http.last().head(200, {{"Content-Length", "6"}});
        shop.http.last().data("abc");
        turnEventLoop();
        return item;
    }

    Workshop shop;
};

} // namespace

TEST_F(QueueCommandsTest, StartAllLiftsPausedItemsAndLeavesStoppedOnes)
{
    const auto items = shop.add({QStringLiteral("http://h/a"), QStringLiteral("http://h/b")});
    items[0]->setStatus(DownloadStatus::stopped);
    shop.manager().startAll();
    turnEventLoop();
    EXPECT_EQ(items[0]->status(), DownloadStatus::stopped);
    EXPECT_EQ(items[1]->status(), DownloadStatus::downloading);
}

TEST_F(QueueCommandsTest, PauseAllPausesWhatWaitsAndWhatRuns)
{
    shop.settings().maxConcurrentDownloads.set(1);
    const auto items = shop.add({QStringLiteral("http://h/a"), QStringLiteral("http://h/b"),
                                 QStringLiteral("http://h/c"), QStringLiteral("http://h/d")});
    shop.manager().startAll();
    turnEventLoop();
    items[2]->setStatus(DownloadStatus::resolving);
    items[3]->setStatus(DownloadStatus::expanding);
    shop.manager().pauseAll();
    turnEventLoop();
    EXPECT_EQ(items[0]->status(), DownloadStatus::paused);
    EXPECT_EQ(items[1]->status(), DownloadStatus::paused);
    EXPECT_EQ(items[2]->status(), DownloadStatus::resolving);
    EXPECT_EQ(items[3]->status(), DownloadStatus::expanding);
    EXPECT_TRUE(shop.http.exchanges()[0]->isDropped);
}

TEST_F(QueueCommandsTest, PauseKeepsThePartFileAndStartAllGoesOnFromIt)
{
    downloading();
    shop.manager().pauseAll();
    EXPECT_EQ(shop.sandbox.read(partFile), "abc");
    shop.manager().startAll();
    turnEventLoop();
    EXPECT_EQ(shop.http.last().header("Range"), "bytes=3-");
}

TEST_F(QueueCommandsTest, RemovalOfARunningItemDeletesItsPartFile)
{
    const ItemPtr item = downloading();
    shop.manager().commands().removeItems({item->id()});
    EXPECT_FALSE(shop.sandbox.exists(partFile));
    EXPECT_TRUE(shop.http.last().isDropped);
    EXPECT_TRUE(shop.manager().items().empty());
}

TEST_F(QueueCommandsTest, RemovalOfAPausedItemLeavesItsPartFile)
{
    const ItemPtr item = downloading();
    shop.manager().pauseAll();
    shop.manager().commands().removeItems({item->id()});
    EXPECT_TRUE(shop.sandbox.exists(partFile));
}

TEST_F(QueueCommandsTest, RemovalStartsTheNextItem)
{
    shop.settings().maxConcurrentDownloads.set(1);
    const auto items = shop.add({QStringLiteral("http://h/a"), QStringLiteral("http://h/b")});
    shop.manager().startAll();
    turnEventLoop();
    shop.manager().commands().removeItems({items[0]->id()});
    turnEventLoop();
    EXPECT_EQ(items[1]->status(), DownloadStatus::downloading);
}

TEST_F(QueueCommandsTest, ClearCompletedRemovesFinishedRowsAndNoFile)
{
    const auto items = shop.add({QStringLiteral("http://h/m.part1.rar"), QStringLiteral("http://h/m.part2.rar")});
    const QString file = shop.sandbox.write(QStringLiteral("Downloads/m/m.part1.rar"), "x");
    items[0]->setStatus(DownloadStatus::completed);
    items[0]->setLocalPath(file);
    shop.manager().clearCompleted();
    ASSERT_EQ(shop.manager().items().size(), 1U);
    EXPECT_EQ(shop.manager().items()[0], items[1]);
    EXPECT_TRUE(shop.sandbox.exists(QStringLiteral("Downloads/m/m.part1.rar")));
    shop.restart(true);
    EXPECT_EQ(shop.manager().items().size(), 1U);
}

TEST_F(QueueCommandsTest, ChangesOfARemovedItemReachNobody)
{
    const ItemPtr item = shop.add(QStringLiteral("http://h/a"));
    shop.manager().commands().removeItems({item->id()});
    int changes = 0;
    QObject::connect(&shop.manager(), &DownloadManager::itemChanged, &shop.manager(), [&changes] { ++changes; });
    item->setStatus(DownloadStatus::queued);
    EXPECT_EQ(changes, 0);
}
