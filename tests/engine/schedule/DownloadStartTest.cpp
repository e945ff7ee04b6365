#include "engine/ScriptedService.h"

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;

namespace {

class DownloadStart : public ScriptedService
{};

} // namespace

TEST_F(DownloadStart, FetchesADirectLinkWithoutAnAccount)
{
    const ItemPtr item = engine.start(u"http://h/a.bin"_s);
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
    EXPECT_EQ(engine.http.last().request.url, QUrl(u"http://h/a.bin"_s));
    EXPECT_FALSE(item->resolvedURL());
}

TEST_F(DownloadStart, FailsAtOnceWithoutAnAccount)
{
    const ItemPtr item = engine.start(filestoreLink);
    EXPECT_EQ(item->status(), DownloadStatus::failure(u"No account configured for Filestore.example"_s));
    engine.manager().accounts().set({account(SupportedHost::filestore)});
    engine.manager().processQueue();
    turnEventLoop();
    EXPECT_EQ(item->status().kind(), DownloadStatus::failed);
}

TEST_F(DownloadStart, TakesTheFirstEnabledAccountOfTheHost)
{
    HostAccount disabled = account(SupportedHost::filestore, u"off"_s);
    disabled.isEnabled = false;
    engine.manager().accounts().set({account(SupportedHost::terabytez, u"other"_s), disabled,
                                     account(SupportedHost::filestore, u"first"_s),
                                     account(SupportedHost::filestore, u"second"_s)});
    engine.start(filestoreLink);
    EXPECT_EQ(log->resolves.back().account.username, u"first"_s);
}

TEST_F(DownloadStart, IsResolvingWhileTheServiceThinks)
{
    const ItemPtr item = startFilestore();
    EXPECT_EQ(item->status(), DownloadStatus::resolving);
    EXPECT_TRUE(engine.http.exchanges().empty());
    resolveTo(1, u"https://cdn.example/d/movie.rar"_s);
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
    EXPECT_EQ(item->filename(), u"movie.rar"_s);
    EXPECT_EQ(engine.http.last().request.url, QUrl(u"https://cdn.example/d/movie.rar"_s));
    EXPECT_EQ(item->resolvedAt(), engine.clock.wallNow());
}

TEST_F(DownloadStart, TakesTheNamesInTheirOrder)
{
    const ItemPtr item = startFilestore();
    resolveTo(1, u"https://cdn.example/d/opaque"_s, u"told.rar"_s);
    EXPECT_EQ(item->filename(), u"told.rar"_s);
}

TEST_F(DownloadStart, KeepsItsNameWhenNoneIsTold)
{
    const ItemPtr item = startFilestore();
    resolveTo(1, u"https://cdn.example/d/opaque"_s, QString());
    EXPECT_EQ(item->filename(), u"abc"_s);
}

TEST_F(DownloadStart, UsesAResolvedAddressForLessThan1200Seconds)
{
    const ItemPtr item = startFilestore();
    resolveTo(1, u"https://cdn.example/d/movie.rar"_s);
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
    resolveTo(1, u"https://cdn.example/d/movie.rar"_s);
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
    resolveTo(0, u"https://cdn.example/none"_s);
    item->setResolvedURL(link(u"https://cdn.example/old.rar"_s));
    engine.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(log->resolves.size(), 2U);
}

TEST_F(DownloadStart, TakesNoFolderForAFinishedFile)
{
    engine.sandbox.write(u"Downloads/x.bin/inside"_s, "the user's own");
    const ItemPtr item = engine.start(u"http://h/x.bin"_s);
    ASSERT_EQ(item->status(), DownloadStatus::downloading);
    engine.http.last().head(200, {{"Content-Length", "1"}});
    engine.http.last().data("x");
    engine.http.last().finish();
    turnEventLoop();
    EXPECT_EQ(engine.sandbox.read(u"Downloads/x (1).bin"_s), "x");
}

TEST_F(DownloadStart, TakesNoFileOfAnotherItemForItsOwn)
{
    engine.sandbox.write(u"Downloads/get.php"_s, "first");
    ASSERT_EQ(engine.add(u"http://h/get.php?id=1"_s)->status(), DownloadStatus::completed);
    const ItemPtr second = engine.add(u"http://h/get.php?id=2"_s);
    EXPECT_EQ(second->status(), DownloadStatus::paused);
    engine.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(second->status(), DownloadStatus::downloading);
}

TEST_F(DownloadStart, TakesTwoFilesOfOneToldNameForOne)
{
    engine.manager().accounts().set({account(SupportedHost::filestore)});
    const ItemPtr first = engine.add(u"https://filestore.example/f/1"_s);
    resolveTo(0, u"https://cdn.example/movie.rar"_s);
    first->setLocalPath(engine.sandbox.write(u"Downloads/movie.rar"_s, "x"));
    first->setStatus(DownloadStatus::completed);
    const ItemPtr mirror = engine.add(u"https://filestore.example/f/2"_s);
    resolveTo(1, u"https://cdn.example/movie.rar"_s);
    engine.manager().commands().startAll();
    turnEventLoop();
    resolveTo(2, u"https://cdn.example/movie.rar"_s);
    EXPECT_EQ(mirror->status(), DownloadStatus::completed);
    EXPECT_EQ(mirror->localPath(), first->localPath());
}

