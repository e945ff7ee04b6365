#include "resolvers/filestore/FilestoreLoginCache.h"

#include "fixtures/EventLoop.h"
#include "fixtures/ManualClock.h"
#include "platform/async/Spawn.h"
#include "resolvers/ResolverError.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace vormel {
namespace {

/// What somebody who asked for cookies has got so far.
struct Asker
{
    std::stop_source stop;
    std::optional<FilestoreLoginCache::Session> session;
    bool hasFailed = false;

    [[nodiscard]] bool isWaiting() const { return !session && !hasFailed; }
    [[nodiscard]] QByteArrayList cookies() const { return session ? session->cookies : QByteArrayList(); }
};

/// One login that the cache has begun; the test ends it.
struct BegunLogin
{
    using End = std::optional<QByteArrayList>; ///< nothing: refused

    std::shared_ptr<EventualSource<End>> end = std::make_shared<EventualSource<End>>(std::nullopt);
    std::stop_token stop;

    void succeed(const QByteArrayList& cookies) const { end->deliver(cookies); }
    void fail() const { end->deliver(std::nullopt); }
};

class FilestoreLoginCacheTest : public testing::Test
{
protected:
    std::shared_ptr<Asker> ask(const QString& user = u"ann"_s)
    {
        auto asker = std::make_shared<Asker>();
        spawn(asking(*cache, user, asker, login()));
        return asker;
    }
    void TearDown() override
    {
        for (const BegunLogin& login : logins)
            login.fail();
        fixtures::turnEventLoop();
    }

