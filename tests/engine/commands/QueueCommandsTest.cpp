#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

const QString partOfRar = u"Downloads/x.rar.download"_s;

class QueueCommandsTest : public ::testing::Test
{
protected:
    ItemPtr downloading()
    {
        const ItemPtr item = engine.start(u"http://h/x.rar"_s);
        engine.http.last().head(200, {{"Content-Length", "6"}});
        engine.http.last().data("abc");
        turnEventLoop();
        return item;
    }

    EngineOnScript engine;
};

} // namespace

TEST_F(QueueCommandsTest, StartAllLiftsPausedItemsAndLeavesStoppedOnes)
{
    const auto items = engine.add({u"http://h/a"_s, u"http://h/b"_s});
    items[0]->setStatus(DownloadStatus::stopped);
    engine.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(items[0]->status(), DownloadStatus::stopped);
    EXPECT_EQ(items[1]->status(), DownloadStatus::downloading);
}

TEST_F(QueueCommandsTest, PauseAllPausesWhatWaitsAndWhatRuns)
{
    engine.settings().maxConcurrentDownloads.set(1);
    const auto items = engine.add({u"http://h/a"_s, u"http://h/b"_s, u"http://h/c"_s, u"http://h/d"_s});
    engine.manager().commands().startAll();
    turnEventLoop();
    items[2]->setStatus(DownloadStatus::resolving);
    items[3]->setStatus(DownloadStatus::expanding);
    engine.manager().commands().pauseAll();
    turnEventLoop();
    EXPECT_EQ(items[0]->status(), DownloadStatus::paused);
    EXPECT_EQ(items[1]->status(), DownloadStatus::paused);
    EXPECT_EQ(items[2]->status(), DownloadStatus::resolving);
    EXPECT_EQ(items[3]->status(), DownloadStatus::expanding);
    EXPECT_TRUE(engine.http.exchanges()[0]->isDropped);
}

TEST_F(QueueCommandsTest, PauseKeepsThePartFileAndStartAllGoesOnFromIt)
{
    downloading();
    engine.manager().commands().pauseAll();
    EXPECT_EQ(engine.sandbox.read(partOfRar), "abc");
    engine.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(engine.http.last().header("Range"), "bytes=3-");
}

TEST_F(QueueCommandsTest, RemovalOfARunningItemDeletesItsPartFile)
{
    const ItemPtr item = downloading();
    engine.manager().commands().removeItems({item->id()});
    EXPECT_FALSE(engine.sandbox.exists(partOfRar));
    EXPECT_TRUE(engine.http.last().isDropped);
    EXPECT_TRUE(engine.manager().items().empty());
}

TEST_F(QueueCommandsTest, RemovalOfAPausedItemLeavesItsPartFile)
{
    const ItemPtr item = downloading();
    engine.manager().commands().pauseAll();
    engine.manager().commands().removeItems({item->id()});
    EXPECT_TRUE(engine.sandbox.exists(partOfRar));
}

TEST_F(QueueCommandsTest, RemovalStartsTheNextItem)
{
    engine.settings().maxConcurrentDownloads.set(1);
    const auto items = engine.add({u"http://h/a"_s, u"http://h/b"_s});
    engine.manager().commands().startAll();
    turnEventLoop();
    engine.manager().commands().removeItems({items[0]->id()});
    turnEventLoop();
    EXPECT_EQ(items[1]->status(), DownloadStatus::downloading);
}

TEST_F(QueueCommandsTest, ClearCompletedRemovesFinishedRowsAndNoFile)
{
    const auto items = engine.add({u"http://h/m.part1.rar"_s, u"http://h/m.part2.rar"_s});
    const QString file = engine.sandbox.write(u"Downloads/m/m.part1.rar"_s, "x");
    items[0]->setStatus(DownloadStatus::completed);
    items[0]->setLocalPath(file);
    engine.manager().commands().clearCompleted();
    ASSERT_EQ(engine.manager().items().size(), 1U);
    EXPECT_EQ(engine.manager().items()[0], items[1]);
    EXPECT_TRUE(engine.sandbox.exists(u"Downloads/m/m.part1.rar"_s));
    engine.restart(true);
    EXPECT_EQ(engine.manager().items().size(), 1U);
}

TEST_F(QueueCommandsTest, ChangesOfARemovedItemReachNobody)
{
    const ItemPtr item = engine.add(u"http://h/a"_s);
    engine.manager().commands().removeItems({item->id()});
    int changes = 0;
    QObject::connect(&engine.manager(), &DownloadManager::itemChanged, &engine.manager(), [&changes] { ++changes; });
    item->setStatus(DownloadStatus::queued);
    EXPECT_EQ(changes, 0);
}

TEST_F(QueueCommandsTest, StartGoesAheadOfTheOrderOfTheQueue)
{
    engine.settings().maxConcurrentDownloads.set(1);
    const auto items = engine.add({u"http://h/a"_s, u"http://h/b"_s, u"http://h/c"_s});
    items[0]->setStatus(DownloadStatus::queued);
    items[1]->setStatus(DownloadStatus::stopped);
    engine.manager().commands().startItems({items[1], items[2]});
    EXPECT_EQ(items[1]->status(), DownloadStatus::resolving);
    turnEventLoop();
    EXPECT_EQ(items[0]->status(), DownloadStatus::queued);
    EXPECT_EQ(items[1]->status(), DownloadStatus::downloading);
    EXPECT_EQ(items[2]->status(), DownloadStatus::queued);
}

