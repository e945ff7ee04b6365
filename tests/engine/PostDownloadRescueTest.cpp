#include "fixtures/ArchiveStep.h"
#include "fixtures/EventLoop.h"

#include <gtest/gtest.h>

using namespace vormel;
using namespace vormel::fixtures;

namespace {

class PostDownloadRescueTest : public ::testing::Test, protected ArchiveStep
{};

} // namespace

TEST_F(PostDownloadRescueTest, RepairsASetThatDoesNotUnpackAndTriesAgain)
{
    const QByteArray mark = shop.sandbox.path(QStringLiteral("repaired")).toUtf8();
    shop.tools.add(QStringLiteral("unrar"), "test -e '" + mark + "' || exit 3");
    shop.tools.add(QStringLiteral("rar"), waitForGo() + "; touch '" + mark + "'");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    run(first);
    ASSERT_TRUE(reaches(first, ExtractionStatus::repairing));
    go();
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
    EXPECT_EQ(shop.tools.calls(QStringLiteral("rar")),
              (QList<QStringList>{{QStringLiteral("rc"), QStringLiteral("-y"), *first->localPath()}}));
}

TEST_F(PostDownloadRescueTest, RepairsNoSingleArchive)
{
    shop.tools.add(QStringLiteral("unrar"), "echo broken; exit 3");
    shop.tools.add(QStringLiteral("rar"));
    const ItemPtr item = onDisk(QStringLiteral("x.rar"));
    run(item);
    ASSERT_TRUE(reaches(item, ExtractionStatus::failed));
    EXPECT_TRUE(shop.tools.calls(QStringLiteral("rar")).isEmpty());
}

TEST_F(PostDownloadRescueTest, FetchesRecoveryVolumesWhenTheRepairFails)
{
    shop.tools.add(QStringLiteral("unrar"), "exit 3");
    shop.tools.add(QStringLiteral("rar"), "exit 10");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    const ItemPtr rev = shop.add(QStringLiteral("http://h/m.part1.rev"));
    run(first);
    ASSERT_TRUE(waitUntil([&] { return rev->status() == DownloadStatus::downloading; }));
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle);
    // Its arrival starts the archive again.
    shop.tools.add(QStringLiteral("rar"));
    unpackerMakes("movie.mkv");
    shop.http.last().head(200, {{"Content-Length", "1"}});
    shop.http.last().data("x");
    shop.http.last().finish();
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(PostDownloadRescueTest, GoesOnWithoutARecoveryVolumeThatFails)
{
    shop.tools.add(QStringLiteral("unrar"), "exit 3");
    shop.tools.add(QStringLiteral("rar"), "exit 10");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    const auto revs = shop.add({QStringLiteral("http://h/m.part1.rev"), QStringLiteral("http://h/m.part2.rev")});
    run(first);
    ASSERT_TRUE(waitUntil([&] { return revs[1]->status() == DownloadStatus::downloading; }));
    unpackerMakes("movie.mkv");
    shop.http.exchanges()[0]->head(200, {{"Content-Length", "1"}});
    shop.http.exchanges()[0]->data("x");
    shop.http.exchanges()[0]->finish();
    turnEventLoop();
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle);
    shop.http.exchanges()[1]->head(403, {{"Content-Type", "text/html"}});
    shop.http.exchanges()[1]->finish();
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(PostDownloadRescueTest, FailsWithTheLastErrorWhenNothingIsLeftToFetch)
{
    shop.tools.add(QStringLiteral("unrar"), "exit 3");
    shop.tools.add(QStringLiteral("rar"), "echo no volumes; exit 10");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    run(first);
    ASSERT_TRUE(reaches(first, ExtractionStatus::failed));
    EXPECT_EQ(first->extractionStatus().message().trimmed(), u"Extraction failed (code 10): no volumes");
}

TEST_F(PostDownloadRescueTest, StopsARepairWhenTheUserWants)
{
    shop.tools.add(QStringLiteral("unrar"), "exit 3");
    shop.tools.add(QStringLiteral("rar"), "exec sleep 600");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    const ItemPtr rev = shop.add(QStringLiteral("http://h/m.part1.rev"));
    run(first);
    ASSERT_TRUE(waitUntil([&] { return !shop.tools.calls(QStringLiteral("rar")).isEmpty(); }));
    shop.manager().commands().stopExtraction(first->id());
    ASSERT_TRUE(reaches(first, ExtractionStatus::idle));
    EXPECT_EQ(rev->status(), DownloadStatus::paused); // nothing was let through
    EXPECT_EQ(shop.sandbox.files(QStringLiteral("Downloads")), QStringList{QStringLiteral("m/m.part1.rar")});
}

TEST_F(PostDownloadRescueTest, IsTriedAgainWhenVolumesCameOnTheirWayDuringTheRun)
{
    for (const bool isRepairPossible : {true, false}) {
        shop.tools.add(QStringLiteral("unrar"), waitForGo() + "; exit 3");
        shop.tools.add(QStringLiteral("rar"), "exit 10");
        if (!isRepairPossible)
            shop.tools.remove(QStringLiteral("rar"));
        const QString set = isRepairPossible ? QStringLiteral("a") : QStringLiteral("b");
        const ItemPtr first = onDisk(set + QStringLiteral(".part1.rar"));
        const ItemPtr rev = shop.add(QStringLiteral("http://h/") + set + QStringLiteral(".part1.rev"));
        run(first);
        ASSERT_TRUE(waitUntil([&] { return !shop.tools.calls(QStringLiteral("unrar")).isEmpty(); }));
        shop.manager().commands().retryWithRevFiles({first});
        ASSERT_TRUE(waitUntil([&] { return rev->status() == DownloadStatus::downloading; }));
        go();
        ASSERT_TRUE(reaches(first, ExtractionStatus::idle));
        unpackerMakes("movie.mkv");
        shop.http.last().head(200, {{"Content-Length", "1"}});
        shop.http.last().data("x");
        shop.http.last().finish();
        EXPECT_TRUE(reaches(first, ExtractionStatus::done));
        halt();
    }
}

TEST_F(PostDownloadRescueTest, IsTriedAgainAfterAFailureDuringWhichAPartCame)
{
    shop.tools.add(QStringLiteral("unrar"), waitForGo() + "; exit 3");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    run(first);
    ASSERT_TRUE(waitUntil([&] { return !shop.tools.calls(QStringLiteral("unrar")).isEmpty(); }));
    unpackerMakes("movie.mkv");
    arrive(onDisk(QStringLiteral("m.part2.rar")));
    go();
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}
