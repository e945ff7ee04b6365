#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

class ResyncTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        engine.settings().maxConcurrentDownloads.set(0);
        set = engine.add({u"http://h/m.part1.rar"_s, u"http://h/m.part2.rar"_s});
    }

    /// A file of that size where the item's finished file belongs.
    void lay(const ItemPtr& item, qint64 size) const
    {
        const QString path = engine.sandbox.write(placeOf(item), "");
        ASSERT_TRUE(QFile::resize(path, size));
    }
    [[nodiscard]] bool isThere(const ItemPtr& item) const { return engine.sandbox.exists(placeOf(item)); }
    [[nodiscard]] static QString placeOf(const ItemPtr& item) { return u"Downloads/m/"_s + item->filename(); }

    EngineOnScript engine;
    std::vector<ItemPtr> set;
};

} // namespace

TEST_F(ResyncTest, CompletesAnItemWhoseFileIsThere)
{
    lay(set[0], 100);
    engine.manager().commands().resyncItems({set[0]});
    EXPECT_EQ(set[0]->status(), DownloadStatus::completed);
    EXPECT_EQ(set[0]->totalBytes(), 100);
    EXPECT_EQ(set[0]->bytesReceived(), 100);
    EXPECT_DOUBLE_EQ(set[0]->progress(), 1);
    EXPECT_EQ(set[0]->localPath(), engine.sandbox.path(placeOf(set[0])));
}

TEST_F(ResyncTest, FetchesACompleteItemAgainWhoseFileIsGone)
{
    engine.settings().maxConcurrentDownloads.set(1);
    set[0]->setStatus(DownloadStatus::completed);
    set[0]->setLocalPath(engine.sandbox.path(placeOf(set[0])));
    set[0]->setExtractionStatus(ExtractionStatus::done);
    engine.manager().commands().resyncItems({set[0]});
    EXPECT_EQ(set[0]->extractionStatus(), ExtractionStatus::done);
    EXPECT_FALSE(set[0]->localPath());
    turnEventLoop();
    EXPECT_EQ(set[0]->status(), DownloadStatus::downloading);
}

TEST_F(ResyncTest, DeletesAFileThatIsShorterThanItShouldBe)
{
    set[0]->setTotalBytes(101);
    lay(set[0], 100);
    engine.manager().commands().resyncItems({set[0]});
    EXPECT_EQ(set[0]->status(), DownloadStatus::queued);
    EXPECT_FALSE(isThere(set[0]));
}

TEST_F(ResyncTest, DeletesAVolumeFarSmallerThanItsSiblings)
{
    lay(set[0], 100'000'000);
    lay(set[1], 1'000'000);
    engine.manager().commands().resyncItems(set);
    EXPECT_EQ(set[0]->status(), DownloadStatus::completed);
    EXPECT_EQ(set[1]->status(), DownloadStatus::queued);
    EXPECT_FALSE(isThere(set[1]));
}

TEST_F(ResyncTest, KeepsAVolumeOfExactlyATenth)
{
    lay(set[0], 10'000'019);
    lay(set[1], 1'000'001);
    engine.manager().commands().resyncItems(set);
    EXPECT_EQ(set[1]->status(), DownloadStatus::completed);
}

TEST_F(ResyncTest, ComparesNoSizesWhereTheLargestVolumeIsSmall)
{
    lay(set[0], 10'000'000);
    lay(set[1], 1);
    engine.manager().commands().resyncItems(set);
    EXPECT_EQ(set[1]->status(), DownloadStatus::completed);
}

TEST_F(ResyncTest, KeepsASmallLastVolumeWhoseSizeItsSourceTold)
{
    lay(set[0], 100'000'000);
    lay(set[1], 1'000'000);
    set[1]->setTotalBytes(1'000'000);
    engine.manager().commands().resyncItems(set);
    EXPECT_EQ(set[1]->status(), DownloadStatus::completed);
    EXPECT_TRUE(isThere(set[1]));
}

TEST_F(ResyncTest, BelievesAFileWhereItLiesThoughTheFolderIsAnotherNow)
{
    lay(set[0], 100);
    set[0]->setLocalPath(engine.sandbox.path(placeOf(set[0])));
    set[0]->setStatus(DownloadStatus::completed);
    engine.settings().downloadFolderPath.set(engine.sandbox.path(u"new"_s));
    engine.manager().commands().resyncItems(set);
    EXPECT_EQ(set[0]->status(), DownloadStatus::completed);
    EXPECT_EQ(set[0]->localPath(), engine.sandbox.path(placeOf(set[0])));
}

TEST_F(ResyncTest, LooksUnderTheNameOnceTheFileThatWasThereIsGone)
{
    set[0]->setLocalPath(engine.sandbox.path(u"gone/m.part1.rar"_s));
    lay(set[0], 100);
    engine.manager().commands().resyncItems({set[0]});
    EXPECT_EQ(set[0]->localPath(), engine.sandbox.path(placeOf(set[0])));
}

TEST_F(ResyncTest, NeitherTakesNorDeletesAnotherItemsFile)
{
    const ItemPtr other = engine.add(u"http://a/x.bin"_s);
    other->setLocalPath(engine.sandbox.write(u"Downloads/x.bin"_s, "other"));
    other->setStatus(DownloadStatus::completed);
    const ItemPtr item = engine.add(u"http://b/x.bin"_s);
    item->setLocalPath(engine.sandbox.path(u"Downloads/x (1).bin"_s));
    item->setStatus(DownloadStatus::completed);
    for (const qint64 total : {0, 100}) {
        item->setTotalBytes(total);
        engine.manager().commands().resyncItems({item});
        EXPECT_EQ(item->status(), DownloadStatus::queued) << total;
        EXPECT_EQ(engine.sandbox.read(u"Downloads/x.bin"_s), "other") << total;
    }
}

