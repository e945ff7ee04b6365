#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

QString filestore(int number)
{
    return u"https://filestore.example/f/%1"_s.arg(number);
}

class FilenamePrefetchTest : public ::testing::Test
{
protected:
    FilenamePrefetchTest()
    {
        engine.manager().accounts().set({account(SupportedHost::filestore), account(SupportedHost::terabytez)});
    }
    void name(std::size_t call, const QString& filename)
    {
        answerWithAddress(log->resolves.at(call), u"https://cdn.example/opaque"_s, filename);
        turnEventLoop();
    }
    void failWith(std::size_t call, const ResolverError& error)
    {
        log->resolves.at(call).answer->deliver(error);
        turnEventLoop();
    }
    [[nodiscard]] std::size_t lookUps() const { return log->resolves.size(); }

    std::shared_ptr<ServiceLog> log = std::make_shared<ServiceLog>();
    EngineOnScript engine{fakeServices(log)};
};

} // namespace

TEST_F(FilenamePrefetchTest, NamesAPausedItemBeforeItStarts)
{
    const ItemPtr item = engine.add(filestore(1));
    EXPECT_EQ(item->status(), DownloadStatus::paused);
    name(0, u"movie.rar"_s);
    EXPECT_EQ(item->filename(), u"movie.rar"_s);
    EXPECT_FALSE(item->resolvedURL());
}

TEST_F(FilenamePrefetchTest, LooksUpFiveAtATime)
{
    QStringList links;
    for (int i = 0; i < 12; ++i)
        links.append(filestore(i));
    engine.add(links);
    EXPECT_EQ(lookUps(), 5U);
    name(2, u"two.rar"_s);
    EXPECT_EQ(lookUps(), 6U);
    for (std::size_t i = 0; i < 12; ++i) {
        if (i != 2)
            name(i, u"f%1.rar"_s.arg(i));
    }
    EXPECT_EQ(lookUps(), 12U);
    EXPECT_EQ(engine.manager().items()[11]->filename(), u"f11.rar"_s);
}

TEST_F(FilenamePrefetchTest, DropsTheSecondOfTwoItemsOfOneName)
{
    const auto items = engine.add({filestore(1), filestore(2)});
    name(0, u"Movie.rar"_s);
    EXPECT_EQ(engine.manager().items().size(), 2U);
    name(1, u"MOVIE.RAR"_s);
    ASSERT_EQ(engine.manager().items().size(), 1U);
    EXPECT_EQ(engine.manager().items()[0], items[0]);
    engine.restart(true);
    EXPECT_EQ(engine.manager().items().size(), 1U);
}

TEST_F(FilenamePrefetchTest, DoesNotCountACompletedItemOfThatName)
{
    const ItemPtr done = engine.add(u"http://h/movie.rar"_s);
    done->setStatus(DownloadStatus::completed);
    engine.add(filestore(1));
    name(0, u"movie.rar"_s);
    EXPECT_EQ(engine.manager().items().size(), 2U);
}

TEST_F(FilenamePrefetchTest, TakesTheNameFromTheLinkWhenTheServiceFindsNothing)
{
    const ItemPtr item = engine.add(u"https://filestore.example/f/name.rar--/"_s);
    item->setFilename(u"other"_s);
    failWith(0, ResolverError::linkNotFound());
    EXPECT_EQ(item->filename(), u"name.rar"_s);
}

TEST_F(FilenamePrefetchTest, IgnoresAnyOtherError)
{
    const ItemPtr item = engine.add(filestore(1));
    failWith(0, ResolverError::authenticationFailed());
    EXPECT_EQ(item->filename(), u"1"_s);
    EXPECT_EQ(item->status(), DownloadStatus::paused);
}

TEST_F(FilenamePrefetchTest, LeavesAnItemAloneThatIsNoLongerWaiting)
{
    const ItemPtr item = engine.add(filestore(1));
    item->setStatus(DownloadStatus::stopped);
    name(0, u"movie.rar"_s);
    EXPECT_EQ(item->filename(), u"1"_s);
}

TEST_F(FilenamePrefetchTest, AsksNobodyWhereNothingCanBeLearnt)
{
    engine.add({u"http://direct/x"_s, u"https://terabytez.example/x"_s, u"https://filestore.example/a.rev"_s});
    EXPECT_EQ(lookUps(), 0U);
    engine.settings().downloadRevFiles.set(true);
    engine.add(u"https://filestore.example/b.rev"_s);
    EXPECT_EQ(lookUps(), 2U);
}

