#include "fixtures/ArchiveStep.h"
#include "fixtures/EventLoop.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

constexpr std::chrono::seconds timeToThink{10};

/// A set of which two volumes are here and one is to come.
class RemovedVolumesTest : public ::testing::Test, protected ArchiveStep
{
protected:
    void SetUp() override
    {
        engine.settings().maxConcurrentDownloads.set(0);
        unpackerMakes("movie.mkv");
        first = onDisk(u"m.part1.rar"_s);
        second = onDisk(u"m.part2.rar"_s);
        third = engine.add(u"http://h/m.part3.rar"_s);
        turnEventLoop();
    }
    [[nodiscard]] RemovedItems& removed() { return engine.manager().removed(); }
    /// Its file has come down.
    void comeDown(const ItemPtr& item)
    {
        engine.sandbox.write(u"Downloads/m/"_s + item->filename(), "volume");
        arrive(item);
        turnEventLoop();
    }
    [[nodiscard]] qsizetype runs() { return engine.tools.calls(u"unrar"_s).size(); }

    ItemPtr first;
    ItemPtr second;
    ItemPtr third;
};

} // namespace

TEST_F(RemovedVolumesTest, AreWaitedForAsLongAsTheyMayComeBack)
{
    removed().remove({third->id()});
    turnEventLoop();
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle);
    removed().putBack();
    engine.clock.advance(timeToThink);
    turnEventLoop();
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle);
    EXPECT_EQ(runs(), 0);
}

TEST_F(RemovedVolumesTest, AreWaitedForAlsoWhenAnotherVolumeArrives)
{
    const ItemPtr fourth = onDisk(u"m.part4.rar"_s);
    removed().remove({third->id()});
    arrive(fourth);
    turnEventLoop();
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle);
    EXPECT_EQ(runs(), 0);
    engine.clock.advance(timeToThink);
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(RemovedVolumesTest, HoldUpNoSetOfAnotherName)
{
    const ItemPtr other = onDisk(u"n.part1.rar"_s);
    removed().remove({third->id()});
    arrive(other);
    EXPECT_TRUE(reaches(other, ExtractionStatus::done));
}

