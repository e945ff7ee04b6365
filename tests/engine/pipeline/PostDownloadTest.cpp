#include "fixtures/ArchiveStep.h"
#include "fixtures/EventLoop.h"

#include <gtest/gtest.h>

using namespace vormel;
using namespace vormel::fixtures;

namespace {

class PostDownloadTest : public ::testing::Test, protected ArchiveStep
{};

} // namespace

TEST_F(PostDownloadTest, UnpacksASetWhenItsLastPartHasCome)
{
    unpackerMakes("movie.mkv");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    const ItemPtr last = engine.start(QStringLiteral("http://h/m.part2.rar"));
    engine.http.last().head(200, {{"Content-Length", "1"}});
    engine.http.last().data("x");
    EXPECT_TRUE(engine.tools.calls(QStringLiteral("unrar")).isEmpty());
    engine.http.last().finish();
    ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    EXPECT_EQ(last->extractionStatus(), ExtractionStatus::idle);
    EXPECT_TRUE(engine.sandbox.exists(QStringLiteral("Downloads/m/movie.mkv")));
}

TEST_F(PostDownloadTest, TellsWhenTheRunBeganAndHowFarItIs)
{
    engine.tools.add(QStringLiteral("unrar"), "printf ' 42%%\\r'; " + waitForGo());
    const ItemPtr item = onDisk(QStringLiteral("x.rar"));
    run(item);
    EXPECT_EQ(item->extractionStatus(), ExtractionStatus::extracting);
    EXPECT_EQ(item->extractionStartedAt(), engine.clock.wallNow());
    EXPECT_TRUE(waitUntil([&] { return item->extractionProgress() == 0.42; }));
    go();
    EXPECT_TRUE(reaches(item, ExtractionStatus::done));
}

TEST_F(PostDownloadTest, WaitsForPartsThatAreStillToCome)
{
    unpackerMakes("movie.mkv");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    const ItemPtr second = engine.add(QStringLiteral("http://h/m.part2.rar"));
    for (const auto status : {DownloadStatus::queued, DownloadStatus::paused, DownloadStatus::stopped}) {
        second->setStatus(status);
        run(first);
        EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle) << status;
    }
}

TEST_F(PostDownloadTest, WaitsForAPartWhoseFileIsBeingFetchedAgain)
{
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    onDisk(QStringLiteral("m.part2.rar"))->setStatus(DownloadStatus::queued);
    run(first);
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle);
}

TEST_F(PostDownloadTest, DoesNotWaitForAPartThatHasFailed)
{
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    engine.add(QStringLiteral("http://h/m.part2.rar"))->setStatus(DownloadStatus::failure(QStringLiteral("gone")));
    run(first);
    EXPECT_FALSE(first->extractionStatus() == ExtractionStatus::idle);
}

TEST_F(PostDownloadTest, WaitsForNoRecoveryVolumeThatNobodyFetches)
{
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    const ItemPtr rev = engine.add(QStringLiteral("http://h/m.part1.rev"));
    for (const bool isOn : {false, true}) {
        engine.settings().downloadRevFiles.set(isOn);
        for (const auto status : {DownloadStatus::queued, DownloadStatus::paused, DownloadStatus::stopped}) {
            rev->setStatus(status);
            run(first);
            EXPECT_FALSE(first->extractionStatus() == ExtractionStatus::idle) << isOn << status;
            ASSERT_TRUE(reaches(first, ExtractionStatus::failed));
        }
    }
}

TEST_F(PostDownloadTest, WaitsForARecoveryVolumeThatIsOnItsWayOrWillBe)
{
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    const ItemPtr rev = engine.add(QStringLiteral("http://h/m.part1.rev"));
    for (const auto status : {DownloadStatus::resolving, DownloadStatus::downloading}) {
        rev->setStatus(status);
        run(first);
        EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle) << status;
    }
    engine.settings().downloadRevFiles.set(true);
    engine.add(QStringLiteral("http://h/m.part2.rar"))->setStatus(DownloadStatus::failure(QStringLiteral("gone")));
    for (const auto status : {DownloadStatus::queued, DownloadStatus::paused}) {
        rev->setStatus(status);
        run(first);
        EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle) << status;
    }
}

TEST_F(PostDownloadTest, NeedsTheFirstVolume)
{
    const ItemPtr second = onDisk(QStringLiteral("m.part2.rar"));
    run(second);
    EXPECT_EQ(second->extractionStatus(), ExtractionStatus::idle);
}

