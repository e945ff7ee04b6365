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
        shop.settings().deleteArchiveAfterExtract.set(true);
        unpackerMakes("movie.mkv");
        const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
        const ItemPtr second = onDisk(QStringLiteral("m.part2.rar"));
        shop.sandbox.write(QStringLiteral("Downloads/m/movie.mkv"), "old");
        bool isDone = false;
        shop.trash.onMove([&] {
            if (!std::exchange(isDone, true))
                QMetaObject::invokeMethod(
                    &shop.manager(), [&] { action(*second); }, Qt::BlockingQueuedConnection);
        });
        run(first);
        EXPECT_TRUE(waitUntil([&] { return first->extractionStatus() == ExtractionStatus::idle; }));
        shop.trash.onMove({});
        return {first, second};
    }
};

} // namespace

TEST_F(PostDownloadRunsTest, SurvivesTheRemovalOfTheSetWhileItIsUnpacked)
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

TEST_F(PostDownloadRunsTest, StartsNoSecondRunBesideOneForTheSameSet)
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

TEST_F(PostDownloadRunsTest, StopsARunWhenTheUserWants)
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

TEST_F(PostDownloadRunsTest, BeginsAnewWhenAVolumeOfARunningArchiveIsFetchedAgain)
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

TEST_F(PostDownloadRunsTest, WorksOnTwoArchivesAtATimeInTheOrderOfTheQueue)
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

TEST_F(PostDownloadRunsTest, TakesNoFolderAwayThatAnotherArchiveIsUnpackedInto)
{
    shop.tools.add(QStringLiteral("unrar"), waitForGo() + "; cd \"$6\" && echo x >movie.mkv");
    shop.tools.add(QStringLiteral("7zz"), "cd \"${3#-o}\" && echo x >Mine");
    const ItemPtr set = onDisk(QStringLiteral("m.part1.rar"));
    shop.manager().renameGroup(QStringLiteral("m"), QStringLiteral("Mine"));
    run(set);
    ASSERT_TRUE(waitUntil([&] { return !shop.tools.calls(QStringLiteral("unrar")).isEmpty(); }));
    const ItemPtr other = onDisk(QStringLiteral("x.7z"));
    run(other);
    ASSERT_TRUE(reaches(other, ExtractionStatus::done));
    go();
    ASSERT_TRUE(reaches(set, ExtractionStatus::done));
    EXPECT_TRUE(shop.sandbox.exists(QStringLiteral("Downloads/Mine/Mine.mkv")));
    EXPECT_TRUE(shop.sandbox.exists(QStringLiteral("Downloads/Mine (1)")));
}

TEST_F(PostDownloadRunsTest, RemovesAtTheNextStartWhatAKilledRunLeft)
{
    VORMEL_NEEDS_TOOL("cp");
    const QString downloads = shop.sandbox.folders().downloads;
    const WorkFolder alive = WorkFolder::make(downloads + QStringLiteral("/m"));
    shop.sandbox.write(QDir(shop.sandbox.root()).relativeFilePath(alive.path()) + QStringLiteral("/half"), "half");
    // As a kill leaves it: the same, but held by nobody.
    const QStringList args{QStringLiteral("-a"), downloads + QStringLiteral("/m"), downloads + QStringLiteral("/.n")};
    ASSERT_EQ(runRealTool(QStringLiteral("/usr/bin/cp"), args, downloads).status, 0);
    shop.restart(true);
    constexpr auto hidden = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
    EXPECT_TRUE(waitUntil([&] { return QDir(downloads + QStringLiteral("/.n")).isEmpty(hidden); }));
    EXPECT_TRUE(QFile::exists(alive.path() + QStringLiteral("/half")));
}

TEST_F(PostDownloadRunsTest, LetsTheProgramEndWhileAToolRuns)
{
    shop.tools.add(QStringLiteral("unrar"), waitForGo());
    run(onDisk(QStringLiteral("x.rar")));
    ASSERT_TRUE(waitUntil([&] { return !shop.tools.calls(QStringLiteral("unrar")).isEmpty(); }));
    shop.restart();
    EXPECT_EQ(shop.manager().items().front()->status(), DownloadStatus::completed);
}

