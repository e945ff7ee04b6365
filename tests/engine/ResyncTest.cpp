#include "fixtures/EventLoop.h"
#include "fixtures/Workshop.h"

#include <QFile>

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