TEST_F(PostDownloadTest, KeepsSetsApartByLetterCase)
{
    unpackerMakes("movie.mkv");
    const ItemPtr first = onDisk(QStringLiteral("movie.part1.rar"));
    engine.add(QStringLiteral("http://h/Movie.part2.rar"));
    run(first);
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(PostDownloadTest, LeavesFilesAloneThatAreNoArchives)
{
    for (const char* name : {"x.mkv", "m.part1.rev", "x.gz"}) {
        const ItemPtr item = onDisk(QString::fromLatin1(name));
        run(item);
        EXPECT_EQ(item->extractionStatus(), ExtractionStatus::idle) << name;
    }
}

TEST_F(PostDownloadTest, DoesNotTryAFailedArchiveAgainByItself)
{
    const ItemPtr item = onDisk(QStringLiteral("x.rar"));
    item->setExtractionStatus(ExtractionStatus::failure(QStringLiteral("broken")));
    arrive(item);
    EXPECT_EQ(item->extractionStatus(), ExtractionStatus::failure(QStringLiteral("broken")));
}

TEST_F(PostDownloadTest, TriesAFailedArchiveAgainForTheUser)
{
    unpackerMakes("movie.mkv");
    const ItemPtr item = onDisk(QStringLiteral("x.rar"));
    item->setExtractionStatus(ExtractionStatus::failure(QStringLiteral("broken")));
    item->setStatus(DownloadStatus::paused);
    engine.manager().commands().retryExtraction(item->id());
    EXPECT_EQ(item->extractionStatus(), ExtractionStatus::failed);
    item->setStatus(DownloadStatus::completed);
    engine.manager().commands().retryExtraction(item->id());
    EXPECT_TRUE(reaches(item, ExtractionStatus::done));
}

TEST_F(PostDownloadTest, RunsOnceForASetHoweverManyPartsAskForIt)
{
    engine.tools.add(QStringLiteral("unrar"), waitForGo());
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    const ItemPtr second = onDisk(QStringLiteral("m.part2.rar"));
    arrive(first);
    arrive(second);
    go();
    ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    arrive(second);
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::done);
    EXPECT_EQ(engine.tools.calls(QStringLiteral("unrar")).size(), 1);
}

TEST_F(PostDownloadTest, FailsWithTheMissingToolsName)
{
    const ItemPtr item = onDisk(QStringLiteral("x.rar"));
    run(item);
    ASSERT_TRUE(reaches(item, ExtractionStatus::failed));
    EXPECT_TRUE(item->extractionStatus().message().startsWith(QStringLiteral("unrar not found. ")));
    EXPECT_EQ(item->status(), DownloadStatus::completed);
}

TEST_F(PostDownloadTest, SavesWhatBecameOfAnArchiveAtOnce)
{
    engine.tools.add(QStringLiteral("unrar"), "exit 3");
    const ItemPtr bad = onDisk(QStringLiteral("bad.rar"));
    run(bad);
    ASSERT_TRUE(reaches(bad, ExtractionStatus::failed));
    unpackerMakes("movie.mkv");
    const ItemPtr good = onDisk(QStringLiteral("good.rar"));
    run(good);
    ASSERT_TRUE(reaches(good, ExtractionStatus::done));
    engine.flush();
    engine.restart(true);
    EXPECT_EQ(engine.manager().items().front()->extractionStatus(), ExtractionStatus::failed);
    EXPECT_EQ(engine.manager().items().back()->extractionStatus(), ExtractionStatus::done);
}

namespace {

struct Mishap
{
    const char* name;
    const char* script;
    const char16_t* message;
};

const Mishap mishaps[] = {
    {"aToolThatIsKilled", "kill -9 $$", u"Extraction failed (code 137): "},
    {"aToolThatCrashes", "kill -11 $$", u"Extraction failed (code 139): "},
    {"aToolThatPrintsWithoutEnd", "head -c 100000000 /dev/zero | tr '\\0' x; exit 3",
     u"Extraction failed (code 3): xxxxxxxxxxxxxxxxxxxx"},
};

class ToolMishap : public ::testing::TestWithParam<Mishap>, protected ArchiveStep
{};

} // namespace

TEST_P(ToolMishap, EndsInAToldState)
{
    engine.tools.add(QStringLiteral("unrar"), GetParam().script);
    const ItemPtr item = onDisk(QStringLiteral("x.rar"));
    run(item);
    ASSERT_TRUE(reaches(item, ExtractionStatus::failed));
    const QString message = item->extractionStatus().message();
    EXPECT_TRUE(message.startsWith(QString::fromUtf16(GetParam().message))) << message.toStdString();
    EXPECT_LT(message.size(), 300);
    EXPECT_EQ(item->status(), DownloadStatus::completed);
}

INSTANTIATE_TEST_SUITE_P(All, ToolMishap, ::testing::ValuesIn(mishaps),
                         [](const auto& param) { return std::string(param.param.name); });

TEST_F(PostDownloadTest, TellsWhyAToolCannotBeStarted)
{
    engine.sandbox.write(QStringLiteral("plain"), "no program");
    engine.tools.addReal(QStringLiteral("unrar"), engine.sandbox.path(QStringLiteral("plain")));
    const ItemPtr item = onDisk(QStringLiteral("x.rar"));
    run(item);
    ASSERT_TRUE(reaches(item, ExtractionStatus::failed));
    EXPECT_EQ(item->extractionStatus().message(), u"Permission denied");
}
