#include "fixtures/EventLoop.h"
#include "fixtures/Workshop.h"

#include <QFile>

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
    shop.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(items[0]->status(), DownloadStatus::stopped);
    EXPECT_EQ(items[1]->status(), DownloadStatus::downloading);
}

TEST_F(QueueCommandsTest, PauseAllPausesWhatWaitsAndWhatRuns)
{
    shop.settings().maxConcurrentDownloads.set(1);
    const auto items = shop.add({QStringLiteral("http://h/a"), QStringLiteral("http://h/b"),
                                 QStringLiteral("http://h/c"), QStringLiteral("http://h/d")});
    shop.manager().commands().startAll();
    turnEventLoop();
    items[2]->setStatus(DownloadStatus::resolving);
    items[3]->setStatus(DownloadStatus::expanding);
    shop.manager().commands().pauseAll();
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
    shop.manager().commands().pauseAll();
    EXPECT_EQ(shop.sandbox.read(partFile), "abc");
    shop.manager().commands().startAll();
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
    shop.manager().commands().pauseAll();
    shop.manager().commands().removeItems({item->id()});
    EXPECT_TRUE(shop.sandbox.exists(partFile));
}

TEST_F(QueueCommandsTest, RemovalStartsTheNextItem)
{
    shop.settings().maxConcurrentDownloads.set(1);
    const auto items = shop.add({QStringLiteral("http://h/a"), QStringLiteral("http://h/b")});
    shop.manager().commands().startAll();
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
    shop.manager().commands().clearCompleted();
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

TEST_F(QueueCommandsTest, StartGoesAheadOfTheOrderOfTheQueue)
{
    shop.settings().maxConcurrentDownloads.set(1);
    const auto items =
        shop.add({QStringLiteral("http://h/a"), QStringLiteral("http://h/b"), QStringLiteral("http://h/c")});
    items[0]->setStatus(DownloadStatus::queued);
    items[1]->setStatus(DownloadStatus::stopped);
    shop.manager().commands().startItems({items[1], items[2]});
    EXPECT_EQ(items[1]->status(), DownloadStatus::resolving);
    turnEventLoop();
    EXPECT_EQ(items[0]->status(), DownloadStatus::queued);
    EXPECT_EQ(items[1]->status(), DownloadStatus::downloading);
    EXPECT_EQ(items[2]->status(), DownloadStatus::queued);
}

TEST_F(QueueCommandsTest, StartTakesNoMoreThanTheFreeSlots)
{
    shop.settings().maxConcurrentDownloads.set(2);
    const auto items = shop.add({QStringLiteral("http://h/a"), QStringLiteral("http://h/b"),
                                 QStringLiteral("http://h/c"), QStringLiteral("http://h/d")});
    items[0]->setStatus(DownloadStatus::queued);
    shop.manager().processQueue();
    shop.manager().commands().startItems({items[1], items[2], items[3]});
    turnEventLoop();
    EXPECT_EQ(shop.http.exchanges().size(), 2U);
    EXPECT_EQ(items[0]->status(), DownloadStatus::downloading);
    EXPECT_EQ(items[1]->status(), DownloadStatus::downloading);
}

TEST_F(QueueCommandsTest, StartLeavesRecoveryVolumesThatAreNotWanted)
{
    const auto items = shop.add({QStringLiteral("http://h/m.part1.rev"), QStringLiteral("http://h/m.part1.rar")});
    shop.manager().commands().startItems(items);
    turnEventLoop();
    EXPECT_EQ(items[0]->status(), DownloadStatus::queued);
    EXPECT_EQ(items[1]->status(), DownloadStatus::downloading);
}

TEST_F(QueueCommandsTest, AnItemThatIsStoppedBeforeItsStartRunsStaysStopped)
{
    const ItemPtr item = shop.add(QStringLiteral("http://h/a"));
    shop.manager().commands().startItems({item});
    shop.manager().commands().stopItems({item});
    turnEventLoop();
    EXPECT_EQ(item->status(), DownloadStatus::stopped);
    EXPECT_TRUE(shop.http.exchanges().empty());
}

TEST_F(QueueCommandsTest, StopGivesTheSlotToTheNextItemAndSurvivesARestart)
{
    shop.settings().maxConcurrentDownloads.set(1);
    const auto items = shop.add({QStringLiteral("http://h/a"), QStringLiteral("http://h/b")});
    shop.manager().commands().startAll();
    turnEventLoop();
    shop.manager().commands().stopItems({items[0]});
    turnEventLoop();
    EXPECT_EQ(items[1]->status(), DownloadStatus::downloading);
    shop.restart(true);
    EXPECT_EQ(shop.manager().items()[0]->status(), DownloadStatus::stopped);
}

TEST_F(QueueCommandsTest, RetryBeginsAgainFromTheFirstByte)
{
    const ItemPtr item = downloading();
    shop.manager().commands().interruptItem(*item, DownloadStatus::failure(QStringLiteral("gone")));
    shop.manager().commands().retryItem(*item);
    turnEventLoop();
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
    EXPECT_FALSE(shop.http.last().header("Range"));
    EXPECT_EQ(item->bytesReceived(), 0);
}

TEST_F(QueueCommandsTest, RedownloadDeletesTheFinishedFileAndFetchesItAgain)
{
    const ItemPtr item = shop.add(QStringLiteral("http://h/x.rar"));
    shop.sandbox.write(QStringLiteral("Downloads/x.rar"), "the user's own");
    const QString renamed = shop.sandbox.write(QStringLiteral("Downloads/x (1).rar"), "finished");
    item->setLocalPath(renamed);
    item->setStatus(DownloadStatus::completed);
    item->setExtractionStatus(ExtractionStatus::done);
    shop.manager().commands().redownloadItem(*item);
    turnEventLoop();
    EXPECT_EQ(shop.sandbox.files(QStringLiteral("Downloads")),
              (QStringList{QStringLiteral("x.rar"), QStringLiteral("x.rar.download")}));
    ASSERT_EQ(item->status(), DownloadStatus::downloading);
    EXPECT_EQ(item->extractionStatus(), ExtractionStatus::idle);
    EXPECT_FALSE(item->localPath());
    shop.http.last().head(200, {{"Content-Length", "5"}});
    shop.http.last().data("fresh");
    shop.http.last().finish();
    turnEventLoop();
    EXPECT_EQ(shop.sandbox.read(QStringLiteral("Downloads/x.rar")), "the user's own");
    EXPECT_EQ(shop.sandbox.read(QStringLiteral("Downloads/x (1).rar")), "fresh");
}

TEST_F(QueueCommandsTest, RedownloadMovesWhatStandsUnderTheNameToTheTrashWhereTheItemHasNoFile)
{
    const ItemPtr item = shop.add(QStringLiteral("http://h/x.rar"));
    shop.sandbox.write(QStringLiteral("Downloads/x.rar"), "stale");
    item->setLocalPath(shop.sandbox.path(QStringLiteral("Downloads/gone.rar")));
    shop.manager().commands().redownloadItem(*item);
    EXPECT_FALSE(shop.sandbox.exists(QStringLiteral("Downloads/x.rar")));
    EXPECT_EQ(shop.sandbox.read(QStringLiteral("Trash/x.rar")), "stale");
}

TEST_F(QueueCommandsTest, RedownloadLeavesAnotherItemItsFile)
{
    const ItemPtr other = shop.add(QStringLiteral("http://a/x.rar"));
    other->setLocalPath(shop.sandbox.write(QStringLiteral("Downloads/x.rar"), "other"));
    other->setStatus(DownloadStatus::completed);
    const ItemPtr item = shop.add(QStringLiteral("http://b/x.rar"));
    ASSERT_EQ(item->status(), DownloadStatus::paused);
    // With a file of its own, and with none.
    item->setLocalPath(shop.sandbox.write(QStringLiteral("Downloads/x (1).rar"), "own"));
    for (int i = 0; i < 2; ++i) {
        shop.manager().commands().redownloadItem(*item);
        turnEventLoop();
        EXPECT_EQ(shop.sandbox.read(QStringLiteral("Downloads/x.rar")), "other");
        EXPECT_EQ(item->status(), DownloadStatus::downloading);
    }
    EXPECT_FALSE(shop.sandbox.exists(QStringLiteral("Downloads/x (1).rar")));
    // Not even where its folder has two paths.
    ASSERT_TRUE(QFile::link(shop.sandbox.folders().downloads, shop.sandbox.path(QStringLiteral("way"))));
    shop.settings().downloadFolderPath.set(shop.sandbox.path(QStringLiteral("way")));
    shop.manager().commands().redownloadItem(*item);
    EXPECT_EQ(shop.sandbox.read(QStringLiteral("Downloads/x.rar")), "other");
}

TEST_F(QueueCommandsTest, RedownloadOfANamelessItemDeletesNoFileNamedDownload)
{
    const ItemPtr item = shop.add(QStringLiteral("http://h/"));
    shop.sandbox.write(QStringLiteral("Downloads/download"), "the user's own");
    shop.settings().maxConcurrentDownloads.set(0);
    shop.manager().commands().redownloadItem(*item);
    EXPECT_EQ(shop.sandbox.read(QStringLiteral("Downloads/download")), "the user's own");
}

TEST_F(QueueCommandsTest, ClearExtractedTakesOutTheWholeSetOfAnExtractedPart)
{
    const auto items = shop.add({QStringLiteral("http://h/m.part1.rar"), QStringLiteral("http://h/m.part2.rar"),
                                 QStringLiteral("http://h/m.part1.rev"), QStringLiteral("http://h/m.zip"),
                                 QStringLiteral("http://h/M.part9.rar")});
    items[0]->setExtractionStatus(ExtractionStatus::done);
    shop.manager().commands().clearExtracted();
    EXPECT_EQ(shop.manager().items(), (std::vector{items[3], items[4]}));
}

namespace {

QStringList names(const DownloadManager& manager)
{
    QStringList list;
    for (const ItemPtr& item : manager.items())
        list << item->filename();
    return list;
}

} // namespace

TEST_F(QueueCommandsTest, MovesWholeGroupsAndPutsHiddenVolumesLast)
{
    shop.add({QStringLiteral("http://h/a"), QStringLiteral("http://h/m.part1.rev"),
              QStringLiteral("http://h/m.part2.rar"), QStringLiteral("http://h/b"),
              QStringLiteral("http://h/m.part1.rar")});
    const QStringList ids{QStringLiteral("a"), QStringLiteral("m"), QStringLiteral("b")};
    shop.manager().commands().moveGroups({1}, 0, ids);
    EXPECT_EQ(names(shop.manager()).join(u' '), u"m.part1.rar m.part2.rar a b m.part1.rev");
    shop.restart(true);
    EXPECT_EQ(names(shop.manager()).join(u' '), u"m.part1.rar m.part2.rar a b m.part1.rev");
}

TEST_F(QueueCommandsTest, MovesSeveralGroupsTogetherInFrontOfTheDestination)
{
    shop.add({QStringLiteral("http://h/a"), QStringLiteral("http://h/b"), QStringLiteral("http://h/c"),
              QStringLiteral("http://h/d")});
    const QStringList ids{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d")};
    shop.manager().commands().moveGroups({0, 2}, 4, ids);
    EXPECT_EQ(names(shop.manager()).join(u' '), u"b d a c");
}

TEST_F(QueueCommandsTest, TellsGroupsOfOneNameApartByTheirPlaces)
{
    const auto items =
        shop.add({QStringLiteral("http://h/a"), QStringLiteral("http://h/b"), QStringLiteral("http://h/c")});
    const QString x = QStringLiteral("x");
    for (const ItemPtr& item : items)
        item->setFilename(x);
    shop.manager().commands().moveGroups({2}, 0, {x, x, x});
    EXPECT_EQ(shop.manager().items(), (std::vector{items[2], items[0], items[1]}));
}

TEST_F(QueueCommandsTest, IgnoresAMoveOfGroupsThatAreNotThere)
{
    const auto items = shop.add({QStringLiteral("http://h/a"), QStringLiteral("http://h/b")});
    shop.manager().commands().moveGroups({-1, 5}, 99, {QStringLiteral("a"), QStringLiteral("b")});
    EXPECT_EQ(shop.manager().items(), items);
}
