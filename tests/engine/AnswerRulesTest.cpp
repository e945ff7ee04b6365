#include "engine/transfer/AnswerRules.h"

#include <gtest/gtest.h>

using namespace vormel;

namespace {

struct Row
{
    const char* name;
    int status;
    std::vector<HttpHeader> headers;
    AskedFor asked;
    AnswerKind kind;
    qint64 total;
};

const QString rar = QStringLiteral("x.rar");

HttpResponse responseOf(const Row& row)
{
    HttpResponse response;
    response.statusCode = row.status;
    response.url = QUrl(QStringLiteral("http://host/x"));
    response.headers = row.headers;
    return response;
}

const std::vector<Row>& rows()
{
    const HttpHeader html{"Content-Type", "Text/HTML; charset=utf-8"};
    const HttpHeader plain{"Content-Type", "text/plain"};
    static const std::vector<Row> all{
        {"FreshWhole", 200, {{"Content-Length", "5"}}, {rar, 0, 0, {}}, AnswerKind::Whole, 5},
        {"FreshWithoutLength", 200, {}, {rar, 0, 0, {}}, AnswerKind::Whole, -1},
        {"RangeIgnored", 200, {{"Content-Length", "2000"}}, {rar, 1000, 2000, {}}, AnswerKind::Whole, 2000},
        {"OtherSuccessOnResumeRestarts", 203, {{"Content-Length", "7"}}, {rar, 3, 0, {}}, AnswerKind::Whole, 7},
        {"Continuation",
         206,
         {{"Content-Range", "bytes 1000-1999/2000"}},
         {rar, 1000, 0, {}},
         AnswerKind::Continuation,
         2000},
        {"UnknownTotal",
         206,
         {{"Content-Range", "bytes 1000-1999/*"}},
         {rar, 1000, 2000, {}},
         AnswerKind::Continuation,
         -1},
        {"NoContentRange", 206, {}, {rar, 1000, 2000, {}}, AnswerKind::Continuation, -1},
        {"PieceWithoutAsking", 206, {{"Content-Range", "bytes 0-99/*"}}, {rar, 0, 0, {}}, AnswerKind::Whole, -1},
        {"OtherStart",
         206,
         {{"Content-Range", "bytes 0-1999/2000"}},
         {rar, 1000, 2000, {}},
         AnswerKind::ForeignRange,
         -1},
        {"LaterStart",
         206,
         {{"Content-Range", "bytes 1500-1999/2000"}},
         {rar, 1000, 2000, {}},
         AnswerKind::ForeignRange,
         -1},
        {"UnreadableStart",
         206,
         {{"Content-Range", "bytes */2000"}},
         {rar, 1000, 2000, {}},
         AnswerKind::ForeignRange,
         -1},
        {"Multipart",
         206,
         {{"Content-Type", "multipart/byteranges; boundary=x"}},
         {rar, 9, 0, {}},
         AnswerKind::ForeignRange,
         -1},
        {"OtherTotal",
         206,
         {{"Content-Range", "bytes 1000-2999/3000"}},
         {rar, 1000, 2000, {}},
         AnswerKind::SourceChanged,
         -1},
        {"Page", 200, {html}, {rar, 0, 0, {}}, AnswerKind::WebPage, -1},
        {"PageWithError", 503, {html}, {rar, 0, 0, {}}, AnswerKind::WebPage, -1},
        {"PageAsPiece", 206, {html}, {rar, 10, 0, {}}, AnswerKind::WebPage, -1},
        {"PageIsTheFile",
         200,
         {html, {"Content-Length", "9"}},
         {QStringLiteral("x.HTML"), 0, 0, {}},
         AnswerKind::Whole,
         9},
        {"PageMayHaveNoExtension", 200, {html}, {QStringLiteral("x"), 0, 0, {}}, AnswerKind::Whole, -1},
        {"TextMayBePage", 200, {html}, {QStringLiteral("x.txt"), 0, 0, {}}, AnswerKind::Whole, -1},
        {"NotFound", 404, {plain, {"Content-Length", "9"}}, {rar, 0, 0, {}}, AnswerKind::ErrorAnswer, -1},
        {"UnavailableOnResume", 503, {plain}, {rar, 1000, 2000, {}}, AnswerKind::ErrorAnswer, -1},
        {"NoContent", 204, {}, {rar, 0, 0, {}}, AnswerKind::ErrorAnswer, -1},
        {"RedirectWithoutTarget", 302, {}, {rar, 0, 0, {}}, AnswerKind::ErrorAnswer, -1},
        {"NotModified", 304, {}, {rar, 5, 0, {}}, AnswerKind::ErrorAnswer, -1},
        {"EndReached",
         416,
         {html, {"Content-Range", "bytes */2000"}},
         {rar, 2000, 0, {}},
         AnswerKind::AlreadyWhole,
         2000},
        {"BeyondTheEnd",
         416,
         {plain, {"Content-Range", "bytes */1500"}},
         {rar, 2000, 0, {}},
         AnswerKind::ErrorAnswer,
         -1},
        {"EndReachedButNothingHere",
         416,
         {plain, {"Content-Range", "bytes */0"}},
         {rar, 0, 0, {}},
         AnswerKind::ErrorAnswer,
         -1},
        {"OverflowingLength",
         200,
         {{"Content-Length", "99999999999999999999"}},
         {rar, 0, 0, {}},
         AnswerKind::Whole,
         -1},
    };
    return all;
}

class AnswerRules : public ::testing::TestWithParam<Row>
{};

TEST_P(AnswerRules, JudgesTheHead)
{
    const Answer answer = judgeAnswer(responseOf(GetParam()), GetParam().asked);
    EXPECT_EQ(static_cast<int>(answer.kind), static_cast<int>(GetParam().kind));
    EXPECT_EQ(answer.total, GetParam().total);
}

INSTANTIATE_TEST_SUITE_P(Answers, AnswerRules, ::testing::ValuesIn(rows()),
                         [](const ::testing::TestParamInfo<Row>& row) { return std::string(row.param.name); });

HttpResponse piece(const QByteArray& etag, const QString& host = QStringLiteral("host"))
{
    HttpResponse response;
    response.statusCode = 206;
    response.url.setHost(host);
    response.headers = {{"Content-Range", "bytes 10-19/20"}, {"ETag", etag}};
    return response;
}

} // namespace