TEST_F(QueueCommandsTest, StartTakesNoMoreThanTheFreeSlots)
{
    engine.settings().maxConcurrentDownloads.set(2);
    const auto items = engine.add({u"http://h/a"_s, u"http://h/b"_s, u"http://h/c"_s, u"http://h/d"_s});
    items[0]->setStatus(DownloadStatus::queued);
    engine.manager().processQueue();
    engine.manager().commands().startItems({items[1], items[2], items[3]});
    turnEventLoop();
    EXPECT_EQ(engine.http.exchanges().size(), 2U);
    EXPECT_EQ(items[0]->status(), DownloadStatus::downloading);
    EXPECT_EQ(items[1]->status(), DownloadStatus::downloading);
}

TEST_F(QueueCommandsTest, StartLeavesRecoveryVolumesThatAreNotWanted)
{
    const auto items = engine.add({u"http://h/m.part1.rev"_s, u"http://h/m.part1.rar"_s});
    engine.manager().commands().startItems(items);
    turnEventLoop();
    EXPECT_EQ(items[0]->status(), DownloadStatus::queued);
    EXPECT_EQ(items[1]->status(), DownloadStatus::downloading);
}

TEST_F(QueueCommandsTest, AnItemThatIsStoppedBeforeItsStartRunsStaysStopped)
{
    const ItemPtr item = engine.add(u"http://h/a"_s);
    engine.manager().commands().startItems({item});
    engine.manager().commands().stopItems({item});
    turnEventLoop();
    EXPECT_EQ(item->status(), DownloadStatus::stopped);
    EXPECT_TRUE(engine.http.exchanges().empty());
}

TEST_F(QueueCommandsTest, StopGivesTheSlotToTheNextItemAndSurvivesARestart)
{
    engine.settings().maxConcurrentDownloads.set(1);
    const auto items = engine.add({u"http://h/a"_s, u"http://h/b"_s});
    engine.manager().commands().startAll();
    turnEventLoop();
    engine.manager().commands().stopItems({items[0]});
    turnEventLoop();
    EXPECT_EQ(items[1]->status(), DownloadStatus::downloading);
    engine.restart(true);
    EXPECT_EQ(engine.manager().items()[0]->status(), DownloadStatus::stopped);
}

TEST_F(QueueCommandsTest, RetryBeginsAgainFromTheFirstByte)
{
    const ItemPtr item = downloading();
    engine.manager().commands().interruptItem(*item, DownloadStatus::failure(u"gone"_s));
    engine.manager().commands().retryItem(*item);
    turnEventLoop();
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
    EXPECT_FALSE(engine.http.last().header("Range"));
    EXPECT_EQ(item->bytesReceived(), 0);
}

TEST_F(QueueCommandsTest, RedownloadLeavesTheFileOfARowThatCanBePutBack)
{
    const QString path = engine.sandbox.write(u"Downloads/x.rar"_s, "finished");
    const ItemPtr item = engine.add(u"http://h/x.rar"_s);
    const ItemPtr mirror = engine.add(u"http://mirror/x.rar"_s);
    for (const ItemPtr& one : {item, mirror}) {
        one->setLocalPath(path);
        one->setStatus(DownloadStatus::completed);
    }
    engine.manager().removed().remove({mirror->id()});
    engine.manager().commands().redownloadItem(*item);
    EXPECT_EQ(engine.sandbox.read(u"Downloads/x.rar"_s), "finished");
}

TEST_F(QueueCommandsTest, RedownloadDeletesTheFinishedFileAndFetchesItAgain)
{
    const ItemPtr item = engine.add(u"http://h/x.rar"_s);
    engine.sandbox.write(u"Downloads/x.rar"_s, "the user's own");
    const QString renamed = engine.sandbox.write(u"Downloads/x (1).rar"_s, "finished");
    item->setLocalPath(renamed);
    item->setStatus(DownloadStatus::completed);
    item->setExtractionStatus(ExtractionStatus::done);
    engine.manager().commands().redownloadItem(*item);
    turnEventLoop();
    EXPECT_EQ(engine.sandbox.files(u"Downloads"_s), (QStringList{u"x.rar"_s, u"x.rar.download"_s}));
    ASSERT_EQ(item->status(), DownloadStatus::downloading);
    EXPECT_EQ(item->extractionStatus(), ExtractionStatus::idle);
    EXPECT_FALSE(item->localPath());
    engine.http.last().head(200, {{"Content-Length", "5"}});
    engine.http.last().data("fresh");
    engine.http.last().finish();
    turnEventLoop();
    EXPECT_EQ(engine.sandbox.read(u"Downloads/x.rar"_s), "the user's own");
    EXPECT_EQ(engine.sandbox.read(u"Downloads/x (1).rar"_s), "fresh");
}

