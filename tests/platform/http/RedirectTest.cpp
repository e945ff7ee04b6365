#include "platform/http/Redirect.h"

#include "platform/http/LoopbackTest.h"

#include <vector>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using namespace std::chrono_literals;
using sites::Answer;

/// Two hosts: the server's own address and, as another port is another host, a second server's.
class RedirectTest : public LoopbackTest
{
protected:
    RedirectTest()
    {
        server.serve("/target", {.content = "arrived"});
        elsewhere.serve("/target", {.content = "arrived elsewhere"});
    }

    void redirect(int status, const std::string& location)
    {
        server.serve("/from", {.answers = {Answer::redirect(status, location)}});
    }
    [[nodiscard]] HttpRequest privatePost() const
    {
        HttpRequest post = request("/from");
        post.method = "POST";
        post.body = "secret=1";
        post.headers = {
            {"Content-Type", "text/x-own"}, {"Authorization", "Bearer 1"}, {"Cookie", "own=1"},      {"X-Token", "1"},
            {"Referer", "http://a/"},       {"Range", "bytes=3-"},         {"Accept-Language", "it"}};
        return post;
    }

    sites::FileServer elsewhere;
};

TEST_F(RedirectTest, IsFollowedFromEveryRedirectStatus)
{
    for (const int status : {301, 302, 303, 307, 308}) {
        redirect(status, server.url("/target"));
        const Recorder::Heard heard = get("/from");
        EXPECT_EQ(heard.body, "arrived") << status;
        EXPECT_EQ(heard.head->url, urlOf(server.url("/target")));
        ASSERT_EQ(heard.redirects.size(), 1U);
        EXPECT_EQ(heard.redirects[0].first.statusCode, status);
        EXPECT_EQ(heard.redirects[0].second, urlOf(server.url("/target")));
    }
}

TEST_F(RedirectTest, IsNotSeenInOtherStatusesOrWithoutATarget)
{
    for (const Answer& answer :
         {Answer::redirectNowhere(302), Answer::redirect(300, "/target"), Answer::redirect(200, "/target"),
          Answer::redirect(302, ""), Answer::redirect(304, "/target")}) {
        server.serve("/from", {.answers = {answer}});
        const Recorder::Heard heard = get("/from");
        EXPECT_FALSE(heard.error);
        EXPECT_TRUE(heard.redirects.empty());
        EXPECT_EQ(heard.head->statusCode, answer.plan().status);
    }
}

TEST_F(RedirectTest, MayBeRelative)
{
    server.serve("/dir/deep/from", {.answers = {Answer::redirect(302, "../file?q=1")}});
    server.serve("/dir/file", {.content = "relative"});
    EXPECT_EQ(get("/dir/deep/from").body, "relative");
    EXPECT_EQ(server.requests("/dir/file").at(0).pathAndQuery(), "/dir/file?q=1");
    redirect(302, "//127.0.0.1:" + std::to_string(elsewhere.port()) + "/target");
    EXPECT_EQ(get("/from").body, "arrived elsewhere");
}