TEST_F(RemovedVolumesTest, AreWaitedForNoMoreWhenTheyAreGoneForGood)
{
    removed().remove({third->id()});
    engine.clock.advance(timeToThink);
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(RemovedVolumesTest, ComeBackWithTheQuestionForTheirPassword)
{
    engine.tools.add(u"unrar"_s, "exit 11");
    removed().remove({third->id()});
    removed().finish();
    ASSERT_TRUE(waitUntil([&] { return question().has_value(); }));
    removed().remove({first->id(), second->id()});
    ASSERT_FALSE(question());
    removed().putBack();
    EXPECT_TRUE(waitUntil([&] { return question().has_value(); }));
}

TEST_F(RemovedVolumesTest, ComeBackToARunThatGoesOnAndRunsOnce)
{
    engine.tools.add(u"unrar"_s, waitForGo() + "; exit 3");
    engine.tools.add(u"rar"_s, "exit 10");
    removed().remove({third->id()});
    removed().finish();
    ASSERT_TRUE(waitUntil([&] { return runs() == 1; }));
    removed().remove({first->id(), second->id()});
    removed().putBack();
    go();
    ASSERT_TRUE(reaches(first, ExtractionStatus::failed));
    EXPECT_EQ(runs(), 1);
}

TEST_F(RemovedVolumesTest, AreUnpackedWithWhatCameWhileTheyWereAway)
{
    removed().remove({first->id()});
    comeDown(third);
    EXPECT_EQ(runs(), 0);
    removed().putBack();
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(RemovedVolumesTest, AreUnpackedWhenOneIsPutBackThatHasComeAnew)
{
    removed().remove({third->id()});
    const ItemPtr again = engine.add(u"http://h/m.part3.rar"_s);
    comeDown(again);
    EXPECT_EQ(runs(), 0);
    removed().putBack();
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(RemovedVolumesTest, AreUnpackedWhenOneIsPutBackThatIsNotNeededAnyMore)
{
    engine.settings().downloadRevFiles.set(true);
    const ItemPtr rev = engine.add(u"http://h/m.part1.rev"_s);
    removed().remove({rev->id()});
    comeDown(third);
    removed().putBack();
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(RemovedVolumesTest, OfAWholeSetThatRestedRestOn)
{
    comeDown(third);
    ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    first->setExtractionStatus(ExtractionStatus::idle); // as after a stop
    removed().remove({second->id()});
    removed().putBack();
    turnEventLoop();
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle);
    EXPECT_EQ(runs(), 1);
}

TEST_F(RemovedVolumesTest, AreNotWaitedForByWhoeverWantsTheRestUnpacked)
{
    engine.settings().autoExtract.set(false);
    removed().remove({third->id()});
    run(first);
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(RemovedVolumesTest, ComeBackWithoutStartingWhatWasStoppedMeanwhile)
{
    engine.tools.add(u"unrar"_s, waitForGo() + "; exit 3");
    comeDown(third);
    ASSERT_TRUE(waitUntil([&] { return runs() == 1; }));
    removed().remove({second->id()});
    engine.manager().commands().stopExtraction(first->id());
    ASSERT_TRUE(reaches(first, ExtractionStatus::idle));
    removed().putBack();
    turnEventLoop();
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle);
    EXPECT_EQ(runs(), 1);
}

TEST_F(RemovedVolumesTest, ComeBackToARunThatFailedMeanwhileAndAreTriedAgain)
{
    engine.tools.add(u"unrar"_s, waitForGo() + "; exit 3");
    engine.tools.add(u"rar"_s, "exit 10");
    comeDown(third);
    ASSERT_TRUE(waitUntil([&] { return runs() == 1; }));
    removed().remove({first->id(), second->id(), third->id()});
    go();
    ASSERT_TRUE(reaches(first, ExtractionStatus::idle));
    unpackerMakes("movie.mkv");
    removed().putBack();
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(RemovedVolumesTest, KeepTheirPlacesForTheirFiles)
{
    const ItemPtr film = onDisk(u"movie.mkv"_s);
    film->setLocalPath(engine.sandbox.write(u"Downloads/m/movie.mkv"_s, "mine"));
    removed().remove({film->id()});
    comeDown(third);
    ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    EXPECT_EQ(engine.sandbox.read(u"Downloads/m/movie.mkv"_s), "mine");
}

TEST_F(RemovedVolumesTest, AreNotWaitedForByWhoeverTellsThePassword)
{
    engine.tools.add(u"unrar"_s, "exit 11");
    removed().remove({third->id()});
    run(first);
    ASSERT_TRUE(waitUntil([&] { return question().has_value(); }));
    unpackerMakes("movie.mkv");
    engine.manager().questions().submitExtractionPassword(u"secret"_s);
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(RemovedVolumesTest, AreNotWaitedForByWhoeverTellsThePasswordDuringARun)
{
    engine.tools.add(u"unrar"_s, "exit 11");
    removed().remove({third->id()});
    run(first);
    ASSERT_TRUE(waitUntil([&] { return question().has_value(); }));
    engine.tools.add(u"unrar"_s, waitForGo() + "; exit 11");
    run(first);
    ASSERT_TRUE(waitUntil([&] { return runs() == 2; }));
    engine.manager().questions().submitExtractionPassword(u"secret"_s);
    unpackerMakes("movie.mkv");
    go();
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(RemovedVolumesTest, ThatAreGoneForGoodWakeNoSetLater)
{
    removed().remove({third->id()});
    engine.clock.advance(timeToThink);
    ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    first->setExtractionStatus(ExtractionStatus::idle); // as after a stop
    const ItemPtr other = engine.add(u"http://h/x.bin"_s);
    removed().remove({other->id()});
    removed().putBack();
    turnEventLoop();
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle);
    EXPECT_EQ(runs(), 1);
}
