#include "fixtures/EngineOnNetwork.h"
#include "sites/FileServer.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;
using vormel::sites::Answer;
using vormel::sites::FileServer;
using vormel::sites::PatternContent;

namespace {

constexpr qint64 servedSize = 700000;
constexpr qint64 partSize = 300000;
const QString partFile = u"Downloads/file.bin.download"_s;

enum class Outcome
{
    same,   ///< the file, byte for byte
    prefix, ///< counted as complete though cut: nothing in the answer could have told
    failed, ///< the item, with the part file a prefix of the source
};

struct Behaviour
{
    const char* name;
    Answer answer;
    Outcome freshOnce;
    Outcome freshAlways;
    Outcome resumedOnce;
    Outcome resumedAlways;
};

const std::vector<Behaviour>& behaviours()
{
    using enum Outcome;
    static const std::string html = "<html>sorry</html>";
    static const std::vector<Behaviour> all{
        {"HonoursRange", Answer::file(), same, same, same, same},
        {"IgnoresRange", Answer::wholeFile(), same, same, same, same},
        {"WrongTotal", Answer::file().withTotal(5), same, same, same, failed},
        {"TotalTooLarge", Answer::file().withTotal(servedSize * 2), same, same, same, failed},
        {"UnknownTotal", Answer::file().withUnknownTotal(), same, same, same, same},
        {"NoContentRange", Answer::file().withoutContentRange(), same, same, same, same},
        {"PieceTooLate", Answer::file().shiftedBy(100), same, same, same, failed},
        {"PieceTooEarly", Answer::file().shiftedBy(-100), same, same, same, failed},
        {"Multipart", Answer::file().asMultipart(), same, same, same, failed},
        {"NotFoundText", Answer::page(404, "not here", "text/plain"), same, failed, same, failed},
        {"UnavailableText", Answer::page(503, "later", "text/plain"), same, failed, same, failed},
        {"UnavailableEmpty", Answer::empty(503), same, failed, same, failed},
        {"ErrorBodyLargerThanTheFile", Answer::page(500, PatternContent(9, servedSize * 2), "application/octet-stream"),
         same, failed, same, failed},
        {"Forbidden", Answer::empty(403), same, failed, same, failed},
        {"NoContent", Answer::empty(204), same, failed, same, failed},
        {"NotModified", Answer::empty(304), same, failed, same, failed},
        {"UnavailablePage", Answer::page(503, html), failed, failed, failed, failed},
        {"PageInstead", Answer::page(200, html), failed, failed, failed, failed},
        {"PageAsPiece", Answer::page(206, html), failed, failed, failed, failed},
        {"RangeRefusedText", Answer::rangeRefused().withHeader("Content-Type", "text/plain"), same, failed, same,
         failed},
        {"RangeRefusedBare", Answer::rangeRefused().withoutContentRange().withHeader("Content-Type", "text/plain"),
         same, failed, same, failed},
        {"RedirectNowhere", Answer::redirectNowhere(302).withHeader("Content-Type", "text/plain"), same, failed, same,
         failed},
        {"RedirectLoop", Answer::redirect(302, "/file.bin"), same, failed, same, failed},
        {"RedirectToFtp", Answer::redirect(302, "ftp://127.0.0.1/x"), same, failed, same, failed},
        {"RedirectToLocalFile", Answer::redirect(302, "file:///etc/passwd"), same, failed, same, failed},
        {"RedirectToCopy", Answer::redirect(302, "/copy.bin"), same, same, same, same},
        {"PrematureClose", Answer::file().closeAfter(10), same, failed, same, failed},
        {"Reset", Answer::file().resetAfter(10), same, failed, same, failed},
        {"Stall", Answer::file().stallAfter(10), same, failed, same, failed},
        {"StallBeforeHead", Answer::file().stallBeforeHead(), same, failed, same, failed},
        {"ClosesSilently", Answer::nothing(), same, failed, same, failed},
        {"CutHead", Answer::file().cutHead(), same, failed, same, failed},
        {"EndlessHeaders", Answer::file().endlessHeaders(), same, failed, same, failed},
        {"Garbage", Answer::raw("not http at all\r\n\r\n"), same, failed, same, failed},
        {"GarbageStatus", Answer::file().withStatusLine("HTTP/1.1 banana"), same, failed, same, failed},
        {"Chunked", Answer::file().chunked(), same, same, same, same},
        {"ChunkedWithoutEnd", Answer::file().chunkedWithoutEnd(), same, same, same, same},
        {"EndlessTrailers", Answer::file().endlessTrailers(), same, same, same, same},
        {"NoLength", Answer::file().untilClose(), same, same, same, same},
        {"NoLengthAndCut", Answer::wholeFile().untilClose().closeAfter(1000), prefix, prefix, prefix, prefix},
        {"LengthTooLarge", Answer::file().withContentLengthOff(100), same, failed, same, same},
        {"LengthTooSmall", Answer::wholeFile().withContentLengthOff(-100), prefix, prefix, prefix, prefix},
        {"LengthOverflows", Answer::file().withContentLength("99999999999999999999999"), same, same, same, same},
        {"Drips", Answer::file().dripping(100000, 1ms), same, same, same, same},
        {"ClosesAfterwards", Answer::file().closing(), same, same, same, same},
    };
    return all;
}

struct Case
{
    Behaviour behaviour;
    bool isResumed;
    bool isOnce;
};

std::vector<Case> cases()
{
    std::vector<Case> all;
    for (const Behaviour& behaviour : behaviours()) {
        for (const bool isResumed : {false, true}) {
            for (const bool isOnce : {false, true})
                all.push_back({behaviour, isResumed, isOnce});
        }
    }
    return all;
}

Outcome expected(const Case& test)
{
    const Behaviour& behaviour = test.behaviour;
    if (test.isResumed)
        return test.isOnce ? behaviour.resumedOnce : behaviour.resumedAlways;
    return test.isOnce ? behaviour.freshOnce : behaviour.freshAlways;
}

QByteArray bytesOf(const PatternContent& content, qint64 count)
{
    QByteArray bytes(count, Qt::Uninitialized);
    content.fill(0, std::span(bytes.data(), static_cast<std::size_t>(count)));
    return bytes;
}

class MisbehavingServer : public ::testing::TestWithParam<Case>
{
protected:
    void SetUp() override
    {
        std::vector<Answer> answers{GetParam().behaviour.answer};
        if (GetParam().isOnce)
            answers.push_back(Answer::file());
        server.serve("/file.bin", {.content = source, .answers = answers});
        server.serve("/copy.bin", {.content = source});
        server.serve("/other.bin", {.content = PatternContent(2, servedSize)});
    }

