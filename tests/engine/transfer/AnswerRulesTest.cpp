#include "engine/transfer/AnswerRules.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;

namespace {

struct AnswerRow
{
    const char* name;
    int status;
    std::vector<HttpHeader> headers;
    AskedFor asked;
    AnswerKind kind;
    qint64 total;
};

const QString rar = u"x.rar"_s;

HttpResponse responseOf(const AnswerRow& row)
{
    HttpResponse response;
    response.statusCode = row.status;
    response.url = QUrl(u"http://host/x"_s);
    response.headers = row.headers;
    return response;
}

const std::vector<AnswerRow>& answerRows()
{
    const HttpHeader html{"Content-Type", "Text/HTML; charset=utf-8"};
    const HttpHeader plain{"Content-Type", "text/plain"};
    static const std::vector<AnswerRow> all{
        {"FreshWhole", 200, {{"Content-Length", "5"}}, {rar, 0, 0, {}}, AnswerKind::whole, 5},
        {"FreshWithoutLength", 200, {}, {rar, 0, 0, {}}, AnswerKind::whole, 0},
        {"RangeIgnored", 200, {{"Content-Length", "2000"}}, {rar, 1000, 2000, {}}, AnswerKind::whole, 2000},
        {"OtherSuccessOnResumeRestarts", 203, {{"Content-Length", "7"}}, {rar, 3, 0, {}}, AnswerKind::whole, 7},
        {"Continuation",
         206,
         {{"Content-Range", "bytes 1000-1999/2000"}},
         {rar, 1000, 0, {}},
         AnswerKind::continuation,
         2000},
        {"UnknownTotal",
         206,
         {{"Content-Range", "bytes 1000-1999/*"}},
         {rar, 1000, 2000, {}},
         AnswerKind::continuation,
         -1},
        {"NoContentRange", 206, {}, {rar, 1000, 2000, {}}, AnswerKind::continuation, -1},
        {"PieceWithoutAsking", 206, {{"Content-Range", "bytes 0-99/*"}}, {rar, 0, 0, {}}, AnswerKind::whole, -1},
        {"OtherStart",
         206,
         {{"Content-Range", "bytes 0-1999/2000"}},
         {rar, 1000, 2000, {}},
         AnswerKind::foreignRange,
         -1},
        {"LaterStart",
         206,
         {{"Content-Range", "bytes 1500-1999/2000"}},
         {rar, 1000, 2000, {}},
         AnswerKind::foreignRange,
         -1},
        {"UnreadableStart",
         206,
         {{"Content-Range", "bytes */2000"}},
         {rar, 1000, 2000, {}},
         AnswerKind::foreignRange,
         -1},
        {"Multipart",
         206,
         {{"Content-Type", "multipart/byteranges; boundary=x"}},
         {rar, 9, 0, {}},
         AnswerKind::foreignRange,
         -1},
        {"OtherTotal",
         206,
         {{"Content-Range", "bytes 1000-2999/3000"}},
         {rar, 1000, 2000, {}},
         AnswerKind::sourceChanged,
         -1},
        {"Page", 200, {html}, {rar, 0, 0, {}}, AnswerKind::webPage, -1},
        {"PageWithError", 503, {html}, {rar, 0, 0, {}}, AnswerKind::webPage, -1},
        {"PageAsPiece", 206, {html}, {rar, 10, 0, {}}, AnswerKind::webPage, -1},
        {"PageIsTheFile", 200, {html, {"Content-Length", "9"}}, {u"x.HTML"_s, 0, 0, {}}, AnswerKind::whole, 9},
        {"PageMayHaveNoExtension", 200, {html}, {u"x"_s, 0, 0, {}}, AnswerKind::whole, 0},
        {"TextMayBePage", 200, {html}, {u"x.txt"_s, 0, 0, {}}, AnswerKind::whole, 0},
        {"NotFound", 404, {plain, {"Content-Length", "9"}}, {rar, 0, 0, {}}, AnswerKind::errorAnswer, -1},
        {"UnavailableOnResume", 503, {plain}, {rar, 1000, 2000, {}}, AnswerKind::errorAnswer, -1},
        {"NoContent", 204, {}, {rar, 0, 0, {}}, AnswerKind::errorAnswer, -1},
        {"RedirectWithoutTarget", 302, {}, {rar, 0, 0, {}}, AnswerKind::errorAnswer, -1},
        {"NotModified", 304, {}, {rar, 5, 0, {}}, AnswerKind::errorAnswer, -1},
        {"EndReached",
         416,
         {html, {"Content-Range", "bytes */2000"}},
         {rar, 2000, 0, {}},
         AnswerKind::alreadyWhole,
         2000},
        {"BeyondTheEnd",
         416,
         {plain, {"Content-Range", "bytes */1500"}},
         {rar, 2000, 0, {}},
         AnswerKind::sourceChanged,
         -1},
        {"EndReachedButNothingHere",
         416,
         {plain, {"Content-Range", "bytes */0"}},
         {rar, 0, 0, {}},
         AnswerKind::errorAnswer,
         -1},
        {"OverflowingLength", 200, {{"Content-Length", "99999999999999999999"}}, {rar, 0, 0, {}}, AnswerKind::whole, 0},
        {"WholeWithoutLengthOnResume", 200, {}, {rar, 1000, 2000, {}}, AnswerKind::whole, 0},
        {"PieceWithoutAskingThatTellsNothing", 206, {}, {rar, 0, 0, {}}, AnswerKind::foreignRange, -1},
        {"PieceWithoutAskingFromElsewhere",
         206,
         {{"Content-Range", "bytes 5-9/10"}},
         {rar, 0, 0, {}},
         AnswerKind::foreignRange,
         -1},
        {"BeginningWithoutAsking",
         206,
         {{"Content-Range", "bytes 0-99/2000"}},
         {rar, 0, 0, {}},
         AnswerKind::whole,
         2000},
        {"EndBeforeStart", 206, {{"Content-Range", "bytes 10-9/20"}}, {rar, 10, 20, {}}, AnswerKind::foreignRange, -1},
        {"EndBehindTheTotal",
         206,
         {{"Content-Range", "bytes 10-20/20"}},
         {rar, 10, 20, {}},
         AnswerKind::foreignRange,
         -1},
        {"EndBehindTheKnownTotal",
         206,
         {{"Content-Range", "bytes 10-20/*"}},
         {rar, 10, 20, {}},
         AnswerKind::sourceChanged,
         -1},
        {"OtherUnit", 206, {{"Content-Range", "items 10-19/20"}}, {rar, 10, 20, {}}, AnswerKind::foreignRange, -1},
        {"NumbersThatAreNone",
         206,
         {{"Content-Range", "bytes 10-0x13/20"}},
         {rar, 10, 20, {}},
         AnswerKind::foreignRange,
         -1},
        {"TwoContentRanges",
         206,
         {{"Content-Range", "bytes 10-19/20"}, {"Content-Range", "bytes 10-29/30"}},
         {rar, 10, 20, {}},
         AnswerKind::foreignRange,
         -1},
        {"SilentPieceThatIsTooLong", 206, {{"Content-Length", "20"}}, {rar, 10, 20, {}}, AnswerKind::foreignRange, -1},
        {"CodedPieceThatNobodyAskedFor",
         206,
         {{"Content-Range", "bytes 10-19/20"}, {"Content-Encoding", "gzip"}},
         {rar, 10, 20, {}},
         AnswerKind::foreignRange,
         -1},
        {"CodedPieceOfACodedFile",
         206,
         {{"Content-Range", "bytes 10-19/20"}, {"Content-Encoding", "GZip"}},
         {rar, 10, 20, {{}, {}, {}, u"gzip"_s}},
         AnswerKind::continuation,
         20},
        {"PlainPieceOfACodedFile",
         206,
         {{"Content-Range", "bytes 10-19/20"}},
         {rar, 10, 20, {{}, {}, {}, u"gzip"_s}},
         AnswerKind::foreignRange,
         -1},
        {"PlainPieceThatSaysSo",
         206,
         {{"Content-Range", "bytes 10-19/20"}, {"Content-Encoding", "identity"}},
         {rar, 10, 20, {}},
         AnswerKind::continuation,
         20},
        {"FullAnswerThatIsTheRest",
         200,
         {{"Content-Range", "bytes 1000-1999/2000"}, {"Content-Length", "1000"}},
         {rar, 1000, 2000, {}},
         AnswerKind::continuation,
         2000},
        {"FullAnswerThatIsTheRestUnasked",
         200,
         {{"Content-Range", "bytes 1000-1999/2000"}, {"Content-Length", "1000"}},
         {rar, 0, 0, {}},
         AnswerKind::foreignRange,
         -1},
        {"FullAnswerThatSaysItIsWhole",
         200,
         {{"Content-Range", "bytes 0-1999/2000"}},
         {rar, 1000, 2000, {}},
         AnswerKind::whole,
         2000},
        {"FullAnswerThatIsTheBeginning",
         200,
         {{"Content-Range", "bytes 0-99/2000"}, {"Content-Length", "100"}},
         {rar, 0, 0, {}},
         AnswerKind::whole,
         2000},
        {"FullAnswerWithNonsense",
         200,
         {{"Content-Range", "bytes x"}, {"Content-Length", "100"}},
         {rar, 0, 0, {}},
         AnswerKind::whole,
         100},
        {"EndOfAnotherFile",
         416,
         {plain, {"Content-Range", "bytes */1000"}},
         {rar, 1000, 2000, {}},
         AnswerKind::sourceChanged,
         -1},
        {"RangeRefusedThoughThereIsMore",
         416,
         {plain, {"Content-Range", "bytes */2000"}},
         {rar, 1000, 2000, {}},
         AnswerKind::errorAnswer,
         -1},
        {"RangeRefusedWithoutASize", 416, {plain}, {rar, 1000, 2000, {}}, AnswerKind::errorAnswer, -1},
        {"RangeRefusedWithTwoSizes",
         416,
         {plain, {"Content-Range", "bytes */1000"}, {"Content-Range", "bytes */2000"}},
         {rar, 1000, 0, {}},
         AnswerKind::errorAnswer,
         -1},
    };
    return all;
}

class AnswerRules : public ::testing::TestWithParam<AnswerRow>
{};

TEST_P(AnswerRules, JudgesTheHead)
{
    const JudgedAnswer answer = judgeAnswer(responseOf(GetParam()), GetParam().asked);
    EXPECT_EQ(static_cast<int>(answer.kind), static_cast<int>(GetParam().kind));
    EXPECT_EQ(answer.total, GetParam().total);
}

INSTANTIATE_TEST_SUITE_P(Answers, AnswerRules, ::testing::ValuesIn(answerRows()),
                         [](const ::testing::TestParamInfo<AnswerRow>& row) { return std::string(row.param.name); });

struct Bounds
{
    const char* name;
    int status;
    std::vector<HttpHeader> headers;
    AskedFor asked;
    qint64 end;
};

class AnswerBounds : public ::testing::TestWithParam<Bounds>
{};

TEST_P(AnswerBounds, AreWhatTheHeadAnnounces)
{
    HttpResponse response;
    response.statusCode = GetParam().status;
    response.headers = GetParam().headers;
    EXPECT_EQ(judgeAnswer(response, GetParam().asked).end, GetParam().end);
}

INSTANTIATE_TEST_SUITE_P(
    Answers, AnswerBounds,
    ::testing::Values(Bounds{"Length", 200, {{"Content-Length", "5"}}, {rar, 0, 0, {}}, 5},
                      Bounds{"Nothing", 200, {{"Content-Length", "0"}}, {rar, 0, 0, {}}, 0},
                      Bounds{"NoLength", 200, {}, {rar, 3, 9, {}}, -1},
                      Bounds{"Range", 206, {{"Content-Range", "bytes 3-6/9"}}, {rar, 3, 9, {}}, 7},
                      Bounds{"RangeOfUnknown", 206, {{"Content-Range", "bytes 3-6/*"}}, {rar, 3, 0, {}}, 7},
                      Bounds{"KnownTotal", 206, {}, {rar, 3, 9, {}}, 9},
                      Bounds{"Unknown", 206, {}, {rar, 3, 0, {}}, -1},
                      Bounds{"RangeOfAFullAnswer", 200, {{"Content-Range", "bytes 0-4/5"}}, {rar, 0, 0, {}}, 5}),
    [](const ::testing::TestParamInfo<Bounds>& row) { return std::string(row.param.name); });

HttpResponse piece(std::vector<HttpHeader> marks, const QString& host = u"host"_s)
{
    HttpResponse response;
    response.statusCode = 206;
    response.url.setHost(host);
    response.headers = std::move(marks);
    response.headers.push_back({"Content-Range", "bytes 10-19/20"});
    return response;
}

const HttpHeader one{"ETag", "\"one\""};
const HttpHeader two{"ETag", "\"two\""};
const HttpHeader weak{"ETag", "W/\"one\""};
const HttpHeader otherWeak{"ETag", "W/\"two\""};
const HttpHeader saturday{"Last-Modified", "Sat, 21 Nov 2026 01:00:00 GMT"};
const HttpHeader sunday{"Last-Modified", "Sun, 22 Nov 2026 01:00:00 GMT"};

struct Versions
{
    const char* name;
    std::vector<HttpHeader> before;
    std::vector<HttpHeader> now;
    bool isChange;
};

class SourceMarks : public ::testing::TestWithParam<Versions>
{};

TEST_P(SourceMarks, TellWhetherTheSourceHasChanged)
{
    const SourceMark known = sourceMarkOf(piece(GetParam().before));
    EXPECT_EQ(SourceMark::fromText(known.toText()), known);
    const JudgedAnswer answer = judgeAnswer(piece(GetParam().now), {rar, 10, 20, known});
    EXPECT_EQ(answer.kind == AnswerKind::sourceChanged, GetParam().isChange);
    const JudgedAnswer premium = judgeAnswer(piece(GetParam().now), {rar, 10, 20, known, false});
    EXPECT_EQ(premium.kind, AnswerKind::continuation);
}

INSTANTIATE_TEST_SUITE_P(
    Pairs, SourceMarks,
    ::testing::Values(Versions{"Same", {one}, {one}, false}, Versions{"Other", {one}, {two}, true},
                      Versions{"Gone", {one}, {}, false}, Versions{"New", {}, {one}, false},
                      Versions{"GoneWhileTheDateStays", {one, saturday}, {saturday}, false},
                      Versions{"GoneAndTheDateToo", {one, saturday}, {sunday}, true},
                      Versions{"OtherDate", {saturday}, {sunday}, true}, Versions{"WeakStays", {weak}, {weak}, false},
                      Versions{"WeakChanges", {weak}, {otherWeak}, true},
                      Versions{"WeakOfTheSame", {one}, {weak}, false},
                      Versions{"WeakOfAnother", {one}, {otherWeak}, true},
                      Versions{"WeakStaysButTheDateChanges", {weak, saturday}, {weak, sunday}, true},
                      Versions{"StrongStaysWhateverTheDate", {one, saturday}, {one, sunday}, false}),
    [](const ::testing::TestParamInfo<Versions>& row) { return std::string(row.param.name); });

} // namespace

