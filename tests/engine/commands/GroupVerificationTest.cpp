#include "fixtures/ArchiveStep.h"
#include "fixtures/EventLoop.h"
#include "fixtures/ProcessEnd.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

class GroupVerificationTest : public ::testing::Test, protected ArchiveStep
{
protected:
    void SetUp() override
    {
        engine.settings().maxConcurrentDownloads.set(0);
        set = {onDisk(u"a.part1.rar"_s), onDisk(u"a.part2.rar"_s)};
    }

    /// What the tool does when it is to test, and when it is to unpack.
    void unrar(const QByteArray& onTest, const QByteArray& onExtract = "exit 0")
    {
        engine.tools.add(u"unrar"_s,
                         "case \"$2\" in *b.part1.rar) echo 'Cannot find volume b.part1.rar'; exit 3;; esac; "
                         "if [ \"$1\" = t ]; then " +
                             onTest + "; else " + onExtract + "; fi");
    }
    /// Lets what was tested before take its effect, by testing another set after it.
    [[nodiscard]] bool isSettled()
    {
        const ItemPtr other = onDisk(u"b.part1.rar"_s);
        engine.manager().commands().verifyGroup({other});
        return waitUntil([&] { return other->status() == DownloadStatus::queued; });
    }
    /// What the row of the first volume says once the set was tested.
    [[nodiscard]] VerificationResult told()
    {
        engine.manager().commands().verifyGroup(set);
        EXPECT_TRUE(waitUntil([&] { return set[0]->verification().kind != VerificationResult::running; }));
        return set[0]->verification();
    }
    /// What the row says when the tool blames a volume that is fetched again during the test.
    [[nodiscard]] VerificationResult::Kind toldAfter(const std::function<void()>& event)
    {
        unrar(waitForGo() + "; echo 'Cannot find volume a.part2.rar'; " + noteTheEnd() + "exit 3");
        engine.manager().commands().verifyGroup(set);
        EXPECT_TRUE(waitUntil([&] { return !engine.tools.calls(u"unrar"_s).isEmpty(); }));
        engine.manager().commands().redownloadItem(*set[1]);
        event();
        go();
        EXPECT_TRUE(isOver());
        EXPECT_TRUE(isSettled());
        return set[0]->verification().kind;
    }
    /// Has the tool write its number at its end.
    [[nodiscard]] QByteArray noteTheEnd() const
    {
        const QByteArray path = engine.sandbox.path(u"over"_s).toUtf8();
        return "echo $$ > '" + path + ".new'; mv '" + path + ".new' '" + path + "'; ";
    }
    /// Waits until the tool that does so has ended.
    [[nodiscard]] bool isOver() const
    {
        return waitUntil([this] {
            return engine.sandbox.exists(u"over"_s) && hasEnded(engine.sandbox.read(u"over"_s).trimmed().toInt());
        });
    }

    std::vector<ItemPtr> set;
};

} // namespace

TEST_F(GroupVerificationTest, FetchesTheBadVolumesAgain)
{
    unrar("echo 'Cannot find volume /x/A.PART2.RAR'; exit 3");
    engine.manager().commands().verifyGroup(set);
    ASSERT_TRUE(waitUntil([&] { return set[1]->status() == DownloadStatus::queued; }));
    EXPECT_FALSE(set[1]->localPath());
    EXPECT_FALSE(engine.sandbox.exists(u"Downloads/a/a.part2.rar"_s));
    EXPECT_EQ(set[0]->status(), DownloadStatus::completed);
}

TEST_F(GroupVerificationTest, FetchesTheTestedVolumeAgainWhenOnlyAHeaderIsBlamed)
{
    unrar("echo 'Corrupt header is found'; exit 3");
    engine.manager().commands().verifyGroup(set);
    EXPECT_TRUE(waitUntil([&] { return set[0]->status() == DownloadStatus::queued; }));
    EXPECT_EQ(set[1]->status(), DownloadStatus::completed);
}

