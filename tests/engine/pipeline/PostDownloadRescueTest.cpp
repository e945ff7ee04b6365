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
    const QByteArray mark = engine.sandbox.path(QStringLiteral("repaired")).toUtf8();
    engine.tools.add(QStringLiteral("unrar"), "test -e '" + mark + "' || exit 3");
    engine.tools.add(QStringLiteral("rar"), waitForGo() + "; touch '" + mark + "'");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    run(first);
    ASSERT_TRUE(reaches(first, ExtractionStatus::repairing));
    go();
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
    EXPECT_EQ(engine.tools.calls(QStringLiteral("rar")),
              (QList<QStringList>{{QStringLiteral("rc"), QStringLiteral("-y"), *first->localPath()}}));
}

TEST_F(PostDownloadRescueTest, RepairsNoSingleArchive)
{
    engine.tools.add(QStringLiteral("unrar"), "echo broken; exit 3");
    engine.tools.add(QStringLiteral("rar"));
    const ItemPtr item = onDisk(QStringLiteral("x.rar"));
    run(item);
    ASSERT_TRUE(reaches(item, ExtractionStatus::failed));
    EXPECT_TRUE(engine.tools.calls(QStringLiteral("rar")).isEmpty());
}

TEST_F(PostDownloadRescueTest, FetchesRecoveryVolumesWhenTheRepairFails)
{
    engine.tools.add(QStringLiteral("unrar"), "exit 3");
    engine.tools.add(QStringLiteral("rar"), "exit 10");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    const ItemPtr rev = engine.add(QStringLiteral("http://h/m.part1.rev"));
    run(first);
    ASSERT_TRUE(waitUntil([&] { return rev->status() == DownloadStatus::downloading; }));
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle);
    // Its arrival starts the archive again.
    engine.tools.add(QStringLiteral("rar"));
    unpackerMakes("movie.mkv");
    engine.http.last().head(200, {{"Content-Length", "1"}});
    engine.http.last().data("x");
    engine.http.last().finish();
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(PostDownloadRescueTest, GoesOnWithoutARecoveryVolumeThatFails)
{
    engine.tools.add(QStringLiteral("unrar"), "exit 3");
    engine.tools.add(QStringLiteral("rar"), "exit 10");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    const auto revs = engine.add({QStringLiteral("http://h/m.part1.rev"), QStringLiteral("http://h/m.part2.rev")});
    run(first);
    ASSERT_TRUE(waitUntil([&] { return revs[1]->status() == DownloadStatus::downloading; }));
    unpackerMakes("movie.mkv");
    engine.http.exchanges()[0]->head(200, {{"Content-Length", "1"}});
    engine.http.exchanges()[0]->data("x");
    engine.http.exchanges()[0]->finish();
    turnEventLoop();
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle);
    engine.http.exchanges()[1]->head(403, {{"Content-Type", "text/html"}});
    engine.http.exchanges()[1]->finish();
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(PostDownloadRescueTest, FailsWithTheLastErrorWhenNothingIsLeftToFetch)
{
    engine.tools.add(QStringLiteral("unrar"), "exit 3");
    engine.tools.add(QStringLiteral("rar"), "echo no volumes; exit 10");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    run(first);
    ASSERT_TRUE(reaches(first, ExtractionStatus::failed));
    EXPECT_EQ(first->extractionStatus().message().trimmed(), u"Extraction failed (code 10): no volumes");
}

TEST_F(PostDownloadRescueTest, StopsARepairWhenTheUserWants)
{
    engine.tools.add(QStringLiteral("unrar"), "exit 3");
    engine.tools.add(QStringLiteral("rar"), "exec sleep 600");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    const ItemPtr rev = engine.add(QStringLiteral("http://h/m.part1.rev"));
    run(first);
    ASSERT_TRUE(waitUntil([&] { return !engine.tools.calls(QStringLiteral("rar")).isEmpty(); }));
    engine.manager().commands().stopExtraction(first->id());
    ASSERT_TRUE(reaches(first, ExtractionStatus::idle));
    EXPECT_EQ(rev->status(), DownloadStatus::paused); // nothing was let through
    EXPECT_EQ(engine.sandbox.files(QStringLiteral("Downloads")), QStringList{QStringLiteral("m/m.part1.rar")});
}

TEST_F(PostDownloadRescueTest, IsTriedAgainWhenVolumesCameOnTheirWayDuringTheRun)
{
    for (const bool isRepairPossible : {true, false}) {
        engine.tools.add(QStringLiteral("unrar"), waitForGo() + "; exit 3");
        engine.tools.add(QStringLiteral("rar"), "exit 10");
        if (!isRepairPossible)
            engine.tools.remove(QStringLiteral("rar"));
        const QString set = isRepairPossible ? QStringLiteral("a") : QStringLiteral("b");
        const ItemPtr first = onDisk(set + QStringLiteral(".part1.rar"));
        const ItemPtr rev = engine.add(QStringLiteral("http://h/") + set + QStringLiteral(".part1.rev"));
        run(first);
        ASSERT_TRUE(waitUntil([&] { return !engine.tools.calls(QStringLiteral("unrar")).isEmpty(); }));
        engine.manager().commands().retryWithRevFiles({first});
        ASSERT_TRUE(waitUntil([&] { return rev->status() == DownloadStatus::downloading; }));
        go();
        ASSERT_TRUE(reaches(first, ExtractionStatus::idle));
        unpackerMakes("movie.mkv");
        engine.http.last().head(200, {{"Content-Length", "1"}});
        engine.http.last().data("x");
        engine.http.last().finish();
        EXPECT_TRUE(reaches(first, ExtractionStatus::done));
        halt();
    }
}

TEST_F(PostDownloadRescueTest, IsTriedAgainAfterAFailureDuringWhichAPartCame)
{
    engine.tools.add(QStringLiteral("unrar"), waitForGo() + "; exit 3");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    run(first);
    ASSERT_TRUE(waitUntil([&] { return !engine.tools.calls(QStringLiteral("unrar")).isEmpty(); }));
    unpackerMakes("movie.mkv");
    arrive(onDisk(QStringLiteral("m.part2.rar")));
    go();
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}