TEST_F(ResyncTest, DeletesNoVolumeThatAMirrorOfItHasToo)
{
    lay(set[0], 100);
    set[0]->setLocalPath(engine.sandbox.path(placeOf(set[0])));
    const ItemPtr mirror = engine.add(u"http://b/m.part1.rar"_s);
    ASSERT_EQ(mirror->status(), DownloadStatus::completed);
    mirror->setTotalBytes(200);
    engine.manager().commands().resyncItems({mirror});
    EXPECT_EQ(mirror->status(), DownloadStatus::queued);
    EXPECT_TRUE(isThere(set[0]));
}

TEST_F(ResyncTest, DeletesNoLinkToADiskThatIsNotThereAndNoFolder)
{
    const QString link = engine.sandbox.path(placeOf(set[0]));
    QDir().mkpath(QFileInfo(link).path());
    ASSERT_TRUE(QFile::link(engine.sandbox.path(u"disk/m.part1.rar"_s), link));
    QDir().mkpath(engine.sandbox.path(placeOf(set[1])));
    engine.manager().commands().resyncItems(set);
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_TRUE(QFileInfo(engine.sandbox.path(placeOf(set[1]))).isDir());
    for (const ItemPtr& item : set)
        EXPECT_EQ(item->status(), DownloadStatus::queued);
    // Once the disk is back, so is the file.
    engine.sandbox.write(u"disk/m.part1.rar"_s, "x");
    engine.manager().commands().resyncItems(set);
    EXPECT_EQ(set[0]->status(), DownloadStatus::completed);
    EXPECT_EQ(set[0]->localPath(), link);
}

TEST_F(ResyncTest, FetchesAShortFileBehindALinkAgainAndLeavesBothAlone)
{
    const QString link = engine.sandbox.path(placeOf(set[0]));
    QDir().mkpath(QFileInfo(link).path());
    ASSERT_TRUE(QFile::link(engine.sandbox.write(u"disk/m.part1.rar"_s, "x"), link));
    set[0]->setTotalBytes(2);
    engine.settings().maxConcurrentDownloads.set(1);
    engine.manager().commands().resyncItems({set[0]});
    turnEventLoop();
    EXPECT_EQ(set[0]->status(), DownloadStatus::downloading);
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(engine.sandbox.read(u"disk/m.part1.rar"_s), "x");
}

TEST_F(ResyncTest, PassesOverAnItemWithoutAName)
{
    const ItemPtr nameless = engine.add(u"http://h/"_s);
    nameless->setStatus(DownloadStatus::stopped);
    engine.manager().commands().resyncItems({nameless});
    EXPECT_EQ(nameless->status(), DownloadStatus::stopped);
}

TEST_F(ResyncTest, StartsTheArchiveStepForWhatIsComplete)
{
    lay(set[0], 1);
    lay(set[1], 1);
    engine.manager().commands().resyncItems(set);
    EXPECT_FALSE(set[0]->extractionStatus() == ExtractionStatus::idle);
}

TEST_F(ResyncTest, StartsNoArchiveStepWhereThatIsOff)
{
    engine.settings().autoExtract.set(false);
    lay(set[0], 1);
    lay(set[1], 1);
    engine.manager().commands().resyncItems(set);
    EXPECT_EQ(set[0]->extractionStatus(), ExtractionStatus::idle);
}

TEST_F(ResyncTest, LeavesAFileAloneThatOnlyHasTheNameOfABegunItem)
{
    for (const qint64 size : {99, 101}) {
        engine.begin(set[0], "abc");
        set[0]->setTotalBytes(100);
        lay(set[0], size);
        engine.manager().commands().resyncItems({set[0]});
        EXPECT_EQ(set[0]->status(), DownloadStatus::queued) << size;
        EXPECT_TRUE(isThere(set[0])) << size;
        EXPECT_TRUE(set[0]->isWantedAnew()) << size;
    }
    lay(set[0], 100);
    engine.manager().commands().resyncItems({set[0]});
    EXPECT_EQ(set[0]->status(), DownloadStatus::completed);
}

TEST_F(ResyncTest, MovesWhatOnlyHasTheNameToTheTrashAndDeletesTheItemsOwn)
{
    for (const ItemPtr& item : set) {
        item->setTotalBytes(101);
        lay(item, 100);
    }
    set[1]->setLocalPath(engine.sandbox.path(placeOf(set[1])));
    engine.manager().commands().resyncItems(set);
    EXPECT_FALSE(isThere(set[0]));
    EXPECT_FALSE(isThere(set[1]));
    EXPECT_EQ(engine.sandbox.files(u"Trash"_s), QStringList{u"m.part1.rar"_s});
}

TEST_F(ResyncTest, TakesNoVolumeOfAnotherSetThatHasTheSameNameOnDisk)
{
    const ItemPtr one = engine.add(u"http://h/a%0Ab.part1.rar"_s);
    const ItemPtr other = engine.add(u"http://h/a_b.part1.rar"_s);
    ASSERT_NE(one->filename(), other->filename());
    one->setLocalPath(engine.sandbox.write(u"Downloads/a_b/a_b.part1.rar"_s, "of the first"));
    one->setStatus(DownloadStatus::completed);
    engine.manager().commands().resyncItems({other});
    EXPECT_EQ(other->status(), DownloadStatus::queued);
    EXPECT_EQ(engine.sandbox.read(u"Downloads/a_b/a_b.part1.rar"_s), "of the first");
}
