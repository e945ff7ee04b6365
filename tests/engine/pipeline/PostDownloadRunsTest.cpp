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

class PostDownloadRunsTest : public ::testing::Test, protected ArchiveStep
{
protected:
    /// A set of two volumes; what is done to the second one comes while the files that were unpacked are placed.
    std::pair<ItemPtr, ItemPtr> halfPlaced(const std::function<void(DownloadItem&)>& action)
    {
        engine.settings().deleteArchiveAfterExtract.set(true);
        unpackerMakes("movie.mkv");
        const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
        const ItemPtr second = onDisk(QStringLiteral("m.part2.rar"));
        engine.sandbox.write(QStringLiteral("Downloads/m/movie.mkv"), "old");
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
        engine.tools.add(QStringLiteral("unrar"), waitForGo() + "; " + end);
        engine.tools.add(QStringLiteral("rar"), "exit 10");
        const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
        run(first);
        engine.manager().commands().removeGroup(QStringLiteral("m"));
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
    engine.tools.add(QStringLiteral("unrar"), waitForGo());
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    const ItemPtr second = onDisk(QStringLiteral("m.part2.rar"));
    run(first);
    ASSERT_TRUE(waitUntil([&] { return engine.tools.calls(QStringLiteral("unrar")).size() == 1; }));
    for (const ItemPtr& item : {first, second}) {
        engine.manager().commands().retryExtraction(item->id());
        item->setExtractionStatus(ExtractionStatus::idle);
        arrive(item);
    }
    go();
    ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    turnEventLoop();
    EXPECT_EQ(engine.tools.calls(QStringLiteral("unrar")).size(), 1);
}

TEST_F(PostDownloadRunsTest, StopsARunWhenTheUserWants)
{
    engine.tools.add(QStringLiteral("unrar"), "cd \"$6\"; echo half >half; exec sleep 600");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    const ItemPtr second = onDisk(QStringLiteral("m.part2.rar"));
    run(first);
    ASSERT_TRUE(waitUntil([&] { return !engine.tools.calls(QStringLiteral("unrar")).isEmpty(); }));
    engine.manager().commands().stopExtraction(second->id());
    ASSERT_TRUE(reaches(first, ExtractionStatus::idle));
    EXPECT_EQ(engine.sandbox.files(QStringLiteral("Downloads")),
              (QStringList{QStringLiteral("m/m.part1.rar"), QStringLiteral("m/m.part2.rar")}));
    unpackerMakes("movie.mkv");
    run(first);
    EXPECT_TRUE(reaches(first, ExtractionStatus::done));
}

TEST_F(PostDownloadRunsTest, BeginsAnewWhenAVolumeOfARunningArchiveIsFetchedAgain)
{
    engine.tools.add(QStringLiteral("unrar"), "exec sleep 600");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    const ItemPtr second = onDisk(QStringLiteral("m.part2.rar"));
    run(first);
    ASSERT_TRUE(waitUntil([&] { return !engine.tools.calls(QStringLiteral("unrar")).isEmpty(); }));
    unpackerMakes("movie.mkv");
    engine.manager().commands().redownloadItem(*second);
    turnEventLoop();
    engine.http.last().head(200, {{"Content-Length", "1"}});
    engine.http.last().data("x");
    engine.http.last().finish(); // maybe before the tool has ended
    ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    EXPECT_EQ(engine.tools.calls(QStringLiteral("unrar")).size(), 2);
    EXPECT_TRUE(engine.sandbox.exists(QStringLiteral("Downloads/m/movie.mkv")));
}

TEST_F(PostDownloadRunsTest, WorksOnTwoArchivesAtATimeInTheOrderOfTheQueue)
{
    engine.tools.add(QStringLiteral("unrar"), waitForGo());
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
    ASSERT_TRUE(waitUntil([&] { return engine.tools.calls(QStringLiteral("unrar")).size() == 2; }));
    engine.manager().commands().stopExtraction(items[3]->id());
    EXPECT_EQ(items[3]->extractionStatus(), ExtractionStatus::idle);
    EXPECT_FALSE(items[3]->awaitsExtractionTurn());
    order.clear();
    engine.clock.advance(std::chrono::seconds(7));
    go();
    for (const ItemPtr& item : {items[0], items[1], items[2], items[4]})
        ASSERT_TRUE(reaches(item, ExtractionStatus::done));
    EXPECT_EQ(order, (QStringList{QStringLiteral("c.rar"), QStringLiteral("e.rar")}));
    EXPECT_EQ(items[4]->extractionStartedAt(), engine.clock.wallNow());
    EXPECT_EQ(engine.tools.calls(QStringLiteral("unrar")).size(), 4);
}

TEST_F(PostDownloadRunsTest, TakesNoFolderAwayThatAnotherArchiveIsUnpackedInto)
{
    engine.tools.add(QStringLiteral("unrar"), waitForGo() + "; cd \"$6\" && echo x >movie.mkv");
    engine.tools.add(QStringLiteral("7zz"), "cd \"${3#-o}\" && echo x >Mine");
    const ItemPtr set = onDisk(QStringLiteral("m.part1.rar"));
    engine.manager().renameGroup(QStringLiteral("m"), QStringLiteral("Mine"));
    run(set);
    ASSERT_TRUE(waitUntil([&] { return !engine.tools.calls(QStringLiteral("unrar")).isEmpty(); }));
    const ItemPtr other = onDisk(QStringLiteral("x.7z"));
    run(other);
    ASSERT_TRUE(reaches(other, ExtractionStatus::done));
    go();
    ASSERT_TRUE(reaches(set, ExtractionStatus::done));
    EXPECT_TRUE(engine.sandbox.exists(QStringLiteral("Downloads/Mine/Mine.mkv")));
    EXPECT_TRUE(engine.sandbox.exists(QStringLiteral("Downloads/Mine (1)")));
}

TEST_F(PostDownloadRunsTest, RemovesAtTheNextStartWhatAKilledRunLeft)
{
    VORMEL_NEEDS_TOOL("cp");
    const QString downloads = engine.sandbox.folders().downloads;
    const WorkFolder alive = WorkFolder::make(downloads + QStringLiteral("/m"));
    engine.sandbox.write(QDir(engine.sandbox.root()).relativeFilePath(alive.path()) + QStringLiteral("/half"), "half");
    // As a kill leaves it: the same, but held by nobody.
    const QStringList args{QStringLiteral("-a"), downloads + QStringLiteral("/m"), downloads + QStringLiteral("/.n")};
    ASSERT_EQ(runRealTool(QStringLiteral("/usr/bin/cp"), args, downloads).status, 0);
    engine.restart(true);
    constexpr auto hidden = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
    EXPECT_TRUE(waitUntil([&] { return QDir(downloads + QStringLiteral("/.n")).isEmpty(hidden); }));
    EXPECT_TRUE(QFile::exists(alive.path() + QStringLiteral("/half")));
}

TEST_F(PostDownloadRunsTest, LetsTheProgramEndWhileAToolRuns)
{
    engine.tools.add(QStringLiteral("unrar"), waitForGo());
    run(onDisk(QStringLiteral("x.rar")));
    ASSERT_TRUE(waitUntil([&] { return !engine.tools.calls(QStringLiteral("unrar")).isEmpty(); }));
    engine.restart();
    EXPECT_EQ(engine.manager().items().front()->status(), DownloadStatus::completed);
}

TEST_F(PostDownloadRunsTest, UnpacksAFileOnceThatTwoRowsHave)
{
    engine.tools.add(QStringLiteral("7zz"), waitForGo());
    const ItemPtr one = onDisk(QStringLiteral("x.7z"));
    const ItemPtr other = engine.add(QStringLiteral("http://mirror/y.7z"));
    other->setLocalPath(*one->localPath());
    other->setStatus(DownloadStatus::completed);
    run(one);
    ASSERT_TRUE(waitUntil([&] { return !engine.tools.calls(QStringLiteral("7zz")).isEmpty(); }));
    arrive(other);
    EXPECT_EQ(other->extractionStatus(), ExtractionStatus::idle);
    go();
    ASSERT_TRUE(reaches(one, ExtractionStatus::done));
    EXPECT_TRUE(reaches(other, ExtractionStatus::done));
    EXPECT_EQ(engine.tools.calls(QStringLiteral("7zz")).size(), 1);
}

TEST_F(PostDownloadRunsTest, UnpacksForARowThatComesWhenAllIsInItsPlace)
{
    engine.settings().deleteArchiveAfterExtract.set(true);
    engine.tools.add(QStringLiteral("7zz"));
    const ItemPtr one = onDisk(QStringLiteral("x.7z"));
    const ItemPtr other = engine.add(QStringLiteral("http://mirror/y.7z"));
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
    engine.tools.add(QStringLiteral("7zz"), waitForGo());
    std::vector<ItemPtr> items;
    for (const char* name : {"a.7z", "b.7z", "c.7z", "d.7z"})
        items.push_back(onDisk(QString::fromLatin1(name)));
    for (const ItemPtr& item : items)
        run(item);
    engine.manager().commands().removeItems({items[2]->id()});
    go();
    ASSERT_TRUE(reaches(items[3], ExtractionStatus::done));
    EXPECT_EQ(engine.tools.calls(QStringLiteral("7zz")).size(), 3);
    EXPECT_EQ(items[2]->extractionStatus(), ExtractionStatus::idle);
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
    EXPECT_EQ(engine.sandbox.read(QStringLiteral("Trash/movie.mkv")), "old");
    run(first);
    ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    EXPECT_TRUE(waitUntil(
        [&] { return engine.sandbox.files(QStringLiteral("Downloads")) == QStringList{QStringLiteral("m/movie.mkv")}; }));
}

TEST_F(PostDownloadRunsTest, UnpacksASetAgainFromTheRowOfAnyPart)
{
    unpackerMakes("movie.mkv");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    const ItemPtr second = onDisk(QStringLiteral("m.part2.rar"));
    for (const ExtractionStatus& before :
         {ExtractionStatus::failure(QStringLiteral("broken")), ExtractionStatus(ExtractionStatus::done)}) {
        first->setExtractionStatus(before);
        const qsizetype calls = engine.tools.calls(QStringLiteral("unrar")).size();
        // The run before may still be tidying up.
        EXPECT_TRUE(waitUntil([&] {
            run(second);
            return engine.tools.calls(QStringLiteral("unrar")).size() > calls;
        }));
        ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    }
}
