#include "engine/ScriptedService.h"

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;

namespace {

class DownloadStart : public ScriptedService
{};

} // namespace

TEST_F(DownloadStart, FetchesADirectLinkWithoutAnAccount)
{
    const ItemPtr item = engine.start(QStringLiteral("http://h/a.bin"));
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
    EXPECT_EQ(engine.http.last().request.url, QUrl(QStringLiteral("http://h/a.bin")));
    EXPECT_FALSE(item->resolvedURL());
}

TEST_F(DownloadStart, FailsAtOnceWithoutAnAccount)
{
    const ItemPtr item = engine.start(filestoreLink);
    EXPECT_EQ(item->status(), DownloadStatus::failure(QStringLiteral("No account configured for Filestore.example")));
    engine.manager().accounts().set({account(SupportedHost::filestore)});
    engine.manager().processQueue();
    turnEventLoop();
    EXPECT_EQ(item->status().kind(), DownloadStatus::failed);
}

TEST_F(DownloadStart, TakesTheFirstEnabledAccountOfTheHost)
{
    HostAccount disabled = account(SupportedHost::filestore, QStringLiteral("off"));
    disabled.isEnabled = false;
    engine.manager().accounts().set({account(SupportedHost::terabytez, QStringLiteral("other")), disabled,
                                   account(SupportedHost::filestore, QStringLiteral("first")),
                                   account(SupportedHost::filestore, QStringLiteral("second"))});
    engine.start(filestoreLink);
    EXPECT_EQ(log->resolves.back().account.username, QStringLiteral("first"));
}

TEST_F(DownloadStart, IsResolvingWhileTheServiceThinks)
{
    const ItemPtr item = startFilestore();
    EXPECT_EQ(item->status(), DownloadStatus::resolving);
    EXPECT_TRUE(engine.http.exchanges().empty());
    resolveTo(1, QStringLiteral("https://cdn.example/d/movie.rar"));
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
    EXPECT_EQ(item->filename(), QStringLiteral("movie.rar"));
    EXPECT_EQ(engine.http.last().request.url, QUrl(QStringLiteral("https://cdn.example/d/movie.rar")));
    EXPECT_EQ(item->resolvedAt(), engine.clock.wallNow());
}

TEST_F(DownloadStart, TakesTheNamesInTheirOrder)
{
    const ItemPtr item = startFilestore();
    resolveTo(1, QStringLiteral("https://cdn.example/d/opaque"), QStringLiteral("told.rar"));
    EXPECT_EQ(item->filename(), QStringLiteral("told.rar"));
}

TEST_F(DownloadStart, KeepsItsNameWhenNoneIsTold)
{
    const ItemPtr item = startFilestore();
    resolveTo(1, QStringLiteral("https://cdn.example/d/opaque"), QString());
    EXPECT_EQ(item->filename(), QStringLiteral("abc"));
}

TEST_F(DownloadStart, UsesAResolvedAddressForLessThan1200Seconds)
{
    const ItemPtr item = startFilestore();
    resolveTo(1, QStringLiteral("https://cdn.example/d/movie.rar"));
    engine.manager().commands().pauseAll();
    engine.clock.advance(1199s);
    engine.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(log->resolves.size(), 2U);
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
    engine.manager().commands().pauseAll();
    engine.clock.advance(1s);
    engine.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(log->resolves.size(), 3U);
    EXPECT_EQ(item->status(), DownloadStatus::resolving);
}

TEST_F(DownloadStart, NeverUsesAnAddressThatWasResolvedInTheFuture)
{
    const ItemPtr item = startFilestore();
    resolveTo(1, QStringLiteral("https://cdn.example/d/movie.rar"));
    engine.manager().commands().pauseAll();
    item->setResolvedAt(engine.clock.wallNow() + 1s);
    engine.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(log->resolves.size(), 3U);
    EXPECT_EQ(item->status(), DownloadStatus::resolving);
}

TEST_F(DownloadStart, NeverUsesAResolvedAddressWithoutItsDate)
{
    engine.manager().accounts().set({account(SupportedHost::filestore)});
    const ItemPtr item = engine.add(filestoreLink);
    resolveTo(0, QStringLiteral("https://cdn.example/none"));
    item->setResolvedURL(link(QStringLiteral("https://cdn.example/old.rar")));
    engine.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(log->resolves.size(), 2U);
}