TEST_F(DownloadStart, LetsTheLinksOfOneScriptRunSideBySideOnceTheirNamesAreTold)
{
    const auto items = engine.add({u"http://h/get.php?id=1"_s, u"http://h/get.php?id=2"_s, u"http://h/get.php?id=3"_s});
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
    const ItemPtr next = engine.add(u"http://h/a.bin"_s);
    next->setStatus(DownloadStatus::queued);
    answer(1, ResolverError::linkNotFound());
    EXPECT_EQ(item->status(), DownloadStatus::failure(u"Direct link not found"_s));
    EXPECT_EQ(next->status(), DownloadStatus::downloading);
}

TEST_F(DownloadStart, HoldsARecoveryVolumeBackThatGetsItsNameOnlyByResolving)
{
    const ItemPtr item = startFilestore();
    resolveTo(1, u"https://cdn.example/d/movie.part1.rev"_s);
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    EXPECT_TRUE(engine.http.exchanges().empty());
}

TEST_F(DownloadStart, StopsAStartThatIsStillResolving)
{
    const ItemPtr item = startFilestore();
    engine.manager().commands().interruptItem(*item, DownloadStatus::stopped);
    resolveTo(1, u"https://cdn.example/d/movie.rar"_s);
    EXPECT_EQ(item->status(), DownloadStatus::stopped);
    EXPECT_TRUE(engine.http.exchanges().empty());
}

TEST_F(DownloadStart, StartsOnceThoughStoppedAndStartedWhileResolving)
{
    const ItemPtr item = startFilestore();
    engine.manager().commands().interruptItem(*item, DownloadStatus::paused);
    engine.manager().commands().startAll();
    turnEventLoop();
    resolveTo(1, u"https://cdn.example/d/first.rar"_s);
    EXPECT_TRUE(engine.http.exchanges().empty());
    resolveTo(2, u"https://cdn.example/d/second.rar"_s);
    EXPECT_EQ(engine.http.exchanges().size(), 1U);
    EXPECT_EQ(item->filename(), u"second.rar"_s);
}

TEST_F(DownloadStart, ComesToNothingWhenTheItemIsRemovedMeanwhile)
{
    const ItemPtr item = startFilestore();
    engine.manager().commands().removeItems({item->id()});
    resolveTo(1, u"https://cdn.example/d/movie.rar"_s);
    EXPECT_TRUE(engine.http.exchanges().empty());
    EXPECT_TRUE(engine.manager().items().empty());
}

TEST_F(DownloadStart, SurvivesTheEndOfTheManagerWhileResolving)
{
    startFilestore();
    engine.restart();
    resolveTo(1, u"https://cdn.example/d/movie.rar"_s);
    EXPECT_TRUE(engine.http.exchanges().empty());
}

TEST_F(DownloadStart, StartsNoItemTwiceHoweverOftenThePassRuns)
{
    const ItemPtr item = engine.add(u"http://h/a.bin"_s);
    engine.manager().commands().startAll();
    engine.manager().processQueue();
    engine.manager().processQueue();
    turnEventLoop();
    EXPECT_EQ(engine.http.exchanges().size(), 1U);
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
}

TEST_F(DownloadStart, LeavesAnItemAloneThatWasPausedBeforeItsTurn)
{
    const ItemPtr item = engine.add(u"http://h/a.bin"_s);
    engine.manager().commands().startAll();
    engine.manager().commands().pauseAll();
    turnEventLoop();
    EXPECT_EQ(item->status(), DownloadStatus::paused);
    EXPECT_TRUE(engine.http.exchanges().empty());
}

TEST_F(DownloadStart, LetsARaisedLimitTakeEffectAtTheNextEvent)
{
    engine.settings().maxConcurrentDownloads.set(1);
    const auto items = engine.add({u"http://h/a"_s, u"http://h/b"_s});
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
    const auto items = engine.add({u"http://h/x.part1.rar"_s, u"http://h/x.part1.rev"_s});
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
    const ItemPtr rev = engine.add(u"http://h/x.part1.rev"_s);
    rev->setStatus(DownloadStatus::queued);
    engine.manager().processQueue();
    turnEventLoop();
    EXPECT_EQ(rev->status(), DownloadStatus::queued);
    engine.sandbox.write(u"Downloads/x/x.part1.rar"_s, "complete");
    const ItemPtr rar = engine.add(u"http://h/x.part1.rar"_s);
    ASSERT_EQ(rar->status(), DownloadStatus::completed);
    EXPECT_EQ(rev->status(), DownloadStatus::queued);
    rar->setStatus(DownloadStatus::paused);
    engine.manager().processQueue();
    turnEventLoop();
    EXPECT_EQ(rev->status(), DownloadStatus::downloading);
}