TEST_F(RedirectTest, BodiesOfTheWayAreNotHandedOn)
{
    server.serve("/from",
                 {.answers = {Answer::page(302, std::string(500'000, 'x')).withHeader("Location", "/target")}});
    EXPECT_EQ(get("/from").body, "arrived");
}

TEST_F(RedirectTest, StaysOnItsConnectionAtTheSameHost)
{
    redirect(302, "/target");
    EXPECT_EQ(get("/from").body, "arrived");
    EXPECT_EQ(server.connectionsAccepted(), 1);
}

TEST_F(RedirectTest, AtTheSameHostPrivateHeadersAreKept)
{
    redirect(302, "/target");
    HttpRequest request = privatePost();
    request.method = "GET";
    request.body.clear();
    EXPECT_FALSE(run(request).error);
    const auto seen = server.requests("/target").at(0);
    EXPECT_EQ(seen.header("Authorization"), "Bearer 1");
    EXPECT_EQ(seen.header("X-Token"), "1");
    EXPECT_EQ(seen.header("Range"), "bytes=3-");
}

TEST_F(RedirectTest, ToAnotherHostPrivateHeadersAndThePostedBodyStayBehindAndTheRangeGoesOn)
{
    for (const int status : {301, 302, 303, 307, 308}) {
        redirect(status, elsewhere.url("/target"));
        const Recorder::Heard heard = run(privatePost());
        EXPECT_EQ(heard.body, "ived elsewhere") << status;
        const auto seen = elsewhere.requests("/target").back();
        EXPECT_EQ(seen.method, "GET") << status;
        EXPECT_EQ(seen.body, "") << status;
        for (const char* name : {"Authorization", "Cookie", "X-Token", "Referer", "Content-Type", "Content-Length"})
            EXPECT_EQ(seen.header(name), std::nullopt) << name << " with " << status;
        EXPECT_EQ(seen.header("Range"), "bytes=3-");
        EXPECT_EQ(seen.header("Accept-Language"), "it");
    }
}

TEST_F(RedirectTest, APostBecomesAGetUnlessTheStatusKeepsIt)
{
    for (const auto& [status, method] : std::vector<std::pair<int, std::string>>{
             {301, "GET"}, {302, "GET"}, {303, "GET"}, {307, "POST"}, {308, "POST"}}) {
        redirect(status, "/target");
        EXPECT_FALSE(run(privatePost()).error);
        const auto seen = server.requests("/target").back();
        EXPECT_EQ(seen.method, method) << status;
        EXPECT_EQ(seen.body, method == "POST" ? "secret=1" : "") << status;
    }
}

TEST_F(RedirectTest, AHeadRequestStaysOne)
{
    redirect(303, "/target");
    HttpRequest head = request("/from");
    head.method = "HEAD";
    EXPECT_FALSE(run(head).error);
    EXPECT_EQ(server.requests("/target").at(0).method, "HEAD");
}

TEST_F(RedirectTest, ALoopEndsAfterTwentyHops)
{
    redirect(302, "/from");
    const Recorder::Heard heard = get("/from");
    expectError(heard, Kind::tooManyRedirects);
    EXPECT_FALSE(heard.head);
    EXPECT_EQ(server.requests("/from").size(), 21U);
}

TEST_F(RedirectTest, AwayFromTheWebIsNotFollowed)
{
    for (const char* target :
         {"ftp://127.0.0.1/target", "file:///etc/hostname", "javascript:1", "http:///x", "http://[::1"}) {
        redirect(302, target);
        const Recorder::Heard heard = get("/from");
        expectError(heard, Kind::unsupportedUrl);
        EXPECT_FALSE(heard.head) << target;
        EXPECT_TRUE(heard.body.isEmpty()) << target;
    }
}

TEST_F(RedirectTest, ARefusedOneBecomesTheAnswer)
{
    server.serve("/from", {.answers = {Answer::page(302, "moved").withHeader("Location", "/target")}});
    Recorder recorder;
    recorder.onRedirect = [](const QUrl&) { return HttpReceiver::RedirectVerdict::refuse; };
    const Recorder::Heard heard = run(request("/from"), recorder);
    EXPECT_FALSE(heard.error);
    EXPECT_EQ(heard.head->statusCode, 302);
    EXPECT_EQ(heard.body, "moved");
    EXPECT_TRUE(server.requests("/target").empty());
}

HttpResponse answerFrom(const char* url, const char* location)
{
    return {302, QUrl(QString::fromLatin1(url)), {{"Location", location}}};
}

TEST(RedirectTarget, TakesTheFragmentAlongUnlessItBringsItsOwn)
{
    EXPECT_EQ(redirectTarget(answerFrom("http://a/x#old", "/y")), QUrl(u"http://a/y#old"_s));
    EXPECT_EQ(redirectTarget(answerFrom("http://a/x#old", "/y#new")), QUrl(u"http://a/y#new"_s));
}

TEST(RedirectTarget, KeepsTheEncodingOfItsPath)
{
    const std::optional<QUrl> target = redirectTarget(answerFrom("http://a/x", "/d%2Ff%20g?u=http%3A%2F%2Fb%2F%26c"));
    ASSERT_TRUE(target);
    EXPECT_EQ(target->toEncoded(), "http://a/d%2Ff%20g?u=http%3A%2F%2Fb%2F%26c");
}

TEST(RequestForHop, AnotherSchemeOrPortIsAnotherHost)
{
    HttpRequest request;
    request.headers = {{"Authorization", "1"}};
    for (const char* target : {"http://a/y", "https://a:444/y", "https://b/y"})
        EXPECT_TRUE(requestForHop(request, answerFrom("https://a/x", target), QUrl(QString::fromLatin1(target)))
                        .headers.empty())
            << target;
    for (const char* target : {"https://a:443/y", "https://A/y"})
        EXPECT_EQ(
            requestForHop(request, answerFrom("https://a/x", target), QUrl(QString::fromLatin1(target))).headers.size(),
            1U)
            << target;
}

} // namespace
} // namespace vormel
