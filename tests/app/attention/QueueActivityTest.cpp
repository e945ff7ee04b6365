#include "app/attention/QueueActivity.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/Statuses.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;
using namespace vormel::fixtures::statuses;

namespace {

/// Items whose statuses the test sets; nothing is fetched.
class QueueActivityTest : public ::testing::Test
{
protected:
    QueueActivityTest()
    {
        engine.settings().autoStartDownloads.set(false);
        items = engine.add({u"http://h/a"_s, u"http://h/b"_s, u"http://h/c"_s});
        for (const ItemPtr& item : items)
            item->setStatus(paused);
    }
    static void receive(const ItemPtr& item, qint64 received, qint64 total)
    {
        item->setTotalBytes(total);
        item->setBytesReceived(received);
    }

    EngineOnScript engine;
    std::vector<ItemPtr> items;
    QueueActivity activity{engine.manager()};
};

TEST_F(QueueActivityTest, BytesMoveFromTheLookForTheirSourceToTheEnd)
{
    EXPECT_FALSE(activity.isMoving());
    items[0]->setStatus(resolving);
    EXPECT_TRUE(activity.isMoving());
    items[0]->setStatus(downloading);
    EXPECT_TRUE(activity.isMoving());
    items[0]->setStatus(paused);
    EXPECT_FALSE(activity.isMoving());
}

TEST_F(QueueActivityTest, WhatIsPutBackCountsAgain)
{
    items[0]->setStatus(DownloadStatus::queued);
    receive(items[0], 25, 100);
    const std::optional<double> before = activity.fraction();
    const auto left = activity.filesLeft();
    engine.manager().removed().remove({items[0]->id()});
    EXPECT_NE(activity.filesLeft(), left);
    engine.manager().removed().putBack();
    EXPECT_EQ(activity.filesLeft(), left);
    EXPECT_EQ(activity.fraction(), before);
}

TEST_F(QueueActivityTest, ToolsWorkWhileTheyExtractRepairOrVerify)
{
    items[0]->setStatus(completed);
    EXPECT_FALSE(activity.areToolsAtWork());
    for (const auto extraction : {extracting, repairing}) {
        items[0]->setExtractionStatus(extraction);
        EXPECT_TRUE(activity.areToolsAtWork());
        items[0]->setExtractionStatus(idle);
        EXPECT_FALSE(activity.areToolsAtWork());
    }
    items[0]->setVerification({VerificationResult::running});
    EXPECT_TRUE(activity.areToolsAtWork());
    items[0]->setVerification({VerificationResult::sound});
    EXPECT_FALSE(activity.areToolsAtWork());
}

TEST_F(QueueActivityTest, FilesAreLeftAsLongAsTheyAreToBeFetched)
{
    EXPECT_EQ(activity.filesLeft(), 0);
    items[0]->setStatus(queued);
    items[1]->setStatus(downloading);
    items[2]->setStatus(stopped);
    EXPECT_EQ(activity.filesLeft(), 2);
    items[1]->setStatus(completed);
    items[0]->setStatus(DownloadStatus::failure(u"gone"_s));
    EXPECT_EQ(activity.filesLeft(), 0);
}

TEST_F(QueueActivityTest, ARecoveryVolumeCountsOnlyWhileItIsFetched)
{
    items[0]->setFilename(u"show.part1.rev"_s);
    items[0]->setStatus(queued);
    EXPECT_EQ(activity.filesLeft(), 0);
    items[0]->setStatus(downloading);
    EXPECT_EQ(activity.filesLeft(), 1);
}

TEST_F(QueueActivityTest, TheFractionIsThatOfAllBytesThatAreLeft)
{
    EXPECT_EQ(activity.fraction(), std::nullopt);
    items[0]->setStatus(downloading);
    items[1]->setStatus(queued);
    receive(items[0], 100, 300);
    receive(items[1], 0, 100);
    EXPECT_DOUBLE_EQ(activity.fraction().value(), 0.25);
}

TEST_F(QueueActivityTest, AFileOfUnknownSizeCountsAsTheOthersDo)
{
    items[0]->setStatus(downloading);
    items[1]->setStatus(queued);
    EXPECT_EQ(activity.fraction(), std::nullopt);
    receive(items[0], 100, 200);
    EXPECT_DOUBLE_EQ(activity.fraction().value(), 0.25);
}

TEST_F(QueueActivityTest, WhatHasComeStaysInTheFractionUntilNothingIsLeft)
{
    items[0]->setStatus(downloading);
    items[1]->setStatus(queued);
    receive(items[0], 100, 100);
    receive(items[1], 0, 100);
    items[0]->setStatus(completed);
    EXPECT_DOUBLE_EQ(activity.fraction().value(), 0.5);
    items[1]->setStatus(downloading);
    items[1]->setStatus(completed);
    EXPECT_EQ(activity.fraction(), std::nullopt);
    items[2]->setStatus(downloading);
    receive(items[2], 10, 100);
    EXPECT_DOUBLE_EQ(activity.fraction().value(), 0.1);
}

TEST_F(QueueActivityTest, WhatIsPausedOrFailsLeavesTheFraction)
{
    items[0]->setStatus(downloading);
    items[1]->setStatus(downloading);
    receive(items[0], 50, 100);
    receive(items[1], 90, 100);
    items[1]->setStatus(paused);
    EXPECT_DOUBLE_EQ(activity.fraction().value(), 0.5);
}

TEST_F(QueueActivityTest, RemovedItemsTakeTheirShareAlong)
{
    items[0]->setStatus(downloading);
    items[1]->setStatus(queued);
    receive(items[0], 50, 100);
    receive(items[1], 0, 100);
    items[2]->setStatus(completed);
    items[2]->setExtractionStatus(extracting);
    engine.manager().commands().removeItems({items[1]->id(), items[2]->id()});
    EXPECT_EQ(activity.filesLeft(), 1);
    EXPECT_FALSE(activity.areToolsAtWork());
    EXPECT_DOUBLE_EQ(activity.fraction().value(), 0.5);
}

TEST_F(QueueActivityTest, WhatWasThereBeforeAndWhatIsAddedCounts)
{
    items[0]->setStatus(queued);
    const QueueActivity later(engine.manager());
    EXPECT_EQ(later.filesLeft(), 1);
    const ItemPtr added = engine.add(u"http://h/d"_s);
    added->setStatus(queued);
    EXPECT_EQ(later.filesLeft(), 2);
}

TEST_F(QueueActivityTest, OnlyWhatCountsIsToldAsAChange)
{
    int changes = 0;
    QObject::connect(&activity, &QueueActivity::changed, [&changes] { ++changes; });
    items[0]->setSpeedBytesPerSec(5);
    items[0]->setTotalBytes(100); // of a paused one
    EXPECT_EQ(changes, 0);
    items[0]->setStatus(downloading);
    EXPECT_EQ(changes, 1);
    items[0]->setBytesReceived(5);
    EXPECT_EQ(changes, 2);
}

} // namespace
