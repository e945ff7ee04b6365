#include "archive/workspace/WorkFolder.h"
#include "fixtures/ArchiveStep.h"
#include "fixtures/EventLoop.h"
#include "fixtures/RealTools.h"

#include <QDir>
#include <QFile>

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
    const ItemPtr last = shop.start(QStringLiteral("http://h/m.part2.rar"));
    shop.http.last().head(200, {{"Content-Length", "1"}});
    shop.http.last().data("x");
    EXPECT_TRUE(shop.tools.calls(QStringLiteral("unrar")).isEmpty());
    shop.http.last().finish();
    ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    EXPECT_EQ(last->extractionStatus(), ExtractionStatus::idle);
    EXPECT_TRUE(shop.sandbox.exists(QStringLiteral("Downloads/m/movie.mkv")));
}

TEST_F(PostDownloadTest, TellsWhenTheRunBeganAndHowFarItIs)
{
    shop.tools.add(QStringLiteral("unrar"), "printf ' 42%%\\r'; " + waitForGo());
    const ItemPtr item = onDisk(QStringLiteral("x.rar"));
    run(item);
    EXPECT_EQ(item->extractionStatus(), ExtractionStatus::extracting);
    EXPECT_EQ(item->extractionStartedAt(), shop.clock.wallNow());
    EXPECT_TRUE(waitUntil([&] { return item->extractionProgress() == 0.42; }));
    go();
    EXPECT_TRUE(reaches(item, ExtractionStatus::done));
}

TEST_F(PostDownloadTest, WaitsForPartsThatAreStillToCome)
{
    unpackerMakes("movie.mkv");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    const ItemPtr second = shop.add(QStringLiteral("http://h/m.part2.rar"));
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
    shop.add(QStringLiteral("http://h/m.part2.rar"))->setStatus(DownloadStatus::failure(QStringLiteral("gone")));
    run(first);
    EXPECT_FALSE(first->extractionStatus() == ExtractionStatus::idle);
}

