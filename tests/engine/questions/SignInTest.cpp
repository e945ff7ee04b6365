#include "engine/ScriptedService.h"

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// Items whose host asks the user to sign in.
class SignIn : public ScriptedService
{};

} // namespace

TEST_F(SignIn, HoldsItemsBackUntilTheUserHasSignedIn)
{
    engine.settings().maxConcurrentDownloads.set(1);
    const ItemPtr item = startFilestore();
    const ItemPtr direct = engine.add(u"http://h/a.bin"_s);
    direct->setStatus(DownloadStatus::queued);
    answer(1, loginRequired(SupportedHost::filestore));
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    EXPECT_EQ(engine.manager().questions().pendingLogin(), SupportedHost::filestore);
    EXPECT_EQ(direct->status(), DownloadStatus::downloading);
    engine.http.last().head(200, {{"Content-Length", "0"}});
    engine.http.last().finish();
    turnEventLoop();
    EXPECT_EQ(log->resolves.size(), 2U);
    engine.manager().questions().loginSucceeded();
    turnEventLoop();
    EXPECT_EQ(engine.manager().questions().pendingLogin(), std::nullopt);
    EXPECT_EQ(log->resolves.size(), 3U);
    EXPECT_EQ(item->status(), DownloadStatus::resolving);
}

TEST_F(SignIn, IsNotAskedForByAnItemThatWasStoppedBeforeItTurnedOutToBeMissing)
{
    const ItemPtr item = startFilestore();
    engine.manager().commands().interruptItem(*item, DownloadStatus::stopped);
    answer(1, loginRequired(SupportedHost::filestore));
    EXPECT_EQ(item->status(), DownloadStatus::stopped);
    EXPECT_EQ(engine.manager().questions().pendingLogin(), std::nullopt);
}

TEST_F(SignIn, FailsTheHeldItemsWhenTheLoginIsCancelled)
{
    const ItemPtr item = startFilestore();
    answer(1, loginRequired(SupportedHost::filestore));
    engine.manager().questions().cancelLogin();
    EXPECT_EQ(item->status(), DownloadStatus::failure(u"Authentication failed"_s));
    EXPECT_EQ(engine.manager().questions().pendingLogin(), std::nullopt);
    engine.manager().processQueue();
    turnEventLoop();
    EXPECT_EQ(item->status().kind(), DownloadStatus::failed);
}

TEST_F(SignIn, HasTheRecoveryVolumesFetchedAMinuteAfterTheLoginOfAPartIsCancelled)
{
    engine.manager().accounts().set({account(SupportedHost::filestore)});
    const ItemPtr rev = engine.add(u"http://h/m.part1.rev"_s);
    const ItemPtr part = engine.add(u"https://filestore.example/f/m.part1.rar"_s);
    log->resolves[0].answer->deliver(ResolverError::unsupportedHost());
    turnEventLoop();
    engine.manager().commands().startItems({part});
    turnEventLoop();
    answer(1, loginRequired(SupportedHost::filestore));
    engine.manager().questions().cancelLogin();
    ASSERT_EQ(part->status().kind(), DownloadStatus::failed);
    engine.clock.advance(std::chrono::minutes(1));
    EXPECT_EQ(rev->status(), DownloadStatus::downloading);
}

TEST_F(SignIn, FailsOnlyWhatStillWaitsWhenTheLoginIsCancelled)
{
    engine.manager().accounts().set({account(SupportedHost::filestore)});
    QStringList links;
    for (int i = 0; i < 5; ++i)
        links << u"https://filestore.example/f/%1"_s.arg(i);
    engine.settings().maxConcurrentDownloads.set(5);
    const auto items = engine.add(links);
    for (std::size_t i = 0; i < 5; ++i)
        answer(i, ResolverError::authenticationFailed());
    engine.manager().commands().startAll();
    turnEventLoop();
    for (std::size_t i = 5; i < 10; ++i)
        answer(i, loginRequired(SupportedHost::filestore));
    engine.manager().commands().stopItems({items[0]});
    engine.sandbox.write(u"Downloads/1"_s, "x");
    engine.manager().commands().resyncItems({items[1]});
    engine.manager().commands().pauseAll();
    engine.manager().commands().resumeItem(*items[3]);
    items[4]->setStatus(DownloadStatus::queued);
    engine.manager().commands().removeItems({items[4]->id()});
    engine.manager().questions().cancelLogin();
    EXPECT_EQ(items[0]->status(), DownloadStatus::stopped);
    EXPECT_EQ(items[1]->status(), DownloadStatus::completed);
    EXPECT_EQ(items[2]->status(), DownloadStatus::paused);
    // It was tried again since, and no longer waits for that question.
    EXPECT_EQ(items[3]->status(), DownloadStatus::queued);
}

