#include "CurlClient.h"
#include "RawClient.h"
#include "sites/FileServer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace vormel::sites {
namespace {

class FileServerAnswerTest : public testing::Test
{
protected:
    [[nodiscard]] Fetched fetch(const Answer& answer)
    {
        m_server.serve("/f", {.content = "the file", .answers = {answer}});
        return m_client.fetch(m_server.url("/f"));
    }

    FileServer m_server;
    CurlClient m_client;
};

TEST_F(FileServerAnswerTest, GivesEachAnswerInItsTurnAndRepeatsTheLast)
{
    m_server.serve("/f", {.content = "the file", .answers = {Answer::empty(503), Answer::empty(429), Answer::file()}});
    for (const long status : {503, 429, 200, 200})
        EXPECT_EQ(m_client.fetch(m_server.url("/f")).status, status);
    m_server.setAnswers("/f", {Answer::empty(410)});
    EXPECT_EQ(m_client.fetch(m_server.url("/f")).status, 410);
    EXPECT_THROW(m_server.setAnswers("/other", {}), std::out_of_range);
}

TEST_F(FileServerAnswerTest, SendsSurplusBehindAnAnswerAndGoesOnWithTheConnection)
{
    m_server.serve("/f", {.content = "the file", .answers = {Answer::file().followedBy("more"), Answer::file()}});
    m_server.serve("/raw", {.answers = {Answer::raw("HTTP/1.1 204 No Content\r\n\r\n").followedBy("more")}});
    RawClient client(m_server.port());
    client.get("/f");
    static_cast<void>(client.receiveHead());
    EXPECT_EQ(client.receive(12).bytes, "the filemore");
    client.get("/raw");
    EXPECT_TRUE(client.receiveHead().starts_with("HTTP/1.1 204"));
    EXPECT_EQ(client.receive(4).bytes, "more");
    client.get("/f");
    static_cast<void>(client.receiveHead());
    EXPECT_EQ(client.receive(8).bytes, "the file");
    EXPECT_EQ(m_server.connectionsAccepted(), 1);
}

TEST_F(FileServerAnswerTest, GivesAnyStatusWithAnyBody)
{
    for (const int status : {403, 404, 416, 500, 503, 599}) {
        const auto html = fetch(Answer::page(status, "<p>no</p>"));
        EXPECT_EQ(html.status, status);
        EXPECT_EQ(html.header("Content-Type"), "text/html; charset=utf-8");
        EXPECT_EQ(html.body, "<p>no</p>");
        const auto text = fetch(Answer::page(status, "no", "text/plain"));
        EXPECT_EQ(text.header("Content-Type"), "text/plain");
        const auto empty = fetch(Answer::empty(status));
        EXPECT_EQ(empty.status, status);
        EXPECT_EQ(empty.header("Content-Length"), "0");
        EXPECT_FALSE(empty.header("Content-Type"));
    }
    EXPECT_EQ(fetch(Answer::file().withStatus(203)).body, "the file");
}

TEST_F(FileServerAnswerTest, GivesNoBodyWithStatusesThatHaveNone)
{
    for (const int status : {204, 304}) {
        const auto fetched = fetch(Answer::page(status, "never"));
        EXPECT_EQ(fetched.code, CURLE_OK);
        EXPECT_EQ(fetched.status, status);
        EXPECT_EQ(fetched.body, "");
        EXPECT_FALSE(fetched.header("Content-Length"));
        EXPECT_EQ(fetch(Answer::file()).body, "the file") << "nothing was left over on the connection";
    }
    EXPECT_EQ(m_server.connectionsAccepted(), 1);
}

TEST_F(FileServerAnswerTest, SendsRawDispositions)
{
    const std::string value = "attachment; filename=\"caf\xe9;\\\"x\"; filename*=UTF-8''%E2%82%AC";
    EXPECT_EQ(fetch(Answer::file().withDisposition(value)).header("Content-Disposition"), value);
}

TEST_F(FileServerAnswerTest, SendsEveryCookie)
{
    const auto fetched = fetch(Answer::file().withCookie("a=1; Path=/").withCookie("b=2"));
    std::vector<std::string> cookies;
    for (const auto& header : fetched.headers) {
        if (header.name == "Set-Cookie")
            cookies.push_back(header.value);
    }
    EXPECT_EQ(cookies, (std::vector<std::string>{"a=1; Path=/", "b=2"}));
}

TEST_F(FileServerAnswerTest, SendsTheResourcesHeadersUnlessTheAnswerHasItsOwn)
{
    m_server.serve("/f", {.content = "x",
                          .headers = {{"X-One", "1"}, {"X-Two", "2"}},
                          .answers = {Answer::file().withHeader("x-two", "two").withoutHeader("Accept-Ranges")}});
    const auto fetched = m_client.fetch(m_server.url("/f"));
    EXPECT_EQ(fetched.header("X-One"), "1");
    EXPECT_EQ(fetched.header("X-Two"), "two");
    EXPECT_FALSE(fetched.header("Accept-Ranges"));
}

TEST_F(FileServerAnswerTest, RedirectsWithEveryStatus)
{
    m_server.serve("/there", {.content = "arrived"});
    m_client.followRedirects(5);
    for (const int status : {301, 302, 303, 307, 308}) {
        const auto fetched = fetch(Answer::redirect(status, "there"));
        EXPECT_EQ(fetched.body, "arrived") << status;
        EXPECT_EQ(fetched.redirects, 1) << status;
    }
}

TEST_F(FileServerAnswerTest, RedirectsToAnotherHostAndPort)
{
    FileServer other;
    other.serve("/there", {.content = "arrived"});
    m_client.followRedirects(5);
    m_client.resolveLocally("mirror.example", other.port());
    EXPECT_EQ(fetch(Answer::redirect(302, other.url("mirror.example", "/there"))).body, "arrived");
    EXPECT_EQ(other.requests().at(0).header("Host"), "mirror.example:" + std::to_string(other.port()));
}

TEST_F(FileServerAnswerTest, RedirectsForEver)
{
    m_client.followRedirects(7);
    EXPECT_EQ(fetch(Answer::redirect(302, "/f")).code, CURLE_TOO_MANY_REDIRECTS);
    EXPECT_EQ(m_server.requests("/f").size(), 8U);
}

TEST_F(FileServerAnswerTest, RedirectsThroughAChainOfHops)
{
    for (int hop = 0; hop < 30; ++hop)
        m_server.serve("/hop" + std::to_string(hop),
                       {.answers = {Answer::redirect(302, "/hop" + std::to_string(hop + 1))}});
    m_server.serve("/hop30", {.content = "arrived"});
    m_client.followRedirects(30);
    EXPECT_EQ(m_client.fetch(m_server.url("/hop0")).body, "arrived");
    m_client.followRedirects(29);
    EXPECT_EQ(m_client.fetch(m_server.url("/hop0")).code, CURLE_TOO_MANY_REDIRECTS);
}

TEST_F(FileServerAnswerTest, RedirectsToOtherSchemesAndNowhere)
{
    m_client.followRedirects(5);
    EXPECT_EQ(fetch(Answer::redirect(302, "file:///etc/hostname")).code, CURLE_UNSUPPORTED_PROTOCOL);
    EXPECT_EQ(fetch(Answer::redirect(302, "ftp://127.0.0.1/x")).code, CURLE_UNSUPPORTED_PROTOCOL);
    const auto nowhere = fetch(Answer::redirectNowhere(302));
    EXPECT_EQ(nowhere.status, 302);
    EXPECT_FALSE(nowhere.header("Location"));
}

TEST_F(FileServerAnswerTest, LetsAFunctionDecide)
{
    m_server.serve("/echo", {.respond = [](const Request& request) {
                       return Answer::page(200, request.method + " " + request.body, "text/plain");
                   }});
    m_client.post("name=value");
    EXPECT_EQ(m_client.fetch(m_server.url("/echo")).body, "POST name=value");
}

TEST_F(FileServerAnswerTest, TellsQueriesApartWhereServedWithOne)
{
    m_server.serve("/q", {.content = "any"});
    m_server.serve("/q?id=1", {.content = "one"});
    EXPECT_EQ(m_client.fetch(m_server.url("/q?id=1")).body, "one");
    EXPECT_EQ(m_client.fetch(m_server.url("/q?id=2")).body, "any");
    EXPECT_EQ(m_server.requests("/q").size(), 2U);
    EXPECT_EQ(m_server.requests("/q?id=2").size(), 1U);
}

TEST_F(FileServerAnswerTest, HasNothingElse)
{
    EXPECT_EQ(m_client.fetch(m_server.url("/missing")).status, 404);
}

TEST_F(FileServerAnswerTest, AnswersHeadWithoutABody)
{
    m_server.serve("/f", {.content = "the file"});
    RawClient client(m_server.port());
    client.send("HEAD /f HTTP/1.1\r\nConnection: close\r\n\r\n");
    const auto answer = client.receiveAll().bytes;
    EXPECT_NE(answer.find("Content-Length: 8\r\n"), std::string::npos);
    EXPECT_EQ(bodyOf(answer), "");
}

} // namespace
} // namespace vormel::sites