TEST_F(GroupVerificationTest, UnpacksTheSetOnceItsBadVolumesAreHereAnew)
{
    unrar("echo 'Cannot find volume a.part2.rar'; exit 3");
    set[0]->setExtractionStatus(ExtractionStatus::failure(u"broken"_s));
    engine.settings().maxConcurrentDownloads.set(1);
    engine.manager().commands().verifyGroup(set);
    ASSERT_TRUE(waitUntil([&] { return set[1]->status() == DownloadStatus::downloading; }));
    EXPECT_EQ(set[0]->extractionStatus(), ExtractionStatus::idle);
    engine.http.last().head(200, {{"Content-Length", "1"}});
    engine.http.last().data("x");
    engine.http.last().finish();
    EXPECT_TRUE(reaches(set[0], ExtractionStatus::done));
}

TEST_F(GroupVerificationTest, UnpacksASoundSet)
{
    unrar("exit 0");
    engine.manager().commands().verifyGroup(set);
    EXPECT_TRUE(reaches(set[0], ExtractionStatus::done));
}

TEST_F(GroupVerificationTest, UnpacksNoSetThatIsUnpackedAlready)
{
    unrar(noteTheEnd() + "exit 0");
    set[0]->setExtractionStatus(ExtractionStatus::done);
    engine.manager().commands().verifyGroup(set);
    ASSERT_TRUE(isOver());
    ASSERT_TRUE(isSettled());
    EXPECT_EQ(engine.tools.calls(u"unrar"_s).size(), 2); // a test of each set
    EXPECT_EQ(set[0]->extractionStatus(), ExtractionStatus::done);
}

TEST_F(GroupVerificationTest, TriesToUnpackWhereNoToolCanTest)
{
    engine.manager().commands().verifyGroup(set);
    EXPECT_TRUE(reaches(set[0], ExtractionStatus::failed));
}

TEST_F(GroupVerificationTest, DoesNothingWithoutTheFirstVolume)
{
    unrar("exit 0");
    engine.manager().commands().verifyGroup({set[1]});
    EXPECT_EQ(set[1]->verification().kind, VerificationResult::none);
}

TEST_F(GroupVerificationTest, LeavesVolumesAloneThatWereRemovedMeanwhile)
{
    unrar(waitForGo() + "; echo 'Cannot find volume a.part2.rar'; " + noteTheEnd() + "exit 3");
    engine.manager().commands().verifyGroup(set);
    ASSERT_TRUE(waitUntil([&] { return !engine.tools.calls(u"unrar"_s).isEmpty(); }));
    engine.manager().commands().removeGroup(u"a"_s);
    go();
    ASSERT_TRUE(isOver());
    ASSERT_TRUE(isSettled());
    EXPECT_TRUE(engine.sandbox.exists(u"Downloads/a/a.part2.rar"_s));
}

TEST_F(GroupVerificationTest, SaysThatAllIsWellAlsoOfASetThatIsUnpackedAlready)
{
    unrar(waitForGo() + "; exit 0");
    set[0]->setExtractionStatus(ExtractionStatus::done);
    engine.manager().commands().verifyGroup(set);
    EXPECT_EQ(set[0]->verification(), VerificationResult{VerificationResult::running});
    go();
    ASSERT_TRUE(waitUntil([&] { return set[0]->verification().kind != VerificationResult::running; }));
    EXPECT_EQ(set[0]->verification(), VerificationResult{VerificationResult::sound});
    EXPECT_EQ(set[1]->verification(), VerificationResult());
}

TEST_F(GroupVerificationTest, SaysWhichPartsAreFetchedAgainAlsoWhenTheFirstIsOneOfThem)
{
    unrar("echo 'Cannot find volume /x/a.part2.rar'; echo 'Cannot find volume /x/a.part7.rar'; exit 3");
    EXPECT_EQ(told(), (VerificationResult{VerificationResult::fetchedAgain, 1, {}, {2}}));
    set = {onDisk(u"c.part1.rar"_s), onDisk(u"c.part2.rar"_s)};
    unrar("echo 'Corrupt header'; echo 'Cannot find volume /x/c.part2.rar'; exit 3");
    EXPECT_EQ(told(), (VerificationResult{VerificationResult::fetchedAgain, 2, {}, {1, 2}}));
    EXPECT_EQ(set[0]->status(), DownloadStatus::queued);
}

