#include "fixtures/EventLoop.h"
#include "fixtures/Workshop.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

using namespace vormel;
using namespace vormel::fixtures;

namespace {

class ResyncTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        shop.settings().maxConcurrentDownloads.set(0);
        set = shop.add({QStringLiteral("http://h/m.part1.rar"), QStringLiteral("http://h/m.part2.rar")});
    }

    /// A file of that size where the item's finished file belongs.
    void lay(const ItemPtr& item, qint64 size) const
    {
        const QString path = shop.sandbox.write(placeOf(item), "");
        ASSERT_TRUE(QFile::resize(path, size));
    }
    [[nodiscard]] bool isThere(const ItemPtr& item) const { return shop.sandbox.exists(placeOf(item)); }
    [[nodiscard]] static QString placeOf(const ItemPtr& item)
    {
        return QStringLiteral("Downloads/m/") + item->filename();
    }

    Workshop shop;
    std::vector<ItemPtr> set;
};

} // namespace

TEST_F(ResyncTest, CompletesAnItemWhoseFileIsThere)
{
    lay(set[0], 100);
    shop.manager().commands().resyncItems({set[0]});
    EXPECT_EQ(set[0]->status(), DownloadStatus::completed);
    EXPECT_EQ(set[0]->totalBytes(), 100);
    EXPECT_EQ(set[0]->bytesReceived(), 100);
    EXPECT_DOUBLE_EQ(set[0]->progress(), 1);
    EXPECT_EQ(set[0]->localPath(), shop.sandbox.path(placeOf(set[0])));
}

TEST_F(ResyncTest, FetchesACompleteItemAgainWhoseFileIsGone)
{
    shop.settings().maxConcurrentDownloads.set(1);
    set[0]->setStatus(DownloadStatus::completed);
    set[0]->setLocalPath(shop.sandbox.path(placeOf(set[0])));
    set[0]->setExtractionStatus(ExtractionStatus::done);
    shop.manager().commands().resyncItems({set[0]});
    EXPECT_EQ(set[0]->extractionStatus(), ExtractionStatus::done);
    EXPECT_FALSE(set[0]->localPath());
    turnEventLoop();
    EXPECT_EQ(set[0]->status(), DownloadStatus::downloading);
}

TEST_F(ResyncTest, DeletesAFileThatIsShorterThanItShouldBe)
{
    set[0]->setTotalBytes(101);
    lay(set[0], 100);
    shop.manager().commands().resyncItems({set[0]});
    EXPECT_EQ(set[0]->status(), DownloadStatus::queued);
    EXPECT_FALSE(isThere(set[0]));
}

TEST_F(ResyncTest, DeletesAVolumeFarSmallerThanItsSiblings)
{
    lay(set[0], 100'000'000);
    lay(set[1], 1'000'000);
    shop.manager().commands().resyncItems(set);
    EXPECT_EQ(set[0]->status(), DownloadStatus::completed);
    EXPECT_EQ(set[1]->status(), DownloadStatus::queued);
    EXPECT_FALSE(isThere(set[1]));
}

TEST_F(ResyncTest, KeepsAVolumeOfExactlyATenth)
{
    lay(set[0], 10'000'019);
    lay(set[1], 1'000'001);
    shop.manager().commands().resyncItems(set);
    EXPECT_EQ(set[1]->status(), DownloadStatus::completed);
}

TEST_F(ResyncTest, ComparesNoSizesWhereTheLargestVolumeIsSmall)
{
    lay(set[0], 10'000'000);
    lay(set[1], 1);
    shop.manager().commands().resyncItems(set);
    EXPECT_EQ(set[1]->status(), DownloadStatus::completed);
}

TEST_F(ResyncTest, KeepsASmallLastVolumeWhoseSizeItsSourceTold)
{
    lay(set[0], 100'000'000);
    lay(set[1], 1'000'000);
    set[1]->setTotalBytes(1'000'000);
    shop.manager().commands().resyncItems(set);
    EXPECT_EQ(set[1]->status(), DownloadStatus::completed);
    EXPECT_TRUE(isThere(set[1]));
}

