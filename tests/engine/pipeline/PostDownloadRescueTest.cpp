#include "fixtures/ArchiveStep.h"
#include "fixtures/EventLoop.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

class PostDownloadRescueTest : public ::testing::Test, protected ArchiveStep
{};

} // namespace

TEST_F(PostDownloadRescueTest, RepairsASetThatDoesNotUnpackAndTriesAgain)
{
    const QByteArray mark = engine.sandbox.path(u"repaired"_s).toUtf8();
    engine.tools.add(u"unrar"_s, "test -e '" + mark + "' || exit 3");
    engine.tools.add(u"rar"_s, waitForGo() + "; touch '" + mark + "'");
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    run(first);
    ASSERT_TRUE(reaches(first, ExtractionStatus::repairing));
    go();
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
    EXPECT_EQ(engine.tools.calls(u"rar"_s), (QList<QStringList>{{u"rc"_s, u"-y"_s, *first->localPath()}}));
}

TEST_F(PostDownloadRescueTest, RepairsNoSingleArchive)
{
    engine.tools.add(u"unrar"_s, "echo broken; exit 3");
    engine.tools.add(u"rar"_s);
    const ItemPtr item = onDisk(u"x.rar"_s);
    run(item);
    ASSERT_TRUE(reaches(item, ExtractionStatus::failed));
    EXPECT_TRUE(engine.tools.calls(u"rar"_s).isEmpty());
}

TEST_F(PostDownloadRescueTest, FetchesRecoveryVolumesWhenTheRepairFails)
{
    engine.tools.add(u"unrar"_s, "exit 3");
    engine.tools.add(u"rar"_s, "exit 10");
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    const ItemPtr rev = engine.add(u"http://h/m.part1.rev"_s);
    run(first);
    ASSERT_TRUE(waitUntil([&] { return rev->status() == DownloadStatus::downloading; }));
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle);
    // Its arrival starts the archive again.
    engine.tools.add(u"rar"_s);
    unpackerMakes("movie.mkv");
    engine.http.last().head(200, {{"Content-Length", "1"}});
    engine.http.last().data("x");
    engine.http.last().finish();
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(PostDownloadRescueTest, GoesOnWithoutARecoveryVolumeThatFails)
{
    engine.tools.add(u"unrar"_s, "exit 3");
    engine.tools.add(u"rar"_s, "exit 10");
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    const auto revs = engine.add({u"http://h/m.part1.rev"_s, u"http://h/m.part2.rev"_s});
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
    engine.tools.add(u"unrar"_s, "exit 3");
    engine.tools.add(u"rar"_s, "echo no volumes; exit 10");
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    run(first);
    ASSERT_TRUE(reaches(first, ExtractionStatus::failed));
    EXPECT_EQ(first->extractionStatus().message().trimmed(), u"Extraction failed (code 10): no volumes");
}

TEST_F(PostDownloadRescueTest, StopsARepairWhenTheUserWants)
{
    engine.tools.add(u"unrar"_s, "exit 3");
    engine.tools.add(u"rar"_s, "exec sleep 600");
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    const ItemPtr rev = engine.add(u"http://h/m.part1.rev"_s);
    run(first);
    ASSERT_TRUE(waitUntil([&] { return !engine.tools.calls(u"rar"_s).isEmpty(); }));
    engine.manager().commands().stopExtraction(first->id());
    ASSERT_TRUE(reaches(first, ExtractionStatus::idle));
    EXPECT_EQ(rev->status(), DownloadStatus::paused); // nothing was let through
    EXPECT_EQ(engine.sandbox.files(u"Downloads"_s), QStringList{u"m/m.part1.rar"_s});
}

TEST_F(PostDownloadRescueTest, IsTriedAgainWhenVolumesCameOnTheirWayDuringTheRun)
{
    for (const bool isRepairPossible : {true, false}) {
        engine.tools.add(u"unrar"_s, waitForGo() + "; exit 3");
        engine.tools.add(u"rar"_s, "exit 10");
        if (!isRepairPossible)
            engine.tools.remove(u"rar"_s);
        const QString set = isRepairPossible ? u"a"_s : u"b"_s;
        const ItemPtr first = onDisk(set + u".part1.rar"_s);
        const ItemPtr rev = engine.add(u"http://h/"_s + set + u".part1.rev"_s);
        run(first);
        ASSERT_TRUE(waitUntil([&] { return !engine.tools.calls(u"unrar"_s).isEmpty(); }));
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
    engine.tools.add(u"unrar"_s, waitForGo() + "; exit 3");
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    run(first);
    ASSERT_TRUE(waitUntil([&] { return !engine.tools.calls(u"unrar"_s).isEmpty(); }));
    unpackerMakes("movie.mkv");
    arrive(onDisk(u"m.part2.rar"_s));
    go();
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}