TEST_F(QueueCommandsTest, RedownloadMovesWhatStandsUnderTheNameToTheTrashWhereTheItemHasNoFile)
{
    const ItemPtr item = engine.add(u"http://h/x.rar"_s);
    engine.sandbox.write(u"Downloads/x.rar"_s, "stale");
    item->setLocalPath(engine.sandbox.path(u"Downloads/gone.rar"_s));
    engine.manager().commands().redownloadItem(*item);
    EXPECT_FALSE(engine.sandbox.exists(u"Downloads/x.rar"_s));
    EXPECT_EQ(engine.sandbox.read(u"Trash/x.rar"_s), "stale");
}

TEST_F(QueueCommandsTest, RedownloadLeavesAnotherItemItsFile)
{
    const ItemPtr other = engine.add(u"http://a/x.rar"_s);
    other->setLocalPath(engine.sandbox.write(u"Downloads/x.rar"_s, "other"));
    other->setStatus(DownloadStatus::completed);
    const ItemPtr item = engine.add(u"http://b/x.rar"_s);
    ASSERT_EQ(item->status(), DownloadStatus::paused);
    // With a file of its own, and with none.
    item->setLocalPath(engine.sandbox.write(u"Downloads/x (1).rar"_s, "own"));
    for (int i = 0; i < 2; ++i) {
        engine.manager().commands().redownloadItem(*item);
        turnEventLoop();
        EXPECT_EQ(engine.sandbox.read(u"Downloads/x.rar"_s), "other");
        EXPECT_EQ(item->status(), DownloadStatus::downloading);
    }
    EXPECT_FALSE(engine.sandbox.exists(u"Downloads/x (1).rar"_s));
    // Not even where its folder has two paths.
    ASSERT_TRUE(QFile::link(engine.sandbox.folders().downloads, engine.sandbox.path(u"way"_s)));
    engine.settings().downloadFolderPath.set(engine.sandbox.path(u"way"_s));
    engine.manager().commands().redownloadItem(*item);
    EXPECT_EQ(engine.sandbox.read(u"Downloads/x.rar"_s), "other");
}

TEST_F(QueueCommandsTest, RedownloadOfANamelessItemDeletesNoFileNamedDownload)
{
    const ItemPtr item = engine.add(u"http://h/"_s);
    engine.sandbox.write(u"Downloads/download"_s, "the user's own");
    engine.settings().maxConcurrentDownloads.set(0);
    engine.manager().commands().redownloadItem(*item);
    EXPECT_EQ(engine.sandbox.read(u"Downloads/download"_s), "the user's own");
}

TEST_F(QueueCommandsTest, ClearExtractedTakesOutTheWholeSetOfAnExtractedPart)
{
    const auto items = engine.add({u"http://h/m.part1.rar"_s, u"http://h/m.part2.rar"_s, u"http://h/m.part1.rev"_s,
                                   u"http://h/m.zip"_s, u"http://h/M.part9.rar"_s});
    items[0]->setExtractionStatus(ExtractionStatus::done);
    engine.manager().commands().clearExtracted();
    EXPECT_EQ(engine.manager().items(), (std::vector{items[3], items[4]}));
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
    engine.add({u"http://h/a"_s, u"http://h/m.part1.rev"_s, u"http://h/m.part2.rar"_s, u"http://h/b"_s,
                u"http://h/m.part1.rar"_s});
    const QStringList ids{u"a"_s, u"m"_s, u"b"_s};
    engine.manager().commands().moveGroups({1}, 0, ids);
    EXPECT_EQ(names(engine.manager()).join(u' '), u"m.part1.rar m.part2.rar a b m.part1.rev");
    engine.restart(true);
    EXPECT_EQ(names(engine.manager()).join(u' '), u"m.part1.rar m.part2.rar a b m.part1.rev");
}

TEST_F(QueueCommandsTest, MovesSeveralGroupsTogetherInFrontOfTheDestination)
{
    engine.add({u"http://h/a"_s, u"http://h/b"_s, u"http://h/c"_s, u"http://h/d"_s});
    const QStringList ids{u"a"_s, u"b"_s, u"c"_s, u"d"_s};
    engine.manager().commands().moveGroups({0, 2}, 4, ids);
    EXPECT_EQ(names(engine.manager()).join(u' '), u"b d a c");
}

TEST_F(QueueCommandsTest, TellsGroupsOfOneNameApartByTheirPlaces)
{
    const auto items = engine.add({u"http://h/a"_s, u"http://h/b"_s, u"http://h/c"_s});
    const QString x = u"x"_s;
    for (const ItemPtr& item : items)
        item->setFilename(x);
    engine.manager().commands().moveGroups({2}, 0, {x, x, x});
    EXPECT_EQ(engine.manager().items(), (std::vector{items[2], items[0], items[1]}));
}

TEST_F(QueueCommandsTest, IgnoresAMoveOfGroupsThatAreNotThere)
{
    const auto items = engine.add({u"http://h/a"_s, u"http://h/b"_s});
    engine.manager().commands().moveGroups({-1, 5}, 99, {u"a"_s, u"b"_s});
    EXPECT_EQ(engine.manager().items(), items);
}
