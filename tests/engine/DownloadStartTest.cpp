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
    const ItemPtr item = shop.start(QStringLiteral("http://h/a.bin"));
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
    EXPECT_EQ(shop.http.last().request.url, QUrl(QStringLiteral("http://h/a.bin")));
    EXPECT_FALSE(item->resolvedURL());
}

TEST_F(DownloadStart, FailsAtOnceWithoutAnAccount)
{
    const ItemPtr item = shop.start(filestoreLink);
    EXPECT_EQ(item->status(), DownloadStatus::failure(QStringLiteral("No account configured for Filestore.example")));
    shop.manager().accounts().set({account(SupportedHost::filestore)});
    shop.manager().processQueue();
    turnEventLoop();
    EXPECT_EQ(item->status().kind(), DownloadStatus::failed);
}

TEST_F(DownloadStart, TakesTheFirstEnabledAccountOfTheHost)
{
    HostAccount disabled = account(SupportedHost::filestore, QStringLiteral("off"));
    disabled.isEnabled = false;
    shop.manager().accounts().set({account(SupportedHost::terabytez, QStringLiteral("other")), disabled,
                                   account(SupportedHost::filestore, QStringLiteral("first")),
                                   account(SupportedHost::filestore, QStringLiteral("second"))});
    shop.start(filestoreLink);
    EXPECT_EQ(log->resolves.back().account.username, QStringLiteral("first"));
}

TEST_F(DownloadStart, IsResolvingWhileTheServiceThinks)
{
    const ItemPtr item = startFilestore();
    EXPECT_EQ(item->status(), DownloadStatus::resolving);
    EXPECT_TRUE(shop.http.exchanges().empty());
    resolveTo(1, QStringLiteral("https://cdn.example/d/movie.rar"));
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
    EXPECT_EQ(item->filename(), QStringLiteral("movie.rar"));
    EXPECT_EQ(shop.http.last().request.url, QUrl(QStringLiteral("https://cdn.example/d/movie.rar")));
    EXPECT_EQ(item->resolvedAt(), shop.clock.wallNow());
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
    shop.manager().commands().pauseAll();
    shop.clock.advance(1199s);
    shop.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(log->resolves.size(), 2U);
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
    shop.manager().commands().pauseAll();
    shop.clock.advance(1s);
    shop.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(log->resolves.size(), 3U);
    EXPECT_EQ(item->status(), DownloadStatus::resolving);
}

TEST_F(DownloadStart, NeverUsesAnAddressThatWasResolvedInTheFuture)
{
    const ItemPtr item = startFilestore();
    resolveTo(1, QStringLiteral("https://cdn.example/d/movie.rar"));
    shop.manager().commands().pauseAll();
    item->setResolvedAt(shop.clock.wallNow() + 1s);
    shop.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(log->resolves.size(), 3U);
    EXPECT_EQ(item->status(), DownloadStatus::resolving);
}

TEST_F(DownloadStart, NeverUsesAResolvedAddressWithoutItsDate)
{
    shop.manager().accounts().set({account(SupportedHost::filestore)});
    const ItemPtr item = shop.add(filestoreLink);
    resolveTo(0, QStringLiteral("https://cdn.example/none"));
    item->setResolvedURL(link(QStringLiteral("https://cdn.example/old.rar")));
    shop.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(log->resolves.size(), 2U);
}

TEST_F(DownloadStart, TakesNoFolderForAFinishedFile)
{
    shop.sandbox.write(QStringLiteral("Downloads/x.bin/inside"), "the user's own");
    const ItemPtr item = shop.start(QStringLiteral("http://h/x.bin"));
    ASSERT_EQ(item->status(), DownloadStatus::downloading);
    shop.http.last().head(200, {{"Content-Length", "1"}});
    shop.http.last().data("x");
    shop.http.last().finish();
    turnEventLoop();
    EXPECT_EQ(shop.sandbox.read(QStringLiteral("Downloads/x (1).bin")), "x");
}