TEST_F(FilenamePrefetchTest, AsksNobodyWithoutAnEnabledAccount)
{
    engine.manager().accounts().set({});
    engine.add(filestore(1));
    EXPECT_EQ(lookUps(), 0U);
}

TEST_F(FilenamePrefetchTest, EndsTheRunBeforeWhenLinksAreAdded)
{
    QStringList links;
    for (int i = 0; i < 7; ++i)
        links.append(filestore(i));
    engine.add(links);
    engine.add(filestore(100));
    // The new run asks for everything that has no address yet, but waits for what is under way.
    EXPECT_EQ(lookUps(), 5U);
    for (std::size_t i = 0; i < 5; ++i) {
        name(i, u"old%1.rar"_s.arg(i));
        EXPECT_EQ(lookUps(), 6U + i);
    }
    EXPECT_EQ(engine.manager().items()[0]->filename(), u"old0.rar"_s);
    EXPECT_EQ(log->resolves[5].url.absoluteString(), filestore(0));
}

TEST_F(FilenamePrefetchTest, LooksUpNoMoreThanFiveNamesHoweverOftenLinksAreAdded)
{
    for (int i = 0; i < 30; ++i)
        engine.add(filestore(i));
    EXPECT_EQ(lookUps(), 5U);
    // The last run comes to its end, and with it to every item.
    for (std::size_t i = 0; i < lookUps(); ++i)
        name(i, u"n%1.rar"_s.arg(i));
    EXPECT_EQ(lookUps(), 35U);
    for (const ItemPtr& item : engine.manager().items())
        EXPECT_TRUE(item->isNameTold());
}

TEST_F(FilenamePrefetchTest, KeepsLinksOfOneNameThatNobodyHasTold)
{
    const auto items = engine.add({u"http://h/get.php?id=1"_s, u"http://h/get.php?id=2"_s, filestore(1)});
    engine.add(u"http://h/get.php?id=3"_s);
    // Not even beside one for which it was told.
    name(0, u"get.php"_s);
    name(1, u"get.php"_s);
    EXPECT_EQ(engine.manager().items().size(), 4U);
}

TEST_F(FilenamePrefetchTest, TakesNoNameReadOffADeadLinkForATwin)
{
    engine.add({u"https://filestore.example/1/x.rar"_s, u"https://filestore.example/2/x.rar"_s});
    failWith(0, ResolverError::linkNotFound());
    failWith(1, ResolverError::linkNotFound());
    EXPECT_EQ(engine.manager().items().size(), 2U);
}

TEST_F(FilenamePrefetchTest, ComparesANameThatAResolveHasTold)
{
    engine.settings().maxConcurrentDownloads.set(1);
    const ItemPtr first = engine.add(filestore(1));
    failWith(0, ResolverError::authenticationFailed());
    engine.manager().commands().startAll();
    turnEventLoop();
    answerWithAddress(log->resolves.at(1), u"https://cdn.example/movie.rar"_s);
    turnEventLoop();
    engine.manager().commands().pauseAll();
    engine.add(filestore(2));
    name(2, u"Movie.rar"_s);
    EXPECT_EQ(engine.manager().items(), std::vector{first});
}

TEST_F(FilenamePrefetchTest, LeavesAFileItsNameThatIsHalfDown)
{
    const ItemPtr item = engine.add(u"https://filestore.example/movie.rar"_s);
    item->setBytesReceived(3);
    name(0, u"other.rar"_s);
    EXPECT_EQ(item->filename(), u"movie.rar");
}

TEST_F(FilenamePrefetchTest, LetsAnItemGoThatANewNameSetsFree)
{
    const ItemPtr running = engine.start(u"http://h/1"_s);
    const ItemPtr waiting = engine.add(filestore(1));
    waiting->setStatus(DownloadStatus::queued);
    engine.manager().processQueue();
    turnEventLoop();
    ASSERT_EQ(waiting->status(), DownloadStatus::queued);
    name(0, u"movie.rar"_s);
    EXPECT_EQ(running->status(), DownloadStatus::downloading);
    EXPECT_EQ(waiting->status(), DownloadStatus::resolving);
}

TEST_F(FilenamePrefetchTest, LooksUpNamesAfterARestart)
{
    engine.add(filestore(1));
    ASSERT_EQ(lookUps(), 1U);
    engine.restart();
    EXPECT_EQ(lookUps(), 2U);
}

TEST_F(FilenamePrefetchTest, SurvivesTheEndOfTheManager)
{
    engine.add(filestore(1));
    engine.restart();
    name(0, u"late.rar"_s);
    EXPECT_EQ(engine.manager().items().at(0)->filename(), u"1"_s);
}
