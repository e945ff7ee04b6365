#include "fixtures/ArchiveStep.h"
#include "fixtures/EventLoop.h"

#include <gtest/gtest.h>

using namespace vormel;
using namespace vormel::fixtures;

namespace {

class GroupVerificationTest : public ::testing::Test, protected ArchiveStep
{
protected:
    void SetUp() override
    {
        shop.settings().maxConcurrentDownloads.set(0);
        set = {onDisk(QStringLiteral("a.part1.rar")), onDisk(QStringLiteral("a.part2.rar"))};
    }

    /// What the tool does when it is to test, and when it is to unpack.
    void unrar(const QByteArray& onTest, const QByteArray& onExtract = "exit 0")
    {
        shop.tools.add(QStringLiteral("unrar"),
                       "case \"$2\" in *b.part1.rar) echo 'Cannot find volume b.part1.rar'; exit 3;; esac; "
                       "if [ \"$1\" = t ]; then " +
                           onTest + "; else " + onExtract + "; fi");
    }
    /// Lets what was tested before take its effect, by testing another set after it.
    [[nodiscard]] bool isSettled()
    {
        const ItemPtr other = onDisk(QStringLiteral("b.part1.rar"));
        shop.manager().verifyGroup({other});
        return waitUntil([&] { return other->status() == DownloadStatus::queued; });
    }
    [[nodiscard]] QByteArray noteTheEnd() const
    {
        return "touch '" + shop.sandbox.path(QStringLiteral("over")).toUtf8() + "'; ";
    }
    [[nodiscard]] bool isOver() const
    {
        return waitUntil([this] { return shop.sandbox.exists(QStringLiteral("over")); });
    }

    std::vector<ItemPtr> set;
};

} // namespace

TEST_F(GroupVerificationTest, FetchesTheBadVolumesAgain)
{
    unrar("echo 'Cannot find volume /x/A.PART2.RAR'; exit 3");
    shop.manager().verifyGroup(set);
    ASSERT_TRUE(waitUntil([&] { return set[1]->status() == DownloadStatus::queued; }));
    EXPECT_FALSE(set[1]->localPath());
    EXPECT_FALSE(shop.sandbox.exists(QStringLiteral("Downloads/a/a.part2.rar")));
    EXPECT_EQ(set[0]->status(), DownloadStatus::completed);
}

TEST_F(GroupVerificationTest, FetchesTheTestedVolumeAgainWhenOnlyAHeaderIsBlamed)
{
    unrar("echo 'Corrupt header is found'; exit 3");
    shop.manager().verifyGroup(set);
    EXPECT_TRUE(waitUntil([&] { return set[0]->status() == DownloadStatus::queued; }));
    EXPECT_EQ(set[1]->status(), DownloadStatus::completed);
}

TEST_F(GroupVerificationTest, UnpacksTheSetOnceItsBadVolumesAreHereAnew)
{
    unrar("echo 'Cannot find volume a.part2.rar'; exit 3");
    set[0]->setExtractionStatus(ExtractionStatus::failure(QStringLiteral("broken")));
    shop.settings().maxConcurrentDownloads.set(1);
    shop.manager().verifyGroup(set);
    ASSERT_TRUE(waitUntil([&] { return set[1]->status() == DownloadStatus::downloading; }));
    EXPECT_EQ(set[0]->extractionStatus(), ExtractionStatus::idle);
    shop.http.last().head(200, {{"Content-Length", "1"}});
    shop.http.last().data("x");
    shop.http.last().finish();
    EXPECT_TRUE(reaches(set[0], ExtractionStatus::done));
}

TEST_F(GroupVerificationTest, UnpacksASoundSet)
{
    unrar("exit 0");
    shop.manager().verifyGroup(set);
    EXPECT_TRUE(reaches(set[0], ExtractionStatus::done));
}

TEST_F(GroupVerificationTest, UnpacksNoSetThatIsUnpackedAlready)
{
    unrar(noteTheEnd() + "exit 0");
    set[0]->setExtractionStatus(ExtractionStatus::done);
    shop.manager().verifyGroup(set);
    ASSERT_TRUE(isOver());
    ASSERT_TRUE(isSettled());
    EXPECT_EQ(shop.tools.calls(QStringLiteral("unrar")).size(), 2); // a test of each set
    EXPECT_EQ(set[0]->extractionStatus(), ExtractionStatus::done);
}

TEST_F(GroupVerificationTest, TriesToUnpackWhereNoToolCanTest)
{
    shop.manager().verifyGroup(set);
    EXPECT_TRUE(reaches(set[0], ExtractionStatus::failed));
}

TEST_F(GroupVerificationTest, DoesNothingWithoutTheFirstVolume)
{
    unrar("exit 0");
    shop.manager().verifyGroup({set[1]});
    turnEventLoop();
    EXPECT_TRUE(shop.tools.calls(QStringLiteral("unrar")).isEmpty());
}

TEST_F(GroupVerificationTest, LeavesVolumesAloneThatWereRemovedMeanwhile)
{
    unrar(waitForGo() + "; echo 'Cannot find volume a.part2.rar'; " + noteTheEnd() + "exit 3");
    shop.manager().verifyGroup(set);
    ASSERT_TRUE(waitUntil([&] { return !shop.tools.calls(QStringLiteral("unrar")).isEmpty(); }));
    shop.manager().commands().removeGroup(QStringLiteral("a"));
    go();
    ASSERT_TRUE(isOver());
    ASSERT_TRUE(isSettled());
    EXPECT_TRUE(shop.sandbox.exists(QStringLiteral("Downloads/a/a.part2.rar")));
}