TEST_F(DownloadStart, TakesNoFileOfAnotherItemForItsOwn)
{
    shop.sandbox.write(QStringLiteral("Downloads/get.php"), "first");
    ASSERT_EQ(shop.add(QStringLiteral("http://h/get.php?id=1"))->status(), DownloadStatus::completed);
    const ItemPtr second = shop.add(QStringLiteral("http://h/get.php?id=2"));
    EXPECT_EQ(second->status(), DownloadStatus::paused);
    shop.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(second->status(), DownloadStatus::downloading);
}

TEST_F(DownloadStart, TakesTwoFilesOfOneToldNameForOne)
{
    shop.manager().accounts().set({account(SupportedHost::filestore)});
    const ItemPtr first = shop.add(QStringLiteral("https://filestore.example/f/1"));
    resolveTo(0, QStringLiteral("https://cdn.example/movie.rar"));
    first->setLocalPath(shop.sandbox.write(QStringLiteral("Downloads/movie.rar"), "x"));
    first->setStatus(DownloadStatus::completed);
    const ItemPtr mirror = shop.add(QStringLiteral("https://filestore.example/f/2"));
    resolveTo(1, QStringLiteral("https://cdn.example/movie.rar"));
    shop.manager().commands().startAll();
    turnEventLoop();
    resolveTo(2, QStringLiteral("https://cdn.example/movie.rar"));
    EXPECT_EQ(mirror->status(), DownloadStatus::completed);
    EXPECT_EQ(mirror->localPath(), first->localPath());
}

TEST_F(DownloadStart, LetsTheLinksOfOneScriptRunSideBySideOnceTheirNamesAreTold)
{
    const auto items = shop.add({QStringLiteral("http://h/get.php?id=1"), QStringLiteral("http://h/get.php?id=2"),
                                 QStringLiteral("http://h/get.php?id=3")});
    shop.manager().commands().startAll();
    turnEventLoop();
    for (std::size_t i = 0; i < 3; ++i) {
        ASSERT_EQ(shop.http.exchanges().size(), i + 1);
        shop.http.last().head(
            200, {{"Content-Length", "9"}, {"Content-Disposition", "filename=" + QByteArray::number(int(i)) + ".bin"}});
        turnEventLoop();
    }
    for (const ItemPtr& item : items)
        EXPECT_EQ(item->status(), DownloadStatus::downloading);
}

TEST_F(DownloadStart, ShowsAnyOtherResolveErrorAndStartsTheNext)
{
    shop.settings().maxConcurrentDownloads.set(1);
    const ItemPtr item = startFilestore();
    const ItemPtr next = shop.add(QStringLiteral("http://h/a.bin"));
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
    EXPECT_TRUE(shop.http.exchanges().empty());
}

TEST_F(DownloadStart, StopsAStartThatIsStillResolving)
{
    const ItemPtr item = startFilestore();
    shop.manager().commands().interruptItem(*item, DownloadStatus::stopped);
    resolveTo(1, QStringLiteral("https://cdn.example/d/movie.rar"));
    EXPECT_EQ(item->status(), DownloadStatus::stopped);
    EXPECT_TRUE(shop.http.exchanges().empty());
}

TEST_F(DownloadStart, StartsOnceThoughStoppedAndStartedWhileResolving)
{
    const ItemPtr item = startFilestore();
    shop.manager().commands().interruptItem(*item, DownloadStatus::paused);
    shop.manager().commands().startAll();
    turnEventLoop();
    resolveTo(1, QStringLiteral("https://cdn.example/d/first.rar"));
    EXPECT_TRUE(shop.http.exchanges().empty());
    resolveTo(2, QStringLiteral("https://cdn.example/d/second.rar"));
    EXPECT_EQ(shop.http.exchanges().size(), 1U);
    EXPECT_EQ(item->filename(), QStringLiteral("second.rar"));
}

