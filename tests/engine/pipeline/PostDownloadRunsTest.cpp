#include "archive/workspace/WorkFolder.h"
#include "fixtures/ArchiveStep.h"
#include "fixtures/EventLoop.h"
#include "fixtures/RealTools.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

class PostDownloadRunsTest : public ::testing::Test, protected ArchiveStep
{
protected:
    /// A set of two volumes; what is done to the second one comes while the files that were unpacked are placed.
    std::pair<ItemPtr, ItemPtr> halfPlaced(const std::function<void(DownloadItem&)>& action)
    {
        engine.settings().deleteArchiveAfterExtract.set(true);
        unpackerMakes("movie.mkv");
        const ItemPtr first = onDisk(u"m.part1.rar"_s);
        const ItemPtr second = onDisk(u"m.part2.rar"_s);
        engine.sandbox.write(u"Downloads/m/movie.mkv"_s, "old");
        bool isDone = false;
        engine.trash.onMove([&] {
            if (!std::exchange(isDone, true))
                QMetaObject::invokeMethod(
                    &engine.manager(), [&] { action(*second); }, Qt::BlockingQueuedConnection);
        });
        run(first);
        EXPECT_TRUE(waitUntil([&] { return first->extractionStatus() == ExtractionStatus::idle; }));
        engine.trash.onMove({});
        return {first, second};
    }
};

} // namespace

TEST_F(PostDownloadRunsTest, SurvivesTheRemovalOfTheSetWhileItIsUnpacked)
{
    for (const QByteArray end : {"exit 0", "exit 11", "exit 3"}) {
        engine.tools.add(u"unrar"_s, waitForGo() + "; " + end);
        engine.tools.add(u"rar"_s, "exit 10");
        const ItemPtr first = onDisk(u"m.part1.rar"_s);
        run(first);
        engine.manager().commands().removeGroup(u"m"_s);
        go();
        EXPECT_TRUE(waitUntil([&] { return first->extractionStatus() != ExtractionStatus::extracting; }));
        EXPECT_TRUE(waitUntil([&] { return first->extractionStatus() != ExtractionStatus::repairing; }));
        EXPECT_FALSE(question());
        EXPECT_TRUE(engine.manager().items().empty());
        halt();
    }
}

TEST_F(PostDownloadRunsTest, StartsNoSecondRunBesideOneForTheSameSet)
{
    engine.tools.add(u"unrar"_s, waitForGo());
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    const ItemPtr second = onDisk(u"m.part2.rar"_s);
    run(first);
    ASSERT_TRUE(waitUntil([&] { return engine.tools.calls(u"unrar"_s).size() == 1; }));
    for (const ItemPtr& item : {first, second}) {
        engine.manager().commands().retryExtraction(item->id());
        item->setExtractionStatus(ExtractionStatus::idle);
        arrive(item);
    }
    go();
    ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    turnEventLoop();
    EXPECT_EQ(engine.tools.calls(u"unrar"_s).size(), 1);
}

