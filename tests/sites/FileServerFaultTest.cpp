#include "CurlClient.h"
#include "RawClient.h"
#include "sites/FileServer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>

namespace vormel::sites {
namespace {

using namespace std::chrono_literals;
using End = RawClient::End;
using std::chrono::steady_clock;

constexpr std::int64_t size = 3'000'000;

class FileServerFaultTest : public testing::Test
{
protected:
    void serve(const Answer& answer) { m_server.serve("/f", {.content = m_pattern, .answers = {answer}}); }

    [[nodiscard]] RawClient::Received receive(const Answer& answer, std::string_view headers = {})
    {
        serve(answer);
        RawClient client(m_server.port());
        client.get("/f", headers);
        return client.receiveAll();
    }

    void expectCut(const Answer& answer, std::int64_t count, End end)
    {
        const auto fresh = receive(answer);
        EXPECT_EQ(fresh.end, end);
        EXPECT_TRUE(fresh.bytes.starts_with("HTTP/1.1 200 OK\r\n"));
        EXPECT_EQ(std::ssize(bodyOf(fresh.bytes)), count);
        EXPECT_FALSE(m_pattern.firstMismatch(0, bodyOf(fresh.bytes)));
        const auto resumed = receive(answer, "Range: bytes=500-\r\n");
        EXPECT_EQ(resumed.end, end);
        EXPECT_TRUE(resumed.bytes.starts_with("HTTP/1.1 206 Partial Content\r\n"));
        EXPECT_EQ(std::ssize(bodyOf(resumed.bytes)), count);
        EXPECT_FALSE(m_pattern.firstMismatch(500, bodyOf(resumed.bytes)));
    }