TEST_F(GroupVerificationTest, GoesOnSayingWhichPartsAreFetchedAgainWhileTheFirstIsFetched)
{
    unrar("echo 'Corrupt header'; exit 3");
    EXPECT_EQ(told().kind, VerificationResult::fetchedAgain);
    engine.settings().maxConcurrentDownloads.set(1);
    engine.manager().processQueue();
    turnEventLoop();
    ASSERT_EQ(set[0]->status(), DownloadStatus::downloading);
    EXPECT_EQ(set[0]->verification().kind, VerificationResult::fetchedAgain);
    engine.manager().commands().stopItems({set[0]});
    EXPECT_EQ(set[0]->verification().kind, VerificationResult::none);
}

TEST_F(GroupVerificationTest, SaysHowFarTheTestIs)
{
    unrar("printf '...   \\b\\b\\b\\b 42%%'; " + waitForGo() + "; exit 0");
    set[0]->setExtractionStatus(ExtractionStatus::done);
    engine.manager().commands().verifyGroup(set);
    EXPECT_FALSE(set[0]->verification().percent);
    EXPECT_TRUE(waitUntil([&] { return set[0]->verification().percent == 42; }));
    EXPECT_EQ(set[0]->verification().kind, VerificationResult::running);
    go();
    ASSERT_TRUE(waitUntil([&] { return set[0]->verification().kind != VerificationResult::running; }));
    EXPECT_EQ(set[0]->verification(), VerificationResult{VerificationResult::sound});
}

TEST_F(GroupVerificationTest, SaysNothingOfATestWhoseSetHasChangedMeanwhile)
{
    unrar(waitForGo() + "; printf ' 42%%'; " + noteTheEnd() + "exit 0");
    engine.manager().commands().verifyGroup(set);
    ASSERT_TRUE(waitUntil([&] { return !engine.tools.calls(u"unrar"_s).isEmpty(); }));
    engine.manager().commands().redownloadItem(*set[1]);
    ASSERT_EQ(set[0]->verification().kind, VerificationResult::none);
    go();
    ASSERT_TRUE(isOver());
    ASSERT_TRUE(isSettled());
    EXPECT_EQ(set[0]->verification(), VerificationResult());
}

TEST_F(GroupVerificationTest, NamesWhatIsMissingAndHasNoItem)
{
    unrar("echo 'Cannot find volume /x/a.part4.rar'; echo 'Cannot find volume /x/a.part3.rar'; exit 3");
    EXPECT_EQ(told(), (VerificationResult{VerificationResult::damaged, 2, u"a.part3.rar, a.part4.rar"_s}));
    EXPECT_EQ(set[1]->status(), DownloadStatus::completed);
}

TEST_F(GroupVerificationTest, SaysThatAPasswordStandsInTheWay)
{
    unrar("echo 'Enter password (will not be echoed) for /x/a.part1.rar: '; echo; echo 'Program aborted'; exit 255");
    set[0]->setExtractionStatus(ExtractionStatus::done);
    EXPECT_EQ(told(), VerificationResult{VerificationResult::passwordNeeded});
}

TEST_F(GroupVerificationTest, SaysWhyNothingCouldBeTested)
{
    set[0]->setExtractionStatus(ExtractionStatus::done);
    EXPECT_EQ(told(), (VerificationResult{VerificationResult::failed, 0,
                                          u"unrar/rar not found. Install it with: sudo apt install unrar"_s}));
    unrar("echo 'UNRAR 6.21 freeware'; echo 'Read error in the file x'; exit 2");
    EXPECT_EQ(told(), (VerificationResult{VerificationResult::failed, 0, u"Read error in the file x"_s}));
}