    fixtures::ManualClock clock;
    std::unique_ptr<FilestoreLoginCache> cache = std::make_unique<FilestoreLoginCache>(clock);
    std::vector<BegunLogin> logins;

private:
    FilestoreLoginCache::Login login()
    {
        return [this](std::stop_token stop) -> QCoro::Task<QByteArrayList> {
            const BegunLogin& begun = logins.emplace_back(BegunLogin{.stop = std::move(stop)});
            Eventual<BegunLogin::End> end = begun.end->eventual();
            const BegunLogin::End cookies = co_await end;
            if (!cookies)
                throw ResolverError::authenticationFailed();
            co_return *cookies;
        };
    }
    static QCoro::Task<> asking(FilestoreLoginCache& cache, QString user, std::shared_ptr<Asker> asker,
                                FilestoreLoginCache::Login login)
    {
        try {
            asker->session = co_await cache.cookiesForUser(user, std::move(login), asker->stop.get_token());
        } catch (const ResolverError&) {
            asker->hasFailed = true;
        }
    }
};

TEST_F(FilestoreLoginCacheTest, TwoWhoAskForOneUserShareOneLogin)
{
    const auto first = ask();
    const auto second = ask();
    ASSERT_EQ(logins.size(), 1U);
    EXPECT_TRUE(first->isWaiting());
    logins[0].succeed({"a"});
    EXPECT_EQ(first->cookies(), QByteArrayList{"a"});
    EXPECT_EQ(second->cookies(), QByteArrayList{"a"});
    EXPECT_EQ(first->session->login, second->session->login);
}

TEST_F(FilestoreLoginCacheTest, TwoUsersSignInSideBySide)
{
    const auto ann = ask(u"ann"_s);
    const auto bob = ask(u"bob"_s);
    ASSERT_EQ(logins.size(), 2U);
    logins[1].succeed({"b"});
    EXPECT_TRUE(ann->isWaiting());
    EXPECT_EQ(bob->cookies(), QByteArrayList{"b"});
    logins[0].succeed({"a"});
    EXPECT_EQ(ann->cookies(), QByteArrayList{"a"});
}

TEST_F(FilestoreLoginCacheTest, ALoginIsGoodForFourMinutesFromItsEnd)
{
    ask();
    clock.advance(50s); // the login takes its time
    logins[0].succeed({"a"});
    clock.advance(239s);
    EXPECT_EQ(ask()->cookies(), QByteArrayList{"a"});
    EXPECT_EQ(logins.size(), 1U);
    clock.advance(1s);
    EXPECT_TRUE(ask()->isWaiting());
    EXPECT_EQ(logins.size(), 2U);
    logins[1].succeed({"b"});
    EXPECT_EQ(ask()->cookies(), QByteArrayList{"b"});
}

TEST_F(FilestoreLoginCacheTest, AFreshLoginThatIsForgottenIsMadeAnew)
{
    ask();
    logins[0].succeed({"a"});
    cache->invalidateUser(u"bob"_s);
    EXPECT_FALSE(ask()->isWaiting());
    cache->invalidateUser(u"ann"_s);
    EXPECT_TRUE(ask()->isWaiting());
    EXPECT_EQ(logins.size(), 2U);
}

TEST_F(FilestoreLoginCacheTest, AFailedLoginFailsAllWhoWaitAndIsNotRemembered)
{
    const auto first = ask();
    const auto second = ask();
    logins[0].fail();
    EXPECT_TRUE(first->hasFailed);
    EXPECT_TRUE(second->hasFailed);
    const auto third = ask();
    ASSERT_EQ(logins.size(), 2U);
    logins[1].succeed({"a"});
    EXPECT_EQ(third->cookies(), QByteArrayList{"a"});
}

TEST_F(FilestoreLoginCacheTest, AFailedLoginLeavesAnOlderOneThatIsStale)
{
    ask();
    logins[0].succeed({"a"});
    clock.advance(FilestoreLoginCache::maxAge);
    ask();
    logins[1].fail();
    EXPECT_TRUE(ask()->isWaiting());
    EXPECT_EQ(logins.size(), 3U);
}

TEST_F(FilestoreLoginCacheTest, ToForgetALoginUnderWayFailsAllWhoWaitForIt)
{
    const auto asker = ask();
    cache->invalidateUser(u"ann"_s);
    EXPECT_TRUE(logins[0].stop.stop_requested());
    const auto later = ask();
    ASSERT_EQ(logins.size(), 2U);
    logins[0].succeed({"too late"});
    EXPECT_TRUE(asker->hasFailed);
    EXPECT_TRUE(later->isWaiting());
    logins[1].succeed({"b"});
    EXPECT_EQ(later->cookies(), QByteArrayList{"b"});
    EXPECT_EQ(ask()->cookies(), QByteArrayList{"b"});
}

TEST_F(FilestoreLoginCacheTest, WhoAsksAfterAChangeOfThePasswordLogsInAnewAndTheOthersKeepTheirLogin)
{
    const auto early = ask();
    cache->credentialsChanged(u"ann"_s);
    const auto late = ask();
    ASSERT_EQ(logins.size(), 2U);
    EXPECT_FALSE(logins[0].stop.stop_requested());
    logins[1].succeed({"new"});
    logins[0].succeed({"old"});
    EXPECT_EQ(early->cookies(), QByteArrayList{"old"});
    EXPECT_EQ(late->cookies(), QByteArrayList{"new"});
    EXPECT_EQ(ask()->cookies(), QByteArrayList{"new"});
    cache->credentialsChanged(u"ann"_s);
    EXPECT_TRUE(ask()->isWaiting());
}

TEST_F(FilestoreLoginCacheTest, AnOldPasswordsLoginEndsWithTheLastWhoWaitsForIt)
{
    const auto early = ask();
    cache->credentialsChanged(u"ann"_s);
    early->stop.request_stop();
    EXPECT_TRUE(logins[0].stop.stop_requested());
}

TEST_F(FilestoreLoginCacheTest, OnlyTheLoginThatWasNoGoodIsForgotten)
{
    const auto first = ask();
    logins[0].succeed({"old"});
    cache->invalidateLogin(u"ann"_s, first->session->login);
    const auto second = ask();
    ASSERT_EQ(logins.size(), 2U);
    // Another walk finds out about the old login while the new one is made, a third when it is there.
    cache->invalidateLogin(u"ann"_s, first->session->login);
    EXPECT_FALSE(logins[1].stop.stop_requested());
    logins[1].succeed({"new"});
    cache->invalidateLogin(u"ann"_s, first->session->login);
    EXPECT_EQ(second->cookies(), QByteArrayList{"new"});
    EXPECT_EQ(ask()->cookies(), QByteArrayList{"new"});
    EXPECT_EQ(logins.size(), 2U);
}

TEST_F(FilestoreLoginCacheTest, WhoStopsWaitingLeavesTheLoginToTheOthers)
{
    const auto first = ask();
    const auto second = ask();
    first->stop.request_stop();
    EXPECT_TRUE(first->isWaiting()) << "it went on inside the stop";
    fixtures::turnEventLoop();
    EXPECT_TRUE(first->hasFailed);
    EXPECT_FALSE(logins[0].stop.stop_requested());
    logins[0].succeed({"a"});
    EXPECT_EQ(second->cookies(), QByteArrayList{"a"});
    EXPECT_EQ(ask()->cookies(), QByteArrayList{"a"});
}

TEST_F(FilestoreLoginCacheTest, ALoginThatNobodyWaitsForIsStopped)
{
    const auto first = ask();
    const auto second = ask();
    first->stop.request_stop();
    second->stop.request_stop();
    EXPECT_TRUE(logins[0].stop.stop_requested());
    const auto third = ask();
    EXPECT_EQ(logins.size(), 2U);
    logins[0].succeed({"too late"});
    EXPECT_TRUE(third->isWaiting());
}

TEST_F(FilestoreLoginCacheTest, WhoHasStoppedBeforeStartsNoLogin)
{
    const auto asker = std::make_shared<Asker>();
    asker->stop.request_stop();
    bool isAsked = false;
    const auto login = [&isAsked](std::stop_token) -> QCoro::Task<QByteArrayList> {
        isAsked = true;
        co_return QByteArrayList();
    };
    const auto asking = [&]() -> QCoro::Task<> {
        try {
            co_await cache->cookiesForUser(u"ann"_s, login, asker->stop.get_token());
        } catch (const ResolverError&) {
            asker->hasFailed = true;
        }
    };
    spawn(asking());
    EXPECT_TRUE(asker->hasFailed);
    EXPECT_FALSE(isAsked);
}

TEST_F(FilestoreLoginCacheTest, ALoginThatEndsAtOnceIsKept)
{
    std::optional<FilestoreLoginCache::Session> session;
    const auto login = [](std::stop_token) -> QCoro::Task<QByteArrayList> { co_return QByteArrayList{"quick"}; };
    const auto asking = [&]() -> QCoro::Task<> { session = co_await cache->cookiesForUser(u"ann"_s, login); };
    spawn(asking());
    ASSERT_TRUE(session);
    EXPECT_EQ(ask()->cookies(), QByteArrayList{"quick"});
}

TEST_F(FilestoreLoginCacheTest, ItsEndStopsWhatIsUnderWay)
{
    const auto asker = ask();
    cache.reset();
    EXPECT_TRUE(logins[0].stop.stop_requested());
    logins[0].fail();
    EXPECT_TRUE(asker->hasFailed);
}

} // namespace
} // namespace vormel
