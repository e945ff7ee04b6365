#include "platform/http/LoopbackTest.h"

#include <QFile>

#include <string>
#include <vector>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using namespace std::chrono_literals;
using sites::Answer;
using sites::PatternContent;

/// What the client makes of servers that break the rules.
class BrokenServerTest : public LoopbackTest
{
protected:
    Recorder::Heard getAnswer(const Answer& answer, qint64 size = 100 * kib)
    {
        server.serve("/f", {.content = PatternContent(1, size), .answers = {answer}});
        return get("/f");
    }

    /// The other transfer makes sure that the client's thread has looked at the clock meanwhile.
    void expectTimeOutAfterAMinute(const Recorder& recorder)
    {
        clock.advance(59s);
        EXPECT_FALSE(get("/missing").error);
        EXPECT_FALSE(recorder.heard().isOver);
        clock.advance(1s);
        ASSERT_TRUE(recorder.waitForEnd());
        expectError(recorder.heard(), Kind::timedOut);
    }
};

/// The memory of this process that is in use, in bytes.
qint64 residentBytes()
{
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
    return 0; // the sanitizers' own memory would hide the program's
#else
    QFile file(u"/proc/self/statm"_s);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll().split(' ').at(1).toLongLong() * 4096;
#endif
}

struct Loss
{
    const char* name;
    Answer answer;
    qint64 bytes; ///< that came before it
};

