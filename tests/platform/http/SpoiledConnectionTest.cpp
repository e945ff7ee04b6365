#include "fixtures/EventLoop.h"
#include "fixtures/Sandbox.h"
#include "platform/http/LoopbackTest.h"
#include "sites/TestCertificates.h"

namespace vormel {
namespace {

using namespace std::chrono_literals;
using sites::Answer;
using sites::FileServer;
using sites::TestCertificates;

const std::string forged = "HTTP/1.1 200 OK\r\nContent-Length: 6\r\n\r\nforged";

/// Servers that send more than they announced: what lies behind one answer must not become the next one.
class SpoiledConnectionTest : public LoopbackTest
{
protected:
    /// The first answer is whole; only then, and before the next request, the surplus comes.
    static void serveWithLateSurplus(FileServer& by)
    {
        by.serve("/first", {.content = "first", .answers = {Answer::file().stallAfter(5).followedBy(forged)}});
        by.serve("/next", {.content = "next"});
    }
    static void letSurplusArrive(FileServer& by)
    {
        ASSERT_TRUE(by.waitForStalled(1, 5s));
        by.release();
        const auto sent = static_cast<std::int64_t>(5 + forged.size());
        ASSERT_TRUE(fixtures::waitUntil([&] { return by.bodyBytesSent() == sent; }));
    }
};

TEST_F(SpoiledConnectionTest, AnOrdinaryConnectionIsUsedAgain)
{
    server.serve("/f", {.content = "file"});
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(get("/f").body, "file");
    EXPECT_EQ(server.connectionsAccepted(), 1);
}

TEST_F(SpoiledConnectionTest, SurplusInTheSegmentOfTheAnswerIsNotTheNextAnswer)
{
    const std::string whole = "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nfirst";
    server.serve("/first", {.answers = {Answer::raw(whole + forged).followedBy("")}});
    server.serve("/next", {.content = "next"});
    EXPECT_EQ(get("/first").body, "first");
    EXPECT_EQ(get("/next").body, "next");
    EXPECT_EQ(server.connectionsAccepted(), 2);
}

TEST_F(SpoiledConnectionTest, SurplusThatComesLaterIsNotTheNextAnswer)
{
    serveWithLateSurplus(server);
    EXPECT_EQ(get("/first").body, "first");
    letSurplusArrive(server);
    const Recorder::Heard next = get("/next");
    EXPECT_FALSE(next.error);
    EXPECT_EQ(next.body, "next");
    EXPECT_EQ(next.ends, 1);
    EXPECT_EQ(server.connectionsAccepted(), 2);
    EXPECT_EQ(get("/next").body, "next");
    EXPECT_EQ(server.connectionsAccepted(), 2);
}

TEST_F(SpoiledConnectionTest, SurplusBehindAnAnswerWithoutABodyIsNotTheNextAnswer)
{
    for (const char* const head : {"HTTP/1.1 204 No Content\r\n\r\n", "HTTP/1.1 304 Not Modified\r\n\r\n",
                                   "HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"}) {
        server.serve("/first", {.answers = {Answer::raw(head + forged).followedBy("")}});
        server.serve("/next", {.content = "next"});
        EXPECT_FALSE(get("/first").error);
        EXPECT_EQ(get("/next").body, "next") << head;
    }
}

TEST_F(SpoiledConnectionTest, SurplusUnderEncryptionIsNotTheNextAnswer)
{
    const TestCertificates certificates;
    const fixtures::Sandbox sandbox;
    FileServer secure({.tls = certificates.valid()});
    CurlHttpClient::Options options;
    options.extraCaFile = QString::fromStdString(certificates.writeAuthority(sandbox.root().toStdString()).string());
    CurlHttpClient trusting(clock, options);
    serveWithLateSurplus(secure);
    Recorder first;
    EXPECT_EQ(run(trusting, requestFor(secure.url("localhost", "/first")), first).body, "first");
    letSurplusArrive(secure);
    Recorder next;
    EXPECT_EQ(run(trusting, requestFor(secure.url("localhost", "/next")), next).body, "next");
}

} // namespace
} // namespace vormel