TEST_F(GroupVerificationTest, TestsASetOnceHoweverOftenItIsAskedFor)
{
    unrar(waitForGo() + "; exit 0");
    set[0]->setExtractionStatus(ExtractionStatus::done);
    engine.manager().commands().verifyGroup(set);
    engine.manager().commands().verifyGroup(set);
    go();
    ASSERT_TRUE(waitUntil([&] { return set[0]->verification().kind == VerificationResult::sound; }));
    EXPECT_EQ(engine.tools.calls(u"unrar"_s).size(), 1);
    halt();
    engine.manager().commands().verifyGroup(set);
    EXPECT_EQ(set[0]->verification().kind, VerificationResult::running);
    go();
    ASSERT_TRUE(waitUntil([&] { return set[0]->verification().kind == VerificationResult::sound; }));
    EXPECT_EQ(engine.tools.calls(u"unrar"_s).size(), 2);
}

TEST_F(GroupVerificationTest, TestsNoSetThatIsBeingUnpackedOrRepaired)
{
    unrar("exit 3", "exit 3");
    engine.tools.add(u"rar"_s, waitForGo());
    engine.manager().commands().retryExtraction(set[0]->id());
    engine.manager().commands().verifyGroup(set);
    EXPECT_EQ(set[0]->verification().kind, VerificationResult::busy);
    ASSERT_TRUE(waitUntil([&] { return set[0]->extractionStatus() == ExtractionStatus::repairing; }));
    engine.manager().commands().verifyGroup(set);
    EXPECT_EQ(set[0]->verification().kind, VerificationResult::busy);
    for (const QStringList& call : engine.tools.calls(u"unrar"_s))
        EXPECT_EQ(call.front(), u"x");
    engine.manager().commands().stopExtraction(set[0]->id());
}

TEST_F(GroupVerificationTest, FetchesNothingOfASetThatWasUnpackedWhileItWasTested)
{
    unrar(waitForGo() + "; echo 'Cannot find volume /x/a.part2.rar'; " + noteTheEnd() + "exit 3");
    engine.manager().commands().verifyGroup(set);
    ASSERT_TRUE(waitUntil([&] { return !engine.tools.calls(u"unrar"_s).isEmpty(); }));
    set[0]->setExtractionStatus(ExtractionStatus::extracting);
    set[0]->setExtractionStatus(ExtractionStatus::done);
    go();
    ASSERT_TRUE(isOver());
    ASSERT_TRUE(isSettled());
    EXPECT_EQ(set[1]->status(), DownloadStatus::completed);
    EXPECT_TRUE(engine.sandbox.exists(u"Downloads/a/a.part2.rar"_s));
    EXPECT_EQ(set[0]->verification(), VerificationResult());
}

TEST_F(GroupVerificationTest, LeavesFailedArchivesOfOtherSetsAsTheyAre)
{
    unrar("echo 'Cannot find volume /x/a.part2.rar'; exit 3");
    const ItemPtr other = onDisk(u"d.part1.rar"_s);
    for (const ItemPtr& failed : {set[0], other})
        failed->setExtractionStatus(ExtractionStatus::failure(u"broken"_s));
    EXPECT_EQ(told().kind, VerificationResult::fetchedAgain);
    EXPECT_EQ(set[0]->extractionStatus(), ExtractionStatus::idle);
    EXPECT_EQ(other->extractionStatus(), ExtractionStatus::failed);
}

TEST_F(GroupVerificationTest, BlamesNoVolumeThatIsFetchedAgainMeanwhile)
{
    EXPECT_EQ(toldAfter([] {}), VerificationResult::none);
    EXPECT_FALSE(engine.sandbox.exists(u"Downloads/a/a.part2.rar"_s));
}

TEST_F(GroupVerificationTest, KeepsAVolumeThatHasComeAnewMeanwhile)
{
    const auto come = [this] {
        set[1]->setLocalPath(engine.sandbox.write(u"Downloads/a/a.part2.rar"_s, "fresh"));
        set[1]->setStatus(DownloadStatus::completed);
    };
    EXPECT_EQ(toldAfter(come), VerificationResult::none);
    EXPECT_EQ(engine.sandbox.read(u"Downloads/a/a.part2.rar"_s), "fresh");
}