TEST(SourceFingerprint, RefusesAPieceOfAnotherVersion)
{
    const AskedFor asked{rar, 10, 20, sourceFingerprint(piece("\"one\""))};
    EXPECT_EQ(judgeAnswer(piece("\"one\""), asked).kind, AnswerKind::Continuation);
    EXPECT_EQ(judgeAnswer(piece("\"two\""), asked).kind, AnswerKind::SourceChanged);
}

TEST(SourceFingerprint, ComparesNothingBetweenHostsOrWithoutAMark)
{
    const AskedFor asked{rar, 10, 20, sourceFingerprint(piece("\"one\""))};
    EXPECT_EQ(judgeAnswer(piece("\"two\"", QStringLiteral("mirror")), asked).kind, AnswerKind::Continuation);
    EXPECT_EQ(judgeAnswer(piece("W/\"weak\""), asked).kind, AnswerKind::Continuation);
    EXPECT_EQ(sourceFingerprint(piece("W/\"weak\"")), QString());
}

TEST(SourceFingerprint, FallsBackToTheDateOfTheLastChange)
{
    HttpResponse response;
    response.url.setHost(QStringLiteral("host"));
    response.headers = {{"Last-Modified", "Sat, 21 Nov 2026 01:00:00 GMT"}};
    EXPECT_EQ(sourceFingerprint(response), QStringLiteral("host\nSat, 21 Nov 2026 01:00:00 GMT"));
}