TEST_F(SignIn, KeepsTheFirstOfTwoLoginQuestions)
{
    engine.manager().accounts().set({account(SupportedHost::filestore), account(SupportedHost::terabytez)});
    engine.add({filestoreLink, u"https://terabytez.example/x"_s});
    resolveTo(0, u"https://cdn.example/none"_s);
    engine.manager().commands().startAll();
    turnEventLoop();
    answer(1, loginRequired(SupportedHost::filestore));
    answer(2, loginRequired(SupportedHost::terabytez));
    EXPECT_EQ(engine.manager().questions().pendingLogin(), SupportedHost::filestore);
}

TEST_F(SignIn, EndsAnItemWhoseHostAsksAgainRightAfterIt)
{
    const ItemPtr item = startFilestore();
    answer(1, loginRequired(SupportedHost::filestore));
    engine.manager().questions().loginSucceeded();
    turnEventLoop();
    ASSERT_EQ(log->resolves.size(), 3U);
    engine.clock.advance(std::chrono::minutes(1));
    answer(2, loginRequired(SupportedHost::filestore));
    EXPECT_EQ(item->status(), DownloadStatus::failure(loginRequired(SupportedHost::filestore).errorDescription()));
    EXPECT_EQ(engine.manager().questions().pendingLogin(), std::nullopt);
    engine.clock.advance(std::chrono::minutes(10));
    EXPECT_EQ(log->resolves.size(), 3U); // and does not try for ever either
}

TEST_F(SignIn, IsAskedForAgainAfterAMinute)
{
    const ItemPtr item = startFilestore();
    answer(1, loginRequired(SupportedHost::filestore));
    engine.manager().questions().loginSucceeded();
    turnEventLoop();
    engine.clock.advance(std::chrono::minutes(1) + std::chrono::nanoseconds(1));
    answer(2, loginRequired(SupportedHost::filestore));
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    EXPECT_EQ(engine.manager().questions().pendingLogin(), SupportedHost::filestore);
}

TEST_F(SignIn, OpensNothingForNewcomersRightAfterIt)
{
    startFilestore();
    answer(1, loginRequired(SupportedHost::filestore));
    engine.manager().questions().loginSucceeded();
    turnEventLoop();
    resolveTo(2, u"https://cdn.example/none"_s);
    const ItemPtr newcomer = engine.add(u"https://filestore.example/f/new"_s);
    answer(3, ResolverError::linkNotFound()); // its name
    engine.manager().commands().startItems({newcomer});
    turnEventLoop();
    answer(4, loginRequired(SupportedHost::filestore));
    EXPECT_EQ(newcomer->status().kind(), DownloadStatus::failed);
    EXPECT_EQ(engine.manager().questions().pendingLogin(), std::nullopt);
}

TEST_F(SignIn, AtOneHostSaysNothingOfAnother)
{
    engine.manager().accounts().set({account(SupportedHost::filestore), account(SupportedHost::terabytez)});
    engine.add({filestoreLink, u"https://terabytez.example/x"_s});
    resolveTo(0, u"https://cdn.example/none"_s);
    engine.manager().commands().startAll();
    turnEventLoop();
    answer(1, loginRequired(SupportedHost::filestore));
    answer(2, loginRequired(SupportedHost::terabytez));
    engine.manager().questions().loginSucceeded();
    turnEventLoop();
    ASSERT_EQ(log->resolves.size(), 5U);
    answer(4, loginRequired(SupportedHost::terabytez));
    EXPECT_EQ(engine.manager().questions().pendingLogin(), SupportedHost::terabytez);
    answer(3, loginRequired(SupportedHost::filestore));
    EXPECT_EQ(engine.manager().items()[0]->status().kind(), DownloadStatus::failed);
}

TEST_F(SignIn, GivesATryThatBeganBeforeItAnother)
{
    engine.settings().maxConcurrentDownloads.set(2);
    engine.manager().accounts().set({account(SupportedHost::filestore)});
    const auto items = engine.add({filestoreLink, u"https://filestore.example/f/other"_s});
    answer(0, ResolverError::linkNotFound()); // the names
    answer(1, ResolverError::linkNotFound());
    engine.manager().commands().startAll();
    turnEventLoop();
    answer(2, loginRequired(SupportedHost::filestore));
    engine.clock.advance(std::chrono::seconds(5));
    engine.manager().questions().loginSucceeded();
    turnEventLoop();
    const std::size_t before = log->resolves.size();
    answer(3, loginRequired(SupportedHost::filestore)); // of a page that was loaded before
    EXPECT_EQ(items[1]->status(), DownloadStatus::resolving);
    EXPECT_EQ(log->resolves.size(), before + 1);
    EXPECT_EQ(engine.manager().questions().pendingLogin(), std::nullopt);
    answer(before, loginRequired(SupportedHost::filestore));
    EXPECT_EQ(items[1]->status().kind(), DownloadStatus::failed);
}