TEST_F(ResyncTest, BelievesAFileWhereItLiesThoughTheFolderIsAnotherNow)
{
    lay(set[0], 100);
    set[0]->setLocalPath(shop.sandbox.path(placeOf(set[0])));
    set[0]->setStatus(DownloadStatus::completed);
    shop.settings().downloadFolderPath.set(shop.sandbox.path(QStringLiteral("new")));
    shop.manager().commands().resyncItems(set);
    EXPECT_EQ(set[0]->status(), DownloadStatus::completed);
    EXPECT_EQ(set[0]->localPath(), shop.sandbox.path(placeOf(set[0])));
}

TEST_F(ResyncTest, LooksUnderTheNameOnceTheFileThatWasThereIsGone)
{
    set[0]->setLocalPath(shop.sandbox.path(QStringLiteral("gone/m.part1.rar")));
    lay(set[0], 100);
    shop.manager().commands().resyncItems({set[0]});
    EXPECT_EQ(set[0]->localPath(), shop.sandbox.path(placeOf(set[0])));
}

TEST_F(ResyncTest, NeitherTakesNorDeletesAnotherItemsFile)
{
    const ItemPtr other = shop.add(QStringLiteral("http://a/x.bin"));
    other->setLocalPath(shop.sandbox.write(QStringLiteral("Downloads/x.bin"), "other"));
    other->setStatus(DownloadStatus::completed);
    const ItemPtr item = shop.add(QStringLiteral("http://b/x.bin"));
    item->setLocalPath(shop.sandbox.path(QStringLiteral("Downloads/x (1).bin")));
    item->setStatus(DownloadStatus::completed);
    for (const qint64 total : {0, 100}) {
        item->setTotalBytes(total);
        shop.manager().commands().resyncItems({item});
        EXPECT_EQ(item->status(), DownloadStatus::queued) << total;
        EXPECT_EQ(shop.sandbox.read(QStringLiteral("Downloads/x.bin")), "other") << total;
    }
}

TEST_F(ResyncTest, DeletesNoVolumeThatAMirrorOfItHasToo)
{
    lay(set[0], 100);
    set[0]->setLocalPath(shop.sandbox.path(placeOf(set[0])));
    const ItemPtr mirror = shop.add(QStringLiteral("http://b/m.part1.rar"));
    ASSERT_EQ(mirror->status(), DownloadStatus::completed);
    mirror->setTotalBytes(200);
    shop.manager().commands().resyncItems({mirror});
    EXPECT_EQ(mirror->status(), DownloadStatus::queued);
    EXPECT_TRUE(isThere(set[0]));
}

TEST_F(ResyncTest, DeletesNoLinkToADiskThatIsNotThereAndNoFolder)
{
    const QString link = shop.sandbox.path(placeOf(set[0]));
    QDir().mkpath(QFileInfo(link).path());
    ASSERT_TRUE(QFile::link(shop.sandbox.path(QStringLiteral("disk/m.part1.rar")), link));
    QDir().mkpath(shop.sandbox.path(placeOf(set[1])));
    shop.manager().commands().resyncItems(set);
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_TRUE(QFileInfo(shop.sandbox.path(placeOf(set[1]))).isDir());
    for (const ItemPtr& item : set)
        EXPECT_EQ(item->status(), DownloadStatus::queued);
    // Once the disk is back, so is the file.
    shop.sandbox.write(QStringLiteral("disk/m.part1.rar"), "x");
    shop.manager().commands().resyncItems(set);
    EXPECT_EQ(set[0]->status(), DownloadStatus::completed);
    EXPECT_EQ(set[0]->localPath(), link);
}