TEST_F(BrokenServerTest, AConnectionThatEndsEarlyIsLostAndWhatCameBeforeIsHandedOn)
{
    const std::vector<Loss> losses = {
        {"closed in the body", Answer::file().closeAfter(50'000), 50'000},
        {"closed before the body", Answer::file().closeAfter(0), 0},
        {"closed one byte early", Answer::file().closeAfter(100 * kib - 1), 100 * kib - 1},
        {"length too large", Answer::file().withContentLengthOff(10), 100 * kib},
        {"chunks cut", Answer::file().chunked().closeAfter(50'000), 50'000},
        {"last chunk missing", Answer::file().chunkedWithoutEnd(), 100 * kib},
    };
    for (const Loss& loss : losses) {
        SCOPED_TRACE(loss.name);
        const Recorder::Heard heard = getAnswer(loss.answer);
        expectError(heard, Kind::connectionLost);
        EXPECT_TRUE(heard.head);
        EXPECT_EQ(heard.body.size(), loss.bytes);
        EXPECT_EQ(heard.ends, 1);
    }
}

TEST_F(BrokenServerTest, AResetConnectionIsLost)
{
    const Recorder::Heard heard = getAnswer(Answer::file().resetAfter(50'000));
    expectError(heard, Kind::connectionLost);
    EXPECT_LE(heard.body.size(), 50'000);
}

TEST_F(BrokenServerTest, AHeadThatIsCutOrMissingIsALostConnection)
{
    for (const Answer& answer :
         {Answer::file().cutHead(), Answer::nothing(), Answer::raw("HTTP/1.1 200 OK\r\nContent-Le"),
          Answer::raw("HTTP/1.1 200 OK\r\n"), Answer::raw("HTTP/1.1 100 Continue\r\n\r\n")}) {
        const Recorder::Heard heard = getAnswer(answer);
        expectError(heard, Kind::connectionLost);
        EXPECT_FALSE(heard.head);
        EXPECT_TRUE(heard.blocks.empty());
    }
}

TEST_F(BrokenServerTest, AStatusLineThatIsNoneIsABadAnswer)
{
    for (const Answer& answer :
         {Answer::raw("<html>hello</html>\r\n\r\n"), Answer::raw("SSH-2.0-hello\r\n"),
          Answer::file().withStatusLine("HELLO 200 OK"), Answer::raw("HTTP/1.1 abc OK\r\n\r\n"),
          Answer::file().withStatusLine("http/1.1 200 OK"), Answer::file().withStatusLine("HTTP/1.1 2000 OK"),
          Answer::file().withStatusLine("HTTP/1.1 200x OK")}) {
        const Recorder::Heard heard = getAnswer(answer);
        expectError(heard, Kind::badServerResponse);
        EXPECT_TRUE(heard.blocks.empty());
    }
}

TEST_F(BrokenServerTest, HeadersWithoutEndAreCutAndTakeNoMemory)
{
    const qint64 before = residentBytes();
    for (int i = 0; i < 10; ++i) {
        const Recorder::Heard heard = getAnswer(Answer::file().endlessHeaders());
        expectError(heard, Kind::badServerResponse);
        EXPECT_FALSE(heard.head);
    }
    EXPECT_LT(residentBytes() - before, 32 * mib);
}

TEST_F(BrokenServerTest, TrailersWithoutEndAreCutAndTakeNoMemory)
{
    const qint64 before = residentBytes();
    for (int i = 0; i < 10; ++i) {
        const Recorder::Heard heard = getAnswer(Answer::file().endlessTrailers());
        expectError(heard, Kind::badServerResponse);
        EXPECT_TRUE(heard.head);
    }
    EXPECT_LT(residentBytes() - before, 32 * mib);
}

TEST_F(BrokenServerTest, ALengthThatIsTooLargeToBeTrueIsUnknown)
{
    for (const char* length : {"9223372036854775808", "99999999999999999999999999"}) {
        const Recorder::Heard heard = getAnswer(Answer::file().withContentLength(length));
        ASSERT_TRUE(heard.head) << length;
        EXPECT_EQ(heard.head->expectedContentLength(), -1);
        EXPECT_FALSE(heard.error) << heard.error->details.toStdString();
        EXPECT_EQ(heard.body.size(), 100 * kib);
    }
}

TEST_F(BrokenServerTest, ALengthThatIsNoNumberIsABadAnswerAndNotReadHalf)
{
    for (const char* length : {"0x10", "3e5", "1000x", "-5", "10,11", ""}) {
        const Recorder::Heard heard = getAnswer(Answer::file().withContentLength(length));
        expectError(heard, Kind::badServerResponse);
        EXPECT_TRUE(heard.body.isEmpty()) << length;
    }
}

TEST_F(BrokenServerTest, TwoDifferentLengthsAreABadAnswer)
{
    expectError(getAnswer(Answer::raw("HTTP/1.1 200 OK\r\nContent-Length: 3\r\nContent-Length: 5\r\n\r\nabcde")),
                Kind::badServerResponse);
    const Recorder::Heard same =
        getAnswer(Answer::raw("HTTP/1.1 200 OK\r\nContent-Length: 3\r\nContent-Length: 3\r\n\r\nabc"));
    EXPECT_FALSE(same.error);
    EXPECT_EQ(same.body, "abc");
}

TEST_F(BrokenServerTest, AFoldedFieldIsReadAsOne)
{
    const Recorder::Heard heard =
        getAnswer(Answer::raw("HTTP/1.1 200 OK\r\nContent-Length: 2\r\nX: one\r\n  Content-Range: two\r\n\r\nok"));
    EXPECT_FALSE(heard.error);
    ASSERT_TRUE(heard.head);
    EXPECT_EQ(heard.head->header("X"), "one Content-Range: two");
    EXPECT_EQ(heard.head->header("Content-Range"), std::nullopt);
}

TEST_F(BrokenServerTest, ABodyWithoutALengthEndsWithItsFraming)
{
    const PatternContent content(1, 100 * kib);
    for (const Answer& answer : {Answer::file().untilClose(), Answer::file().chunked()}) {
        const Recorder::Heard heard = getAnswer(answer);
        expectWhole(heard, content);
        EXPECT_EQ(heard.head->expectedContentLength(), -1);
    }
}

TEST_F(BrokenServerTest, InformationalHeadsBeforeTheAnswerAreNotTheAnswer)
{
    const Recorder::Heard heard = getAnswer(Answer::raw("HTTP/1.1 103 Early Hints\r\nX-Early: 1\r\n\r\n"
                                                        "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok"));
    EXPECT_FALSE(heard.error);
    EXPECT_EQ(heard.head->statusCode, 200);
    EXPECT_EQ(heard.head->header("X-Early"), std::nullopt);
    EXPECT_EQ(heard.body, "ok");
}

TEST_F(BrokenServerTest, AServerThatFallsSilentTimesOut)
{
    server.serve("/f", {.content = PatternContent(1, 100 * kib), .answers = {Answer::file().stallAfter(1000)}});
    Recorder recorder;
    const auto task = client.makeTask(request("/f"), recorder);
    task->resume();
    ASSERT_TRUE(recorder.waitForBytes(1000));
    expectTimeOutAfterAMinute(recorder);
}

TEST_F(BrokenServerTest, AServerThatNeverAnswersTimesOut)
{
    server.serve("/f", {.answers = {Answer::file().stallBeforeHead()}});
    Recorder recorder;
    const auto task = client.makeTask(request("/f"), recorder);
    task->resume();
    ASSERT_TRUE(server.waitForStalled(1, 5s));
    expectTimeOutAfterAMinute(recorder);
}

TEST_F(BrokenServerTest, SilenceIsNotHeldAgainstTheServerWhileTheTransferIsSuspended)
{
    server.serve("/f", {.content = PatternContent(1, 100 * kib), .answers = {Answer::file().stallAfter(1000)}});
    Recorder recorder;
    const auto task = client.makeTask(request("/f"), recorder);
    task->resume();
    ASSERT_TRUE(recorder.waitForBytes(1000));
    task->suspend();
    clock.advance(1h);
    EXPECT_FALSE(get("/missing").error);
    EXPECT_FALSE(recorder.heard().isOver);
    task->resume();
    expectTimeOutAfterAMinute(recorder);
}

TEST_F(BrokenServerTest, TheWholeMayTakeItsTotalTimeFromItsStartAndNoLonger)
{
    server.serve("/f", {.content = PatternContent(1, 100 * kib), .answers = {Answer::file().stallAfter(1000)}});
    HttpRequest limited = request("/f");
    limited.idleTimeout = 24h;
    limited.totalTimeout = 100s;
    Recorder recorder;
    const auto task = client.makeTask(limited, recorder);
    clock.advance(1000s); // not begun yet
    task->resume();
    ASSERT_TRUE(recorder.waitForBytes(1000));
    clock.advance(99s);
    EXPECT_FALSE(get("/missing").error);
    EXPECT_FALSE(recorder.heard().isOver);
    clock.advance(1s);
    ASSERT_TRUE(recorder.waitForEnd());
    expectError(recorder.heard(), Kind::timedOut);
}

} // namespace
} // namespace vormel
