#include "platform/http/CookieStore.h"

#include "platform/http/LoopbackTest.h"

namespace vormel {
namespace {

using sites::Answer;

class CookieStoreTest : public LoopbackTest
{
protected:
    CookieStoreTest()
    {
        server.serve("/login", {.answers = {Answer::page(200, "in").withCookie("session=abc; Path=/")}});
        server.serve("/page", {.content = "page"});
    }

    [[nodiscard]] HttpRequest request(std::string_view path, std::shared_ptr<CookieStore> cookies = nullptr) const
    {
        HttpRequest asked = LoopbackTest::request(path);
        asked.cookies = std::move(cookies);
        return asked;
    }
    [[nodiscard]] std::optional<std::string> cookieSeen() const
    {
        return server.requests("/page").back().header("Cookie");
    }
};

TEST_F(CookieStoreTest, ACookieThatWasSetIsSentBack)
{
    EXPECT_FALSE(run(request("/login")).error);
    EXPECT_FALSE(run(request("/page")).error);
    EXPECT_EQ(cookieSeen(), "session=abc");
    EXPECT_EQ(client.sharedCookies()->cookies().size(), 1);
}

TEST_F(CookieStoreTest, AStoreOfItsOwnKnowsNothingOfTheSharedOne)
{
    EXPECT_FALSE(run(request("/login")).error);
    const auto own = std::make_shared<CookieStore>();
    EXPECT_FALSE(run(request("/page", own)).error);
    EXPECT_EQ(cookieSeen(), std::nullopt);
}

TEST_F(CookieStoreTest, WhatAStoreOfItsOwnLearnsStaysThere)
{
    const auto own = std::make_shared<CookieStore>();
    EXPECT_FALSE(run(request("/login", own)).error);
    EXPECT_FALSE(run(request("/page")).error);
    EXPECT_EQ(cookieSeen(), std::nullopt);
    EXPECT_FALSE(run(request("/page", own)).error);
    EXPECT_EQ(cookieSeen(), "session=abc");
    EXPECT_TRUE(client.sharedCookies()->cookies().isEmpty());
}

TEST_F(CookieStoreTest, ACookieSetByARedirectIsSentToItsTarget)
{
    server.serve("/from", {.answers = {Answer::redirect(302, "/page").withCookie("hop=1; Path=/")}});
    EXPECT_FALSE(run(request("/from")).error);
    EXPECT_EQ(cookieSeen(), "hop=1");
}

TEST_F(CookieStoreTest, ACookieMayBeAddedFromOutsideAndReadBack)
{
    const auto own = std::make_shared<CookieStore>();
    own->add("127.0.0.1\tFALSE\t/\tFALSE\t0\tkey\tvalue");
    EXPECT_EQ(own->cookies(), QByteArrayList{"127.0.0.1\tFALSE\t/\tFALSE\t0\tkey\tvalue"});
    EXPECT_FALSE(run(request("/page", own)).error);
    EXPECT_EQ(cookieSeen(), "key=value");
    own->add("Set-Cookie: second=2; Domain=127.0.0.1; Path=/");
    EXPECT_EQ(own->cookies().size(), 2);
}

TEST_F(CookieStoreTest, ACookieOfAnotherHostIsNotSent)
{
    const auto own = std::make_shared<CookieStore>();
    own->add("other.example\tFALSE\t/\tFALSE\t0\tkey\tvalue");
    EXPECT_FALSE(run(request("/page", own)).error);
    EXPECT_EQ(cookieSeen(), std::nullopt);
}

TEST_F(CookieStoreTest, AClearedStoreSendsNothing)
{
    EXPECT_FALSE(run(request("/login")).error);
    client.sharedCookies()->clear();
    EXPECT_TRUE(client.sharedCookies()->cookies().isEmpty());
    EXPECT_FALSE(run(request("/page")).error);
    EXPECT_EQ(cookieSeen(), std::nullopt);
}

TEST_F(CookieStoreTest, AStoreMayBeUsedWhileTransfersUseIt)
{
    std::array<Recorder, 10> recorders;
    std::vector<std::unique_ptr<HttpTask>> tasks;
    for (Recorder& recorder : recorders) {
        tasks.push_back(client.makeTask(request("/login"), recorder));
        tasks.back()->resume();
        client.sharedCookies()->add("other.example\tFALSE\t/\tFALSE\t0\tkey\tvalue");
        EXPECT_GE(client.sharedCookies()->cookies().size(), 1);
    }
    for (const Recorder& recorder : recorders)
        EXPECT_TRUE(recorder.waitForEnd());
    EXPECT_EQ(client.sharedCookies()->cookies().size(), 2);
}

TEST_F(CookieStoreTest, ACookieThatIsTakenAwayIsSentNoMore)
{
    const QByteArray kept = "127.0.0.1\tFALSE\t/\tFALSE\t0\tkept\t1";
    const QByteArray gone = "#HttpOnly_127.0.0.1\tFALSE\t/\tFALSE\t4102444800\tgone\t1";
    client.sharedCookies()->add(kept);
    client.sharedCookies()->add(gone);
    client.sharedCookies()->remove(gone);
    EXPECT_EQ(client.sharedCookies()->cookies(), QByteArrayList{kept});
    EXPECT_FALSE(run(request("/page")).error);
    EXPECT_EQ(cookieSeen(), "kept=1");
}

TEST_F(CookieStoreTest, TakingAwayWhatIsNoCookieDoesNothing)
{
    const QByteArray kept = "127.0.0.1\tFALSE\t/\tFALSE\t0\tkept\t1";
    client.sharedCookies()->add(kept);
    client.sharedCookies()->remove("ALL");
    EXPECT_EQ(client.sharedCookies()->cookies(), QByteArrayList{kept});
}

} // namespace
} // namespace vormel
