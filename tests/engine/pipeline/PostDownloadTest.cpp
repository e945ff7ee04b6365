#include "fixtures/ArchiveStep.h"
#include "fixtures/EventLoop.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

class PostDownloadTest : public ::testing::Test, protected ArchiveStep
{};

} // namespace

TEST_F(PostDownloadTest, UnpacksASetWhenItsLastPartHasCome)
{
    unpackerMakes("movie.mkv");
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    const ItemPtr last = engine.start(u"http://h/m.part2.rar"_s);
    engine.http.last().head(200, {{"Content-Length", "1"}});
    engine.http.last().data("x");
    EXPECT_TRUE(engine.tools.calls(u"unrar"_s).isEmpty());
    engine.http.last().finish();
    ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    EXPECT_EQ(last->extractionStatus(), ExtractionStatus::idle);
    EXPECT_TRUE(engine.sandbox.exists(u"Downloads/m/movie.mkv"_s));
}

TEST_F(PostDownloadTest, TellsWhenTheRunBeganAndHowFarItIs)
{
    engine.tools.add(u"unrar"_s, "printf ' 42%%\\r'; " + waitForGo());
    const ItemPtr item = onDisk(u"x.rar"_s);
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
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    const ItemPtr second = engine.add(u"http://h/m.part2.rar"_s);
    for (const auto status : {DownloadStatus::queued, DownloadStatus::paused, DownloadStatus::stopped}) {
        second->setStatus(status);
        run(first);
        EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle) << status;
    }
}

TEST_F(PostDownloadTest, WaitsForAPartWhoseFileIsBeingFetchedAgain)
{
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    onDisk(u"m.part2.rar"_s)->setStatus(DownloadStatus::queued);
    run(first);
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle);
}

TEST_F(PostDownloadTest, DoesNotWaitForAPartThatHasFailed)
{
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    engine.add(u"http://h/m.part2.rar"_s)->setStatus(DownloadStatus::failure(u"gone"_s));
    run(first);
    EXPECT_FALSE(first->extractionStatus() == ExtractionStatus::idle);
}

TEST_F(PostDownloadTest, WaitsForNoRecoveryVolumeThatNobodyFetches)
{
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    const ItemPtr rev = engine.add(u"http://h/m.part1.rev"_s);
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
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    const ItemPtr rev = engine.add(u"http://h/m.part1.rev"_s);
    for (const auto status : {DownloadStatus::resolving, DownloadStatus::downloading}) {
        rev->setStatus(status);
        run(first);
        EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle) << status;
    }
    engine.settings().downloadRevFiles.set(true);
    engine.add(u"http://h/m.part2.rar"_s)->setStatus(DownloadStatus::failure(u"gone"_s));
    for (const auto status : {DownloadStatus::queued, DownloadStatus::paused}) {
        rev->setStatus(status);
        run(first);
        EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle) << status;
    }
}

TEST_F(PostDownloadTest, NeedsTheFirstVolume)
{
    const ItemPtr second = onDisk(u"m.part2.rar"_s);
    run(second);
    EXPECT_EQ(second->extractionStatus(), ExtractionStatus::idle);
}

TEST_F(PostDownloadTest, KeepsSetsApartByLetterCase)
{
    unpackerMakes("movie.mkv");
    const ItemPtr first = onDisk(u"movie.part1.rar"_s);
    engine.add(u"http://h/Movie.part2.rar"_s);
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
    const ItemPtr item = onDisk(u"x.rar"_s);
    item->setExtractionStatus(ExtractionStatus::failure(u"broken"_s));
    arrive(item);
    EXPECT_EQ(item->extractionStatus(), ExtractionStatus::failure(u"broken"_s));
}

TEST_F(PostDownloadTest, TriesAFailedArchiveAgainForTheUser)
{
    unpackerMakes("movie.mkv");
    const ItemPtr item = onDisk(u"x.rar"_s);
    item->setExtractionStatus(ExtractionStatus::failure(u"broken"_s));
    item->setStatus(DownloadStatus::paused);
    engine.manager().commands().retryExtraction(item->id());
    EXPECT_EQ(item->extractionStatus(), ExtractionStatus::failed);
    item->setStatus(DownloadStatus::completed);
    engine.manager().commands().retryExtraction(item->id());
    EXPECT_TRUE(reaches(item, ExtractionStatus::done));
}

TEST_F(PostDownloadTest, RunsOnceForASetHoweverManyPartsAskForIt)
{
    engine.tools.add(u"unrar"_s, waitForGo());
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    const ItemPtr second = onDisk(u"m.part2.rar"_s);
    arrive(first);
    arrive(second);
    go();
    ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    arrive(second);
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::done);
    EXPECT_EQ(engine.tools.calls(u"unrar"_s).size(), 1);
}

TEST_F(PostDownloadTest, FailsWithTheMissingToolsName)
{
    const ItemPtr item = onDisk(u"x.rar"_s);
    run(item);
    ASSERT_TRUE(reaches(item, ExtractionStatus::failed));
    EXPECT_TRUE(item->extractionStatus().message().startsWith(u"unrar not found. "_s));
    EXPECT_EQ(item->status(), DownloadStatus::completed);
}

TEST_F(PostDownloadTest, SavesWhatBecameOfAnArchiveAtOnce)
{
    engine.tools.add(u"unrar"_s, "exit 3");
    const ItemPtr bad = onDisk(u"bad.rar"_s);
    run(bad);
    ASSERT_TRUE(reaches(bad, ExtractionStatus::failed));
    unpackerMakes("movie.mkv");
    const ItemPtr good = onDisk(u"good.rar"_s);
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
    engine.tools.add(u"unrar"_s, GetParam().script);
    const ItemPtr item = onDisk(u"x.rar"_s);
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
    engine.sandbox.write(u"plain"_s, "no program");
    engine.tools.addReal(u"unrar"_s, engine.sandbox.path(u"plain"_s));
    const ItemPtr item = onDisk(u"x.rar"_s);
    run(item);
    ASSERT_TRUE(reaches(item, ExtractionStatus::failed));
    EXPECT_EQ(item->extractionStatus().message(), u"Permission denied");
}
