#include "fixtures/LiveEngine.h"
#include "sites/FileServer.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;
using vormel::sites::Answer;
using vormel::sites::FileServer;
using vormel::sites::PatternContent;

namespace {

constexpr qint64 fileSize = 700000;
constexpr qint64 partSize = 300000;
const QString partFile = QStringLiteral("Downloads/file.bin.download");

enum class Outcome
{
    Same,   ///< the file, byte for byte
    Prefix, ///< counted as complete though cut: nothing in the answer could have told
    Failed, ///< the item, with the part file a prefix of the source
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
        {"HonoursRange", Answer::file(), Same, Same, Same, Same},
        {"IgnoresRange", Answer::wholeFile(), Same, Same, Same, Same},
        {"WrongTotal", Answer::file().withTotal(5), Same, Same, Same, Failed},
        {"TotalTooLarge", Answer::file().withTotal(fileSize * 2), Same, Same, Same, Failed},
        {"UnknownTotal", Answer::file().withUnknownTotal(), Same, Same, Same, Same},
        {"NoContentRange", Answer::file().withoutContentRange(), Same, Same, Same, Same},
        {"PieceTooLate", Answer::file().shiftedBy(100), Same, Same, Same, Failed},
        {"PieceTooEarly", Answer::file().shiftedBy(-100), Same, Same, Same, Failed},
        {"Multipart", Answer::file().asMultipart(), Same, Same, Same, Failed},
        {"NotFoundText", Answer::page(404, "not here", "text/plain"), Same, Failed, Same, Failed},
        {"UnavailableText", Answer::page(503, "later", "text/plain"), Same, Failed, Same, Failed},
        {"UnavailableEmpty", Answer::empty(503), Same, Failed, Same, Failed},
        {"ErrorBodyLargerThanTheFile", Answer::page(500, PatternContent(9, fileSize * 2), "application/octet-stream"),
         Same, Failed, Same, Failed},
        {"Forbidden", Answer::empty(403), Same, Failed, Same, Failed},
        {"NoContent", Answer::empty(204), Same, Failed, Same, Failed},
        {"NotModified", Answer::empty(304), Same, Failed, Same, Failed},
        {"UnavailablePage", Answer::page(503, html), Failed, Failed, Failed, Failed},
        {"PageInstead", Answer::page(200, html), Failed, Failed, Failed, Failed},
        {"PageAsPiece", Answer::page(206, html), Failed, Failed, Failed, Failed},
        {"RangeRefusedText", Answer::rangeRefused().withHeader("Content-Type", "text/plain"), Same, Failed, Same,
         Failed},
        {"RangeRefusedBare", Answer::rangeRefused().withoutContentRange().withHeader("Content-Type", "text/plain"),
         Same, Failed, Same, Failed},
        {"RedirectNowhere", Answer::redirectNowhere(302).withHeader("Content-Type", "text/plain"), Same, Failed, Same,
         Failed},
        {"RedirectLoop", Answer::redirect(302, "/file.bin"), Same, Failed, Same, Failed},
        {"RedirectToFtp", Answer::redirect(302, "ftp://127.0.0.1/x"), Same, Failed, Same, Failed},
        {"RedirectToLocalFile", Answer::redirect(302, "file:///etc/passwd"), Same, Failed, Same, Failed},
        {"RedirectToCopy", Answer::redirect(302, "/copy.bin"), Same, Same, Same, Same},
        {"PrematureClose", Answer::file().closeAfter(10), Same, Failed, Same, Failed},
        {"Reset", Answer::file().resetAfter(10), Same, Failed, Same, Failed},
        {"Stall", Answer::file().stallAfter(10), Same, Failed, Same, Failed},
        {"StallBeforeHead", Answer::file().stallBeforeHead(), Same, Failed, Same, Failed},
        {"ClosesSilently", Answer::nothing(), Same, Failed, Same, Failed},
        {"CutHead", Answer::file().cutHead(), Same, Failed, Same, Failed},
        {"EndlessHeaders", Answer::file().endlessHeaders(), Same, Failed, Same, Failed},
        {"Garbage", Answer::raw("not http at all\r\n\r\n"), Same, Failed, Same, Failed},
        {"GarbageStatus", Answer::file().withStatusLine("HTTP/1.1 banana"), Same, Failed, Same, Failed},
        {"Chunked", Answer::file().chunked(), Same, Same, Same, Same},
        {"ChunkedWithoutEnd", Answer::file().chunkedWithoutEnd(), Same, Same, Same, Same},
        {"EndlessTrailers", Answer::file().endlessTrailers(), Same, Same, Same, Same},
        {"NoLength", Answer::file().untilClose(), Same, Same, Same, Same},
        {"NoLengthAndCut", Answer::wholeFile().untilClose().closeAfter(1000), Prefix, Prefix, Prefix, Prefix},
        {"LengthTooLarge", Answer::file().withContentLengthOff(100), Same, Failed, Same, Same},
        {"LengthTooSmall", Answer::wholeFile().withContentLengthOff(-100), Prefix, Prefix, Prefix, Prefix},
        {"LengthOverflows", Answer::file().withContentLength("99999999999999999999999"), Same, Same, Same, Same},
        {"Drips", Answer::file().dripping(100000, 1ms), Same, Same, Same, Same},
        {"ClosesAfterwards", Answer::file().closing(), Same, Same, Same, Same},
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
        server.serve("/other.bin", {.content = PatternContent(2, fileSize)});
    }

    PatternContent source{1, fileSize};
    FileServer server;
    LiveEngine engine;
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

    const QByteArray whole = bytesOf(source, fileSize);
    const QByteArray final = engine.sandbox.read(QStringLiteral("Downloads/file.bin"));
    const QByteArray part = engine.sandbox.read(partFile);
    switch (expected(GetParam())) {
    case Outcome::Same:
        EXPECT_EQ(item->status(), DownloadStatus::completed) << qPrintable(item->status().message());
        EXPECT_TRUE(final == whole) << final.size();
        break;
    case Outcome::Prefix:
        EXPECT_EQ(item->status(), DownloadStatus::completed);
        EXPECT_TRUE(whole.startsWith(final));
        break;
    case Outcome::Failed:
        EXPECT_EQ(item->status().kind(), DownloadStatus::failed);
        EXPECT_FALSE(item->status().message().isEmpty());
        EXPECT_FALSE(engine.sandbox.exists(QStringLiteral("Downloads/file.bin")));
        EXPECT_TRUE(whole.startsWith(part)) << part.size();
        break;
    }
    EXPECT_EQ(other->status(), DownloadStatus::completed);
    EXPECT_TRUE(engine.sandbox.read(QStringLiteral("Downloads/other.bin")) ==
                bytesOf(PatternContent(2, fileSize), fileSize));
}

INSTANTIATE_TEST_SUITE_P(Behaviours, MisbehavingServer, ::testing::ValuesIn(cases()), caseName);