    PatternContent m_pattern{12, size};
    FileServer m_server;
};

TEST_F(FileServerFaultTest, ClosesInTheBody)
{
    for (const std::int64_t count : {0, 1, 2'000'000})
        expectCut(Answer::file().closeAfter(count), count, End::fin);
}

TEST_F(FileServerFaultTest, ResetsInTheBodyAfterExactlySoManyBytes)
{
    for (const std::int64_t count : {0, 1, 2'000'000})
        expectCut(Answer::file().resetAfter(count), count, End::reset);
}

TEST_F(FileServerFaultTest, StallsInTheBodyUntilReleased)
{
    serve(Answer::file().stallAfter(1000));
    RawClient client(m_server.port());
    client.get("/f");
    ASSERT_TRUE(m_server.waitForStalled(1, 5s));
    EXPECT_EQ(client.receiveHead().substr(0, 12), "HTTP/1.1 200");
    const auto start = client.receive(1000).bytes;
    EXPECT_EQ(m_server.bodyBytesSent(), 1000);
    m_server.release();
    const auto rest = client.receive(size - 1000);
    EXPECT_FALSE(m_pattern.firstMismatch(0, start));
    EXPECT_EQ(std::ssize(rest.bytes), size - 1000);
    EXPECT_FALSE(m_pattern.firstMismatch(1000, rest.bytes));
}

TEST_F(FileServerFaultTest, StallsAgainAfterARelease)
{
    serve(Answer::file().stallAfter(0));
    RawClient first(m_server.port());
    first.get("/f");
    ASSERT_TRUE(m_server.waitForStalled(1, 5s));
    m_server.release();
    EXPECT_NE(bodyOf(first.receive(size).bytes), "");
    RawClient second(m_server.port());
    second.get("/f");
    EXPECT_TRUE(m_server.waitForStalled(1, 5s));
}

TEST_F(FileServerFaultTest, StopsStallingWhenTheClientLeaves)
{
    serve(Answer::file().stallAfter(10));
    RawClient client(m_server.port());
    client.get("/f");
    ASSERT_TRUE(m_server.waitForStalled(1, 5s));
    client.hangUp();
    const auto end = steady_clock::now() + 5s;
    while (m_server.connectionsOpen() > 0 && steady_clock::now() < end)
        std::this_thread::yield();
    EXPECT_EQ(m_server.connectionsOpen(), 0);
}

TEST_F(FileServerFaultTest, StallsBeforeTheHead)
{
    serve(Answer::file().stallBeforeHead());
    RawClient client(m_server.port());
    client.get("/f");
    ASSERT_TRUE(m_server.waitForStalled(1, 5s));
    EXPECT_EQ(m_server.bodyBytesSent(), 0);
    m_server.release();
    EXPECT_TRUE(client.receiveHead().starts_with("HTTP/1.1 200 OK"));
}

TEST_F(FileServerFaultTest, ClosesBeforeTheStatusLine)
{
    const auto received = receive(Answer::nothing());
    EXPECT_EQ(received.bytes, "");
    EXPECT_EQ(received.end, End::fin);
}

TEST_F(FileServerFaultTest, CutsTheHeadBeforeItsBlankLine)
{
    const auto received = receive(Answer::file().cutHead());
    EXPECT_TRUE(received.bytes.starts_with("HTTP/1.1 200 OK\r\n"));
    EXPECT_TRUE(received.bytes.ends_with("\r\n"));
    EXPECT_EQ(received.bytes.find("\r\n\r\n"), std::string::npos);
    EXPECT_EQ(received.end, End::fin);
}

TEST_F(FileServerFaultTest, SendsGarbageForAStatusLine)
{
    EXPECT_TRUE(receive(Answer::file().withStatusLine("%&/ 9000").closing()).bytes.starts_with("%&/ 9000\r\n"));
    EXPECT_EQ(receive(Answer::raw("220 ready\r\n")).bytes, "220 ready\r\n");
}

TEST_F(FileServerFaultTest, SendsHeadersWithoutEnd)
{
    serve(Answer::file().endlessHeaders());
    RawClient client(m_server.port());
    client.get("/f");
    const auto received = client.receive(4'000'000);
    EXPECT_EQ(received.end, End::open);
    EXPECT_EQ(received.bytes.find("\r\n\r\n"), std::string::npos);
}

TEST_F(FileServerFaultTest, SendsTrailersWithoutEnd)
{
    m_server.serve("/f", {.content = "12345", .answers = {Answer::file().endlessTrailers()}});
    RawClient client(m_server.port());
    client.get("/f");
    EXPECT_NE(client.receiveHead().find("Transfer-Encoding: chunked\r\n"), std::string::npos);
    const auto received = client.receive(4'000'000);
    EXPECT_EQ(received.end, End::open);
    EXPECT_TRUE(received.bytes.starts_with("5\r\n12345\r\n0\r\nX-More-1: "));
    EXPECT_EQ(received.bytes.find("\r\n\r\n"), std::string::npos);
}

TEST_F(FileServerFaultTest, EndsABodyWithoutLengthByClosing)
{
    const auto received = receive(Answer::file().untilClose());
    EXPECT_EQ(received.bytes.find("Content-Length"), std::string::npos);
    EXPECT_NE(received.bytes.find("Connection: close\r\n"), std::string::npos);
    EXPECT_EQ(std::ssize(bodyOf(received.bytes)), size);
    EXPECT_EQ(received.end, End::fin);
}

TEST_F(FileServerFaultTest, SendsChunksThatAClientCanRead)
{
    serve(Answer::file().chunked());
    CurlClient client;
    for (int time = 0; time < 2; ++time) {
        const auto fetched = client.fetch(m_server.url("/f"));
        EXPECT_EQ(fetched.code, CURLE_OK);
        EXPECT_EQ(fetched.header("Transfer-Encoding"), "chunked");
        EXPECT_EQ(std::ssize(fetched.body), size);
        EXPECT_FALSE(m_pattern.firstMismatch(0, fetched.body));
    }
    EXPECT_EQ(m_server.connectionsAccepted(), 1);
}

TEST_F(FileServerFaultTest, LeavesTheLastChunkAway)
{
    const auto received = receive(Answer::file().chunkedWithoutEnd());
    EXPECT_EQ(received.end, End::fin);
    EXPECT_FALSE(received.bytes.ends_with("0\r\n\r\n"));
    CurlClient client;
    const auto fetched = client.fetch(m_server.url("/f"));
    EXPECT_EQ(fetched.code, CURLE_PARTIAL_FILE);
    EXPECT_EQ(std::ssize(fetched.body), size);
}

TEST_F(FileServerFaultTest, ClaimsAnotherLengthThanItSends)
{
    for (const std::int64_t difference : {-1000, 1000}) {
        const auto received = receive(Answer::file().withContentLengthOff(difference));
        const auto claim = "Content-Length: " + std::to_string(size + difference) + "\r\n";
        EXPECT_NE(received.bytes.find(claim), std::string::npos);
        EXPECT_EQ(std::ssize(bodyOf(received.bytes)), size);
        EXPECT_EQ(received.end, End::fin);
    }
}

TEST_F(FileServerFaultTest, ClaimsALengthThatNoNumberHolds)
{
    const auto received = receive(Answer::file().withContentLength("99999999999999999999"));
    EXPECT_NE(received.bytes.find("Content-Length: 99999999999999999999\r\n"), std::string::npos);
    EXPECT_EQ(std::ssize(bodyOf(received.bytes)), size);
}

TEST_F(FileServerFaultTest, ClosesAfterABodyWhoseEndNothingTells)
{
    const auto received = receive(Answer::file().withoutHeader("Content-Length"));
    EXPECT_EQ(std::ssize(bodyOf(received.bytes)), size);
    EXPECT_EQ(received.end, End::fin);
}

TEST_F(FileServerFaultTest, DripsTheBody)
{
    m_server.serve("/f", {.content = "0123456789", .answers = {Answer::file().dripping(2, 20ms).closing()}});
    const auto start = steady_clock::now();
    RawClient client(m_server.port());
    client.get("/f");
    EXPECT_EQ(bodyOf(client.receiveAll().bytes), "0123456789");
    EXPECT_GE(steady_clock::now() - start, 80ms);
    EXPECT_THROW(static_cast<void>(Answer::file().dripping(0, 20ms)), std::invalid_argument);
}

TEST_F(FileServerFaultTest, DelaysTheHead)
{
    serve(Answer::file().delayedBy(60ms));
    const auto start = steady_clock::now();
    RawClient client(m_server.port());
    client.get("/f");
    EXPECT_TRUE(client.receiveHead().starts_with("HTTP/1.1 200 OK"));
    EXPECT_GE(steady_clock::now() - start, 60ms);
}

} // namespace
} // namespace vormel::sites