    PatternContent source{1, servedSize};
    FileServer server;
    EngineOnNetwork engine;
};

std::string caseName(const ::testing::TestParamInfo<Case>& row)
{
    return std::string(row.param.behaviour.name) + (row.param.isResumed ? "_Resumed" : "_Fresh") +
           (row.param.isOnce ? "_Once" : "_Always");
}

} // namespace

TEST_P(MisbehavingServer, NeverSpoilsAFile)
{
    const ItemPtr item = engine.add(QString::fromStdString(server.url("/file.bin")));
    if (GetParam().isResumed)
        item->setPartPlace(PartPlace{engine.sandbox.write(partFile, bytesOf(source, partSize)), false});
    const ItemPtr other = engine.add(QString::fromStdString(server.url("/other.bin")));
    engine.manager().commands().startAll();
    ASSERT_TRUE(engine.runToEnd(item)) << "status " << item->status().kind();
    ASSERT_TRUE(engine.runToEnd(other));

    const QByteArray whole = bytesOf(source, servedSize);
    const QByteArray final = engine.sandbox.read(u"Downloads/file.bin"_s);
    const QByteArray part = engine.sandbox.read(partFile);
    switch (expected(GetParam())) {
    case Outcome::same:
        EXPECT_EQ(item->status(), DownloadStatus::completed) << qPrintable(item->status().message());
        EXPECT_TRUE(final == whole) << final.size();
        break;
    case Outcome::prefix:
        EXPECT_EQ(item->status(), DownloadStatus::completed);
        EXPECT_TRUE(whole.startsWith(final));
        break;
    case Outcome::failed:
        EXPECT_EQ(item->status().kind(), DownloadStatus::failed);
        EXPECT_FALSE(item->status().message().isEmpty());
        EXPECT_FALSE(engine.sandbox.exists(u"Downloads/file.bin"_s));
        EXPECT_TRUE(whole.startsWith(part)) << part.size();
        break;
    }
    EXPECT_EQ(other->status(), DownloadStatus::completed);
    EXPECT_TRUE(engine.sandbox.read(u"Downloads/other.bin"_s) == bytesOf(PatternContent(2, servedSize), servedSize));
}

INSTANTIATE_TEST_SUITE_P(Behaviours, MisbehavingServer, ::testing::ValuesIn(cases()), caseName);
