#include "CurlClient.h"
#include "RawClient.h"
#include "sites/FileServer.h"
#include "sites/TestCertificates.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace vormel::sites {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

constexpr std::int64_t gibibyte = std::int64_t{1} << 30;
/// Far from what the clients would take, and far enough for a busy machine.
constexpr steady_clock::duration atOnce = 30s;

// How long the server takes to stop while it serves the answer to a client that asked for it.
steady_clock::duration stopTime(const Answer& answer, const std::function<void(FileServer&, RawClient&)>& reach)
{
    auto server = std::make_unique<FileServer>();
    server->serve("/f", {.content = PatternContent(1, gibibyte), .answers = {answer}});
    RawClient client(server->port());
    client.get("/f");
    reach(*server, client);
    const auto start = steady_clock::now();
    server.reset();
    return steady_clock::now() - start;
}

void untilStalled(FileServer& server, RawClient&)
{
    EXPECT_TRUE(server.waitForStalled(1, 5s));
}

void untilBody(FileServer&, RawClient& client)
{
    EXPECT_NE(client.receiveHead(), "");
    EXPECT_EQ(client.receive(1).bytes.size(), 1U);
}

void untilRequested(FileServer& server, RawClient&)
{
    EXPECT_TRUE(server.waitForRequests("/f", 1, 5s));
}

TEST(FileServerLifeTest, StopsAtOnceWhateverItDoes)
{
    EXPECT_LT(stopTime(Answer::file().stallAfter(10), untilStalled), atOnce);
    EXPECT_LT(stopTime(Answer::file().stallBeforeHead(), untilStalled), atOnce);
    EXPECT_LT(stopTime(Answer::file().dripping(10, 1h), untilBody), atOnce);
    EXPECT_LT(stopTime(Answer::file().delayedBy(1h), untilRequested), atOnce);
    EXPECT_LT(stopTime(Answer::file().endlessHeaders(), untilRequested), atOnce);
    EXPECT_LT(stopTime(Answer::file().resetAfter(gibibyte / 2), untilBody), atOnce);
    EXPECT_LT(stopTime(Answer::file(), untilBody), atOnce) << "the client does not read on";
    EXPECT_LT(stopTime(Answer::empty(204), untilRequested), atOnce) << "kept alive";
    EXPECT_LT(stopTime(Answer::nothing(), untilRequested), atOnce) << "the client does not close its side";
}

TEST(FileServerLifeTest, KeepsAConnectionForSeveralRequests)
{
    FileServer server;
    server.serve("/f", {.content = "the file"});
    CurlClient client;
    for (int time = 0; time < 3; ++time)
        EXPECT_EQ(client.fetch(server.url("/f")).connectionsMade, time == 0 ? 1 : 0);
    EXPECT_EQ(server.connectionsAccepted(), 1);
    EXPECT_EQ(server.requests().at(2).connection, 1);
}

TEST(FileServerLifeTest, AnswersPipelinedRequestsInTheirOrder)
{
    FileServer server;
    server.serve("/1", {.content = "one"});
    server.serve("/2", {.content = "two"});
    RawClient client(server.port());
    client.send("GET /1 HTTP/1.1\r\n\r\nGET /2 HTTP/1.1\r\nConnection: close\r\n\r\n");
    const auto all = client.receiveAll().bytes;
    EXPECT_NE(all.find("\r\n\r\noneHTTP/1.1 200 OK\r\n"), std::string::npos) << all;
    EXPECT_TRUE(all.ends_with("\r\n\r\ntwo"));
}

TEST(FileServerLifeTest, ClosesWhereEitherSideWantsIt)
{
    FileServer server;
    server.serve("/f", {.content = "x"});
    server.serve("/closing", {.content = "x", .answers = {Answer::file().closing()}});
    for (const auto* request :
         {"GET /f HTTP/1.1\r\nConnection: close\r\n\r\n", "GET /f HTTP/1.0\r\n\r\n", "GET /closing HTTP/1.1\r\n\r\n"}) {
        RawClient client(server.port());
        client.send(request);
        const auto received = client.receiveAll();
        EXPECT_NE(received.bytes.find("Connection: close\r\n"), std::string::npos) << request;
        EXPECT_EQ(received.end, RawClient::End::fin) << request;
    }
}