TEST_F(DownloadStart, TakesNoFolderForAFinishedFile)
{
    engine.sandbox.write(QStringLiteral("Downloads/x.bin/inside"), "the user's own");
    const ItemPtr item = engine.start(QStringLiteral("http://h/x.bin"));
    ASSERT_EQ(item->status(), DownloadStatus::downloading);
    engine.http.last().head(200, {{"Content-Length", "1"}});
    engine.http.last().data("x");
    engine.http.last().finish();
    turnEventLoop();
    EXPECT_EQ(engine.sandbox.read(QStringLiteral("Downloads/x (1).bin")), "x");
}

TEST_F(DownloadStart, TakesNoFileOfAnotherItemForItsOwn)
{
    engine.sandbox.write(QStringLiteral("Downloads/get.php"), "first");
    ASSERT_EQ(engine.add(QStringLiteral("http://h/get.php?id=1"))->status(), DownloadStatus::completed);
    const ItemPtr second = engine.add(QStringLiteral("http://h/get.php?id=2"));
    EXPECT_EQ(second->status(), DownloadStatus::paused);
    engine.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(second->status(), DownloadStatus::downloading);
}

TEST_F(DownloadStart, TakesTwoFilesOfOneToldNameForOne)
{
    engine.manager().accounts().set({account(SupportedHost::filestore)});
    const ItemPtr first = engine.add(QStringLiteral("https://filestore.example/f/1"));
    resolveTo(0, QStringLiteral("https://cdn.example/movie.rar"));
    first->setLocalPath(engine.sandbox.write(QStringLiteral("Downloads/movie.rar"), "x"));
    first->setStatus(DownloadStatus::completed);
    const ItemPtr mirror = engine.add(QStringLiteral("https://filestore.example/f/2"));
    resolveTo(1, QStringLiteral("https://cdn.example/movie.rar"));
    engine.manager().commands().startAll();
    turnEventLoop();
    resolveTo(2, QStringLiteral("https://cdn.example/movie.rar"));
    EXPECT_EQ(mirror->status(), DownloadStatus::completed);
    EXPECT_EQ(mirror->localPath(), first->localPath());
}

TEST_F(DownloadStart, LetsTheLinksOfOneScriptRunSideBySideOnceTheirNamesAreTold)
{
    const auto items = engine.add({QStringLiteral("http://h/get.php?id=1"), QStringLiteral("http://h/get.php?id=2"),
                                 QStringLiteral("http://h/get.php?id=3")});
    engine.manager().commands().startAll();
    turnEventLoop();
    for (std::size_t i = 0; i < 3; ++i) {
        ASSERT_EQ(engine.http.exchanges().size(), i + 1);
        engine.http.last().head(
            200, {{"Content-Length", "9"}, {"Content-Disposition", "filename=" + QByteArray::number(int(i)) + ".bin"}});
        turnEventLoop();
    }
    for (const ItemPtr& item : items)
        EXPECT_EQ(item->status(), DownloadStatus::downloading);
}

TEST_F(DownloadStart, ShowsAnyOtherResolveErrorAndStartsTheNext)
{
    engine.settings().maxConcurrentDownloads.set(1);
    const ItemPtr item = startFilestore();
    const ItemPtr next = engine.add(QStringLiteral("http://h/a.bin"));
    next->setStatus(DownloadStatus::queued);
    answer(1, ResolverError::linkNotFound());
    EXPECT_EQ(item->status(), DownloadStatus::failure(QStringLiteral("Direct link not found")));
    EXPECT_EQ(next->status(), DownloadStatus::downloading);
}

TEST_F(DownloadStart, HoldsARecoveryVolumeBackThatGetsItsNameOnlyByResolving)
{
    const ItemPtr item = startFilestore();
    resolveTo(1, QStringLiteral("https://cdn.example/d/movie.part1.rev"));
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    EXPECT_TRUE(engine.http.exchanges().empty());
}

TEST_F(DownloadStart, StopsAStartThatIsStillResolving)
{
    const ItemPtr item = startFilestore();
    engine.manager().commands().interruptItem(*item, DownloadStatus::stopped);
    resolveTo(1, QStringLiteral("https://cdn.example/d/movie.rar"));
    EXPECT_EQ(item->status(), DownloadStatus::stopped);
    EXPECT_TRUE(engine.http.exchanges().empty());
}