TEST_F(PostDownloadTest, WaitsForNoRecoveryVolumeThatNobodyFetches)
{
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    const ItemPtr rev = shop.add(QStringLiteral("http://h/m.part1.rev"));
    for (const bool isOn : {false, true}) {
        shop.settings().downloadRevFiles.set(isOn);
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
    const ItemPtr rev = shop.add(QStringLiteral("http://h/m.part1.rev"));
    for (const auto status : {DownloadStatus::resolving, DownloadStatus::downloading}) {
        rev->setStatus(status);
        run(first);
        EXPECT_EQ(first->extractionStatus(), ExtractionStatus::idle) << status;
    }
    shop.settings().downloadRevFiles.set(true);
    shop.add(QStringLiteral("http://h/m.part2.rar"))->setStatus(DownloadStatus::failure(QStringLiteral("gone")));
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

TEST_F(PostDownloadTest, KeepsSetsApartByLetterCaseAndFolder)
{
    unpackerMakes("movie.mkv");
    const ItemPtr first = onDisk(QStringLiteral("movie.part1.rar"));
    shop.add(QStringLiteral("http://h/Movie.part2.rar"));
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
    shop.manager().retryExtraction(item->id());
    EXPECT_EQ(item->extractionStatus(), ExtractionStatus::failed);
    item->setStatus(DownloadStatus::completed);
    shop.manager().retryExtraction(item->id());
    EXPECT_TRUE(reaches(item, ExtractionStatus::done));
}

TEST_F(PostDownloadTest, RunsOnceForASetHoweverManyPartsAskForIt)
{
    shop.tools.add(QStringLiteral("unrar"), waitForGo());
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    const ItemPtr second = onDisk(QStringLiteral("m.part2.rar"));
    arrive(first);
    arrive(second);
    go();
    ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    arrive(second);
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::done);
    EXPECT_EQ(shop.tools.calls(QStringLiteral("unrar")).size(), 1);
}

TEST_F(PostDownloadTest, FailsWithTheMissingToolsName)
{
    const ItemPtr item = onDisk(QStringLiteral("x.rar"));
    run(item);
    ASSERT_TRUE(reaches(item, ExtractionStatus::failed));
    EXPECT_TRUE(item->extractionStatus().message().startsWith(QStringLiteral("unrar not found. ")));
    EXPECT_EQ(item->status(), DownloadStatus::completed);
}

TEST_F(PostDownloadTest, AsksForThePasswordUntilItIsRight)
{
    shop.tools.add(QStringLiteral("unrar"), "case \"$*\" in *-pright*) exit 0;; *) exit 11;; esac");
    const ItemPtr item = onDisk(QStringLiteral("m.part1.rar"));
    run(item);
    ASSERT_TRUE(waitUntil([&] { return question().has_value(); }));
    EXPECT_EQ(*question(), (PendingExtractionPassword{item->id(), QStringLiteral("m"), false}));
    EXPECT_EQ(item->extractionStatus(), ExtractionStatus::idle);
    for (int attempt = 0; attempt < 2; ++attempt) {
        shop.manager().submitExtractionPassword(QStringLiteral("wrong"));
        EXPECT_FALSE(question());
        ASSERT_TRUE(waitUntil([&] { return question().has_value(); }));
        EXPECT_TRUE(question()->wasWrongPassword);
    }
    shop.manager().submitExtractionPassword(QStringLiteral("right"));
    EXPECT_TRUE(reaches(item, ExtractionStatus::done));
}

TEST_F(PostDownloadTest, LeavesTheArchiveWhenThePasswordIsNotTold)
{
    shop.tools.add(QStringLiteral("unrar"), "exit 11");
    const ItemPtr item = onDisk(QStringLiteral("x.rar"));
    run(item);
    ASSERT_TRUE(waitUntil([&] { return question().has_value(); }));
    EXPECT_EQ(question()->archiveName, u"x.rar");
    shop.manager().cancelExtractionPassword();
    EXPECT_FALSE(question());
    EXPECT_EQ(item->extractionStatus(), ExtractionStatus::idle);
}

TEST_F(PostDownloadTest, AsksForOnePasswordAfterTheOther)
{
    shop.tools.add(QStringLiteral("unrar"), "exit 11");
    const ItemPtr one = onDisk(QStringLiteral("one.rar"));
    const ItemPtr other = onDisk(QStringLiteral("other.rar"));
    run(one);
    ASSERT_TRUE(waitUntil([&] { return question().has_value(); }));
    run(other);
    ASSERT_TRUE(waitUntil([&] { return other->extractionStatus() == ExtractionStatus::idle; }));
    run(one); // asked already
    ASSERT_TRUE(waitUntil([&] { return one->extractionStatus() == ExtractionStatus::idle; }));
    EXPECT_EQ(question()->itemID, one->id());
    shop.manager().cancelExtractionPassword();
    EXPECT_EQ(question()->itemID, other->id());
    shop.manager().cancelExtractionPassword();
    EXPECT_FALSE(question());
}

TEST_F(PostDownloadTest, TakesTheQuestionBackWhenTheArchiveIsRemoved)
{
    shop.tools.add(QStringLiteral("unrar"), "exit 11");
    const ItemPtr item = onDisk(QStringLiteral("x.rar"));
    run(item);
    ASSERT_TRUE(waitUntil([&] { return question().has_value(); }));
    int changes = 0;
    QObject::connect(&shop.manager(), &DownloadManager::changed, &shop.manager(), [&changes] { ++changes; });
    shop.manager().commands().removeItems({item->id()});
    EXPECT_FALSE(question());
    EXPECT_EQ(changes, 1);
}

TEST_F(PostDownloadTest, RepairsASetThatDoesNotUnpackAndTriesAgain)
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

TEST_F(PostDownloadTest, RepairsNoSingleArchive)
{
    shop.tools.add(QStringLiteral("unrar"), "echo broken; exit 3");
    shop.tools.add(QStringLiteral("rar"));
    const ItemPtr item = onDisk(QStringLiteral("x.rar"));
    run(item);
    ASSERT_TRUE(reaches(item, ExtractionStatus::failed));
    EXPECT_TRUE(shop.tools.calls(QStringLiteral("rar")).isEmpty());
}

TEST_F(PostDownloadTest, FetchesRecoveryVolumesWhenTheRepairFails)
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

TEST_F(PostDownloadTest, GoesOnWithoutARecoveryVolumeThatFails)
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

TEST_F(PostDownloadTest, FailsWithTheLastErrorWhenNothingIsLeftToFetch)
{
    shop.tools.add(QStringLiteral("unrar"), "exit 3");
    shop.tools.add(QStringLiteral("rar"), "echo no volumes; exit 10");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    run(first);
    ASSERT_TRUE(reaches(first, ExtractionStatus::failed));
    EXPECT_EQ(first->extractionStatus().message().trimmed(), u"Extraction failed (code 10): no volumes");
}

TEST_F(PostDownloadTest, SurvivesTheRemovalOfTheSetWhileItIsUnpacked)
{
    for (const QByteArray end : {"exit 0", "exit 11", "exit 3"}) {
        shop.tools.add(QStringLiteral("unrar"), waitForGo() + "; " + end);
        shop.tools.add(QStringLiteral("rar"), "exit 10");
        const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
        run(first);
        shop.manager().commands().removeGroup(QStringLiteral("m"));
        go();
        EXPECT_TRUE(waitUntil([&] { return !(first->extractionStatus() == ExtractionStatus::extracting); }));
        EXPECT_TRUE(waitUntil([&] { return !(first->extractionStatus() == ExtractionStatus::repairing); }));
        EXPECT_FALSE(question());
        EXPECT_TRUE(shop.manager().items().empty());
        halt();
    }
}

TEST_F(PostDownloadTest, StartsNoSecondRunBesideOneForTheSameSet)
{
    shop.tools.add(QStringLiteral("unrar"), waitForGo());
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    const ItemPtr second = onDisk(QStringLiteral("m.part2.rar"));
    run(first);
    ASSERT_TRUE(waitUntil([&] { return shop.tools.calls(QStringLiteral("unrar")).size() == 1; }));
    for (const ItemPtr& item : {first, second}) {
        shop.manager().retryExtraction(item->id());
        item->setExtractionStatus(ExtractionStatus::idle);
        arrive(item);
    }
    go();
    ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    turnEventLoop();
    EXPECT_EQ(shop.tools.calls(QStringLiteral("unrar")).size(), 1);
}

TEST_F(PostDownloadTest, StopsARunWhenTheUserWants)
{
    shop.tools.add(QStringLiteral("unrar"), "cd \"$6\"; echo half >half; exec sleep 600");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    const ItemPtr second = onDisk(QStringLiteral("m.part2.rar"));
    run(first);
    ASSERT_TRUE(waitUntil([&] { return !shop.tools.calls(QStringLiteral("unrar")).isEmpty(); }));
    shop.manager().stopExtraction(second->id());
    ASSERT_TRUE(reaches(first, ExtractionStatus::idle));
    EXPECT_EQ(shop.sandbox.files(QStringLiteral("Downloads")),
              (QStringList{QStringLiteral("m/m.part1.rar"), QStringLiteral("m/m.part2.rar")}));
    unpackerMakes("movie.mkv");
    run(first);
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(PostDownloadTest, StopsARepairWhenTheUserWants)
{
    shop.tools.add(QStringLiteral("unrar"), "exit 3");
    shop.tools.add(QStringLiteral("rar"), "exec sleep 600");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    const ItemPtr rev = shop.add(QStringLiteral("http://h/m.part1.rev"));
    run(first);
    ASSERT_TRUE(waitUntil([&] { return !shop.tools.calls(QStringLiteral("rar")).isEmpty(); }));
    shop.manager().stopExtraction(first->id());
    ASSERT_TRUE(reaches(first, ExtractionStatus::idle));
    EXPECT_EQ(rev->status(), DownloadStatus::paused); // nothing was let through
    EXPECT_EQ(shop.sandbox.files(QStringLiteral("Downloads")), QStringList{QStringLiteral("m/m.part1.rar")});
}

TEST_F(PostDownloadTest, BeginsAnewWhenAVolumeOfARunningArchiveIsFetchedAgain)
{
    shop.tools.add(QStringLiteral("unrar"), "exec sleep 600");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    const ItemPtr second = onDisk(QStringLiteral("m.part2.rar"));
    run(first);
    ASSERT_TRUE(waitUntil([&] { return !shop.tools.calls(QStringLiteral("unrar")).isEmpty(); }));
    unpackerMakes("movie.mkv");
    shop.manager().commands().redownloadItem(*second);
    turnEventLoop();
    shop.http.last().head(200, {{"Content-Length", "1"}});
    shop.http.last().data("x");
    shop.http.last().finish(); // maybe before the tool has ended
    ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    EXPECT_EQ(shop.tools.calls(QStringLiteral("unrar")).size(), 2);
    EXPECT_TRUE(shop.sandbox.exists(QStringLiteral("Downloads/m/movie.mkv")));
}

TEST_F(PostDownloadTest, WorksOnTwoArchivesAtATimeInTheOrderOfTheQueue)
{
    shop.tools.add(QStringLiteral("unrar"), waitForGo());
    std::vector<ItemPtr> items;
    for (const char* name : {"a.rar", "b.rar", "c.rar", "d.rar", "e.rar"})
        items.push_back(onDisk(QString::fromLatin1(name)));
    QStringList order;
    QObject::connect(&shop.manager(), &DownloadManager::itemChanged, &shop.manager(),
                     [&](const ItemId& id, ItemField field) {
                         const ItemPtr item = shop.manager().item(id);
                         if (field == ItemField::ExtractionTurn && !item->awaitsExtractionTurn())
                             order << item->filename();
                     });
    for (const int asked : {0, 1, 4, 3, 2})
        run(items[static_cast<std::size_t>(asked)]);
    for (std::size_t i = 0; i < items.size(); ++i) {
        EXPECT_EQ(items[i]->extractionStatus(), ExtractionStatus::extracting);
        EXPECT_EQ(items[i]->awaitsExtractionTurn(), i > 1) << i;
    }
    ASSERT_TRUE(waitUntil([&] { return shop.tools.calls(QStringLiteral("unrar")).size() == 2; }));
    shop.manager().stopExtraction(items[3]->id());
    EXPECT_EQ(items[3]->extractionStatus(), ExtractionStatus::idle);
    EXPECT_FALSE(items[3]->awaitsExtractionTurn());
    order.clear();
    shop.clock.advance(std::chrono::seconds(7));
    go();
    for (const ItemPtr& item : {items[0], items[1], items[2], items[4]})
        ASSERT_TRUE(reaches(item, ExtractionStatus::done));
    EXPECT_EQ(order, (QStringList{QStringLiteral("c.rar"), QStringLiteral("e.rar")}));
    EXPECT_EQ(items[4]->extractionStartedAt(), shop.clock.wallNow());
    EXPECT_EQ(shop.tools.calls(QStringLiteral("unrar")).size(), 4);
}

TEST_F(PostDownloadTest, SavesWhatBecameOfAnArchiveAtOnce)
{
    shop.tools.add(QStringLiteral("unrar"), "exit 3");
    const ItemPtr bad = onDisk(QStringLiteral("bad.rar"));
    run(bad);
    ASSERT_TRUE(reaches(bad, ExtractionStatus::failed));
    unpackerMakes("movie.mkv");
    const ItemPtr good = onDisk(QStringLiteral("good.rar"));
    run(good);
    ASSERT_TRUE(reaches(good, ExtractionStatus::done));
    shop.flush();
    shop.restart(true);
    EXPECT_EQ(shop.manager().items().front()->extractionStatus(), ExtractionStatus::failed);
    EXPECT_EQ(shop.manager().items().back()->extractionStatus(), ExtractionStatus::done);
}

TEST_F(PostDownloadTest, RemovesAtTheNextStartWhatAKilledRunLeft)
{
    VORMEL_NEEDS_TOOL("cp");
    const QString downloads = shop.sandbox.folders().downloads;
    const WorkFolder alive = WorkFolder::make(downloads + QStringLiteral("/m"));
    shop.sandbox.write(QDir(shop.sandbox.root()).relativeFilePath(alive.path()) + QStringLiteral("/half"), "half");
    // As a kill leaves it: the same, but held by nobody.
    const QStringList args{QStringLiteral("-a"), downloads + QStringLiteral("/m"), downloads + QStringLiteral("/n")};
    ASSERT_EQ(runRealTool(QStringLiteral("/usr/bin/cp"), args, downloads).status, 0);
    shop.restart(true);
    constexpr auto hidden = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
    EXPECT_TRUE(waitUntil([&] { return QDir(downloads + QStringLiteral("/n")).isEmpty(hidden); }));
    EXPECT_TRUE(QFile::exists(alive.path() + QStringLiteral("/half")));
}

TEST_F(PostDownloadTest, LetsTheProgramEndWhileAToolRuns)
{
    shop.tools.add(QStringLiteral("unrar"), waitForGo());
    run(onDisk(QStringLiteral("x.rar")));
    ASSERT_TRUE(waitUntil([&] { return !shop.tools.calls(QStringLiteral("unrar")).isEmpty(); }));
    shop.restart();
    EXPECT_EQ(shop.manager().items().front()->status(), DownloadStatus::completed);
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
    shop.tools.add(QStringLiteral("unrar"), GetParam().script);
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
    shop.sandbox.write(QStringLiteral("plain"), "no program");
    shop.tools.addReal(QStringLiteral("unrar"), shop.sandbox.path(QStringLiteral("plain")));
    const ItemPtr item = onDisk(QStringLiteral("x.rar"));
    run(item);
    ASSERT_TRUE(reaches(item, ExtractionStatus::failed));
    EXPECT_EQ(item->extractionStatus().message(), u"Permission denied");
}