TEST_F(PostDownloadRunsTest, StopsARunWhenTheUserWants)
{
    engine.tools.add(u"unrar"_s, "cd \"$6\"; echo half >half; exec sleep 600");
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    const ItemPtr second = onDisk(u"m.part2.rar"_s);
    run(first);
    ASSERT_TRUE(waitUntil([&] { return !engine.tools.calls(u"unrar"_s).isEmpty(); }));
    engine.manager().commands().stopExtraction(second->id());
    ASSERT_TRUE(reaches(first, ExtractionStatus::idle));
    EXPECT_EQ(engine.sandbox.files(u"Downloads"_s), (QStringList{u"m/m.part1.rar"_s, u"m/m.part2.rar"_s}));
    unpackerMakes("movie.mkv");
    run(first);
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(PostDownloadRunsTest, BeginsAnewWhenAVolumeOfARunningArchiveIsFetchedAgain)
{
    engine.tools.add(u"unrar"_s, "exec sleep 600");
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    const ItemPtr second = onDisk(u"m.part2.rar"_s);
    run(first);
    ASSERT_TRUE(waitUntil([&] { return !engine.tools.calls(u"unrar"_s).isEmpty(); }));
    unpackerMakes("movie.mkv");
    engine.manager().commands().redownloadItem(*second);
    turnEventLoop();
    engine.http.last().head(200, {{"Content-Length", "1"}});
    engine.http.last().data("x");
    engine.http.last().finish(); // maybe before the tool has ended
    ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    EXPECT_EQ(engine.tools.calls(u"unrar"_s).size(), 2);
    EXPECT_TRUE(engine.sandbox.exists(u"Downloads/m/movie.mkv"_s));
}

TEST_F(PostDownloadRunsTest, WorksOnTwoArchivesAtATimeInTheOrderOfTheQueue)
{
    engine.tools.add(u"unrar"_s, waitForGo());
    std::vector<ItemPtr> items;
    for (const char* name : {"a.rar", "b.rar", "c.rar", "d.rar", "e.rar"})
        items.push_back(onDisk(QString::fromLatin1(name)));
    QStringList order;
    QObject::connect(&engine.manager(), &DownloadManager::itemChanged, &engine.manager(),
                     [&](const ItemId& id, ItemField field) {
                         const ItemPtr item = engine.manager().item(id);
                         if (field == ItemField::extractionTurn && !item->awaitsExtractionTurn())
                             order << item->filename();
                     });
    for (const int asked : {0, 1, 4, 3, 2})
        run(items[static_cast<std::size_t>(asked)]);
    for (std::size_t i = 0; i < items.size(); ++i) {
        EXPECT_EQ(items[i]->extractionStatus(), ExtractionStatus::extracting);
        EXPECT_EQ(items[i]->awaitsExtractionTurn(), i > 1) << i;
    }
    ASSERT_TRUE(waitUntil([&] { return engine.tools.calls(u"unrar"_s).size() == 2; }));
    engine.manager().commands().stopExtraction(items[3]->id());
    EXPECT_EQ(items[3]->extractionStatus(), ExtractionStatus::idle);
    EXPECT_FALSE(items[3]->awaitsExtractionTurn());
    order.clear();
    engine.clock.advance(std::chrono::seconds(7));
    go();
    for (const ItemPtr& item : {items[0], items[1], items[2], items[4]})
        ASSERT_TRUE(reaches(item, ExtractionStatus::done));
    EXPECT_EQ(order, (QStringList{u"c.rar"_s, u"e.rar"_s}));
    EXPECT_EQ(items[4]->extractionStartedAt(), engine.clock.wallNow());
    EXPECT_EQ(engine.tools.calls(u"unrar"_s).size(), 4);
}

TEST_F(PostDownloadRunsTest, TakesNoFolderAwayThatAnotherArchiveIsUnpackedInto)
{
    engine.tools.add(u"unrar"_s, waitForGo() + "; cd \"$6\" && echo x >movie.mkv");
    engine.tools.add(u"7zz"_s, "cd \"${3#-o}\" && echo x >Mine");
    const ItemPtr set = onDisk(u"m.part1.rar"_s);
    engine.manager().renameGroup(u"m"_s, u"Mine"_s);
    run(set);
    ASSERT_TRUE(waitUntil([&] { return !engine.tools.calls(u"unrar"_s).isEmpty(); }));
    const ItemPtr other = onDisk(u"x.7z"_s);
    run(other);
    ASSERT_TRUE(reaches(other, ExtractionStatus::done));
    go();
    ASSERT_TRUE(reaches(set, ExtractionStatus::done));
    EXPECT_TRUE(engine.sandbox.exists(u"Downloads/Mine/Mine.mkv"_s));
    EXPECT_TRUE(engine.sandbox.exists(u"Downloads/Mine (1)"_s));
}

TEST_F(PostDownloadRunsTest, RemovesAtTheNextStartWhatAKilledRunLeft)
{
    VORMEL_NEEDS_TOOL("cp");
    const QString downloads = engine.sandbox.folders().downloads;
    const WorkFolder alive = WorkFolder::make(downloads + u"/m"_s);
    engine.sandbox.write(QDir(engine.sandbox.root()).relativeFilePath(alive.path()) + u"/half"_s, "half");
    // As a kill leaves it: the same, but held by nobody.
    const QStringList args{u"-a"_s, downloads + u"/m"_s, downloads + u"/.n"_s};
    ASSERT_EQ(runRealTool(u"/usr/bin/cp"_s, args, downloads).status, 0);
    engine.restart(true);
    constexpr auto hidden = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
    EXPECT_TRUE(waitUntil([&] { return QDir(downloads + u"/.n"_s).isEmpty(hidden); }));
    EXPECT_TRUE(QFile::exists(alive.path() + u"/half"_s));
}

TEST_F(PostDownloadRunsTest, LetsTheProgramEndWhileAToolRuns)
{
    engine.tools.add(u"unrar"_s, waitForGo());
    run(onDisk(u"x.rar"_s));
    ASSERT_TRUE(waitUntil([&] { return !engine.tools.calls(u"unrar"_s).isEmpty(); }));
    engine.restart();
    EXPECT_EQ(engine.manager().items().front()->status(), DownloadStatus::completed);
}

TEST_F(PostDownloadRunsTest, UnpacksAFileOnceThatTwoRowsHave)
{
    engine.tools.add(u"7zz"_s, waitForGo());
    const ItemPtr one = onDisk(u"x.7z"_s);
    const ItemPtr other = engine.add(u"http://mirror/y.7z"_s);
    other->setLocalPath(*one->localPath());
    other->setStatus(DownloadStatus::completed);
    run(one);
    ASSERT_TRUE(waitUntil([&] { return !engine.tools.calls(u"7zz"_s).isEmpty(); }));
    arrive(other);
    EXPECT_EQ(other->extractionStatus(), ExtractionStatus::idle);
    go();
    ASSERT_TRUE(reaches(one, ExtractionStatus::done));
    EXPECT_TRUE(reaches(other, ExtractionStatus::done));
    EXPECT_EQ(engine.tools.calls(u"7zz"_s).size(), 1);
}

TEST_F(PostDownloadRunsTest, UnpacksForARowThatComesWhenAllIsInItsPlace)
{
    engine.settings().deleteArchiveAfterExtract.set(true);
    engine.tools.add(u"7zz"_s);
    const ItemPtr one = onDisk(u"x.7z"_s);
    const ItemPtr other = engine.add(u"http://mirror/y.7z"_s);
    ExtractionStatus begun = ExtractionStatus::idle;
    engine.trash.onMove([&] {
        const auto ask = [&] {
            other->setLocalPath(*one->localPath());
            other->setStatus(DownloadStatus::completed);
            run(other);
            begun = other->extractionStatus();
        };
        QMetaObject::invokeMethod(&engine.manager(), ask, Qt::BlockingQueuedConnection);
    });
    run(one);
    ASSERT_TRUE(waitUntil([&] { return !(begun == ExtractionStatus::idle); }));
    EXPECT_EQ(one->extractionStatus(), ExtractionStatus::done);
    EXPECT_EQ(begun, ExtractionStatus::extracting);
    EXPECT_TRUE(waitUntil([&] { return other->extractionStatus() != ExtractionStatus::extracting; }));
}

TEST_F(PostDownloadRunsTest, DoesNotBeginWhatHasLostItsRowWhileItWaited)
{
    engine.tools.add(u"7zz"_s, waitForGo());
    std::vector<ItemPtr> items;
    for (const char* name : {"a.7z", "b.7z", "c.7z", "d.7z"})
        items.push_back(onDisk(QString::fromLatin1(name)));
    for (const ItemPtr& item : items)
        run(item);
    engine.manager().commands().removeItems({items[2]->id()});
    go();
    for (const std::size_t begun : {0U, 1U, 3U})
        ASSERT_TRUE(reaches(items[begun], ExtractionStatus::done));
    EXPECT_TRUE(reaches(items[2], ExtractionStatus::idle));
    EXPECT_EQ(engine.tools.calls(u"7zz"_s).size(), 3);
}

TEST_F(PostDownloadRunsTest, LeavesTheArchiveAloneThatIsFetchedAgainInTheLastMoment)
{
    const auto [first, second] =
        halfPlaced([this](DownloadItem& item) { engine.manager().commands().redownloadItem(item); });
    EXPECT_EQ(second->status(), DownloadStatus::downloading);
    EXPECT_TRUE(QFile::exists(*first->localPath()));
}

TEST_F(PostDownloadRunsTest, LeavesTheArchiveAloneThatIsStoppedInTheLastMoment)
{
    const auto [first, second] =
        halfPlaced([this](DownloadItem& item) { engine.manager().commands().stopExtraction(item.id()); });
    EXPECT_TRUE(QFile::exists(*first->localPath()));
    EXPECT_TRUE(QFile::exists(*second->localPath()));
    EXPECT_EQ(engine.sandbox.read(u"Trash/movie.mkv"_s), "old");
    run(first);
    ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    EXPECT_TRUE(waitUntil([&] { return engine.sandbox.files(u"Downloads"_s) == QStringList{u"m/movie.mkv"_s}; }));
}

TEST_F(PostDownloadRunsTest, UnpacksASetAgainFromTheRowOfAnyPart)
{
    unpackerMakes("movie.mkv");
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    const ItemPtr second = onDisk(u"m.part2.rar"_s);
    for (const ExtractionStatus& before :
         {ExtractionStatus::failure(u"broken"_s), ExtractionStatus(ExtractionStatus::done)}) {
        first->setExtractionStatus(before);
        const qsizetype calls = engine.tools.calls(u"unrar"_s).size();
        // The run before may still be tidying up.
        EXPECT_TRUE(waitUntil([&] {
            run(second);
            return engine.tools.calls(u"unrar"_s).size() > calls;
        }));
        ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    }
}