TEST(FileServerLifeTest, LosesNothingOfAnAnswerOverUnreadBytes)
{
    FileServer server;
    server.serve("/f", {.content = PatternContent(3, 500'000), .answers = {Answer::file().closing()}});
    RawClient client(server.port());
    client.send("GET /f HTTP/1.1\r\n\r\n" + std::string(200'000, 'x'));
    const auto received = client.receiveAll();
    EXPECT_EQ(bodyOf(received.bytes).size(), 500'000U);
    EXPECT_EQ(received.end, RawClient::End::fin);
}

TEST(FileServerLifeTest, RecordsRequestsAsTheyCame)
{
    FileServer server;
    const auto before = steady_clock::now();
    RawClient client(server.port());
    client.send("POST /form?a=b HTTP/1.1\r\nhost: h\r\nX-B:  two words \r\nX-A: 1\r\nContent-Length: 5\r\n\r\nhello");
    ASSERT_TRUE(server.waitForRequests("/form", 1, 5s));
    const auto request = server.requests("/form").at(0);
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.target, "/form?a=b");
    EXPECT_EQ(request.path(), "/form");
    EXPECT_EQ(request.body, "hello");
    EXPECT_EQ(request.connection, 1);
    EXPECT_GE(request.time, before);
    std::string headers;
    for (const auto& header : request.headers)
        headers += header.name + "=" + header.value + "|";
    EXPECT_EQ(headers, "host=h|X-B=two words|X-A=1|Content-Length=5|");
    EXPECT_EQ(request.header("x-a"), "1");
    EXPECT_FALSE(request.header("X-C"));
}

TEST(FileServerLifeTest, ReadsChunkedAndExpectantBodies)
{
    FileServer server;
    RawClient client(server.port());
    client.send("POST /f HTTP/1.1\r\nTransfer-Encoding: chunked\r\nExpect: 100-continue\r\n\r\n");
    EXPECT_EQ(client.receiveHead(), "HTTP/1.1 100 Continue\r\n\r\n");
    client.send("3\r\nabc\r\nA\r\n0123456789\r\n0\r\n\r\n");
    ASSERT_TRUE(server.waitForRequests("/f", 1, 5s));
    EXPECT_EQ(server.requests().at(0).body, "abc0123456789");
}

TEST(FileServerLifeTest, ServesAsAProxyWhatItHasAtThePath)
{
    FileServer server;
    server.serve("/f", {.content = "proxied"});
    RawClient client(server.port());
    client.send("GET http://far.example/f HTTP/1.1\r\nConnection: close\r\n\r\n");
    EXPECT_EQ(bodyOf(client.receiveAll().bytes), "proxied");
    EXPECT_EQ(server.requests("/f").at(0).target, "http://far.example/f");
}

TEST(FileServerLifeTest, GivesUpWaitingInTime)
{
    const FileServer server;
    EXPECT_FALSE(server.waitForRequests("/f", 1, 10ms));
    EXPECT_FALSE(server.waitForStalled(1, 10ms));
    EXPECT_TRUE(server.waitForRequests("/f", 0, 0ms));
}

TEST(FileServerLifeTest, EndsConnectionsThatSpeakSomethingElse)
{
    FileServer server;
    RawClient client(server.port());
    client.send("SSH-2.0-hello\r\n\r\n");
    const auto received = client.receiveAll();
    EXPECT_EQ(received.bytes, "");
    EXPECT_EQ(received.end, RawClient::End::fin);
    EXPECT_TRUE(server.requests().empty());
}

TEST(FileServerLifeTest, ServesManyConnectionsAtOnce)
{
    constexpr int count = 100;
    FileServer server;
    server.serve("/f", {.content = PatternContent(2, 10'000), .answers = {Answer::file().stallAfter(5'000)}});
    std::vector<RawClient> clients;
    for (int number = 0; number < count; ++number)
        clients.emplace_back(server.port()).get("/f", "Connection: close\r\n");
    ASSERT_TRUE(server.waitForStalled(count, 10s));
    EXPECT_EQ(server.mostConnectionsOpen(), count);
    EXPECT_EQ(server.bodyBytesSent(), count * 5'000);
    server.release();
    for (auto& client : clients)
        EXPECT_EQ(bodyOf(client.receiveAll().bytes).size(), 10'000U);
    EXPECT_EQ(server.connectionsAccepted(), count);
}

TEST(FileServerLifeTest, TakesTheAddressItIsGiven)
{
    std::uint16_t port = 0;
    {
        const FileServer first;
        port = first.port();
        EXPECT_THROW(FileServer(FileServer::Options{.port = port}), std::system_error);
    }
    const FileServer second(FileServer::Options{.port = port});
    EXPECT_EQ(second.url("/a b"), "http://127.0.0.1:" + std::to_string(port) + "/a b");
    EXPECT_EQ(second.url("host.example", "/"), "http://host.example:" + std::to_string(port) + "/");
    const FileServer secure(FileServer::Options{.tls = TestCertificates().valid()});
    EXPECT_TRUE(secure.url("/").starts_with("https://127.0.0.1:"));
}

} // namespace
} // namespace vormel::sites