TEST_F(ResyncTest, FetchesAShortFileBehindALinkAgainAndLeavesBothAlone)
{
    const QString link = shop.sandbox.path(placeOf(set[0]));
    QDir().mkpath(QFileInfo(link).path());
    ASSERT_TRUE(QFile::link(shop.sandbox.write(QStringLiteral("disk/m.part1.rar"), "x"), link));
    set[0]->setTotalBytes(2);
    shop.settings().maxConcurrentDownloads.set(1);
    shop.manager().commands().resyncItems({set[0]});
    turnEventLoop();
    EXPECT_EQ(set[0]->status(), DownloadStatus::downloading);
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(shop.sandbox.read(QStringLiteral("disk/m.part1.rar")), "x");
}

TEST_F(ResyncTest, PassesOverAnItemWithoutAName)
{
    const ItemPtr nameless = shop.add(QStringLiteral("http://h/"));
    nameless->setStatus(DownloadStatus::stopped);
    shop.manager().commands().resyncItems({nameless});
    EXPECT_EQ(nameless->status(), DownloadStatus::stopped);
}

TEST_F(ResyncTest, StartsTheArchiveStepForWhatIsComplete)
{
    lay(set[0], 1);
    lay(set[1], 1);
    shop.manager().commands().resyncItems(set);
    EXPECT_FALSE(set[0]->extractionStatus() == ExtractionStatus::idle);
}

TEST_F(ResyncTest, StartsNoArchiveStepWhereThatIsOff)
{
    shop.settings().autoExtract.set(false);
    lay(set[0], 1);
    lay(set[1], 1);
    shop.manager().commands().resyncItems(set);
    EXPECT_EQ(set[0]->extractionStatus(), ExtractionStatus::idle);
}

TEST_F(ResyncTest, LeavesAFileAloneThatOnlyHasTheNameOfABegunItem)
{
    for (const qint64 size : {99, 101}) {
        shop.begin(set[0], "abc");
        set[0]->setTotalBytes(100);
        lay(set[0], size);
        shop.manager().commands().resyncItems({set[0]});
        EXPECT_EQ(set[0]->status(), DownloadStatus::queued) << size;
        EXPECT_TRUE(isThere(set[0])) << size;
        EXPECT_TRUE(set[0]->isWantedAnew()) << size;
    }
    lay(set[0], 100);
    shop.manager().commands().resyncItems({set[0]});
    EXPECT_EQ(set[0]->status(), DownloadStatus::completed);
}

TEST_F(ResyncTest, MovesWhatOnlyHasTheNameToTheTrashAndDeletesTheItemsOwn)
{
    for (const ItemPtr& item : set) {
        item->setTotalBytes(101);
        lay(item, 100);
    }
    set[1]->setLocalPath(shop.sandbox.path(placeOf(set[1])));
    shop.manager().commands().resyncItems(set);
    EXPECT_FALSE(isThere(set[0]));
    EXPECT_FALSE(isThere(set[1]));
    EXPECT_EQ(shop.sandbox.files(QStringLiteral("Trash")), QStringList{QStringLiteral("m.part1.rar")});
}

TEST_F(ResyncTest, TakesNoVolumeOfAnotherSetThatHasTheSameNameOnDisk)
{
    const ItemPtr one = shop.add(QStringLiteral("http://h/a%0Ab.part1.rar"));
    const ItemPtr other = shop.add(QStringLiteral("http://h/a_b.part1.rar"));
    ASSERT_NE(one->filename(), other->filename());
    one->setLocalPath(shop.sandbox.write(QStringLiteral("Downloads/a_b/a_b.part1.rar"), "of the first"));
    one->setStatus(DownloadStatus::completed);
    shop.manager().commands().resyncItems({other});
    EXPECT_EQ(other->status(), DownloadStatus::queued);
    EXPECT_EQ(shop.sandbox.read(QStringLiteral("Downloads/a_b/a_b.part1.rar")), "of the first");
}