TEST_F(PostDownloadRunsTest, UnpacksAFileOnceThatTwoRowsHave)
{
    shop.tools.add(QStringLiteral("7zz"), waitForGo());
    const ItemPtr one = onDisk(QStringLiteral("x.7z"));
    const ItemPtr other = shop.add(QStringLiteral("http://mirror/y.7z"));
    other->setLocalPath(*one->localPath());
    other->setStatus(DownloadStatus::completed);
    run(one);
    ASSERT_TRUE(waitUntil([&] { return !shop.tools.calls(QStringLiteral("7zz")).isEmpty(); }));
    arrive(other);
    EXPECT_EQ(other->extractionStatus(), ExtractionStatus::idle);
    go();
    ASSERT_TRUE(reaches(one, ExtractionStatus::done));
    EXPECT_TRUE(reaches(other, ExtractionStatus::done));
    EXPECT_EQ(shop.tools.calls(QStringLiteral("7zz")).size(), 1);
}

TEST_F(PostDownloadRunsTest, UnpacksForARowThatComesWhenAllIsInItsPlace)
{
    shop.settings().deleteArchiveAfterExtract.set(true);
    shop.tools.add(QStringLiteral("7zz"));
    const ItemPtr one = onDisk(QStringLiteral("x.7z"));
    const ItemPtr other = shop.add(QStringLiteral("http://mirror/y.7z"));
    ExtractionStatus begun = ExtractionStatus::idle;
    shop.trash.onMove([&] {
        const auto ask = [&] {
            other->setLocalPath(*one->localPath());
            other->setStatus(DownloadStatus::completed);
            run(other);
            begun = other->extractionStatus();
        };
        QMetaObject::invokeMethod(&shop.manager(), ask, Qt::BlockingQueuedConnection);
    });
    run(one);
    ASSERT_TRUE(waitUntil([&] { return !(begun == ExtractionStatus::idle); }));
    EXPECT_EQ(one->extractionStatus(), ExtractionStatus::done);
    EXPECT_EQ(begun, ExtractionStatus::extracting);
    EXPECT_TRUE(waitUntil([&] { return !(other->extractionStatus() == ExtractionStatus::extracting); }));
}

TEST_F(PostDownloadRunsTest, DoesNotBeginWhatHasLostItsRowWhileItWaited)
{
    shop.tools.add(QStringLiteral("7zz"), waitForGo());
    std::vector<ItemPtr> items;
    for (const char* name : {"a.7z", "b.7z", "c.7z", "d.7z"})
        items.push_back(onDisk(QString::fromLatin1(name)));
    for (const ItemPtr& item : items)
        run(item);
    shop.manager().commands().removeItems({items[2]->id()});
    go();
    for (const std::size_t begun : {0U, 1U, 3U})
        ASSERT_TRUE(reaches(items[begun], ExtractionStatus::done));
    EXPECT_TRUE(reaches(items[2], ExtractionStatus::idle));
    EXPECT_EQ(shop.tools.calls(QStringLiteral("7zz")).size(), 3);
}

TEST_F(PostDownloadRunsTest, LeavesTheArchiveAloneThatIsFetchedAgainInTheLastMoment)
{
    const auto [first, second] =
        halfPlaced([this](DownloadItem& item) { shop.manager().commands().redownloadItem(item); });
    EXPECT_EQ(second->status(), DownloadStatus::downloading);
    EXPECT_TRUE(QFile::exists(*first->localPath()));
}

TEST_F(PostDownloadRunsTest, LeavesTheArchiveAloneThatIsStoppedInTheLastMoment)
{
    const auto [first, second] = halfPlaced([this](DownloadItem& item) { shop.manager().stopExtraction(item.id()); });
    EXPECT_TRUE(QFile::exists(*first->localPath()));
    EXPECT_TRUE(QFile::exists(*second->localPath()));
    EXPECT_EQ(shop.sandbox.read(QStringLiteral("Trash/movie.mkv")), "old");
    run(first);
    ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    EXPECT_TRUE(waitUntil(
        [&] { return shop.sandbox.files(QStringLiteral("Downloads")) == QStringList{QStringLiteral("m/movie.mkv")}; }));
}

TEST_F(PostDownloadRunsTest, UnpacksASetAgainFromTheRowOfAnyPart)
{
    unpackerMakes("movie.mkv");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    const ItemPtr second = onDisk(QStringLiteral("m.part2.rar"));
    for (const ExtractionStatus& before :
         {ExtractionStatus::failure(QStringLiteral("broken")), ExtractionStatus(ExtractionStatus::done)}) {
        first->setExtractionStatus(before);
        const qsizetype calls = shop.tools.calls(QStringLiteral("unrar")).size();
        // The run before may still be tidying up.
        EXPECT_TRUE(waitUntil([&] {
            run(second);
            return shop.tools.calls(QStringLiteral("unrar")).size() > calls;
        }));
        ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    }
}
