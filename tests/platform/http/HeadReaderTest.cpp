#include "platform/http/HeadReader.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using Step = HeadReader::Step;

/// What the last of these lines leads to.
Step read(HeadReader& reader, const std::vector<QByteArray>& lines)
{
    Step step = Step::more;
    for (const QByteArray& line : lines) {
        EXPECT_EQ(step, Step::more) << "before " << line.toStdString();
        step = reader.take(line);
    }
    return step;
}

Step read(const std::vector<QByteArray>& lines)
{
    HeadReader reader{QUrl()};
    return read(reader, lines);
}

std::optional<QByteArray> valueOf(const std::vector<QByteArray>& fields, const char* name)
{
    HeadReader reader{QUrl()};
    EXPECT_EQ(reader.take("HTTP/1.1 200 OK\r\n"), Step::more);
    EXPECT_EQ(read(reader, fields), Step::more);
    EXPECT_EQ(reader.take("\r\n"), Step::complete);
    return reader.response().header(name);
}

Step lengths(const std::vector<QByteArray>& values)
{
    std::vector<QByteArray> lines{"HTTP/1.1 200 OK\r\n"};
    for (const QByteArray& value : values)
        lines.push_back("Content-Length: " + value + "\r\n");
    lines.emplace_back("\r\n");
    return read(lines);
}

TEST(HeadReader, AHeadHasAStatusAndFields)
{
    HeadReader reader{QUrl(u"http://h/x"_s)};
    ASSERT_EQ(read(reader, {"HTTP/1.1 206 Partial Content\r\n", "ETag:\t\"a\" \r\n", "X : 1\n", "\r\n"}),
              Step::complete);
    EXPECT_EQ(reader.response().statusCode, 206);
    EXPECT_EQ(reader.response().url, QUrl(u"http://h/x"_s));
    EXPECT_EQ(reader.response().header("etag"), "\"a\"");
    EXPECT_EQ(reader.response().header("x"), "1");
}

TEST(HeadReader, StatusLinesOfEveryVersionAreTaken)
{
    for (const QByteArray line :
         {"HTTP/1.1 200 OK", "HTTP/1.0 200 Fine by me", "HTTP/1.1 200", "HTTP/1.1 200 ", "HTTP/2 200 ", "HTTP/3 200"}) {
        HeadReader reader{QUrl()};
        EXPECT_EQ(reader.take(line + "\r\n"), Step::more) << line.toStdString();
        EXPECT_EQ(reader.take("\r\n"), Step::complete);
        EXPECT_EQ(reader.response().statusCode, 200);
    }
}

TEST(HeadReader, AStatusLineThatIsNoneIsNeverReadHalf)
{
    for (const QByteArray line :
         {"http/1.1 200 OK", "HTTP/1.1 2000 OK", "HTTP/1.1 0x200 OK", "HTTP/1.1 20 OK", "HTTP/1.1 2e2 OK",
          "HTTP/1.1 200OK", "HTTP/1.1 +20 OK", "HTTP/1.1 099 OK", "HTTP/11.1 200 OK", "HTTP/1. 200 OK", "HTTP/ 200 OK",
          "HTTP/1.1", "HTTP 200 OK", "ICY 200 OK", "", "Content-Length: 5", " HTTP/1.1 200 OK"})
        EXPECT_EQ(read({line + "\r\n"}), Step::nonsense) << line.toStdString();
}

TEST(HeadReader, PreliminaryHeadsAreNotTheAnswer)
{
    HeadReader reader{QUrl()};
    ASSERT_EQ(read(reader, {"HTTP/1.1 103 Early Hints\r\n", "X-Early: 1\r\n", "\r\n", "HTTP/1.1 200 OK\r\n", "\r\n"}),
              Step::complete);
    EXPECT_EQ(reader.response().statusCode, 200);
    EXPECT_TRUE(reader.response().headers.empty());
}

TEST(HeadReader, AFoldedFieldIsOneLineWithBlanks)
{
    EXPECT_EQ(valueOf({"X: one\r\n", "  two\r\n", "\tthree: 3\r\n"}, "X"), "one two three: 3");
    EXPECT_EQ(valueOf({"X:\r\n", " value\r\n"}, "X"), "value");
    EXPECT_EQ(valueOf({"X: one\r\n", "   \r\n", "Y: 2\r\n"}, "X"), "one");
    EXPECT_EQ(valueOf({"X: one\r\n", " Content-Range: bytes 0-1/2\r\n"}, "Content-Range"), std::nullopt);
    EXPECT_EQ(valueOf({"X: one\r\n", "no field\r\n", " of it\r\n"}, "X"), "one");
}

TEST(HeadReader, AFoldedLineBeforeEveryFieldIsNonsense)
{
    EXPECT_EQ(read({"HTTP/1.1 200 OK\r\n", " X: 1\r\n"}), Step::nonsense);
}

TEST(HeadReader, LengthsThatAreNoNumbersAreNonsense)
{
    for (const QByteArray value : {"0x10", "3e5", "1000x", "+10", "-1", "10 0", "1.5", "", "ten", "10,x", "10,"})
        EXPECT_EQ(lengths({value}), Step::nonsense) << value.toStdString();
    for (const QByteArray value : {"0", "1000", " 1000 ", "99999999999999999999999", "10, 10"})
        EXPECT_EQ(lengths({value}), Step::complete) << value.toStdString();
}

TEST(HeadReader, TwoLengthsMustBeTheSame)
{
    EXPECT_EQ(lengths({"10", "10"}), Step::complete);
    EXPECT_EQ(lengths({"10", "11"}), Step::nonsense);
    EXPECT_EQ(lengths({"10, 11"}), Step::nonsense);
}

TEST(HeadReader, AFoldedLengthIsTheWholeOfIt)
{
    EXPECT_EQ(read({"HTTP/1.1 200 OK\r\n", "Content-Length: 10\r\n", " 00\r\n", "\r\n"}), Step::nonsense);
}

TEST(HeadReader, BesideATransferCodingALengthMeansNothing)
{
    EXPECT_EQ(read({"HTTP/1.1 200 OK\r\n", "Transfer-Encoding: chunked\r\n", "Content-Length: 3e5\r\n", "\r\n"}),
              Step::complete);
}

} // namespace
} // namespace vormel