TEST_F(DownloadStart, ComesToNothingWhenTheItemIsRemovedMeanwhile)
{
    const ItemPtr item = startFilestore();
    shop.manager().commands().removeItems({item->id()});
    resolveTo(1, QStringLiteral("https://cdn.example/d/movie.rar"));
    EXPECT_TRUE(shop.http.exchanges().empty());
    EXPECT_TRUE(shop.manager().items().empty());
}

TEST_F(DownloadStart, SurvivesTheEndOfTheManagerWhileResolving)
{
    startFilestore();
    shop.restart();
    resolveTo(1, QStringLiteral("https://cdn.example/d/movie.rar"));
    EXPECT_TRUE(shop.http.exchanges().empty());
}

TEST_F(DownloadStart, StartsNoItemTwiceHoweverOftenThePassRuns)
{
    const ItemPtr item = shop.add(QStringLiteral("http://h/a.bin"));
    shop.manager().commands().startAll();
    shop.manager().processQueue();
    shop.manager().processQueue();
    turnEventLoop();
    EXPECT_EQ(shop.http.exchanges().size(), 1U);
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
}

TEST_F(DownloadStart, LeavesAnItemAloneThatWasPausedBeforeItsTurn)
{
    const ItemPtr item = shop.add(QStringLiteral("http://h/a.bin"));
    shop.manager().commands().startAll();
    shop.manager().commands().pauseAll();
    turnEventLoop();
    EXPECT_EQ(item->status(), DownloadStatus::paused);
    EXPECT_TRUE(shop.http.exchanges().empty());
}

TEST_F(DownloadStart, LetsARaisedLimitTakeEffectAtTheNextEvent)
{
    shop.settings().maxConcurrentDownloads.set(1);
    const auto items = shop.add({QStringLiteral("http://h/a"), QStringLiteral("http://h/b")});
    shop.manager().commands().startAll();
    turnEventLoop();
    shop.settings().maxConcurrentDownloads.set(2);
    turnEventLoop();
    EXPECT_EQ(items[1]->status(), DownloadStatus::queued);
    shop.manager().processQueue();
    turnEventLoop();
    EXPECT_EQ(items[1]->status(), DownloadStatus::downloading);
}

TEST_F(DownloadStart, RunsAPassWhenRecoveryVolumesAreSwitchedOn)
{
    const auto items = shop.add({QStringLiteral("http://h/x.part1.rar"), QStringLiteral("http://h/x.part1.rev")});
    items[1]->setStatus(DownloadStatus::queued);
    shop.manager().processQueue();
    turnEventLoop();
    EXPECT_EQ(items[1]->status(), DownloadStatus::queued);
    shop.settings().downloadRevFiles.set(true);
    turnEventLoop();
    EXPECT_EQ(items[1]->status(), DownloadStatus::downloading);
}

TEST_F(DownloadStart, FetchesNoRecoveryVolumeOnceItsSetIsCompleteOrGone)
{
    shop.settings().downloadRevFiles.set(true);
    const ItemPtr rev = shop.add(QStringLiteral("http://h/x.part1.rev"));
    rev->setStatus(DownloadStatus::queued);
    shop.manager().processQueue();
    turnEventLoop();
    EXPECT_EQ(rev->status(), DownloadStatus::queued);
    shop.sandbox.write(QStringLiteral("Downloads/x/x.part1.rar"), "complete");
    const ItemPtr rar = shop.add(QStringLiteral("http://h/x.part1.rar"));
    ASSERT_EQ(rar->status(), DownloadStatus::completed);
    EXPECT_EQ(rev->status(), DownloadStatus::queued);
    rar->setStatus(DownloadStatus::paused);
    shop.manager().processQueue();
    turnEventLoop();
    EXPECT_EQ(rev->status(), DownloadStatus::downloading);
}
