#include "CurlClient.h"
#include "RawClient.h"
#include "sites/FileServer.h"

#include <gtest/gtest.h>

#include <string>

namespace vormel::sites {
namespace {

constexpr std::int64_t size = 300'000;

class FileServerRangeTest : public testing::Test
{
protected:
    void serve(const Answer& answer)
    {
        m_server.serve("/f", {.content = m_pattern,
                              .contentType = "application/zip",
                              .etag = "\"v1\"",
                              .lastModified = "Wed, 21 Oct 2015 07:28:00 GMT",
                              .answers = {answer}});
    }

    [[nodiscard]] Fetched fetch(const Answer& answer, const std::string& range)
    {
        serve(answer);
        m_client.setRange(range);
        return m_client.fetch(m_server.url("/f"));
    }

    [[nodiscard]] bool hasBytesFrom(const Fetched& fetched, std::int64_t offset, std::int64_t count) const
    {
        return std::ssize(fetched.body) == count && !m_pattern.firstMismatch(offset, fetched.body);
    }

    PatternContent m_pattern{11, size};
    FileServer m_server;
    CurlClient m_client;
};

TEST_F(FileServerRangeTest, ServesTheWholeFile)
{
    const auto fetched = fetch(Answer::file(), "");
    EXPECT_EQ(fetched.code, CURLE_OK);
    EXPECT_EQ(fetched.status, 200);
    EXPECT_EQ(fetched.header("Content-Length"), "300000");
    EXPECT_EQ(fetched.header("Content-Type"), "application/zip");
    EXPECT_EQ(fetched.header("Accept-Ranges"), "bytes");
    EXPECT_EQ(fetched.header("ETag"), "\"v1\"");
    EXPECT_EQ(fetched.header("Last-Modified"), "Wed, 21 Oct 2015 07:28:00 GMT");
    EXPECT_TRUE(hasBytesFrom(fetched, 0, size));
}

TEST_F(FileServerRangeTest, ServesTheRangeAskedFor)
{
    const auto fetched = fetch(Answer::file(), "1000-1999");
    EXPECT_EQ(fetched.status, 206);
    EXPECT_EQ(fetched.header("Content-Range"), "bytes 1000-1999/300000");
    EXPECT_EQ(fetched.header("Content-Length"), "1000");
    EXPECT_TRUE(hasBytesFrom(fetched, 1000, 1000));
}

TEST_F(FileServerRangeTest, ResumesACutTransferToTheWholeFile)
{
    m_server.serve("/f", {.content = m_pattern, .answers = {Answer::file().closeAfter(100'001), Answer::file()}});
    const auto start = m_client.fetch(m_server.url("/f"));
    EXPECT_EQ(start.code, CURLE_PARTIAL_FILE);
    EXPECT_TRUE(hasBytesFrom(start, 0, 100'001));
    m_client.setRange("100001-");
    const auto rest = m_client.fetch(m_server.url("/f"));
    EXPECT_EQ(rest.code, CURLE_OK);
    EXPECT_TRUE(hasBytesFrom(rest, 100'001, size - 100'001));
    EXPECT_EQ(m_server.bodyBytesSent(), size);
}

TEST_F(FileServerRangeTest, IgnoresTheRangeWhenToldSo)
{
    const auto fetched = fetch(Answer::wholeFile(), "1000-");
    EXPECT_EQ(fetched.status, 200);
    EXPECT_FALSE(fetched.header("Content-Range"));
    EXPECT_FALSE(fetched.header("Accept-Ranges"));
    RawClient client(m_server.port());
    client.get("/f", "Range: bytes=1000-\r\nConnection: close\r\n");
    EXPECT_EQ(bodyOf(client.receiveAll().bytes).size(), size);
}

TEST_F(FileServerRangeTest, HoldsIfRangeAgainstTheFile)
{
    serve(Answer::file());
    m_client.setRange("1000-");
    m_client.setHeader("If-Range: \"v1\"");
    EXPECT_EQ(m_client.fetch(m_server.url("/f")).status, 206);
    serve(Answer::file().withEtag("\"v2\""));
    EXPECT_EQ(m_client.fetch(m_server.url("/f")).status, 200);
    m_client.setHeader("If-Range:");
}

TEST_F(FileServerRangeTest, AnswersARangeBehindTheEndWith416)
{
    const auto fetched = fetch(Answer::file(), "300000-");
    EXPECT_EQ(fetched.status, 416);
    EXPECT_EQ(fetched.header("Content-Range"), "bytes */300000");
    EXPECT_EQ(fetched.body, "");
}

TEST_F(FileServerRangeTest, Gives416WithAndWithoutTheSize)
{
    const auto with = fetch(Answer::rangeRefused(), "10-");
    EXPECT_EQ(with.status, 416);
    EXPECT_EQ(with.header("Content-Range"), "bytes */300000");
    const auto without = fetch(Answer::rangeRefused().withoutContentRange(), "10-");
    EXPECT_EQ(without.status, 416);
    EXPECT_FALSE(without.header("Content-Range"));
    const auto page = fetch(Answer::page(416, "<p>no</p>"), "10-");
    EXPECT_FALSE(page.header("Content-Range"));
    EXPECT_EQ(page.body, "<p>no</p>");
}

TEST_F(FileServerRangeTest, ClaimsAnotherTotal)
{
    EXPECT_EQ(fetch(Answer::file().withTotal(5), "10-19").header("Content-Range"), "bytes 10-19/5");
    EXPECT_EQ(fetch(Answer::file().withUnknownTotal(), "10-19").header("Content-Range"), "bytes 10-19/*");
}

TEST_F(FileServerRangeTest, LeavesContentRangeAway)
{
    serve(Answer::file().withoutContentRange());
    RawClient client(m_server.port());
    client.get("/f", "Range: bytes=10-19\r\nConnection: close\r\n");
    const auto answer = client.receiveAll().bytes;
    EXPECT_TRUE(answer.starts_with("HTTP/1.1 206 "));
    EXPECT_EQ(answer.find("Content-Range"), std::string::npos);
    EXPECT_EQ(bodyOf(answer).size(), 10U);
}

TEST_F(FileServerRangeTest, SendsAnyContentRange)
{
    EXPECT_EQ(fetch(Answer::file().withContentRange("bytes 10-19/banana"), "10-19").header("Content-Range"),
              "bytes 10-19/banana");
}

TEST_F(FileServerRangeTest, StartsAtAnotherOffsetThanAsked)
{
    for (const std::int64_t shift : {-50, 50}) {
        serve(Answer::file().shiftedBy(shift));
        RawClient client(m_server.port());
        client.get("/f", "Range: bytes=100-199\r\nConnection: close\r\n");
        const auto answer = client.receiveAll().bytes;
        const auto claim = "Content-Range: bytes " + std::to_string(100 + shift) + "-199/300000\r\n";
        EXPECT_NE(answer.find(claim), std::string::npos) << answer.substr(0, 400);
        EXPECT_EQ(std::ssize(bodyOf(answer)), 100 - shift);
        EXPECT_FALSE(m_pattern.firstMismatch(100 + shift, bodyOf(answer)));
    }
}

TEST_F(FileServerRangeTest, WrapsTheRangeAsMultipart)
{
    serve(Answer::file().asMultipart());
    RawClient client(m_server.port());
    client.get("/f", "Range: bytes=100-199\r\nConnection: close\r\n");
    const auto answer = client.receiveAll().bytes;
    const auto body = bodyOf(answer);
    EXPECT_NE(answer.find("Content-Type: multipart/byteranges; boundary="), std::string::npos);
    EXPECT_NE(answer.find("Content-Length: " + std::to_string(body.size()) + "\r\n"), std::string::npos);
    EXPECT_EQ(answer.substr(0, answer.find("\r\n\r\n")).find("Content-Range"), std::string::npos);
    EXPECT_NE(body.find("Content-Range: bytes 100-199/300000\r\n"), std::string::npos);
    const auto part = bodyOf(body);
    EXPECT_FALSE(m_pattern.firstMismatch(100, std::string_view(part).substr(0, 100)));
    EXPECT_TRUE(part.substr(100).starts_with("\r\n--"));
    EXPECT_TRUE(part.ends_with("--\r\n"));
}

TEST_F(FileServerRangeTest, GivesAPageInsteadOfThePartAskedFor)
{
    const auto whole = fetch(Answer::page(200, "<html>login</html>"), "");
    EXPECT_EQ(whole.status, 200);
    EXPECT_EQ(whole.body, "<html>login</html>");
    EXPECT_EQ(whole.header("Content-Type"), "text/html; charset=utf-8");
    const auto part = fetch(Answer::page(206, "<html>login</html>"), "1000-");
    EXPECT_EQ(part.status, 206);
    EXPECT_EQ(part.body, "<html>login</html>");
    EXPECT_EQ(part.header("Content-Range"), "bytes 1000-1017/300000");
}

} // namespace
} // namespace vormel::sites