TEST_F(DownloadStart, StartsOnceThoughStoppedAndStartedWhileResolving)
{
    const ItemPtr item = startFilestore();
    engine.manager().commands().interruptItem(*item, DownloadStatus::paused);
    engine.manager().commands().startAll();
    turnEventLoop();
    resolveTo(1, QStringLiteral("https://cdn.example/d/first.rar"));
    EXPECT_TRUE(engine.http.exchanges().empty());
    resolveTo(2, QStringLiteral("https://cdn.example/d/second.rar"));
    EXPECT_EQ(engine.http.exchanges().size(), 1U);
    EXPECT_EQ(item->filename(), QStringLiteral("second.rar"));
}

TEST_F(DownloadStart, ComesToNothingWhenTheItemIsRemovedMeanwhile)
{
    const ItemPtr item = startFilestore();
    engine.manager().commands().removeItems({item->id()});
    resolveTo(1, QStringLiteral("https://cdn.example/d/movie.rar"));
    EXPECT_TRUE(engine.http.exchanges().empty());
    EXPECT_TRUE(engine.manager().items().empty());
}

TEST_F(DownloadStart, SurvivesTheEndOfTheManagerWhileResolving)
{
    startFilestore();
    engine.restart();
    resolveTo(1, QStringLiteral("https://cdn.example/d/movie.rar"));
    EXPECT_TRUE(engine.http.exchanges().empty());
}

TEST_F(DownloadStart, StartsNoItemTwiceHoweverOftenThePassRuns)
{
    const ItemPtr item = engine.add(QStringLiteral("http://h/a.bin"));
    engine.manager().commands().startAll();
    engine.manager().processQueue();
    engine.manager().processQueue();
    turnEventLoop();
    EXPECT_EQ(engine.http.exchanges().size(), 1U);
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
}

TEST_F(DownloadStart, LeavesAnItemAloneThatWasPausedBeforeItsTurn)
{
    const ItemPtr item = engine.add(QStringLiteral("http://h/a.bin"));
    engine.manager().commands().startAll();
    engine.manager().commands().pauseAll();
    turnEventLoop();
    EXPECT_EQ(item->status(), DownloadStatus::paused);
    EXPECT_TRUE(engine.http.exchanges().empty());
}

TEST_F(DownloadStart, LetsARaisedLimitTakeEffectAtTheNextEvent)
{
    engine.settings().maxConcurrentDownloads.set(1);
    const auto items = engine.add({QStringLiteral("http://h/a"), QStringLiteral("http://h/b")});
    engine.manager().commands().startAll();
    turnEventLoop();
    engine.settings().maxConcurrentDownloads.set(2);
    turnEventLoop();
    EXPECT_EQ(items[1]->status(), DownloadStatus::queued);
    engine.manager().processQueue();
    turnEventLoop();
    EXPECT_EQ(items[1]->status(), DownloadStatus::downloading);
}

TEST_F(DownloadStart, RunsAPassWhenRecoveryVolumesAreSwitchedOn)
{
    const auto items = engine.add({QStringLiteral("http://h/x.part1.rar"), QStringLiteral("http://h/x.part1.rev")});
    items[1]->setStatus(DownloadStatus::queued);
    engine.manager().processQueue();
    turnEventLoop();
    EXPECT_EQ(items[1]->status(), DownloadStatus::queued);
    engine.settings().downloadRevFiles.set(true);
    turnEventLoop();
    EXPECT_EQ(items[1]->status(), DownloadStatus::downloading);
}

TEST_F(DownloadStart, FetchesNoRecoveryVolumeOnceItsSetIsCompleteOrGone)
{
    engine.settings().downloadRevFiles.set(true);
    const ItemPtr rev = engine.add(QStringLiteral("http://h/x.part1.rev"));
    rev->setStatus(DownloadStatus::queued);
    engine.manager().processQueue();
    turnEventLoop();
    EXPECT_EQ(rev->status(), DownloadStatus::queued);
    engine.sandbox.write(QStringLiteral("Downloads/x/x.part1.rar"), "complete");
    const ItemPtr rar = engine.add(QStringLiteral("http://h/x.part1.rar"));
    ASSERT_EQ(rar->status(), DownloadStatus::completed);
    EXPECT_EQ(rev->status(), DownloadStatus::queued);
    rar->setStatus(DownloadStatus::paused);
    engine.manager().processQueue();
    turnEventLoop();
    EXPECT_EQ(rev->status(), DownloadStatus::downloading);
}