TEST(SourceMark, ComparesNothingBetweenHosts)
{
    const SourceMark known = sourceMarkOf(piece({one}));
    const QString mirror = u"mirror"_s;
    EXPECT_EQ(judgeAnswer(piece({two}, mirror), {rar, 10, 20, known}).kind, AnswerKind::continuation);
    EXPECT_EQ(known.filledUpFrom(sourceMarkOf(piece({two, saturday}, mirror))), known);
}

TEST(SourceMark, LearnsWhatOnlyALaterAnswerTells)
{
    const SourceMark known = sourceMarkOf(piece({saturday})).filledUpFrom(sourceMarkOf(piece({one, sunday})));
    EXPECT_EQ(known, sourceMarkOf(piece({one, saturday})));
    EXPECT_EQ(judgeAnswer(piece({two}), {rar, 10, 20, known}).kind, AnswerKind::sourceChanged);
    EXPECT_EQ(SourceMark().filledUpFrom(known), known);
}

TEST(SourceMark, ReadsWhatEarlierVersionsKept)
{
    EXPECT_EQ(SourceMark::fromText(u"host\n\"one\""_s), sourceMarkOf(piece({one})));
    EXPECT_EQ(SourceMark::fromText(u"host\nSat, 21 Nov 2026 01:00:00 GMT"_s), sourceMarkOf(piece({saturday})));
    EXPECT_EQ(SourceMark::fromText(QString()), SourceMark());
}

TEST(SourceMark, ChangesTheMeaningOfAnEndReached)
{
    HttpResponse response = piece({two});
    response.statusCode = 416;
    response.headers.back().value = "bytes */10";
    EXPECT_EQ(judgeAnswer(response, {rar, 10, 0, sourceMarkOf(piece({one}))}).kind, AnswerKind::sourceChanged);
    EXPECT_EQ(judgeAnswer(response, {rar, 10, 0, sourceMarkOf(piece({two}))}).kind, AnswerKind::alreadyWhole);
}
