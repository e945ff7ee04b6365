#include "engine/OneTransfer.h"
#include "engine/ScriptedService.h"

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// Why a queued item does not start, as its row is told.
class ItemWaitTest : public OneTransfer
{
protected:
    /// Two links of one name; the first is being fetched.
    void startTwoOfOneName()
    {
        first = engine.start(u"http://a/x.rar"_s);
        second = engine.add(u"http://b/x.rar"_s);
        startAll();
        ASSERT_EQ(second->wait().kind, ItemWait::sameName);
    }

    ItemPtr first;
    ItemPtr second;
};

class SignInWaitTest : public ScriptedService
{
protected:
    void SetUp() override
    {
        item = startFilestore();
        item->setResolvedURL(std::nullopt);
        answer(1, loginRequired(SupportedHost::filestore));
    }

    ItemPtr item;
};

} // namespace

TEST_F(ItemWaitTest, ANextTryHasItsTime)
{
    first = engine.start(rarLink);
    server().fail(HttpError::Kind::connectionLost);
    turnEventLoop();
    EXPECT_EQ(first->wait(), (ItemWait{ItemWait::nextTry, engine.clock.steadyNow() + 2s, {}}));
    engine.settings().maxConcurrentDownloads.set(0);
    engine.clock.advance(2s);
    EXPECT_EQ(first->status(), DownloadStatus::queued);
    EXPECT_EQ(first->wait(), ItemWait());
}

TEST_F(ItemWaitTest, ANextTryIsWaitedForNoMoreAfterStartAll)
{
    first = engine.start(rarLink);
    server().fail(HttpError::Kind::connectionLost);
    turnEventLoop();
    engine.settings().maxConcurrentDownloads.set(0);
    startAll();
    EXPECT_EQ(first->wait(), ItemWait());
}

TEST_F(ItemWaitTest, AServersRestLastsAsLongAsItAskedFor)
{
    first = engine.start(rarLink);
    say(429, {{"Content-Type", "text/plain"}, {"Retry-After", "90"}});
    EXPECT_EQ(first->wait(), (ItemWait{ItemWait::serverRest, engine.clock.steadyNow() + 90s, {}}));
    engine.clock.advance(89s);
    EXPECT_EQ(first->status(), DownloadStatus::queued);
    engine.clock.advance(1s);
    EXPECT_EQ(first->status(), DownloadStatus::downloading);
}

TEST_F(ItemWaitTest, AServersRestLastsTenMinutesAtMost)
{
    first = engine.start(rarLink);
    say(503, {{"Content-Type", "text/plain"}, {"Retry-After", "86400"}});
    EXPECT_EQ(first->wait().due, engine.clock.steadyNow() + 600s);
}

TEST_F(ItemWaitTest, AShorterOrSenselessRestIsTheToldDelay)
{
    engine.settings().maxConcurrentDownloads.set(10);
    for (const char* value : {"1", "soon", "-5", ""}) {
        first = engine.start(u"http://h/x-%1.rar"_s.arg(QLatin1StringView(value)));
        say(503, {{"Content-Type", "text/plain"}, {"Retry-After", value}});
        EXPECT_EQ(first->wait(), (ItemWait{ItemWait::nextTry, engine.clock.steadyNow() + 2s, {}})) << value;
    }
}

TEST_F(ItemWaitTest, TwoRestsThatContradictEachOtherSayNothing)
{
    first = engine.start(rarLink);
    say(503, {{"Content-Type", "text/plain"}, {"Retry-After", "60"}, {"Retry-After", "90"}});
    EXPECT_EQ(first->wait().kind, ItemWait::nextTry);
}

TEST_F(ItemWaitTest, ANameThatIsTakenIsWaitedForUntilItIsFree)
{
    startTwoOfOneName();
    engine.settings().maxConcurrentDownloads.set(0);
    engine.manager().commands().stopItems({first});
    EXPECT_EQ(second->status(), DownloadStatus::queued);
    EXPECT_EQ(second->wait(), ItemWait());
}

TEST_F(ItemWaitTest, ANameIsWaitedForNoMoreByWhoIsPausedOrRemoved)
{
    startTwoOfOneName();
    engine.manager().commands().stopItems({second});
    EXPECT_EQ(second->wait(), ItemWait());
    engine.manager().commands().removeItems({second->id()});
    engine.manager().commands().stopItems({first});
    turnEventLoop();
    EXPECT_EQ(first->wait(), ItemWait());
}

TEST_F(ItemWaitTest, ANameThatTurnsOutToBeTakenOnlyAtTheStartIsToldToo)
{
    engine.settings().maxConcurrentDownloads.set(2);
    first = engine.add(u"http://a/x.rar"_s);
    second = engine.add(u"http://b/x.rar"_s);
    startAll(); // one pass takes both
    EXPECT_EQ(first->status(), DownloadStatus::downloading);
    EXPECT_EQ(second->wait().kind, ItemWait::sameName);
}

TEST_F(SignInWaitTest, ASignInHasTheNameOfItsHost)
{
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    EXPECT_EQ(item->wait(), (ItemWait{ItemWait::signIn, {}, HostProfiles().displayName(SupportedHost::filestore)}));
}

TEST_F(SignInWaitTest, ASignInIsWaitedForNoMoreWhenItIsDone)
{
    engine.settings().maxConcurrentDownloads.set(0);
    engine.manager().questions().loginSucceeded();
    turnEventLoop();
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    EXPECT_EQ(item->wait(), ItemWait());
}

TEST_F(SignInWaitTest, StartAllDoesNotHideThatASignInIsAwaited)
{
    engine.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(item->wait().kind, ItemWait::signIn);
}
