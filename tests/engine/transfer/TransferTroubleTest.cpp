#include "engine/OneTransfer.h"
#include "fixtures/FakeResolvers.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;

using TransferTroubleTest = OneTransfer;

TEST_F(TransferTroubleTest, AsksForTheRestOnlyAndMixesNothingWhenThePieceBeginsElsewhere)
{
    const ItemPtr item = engine.resume(rarLink, "0123456789");
    say(206, {{"Content-Range", "bytes 0-19/20"}});
    EXPECT_EQ(engine.sandbox.read(partFile), "0123456789");
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    engine.clock.advance(2s);
    EXPECT_EQ(server().header("Range"), "bytes=10-");
    EXPECT_EQ(engine.http.exchanges().size(), 2U);
}

TEST_F(TransferTroubleTest, NeverJoinsTwoVersionsOfAFile)
{
    const ItemPtr item = engine.start(rarLink);
    say(200, {{"Content-Length", "6"}, {"ETag", "\"one\""}});
    send("abc");
    server().fail(HttpError::Kind::connectionLost);
    turnEventLoop();
    engine.clock.advance(2s);
    ASSERT_EQ(server().header("Range"), "bytes=3-");
    say(206, {{"Content-Range", "bytes 3-5/6"}, {"ETag", "\"two\""}});
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    EXPECT_FALSE(engine.sandbox.exists(partFile));
    EXPECT_EQ(item->bytesReceived(), 0);
    EXPECT_EQ(item->totalBytes(), 0);
    engine.clock.advance(4s);
    ASSERT_EQ(server().header("Range"), std::nullopt);
    say(200, {{"Content-Length", "7"}, {"ETag", "\"two\""}});
    send("defg");
    server().fail(HttpError::Kind::connectionLost);
    turnEventLoop();
    // It gives its bytes up only once; another change is waited out.
    for (int i = 0; i < 2; ++i) {
        engine.clock.advance(10s);
        ASSERT_EQ(server().header("Range"), "bytes=4-") << i;
        say(206, {{"Content-Range", "bytes 4-7/8"}, {"ETag", "\"three\""}});
        EXPECT_EQ(engine.sandbox.read(partFile), "defg");
    }
    engine.clock.advance(10s);
    say(206, {{"Content-Range", "bytes 4-6/7"}, {"ETag", "\"two\""}});
    send("hij");
    close();
    EXPECT_EQ(engine.sandbox.read(finalFile), "defghij");
}

TEST_F(TransferTroubleTest, NoticesAMarkThatOnlyALaterPieceToldAndThatChangesThen)
{
    const ItemPtr item = engine.start(rarLink);
    const auto losePiece = [this](const QByteArray& bytes) {
        send(bytes);
        server().fail(HttpError::Kind::connectionLost);
        turnEventLoop();
        engine.clock.advance(10s);
    };
    say(200, {{"Content-Length", "6"}});
    losePiece("ab");
    if (!readMarks(engine.sandbox.path(partFile)).areThere())
        GTEST_SKIP() << "this file system keeps no extended attributes";
    say(206, {{"Content-Range", "bytes 2-5/6"}, {"ETag", "W/\"one\""}});
    losePiece("cd");
    say(206, {{"Content-Range", "bytes 4-5/6"}, {"ETag", "W/\"two\""}});
    EXPECT_TRUE(server().isOver);
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    EXPECT_FALSE(engine.sandbox.exists(finalFile));
}

TEST_F(TransferTroubleTest, AcceptsTheCertificatesOfTheTwoPremiumServicesUnseen)
{
    engine.start(rarLink);
    EXPECT_TRUE(server().acceptsAnyCertificateOf(u"cdn7.filestore.example"_s));
    EXPECT_TRUE(server().acceptsAnyCertificateOf(u"terabytez.mirror"_s));
    EXPECT_FALSE(server().acceptsAnyCertificateOf(u"other.example"_s));
    EXPECT_FALSE(server().acceptsAnyCertificateOf(u"terabytez-host.example"_s));
}

TEST_F(TransferTroubleTest, EndsSoonWhenThePartFileIsRemovedMeanwhile)
{
    const ItemPtr item = engine.start(rarLink);
    say(200, {{"Content-Length", "6"}});
    send("abc");
    ASSERT_TRUE(QFile::remove(engine.sandbox.path(partFile)));
    send("def");
    EXPECT_TRUE(server().isOver || engine.http.exchanges().size() > 1);
    EXPECT_FALSE(engine.sandbox.exists(finalFile));
    // It is tried again from nothing.
    engine.clock.advance(2s);
    say(200, {{"Content-Length", "6"}});
    send("abcdef");
    close();
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_EQ(engine.sandbox.read(finalFile), "abcdef");
}

TEST_F(TransferTroubleTest, AWholeAnswerWithoutALengthForgetsTheTotalOfBefore)
{
    const ItemPtr item = engine.start(rarLink);
    say(200, {{"Content-Length", "6"}});
    send("abc");
    server().fail(HttpError::Kind::connectionLost);
    turnEventLoop();
    engine.clock.advance(2s);
    say(200, {});
    EXPECT_EQ(item->totalBytes(), 0);
    send("whole");
    close();
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_EQ(engine.sandbox.read(finalFile), "whole");
}

TEST_F(TransferTroubleTest, AnEndThatIsNotTheKnownOneCompletesNothing)
{
    const ItemPtr item = engine.add(rarLink);
    engine.begin(item, QByteArray(1000, 'x'));
    item->setTotalBytes(2000);
    engine.manager().commands().startAll();
    turnEventLoop();
    say(416, {{"Content-Type", "text/plain"}, {"Content-Range", "bytes */1000"}});
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    EXPECT_FALSE(engine.sandbox.exists(finalFile));
}

TEST_F(TransferTroubleTest, ResumesFromWhatIsLeftWhenThePartFileIsShortened)
{
    const ItemPtr item = engine.start(rarLink);
    say(200, {{"Content-Length", "6"}});
    send("abc");
    ASSERT_TRUE(QFile::resize(engine.sandbox.path(partFile), 1));
    send("def");
    engine.clock.advance(2s);
    EXPECT_EQ(server().header("Range"), "bytes=1-");
    say(206, {{"Content-Range", "bytes 1-5/6"}});
    send("bcdef");
    close();
    EXPECT_EQ(engine.sandbox.read(finalFile), "abcdef");
}

TEST_F(TransferTroubleTest, FailsWhereTheFolderCannotBeMadeAndCompletesOnceItCan)
{
    engine.sandbox.write(u"blocked"_s, "a file where the folder should be");
    engine.settings().downloadFolderPath.set(engine.sandbox.path(u"blocked"_s));
    const ItemPtr item = engine.start(rarLink);
    EXPECT_EQ(item->status(), DownloadStatus::failure(u"The download folder is missing."_s));
    ASSERT_TRUE(QFile::remove(engine.sandbox.path(u"blocked"_s)));
    item->setStatus(DownloadStatus::queued);
    engine.manager().processQueue();
    turnEventLoop();
    say(200, {{"Content-Length", "3"}});
    send("abc");
    close();
    EXPECT_EQ(engine.sandbox.read(u"blocked/x.rar"_s), "abc");
}

TEST_F(TransferTroubleTest, TellsAFileErrorInItalian)
{
    engine.settings().language.set(AppLanguage::italian);
    engine.sandbox.write(u"blocked"_s, "x");
    engine.settings().downloadFolderPath.set(engine.sandbox.path(u"blocked"_s));
    EXPECT_EQ(engine.start(rarLink)->status().message(), u"La cartella dei download non esiste."_s);
}

TEST_F(TransferTroubleTest, LetsTheSecondOfTwoLinksOfOneNameGoOnWhenTheFirstIsPaused)
{
    const ItemPtr first = engine.start(u"http://a/x.rar"_s);
    const ItemPtr second = engine.add(u"http://b/x.rar"_s);
    engine.manager().commands().startAll();
    turnEventLoop();
    ASSERT_EQ(second->status(), DownloadStatus::queued);
    engine.manager().commands().pauseItems({first});
    turnEventLoop();
    EXPECT_EQ(first->status(), DownloadStatus::paused);
    EXPECT_EQ(second->status(), DownloadStatus::downloading);
}

TEST_F(TransferTroubleTest, LetsTheSecondOfTwoLinksOfOneNameWaitForTheFirst)
{
    const ItemPtr first = engine.start(u"http://a/x.rar"_s);
    const ItemPtr second = engine.add(u"http://b/x.rar"_s);
    const ItemPtr third = engine.add(u"http://b/y.rar"_s);
    engine.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(second->status(), DownloadStatus::queued);
    EXPECT_EQ(third->status(), DownloadStatus::downloading);
    auto& exchange = *engine.http.exchanges()[0];
    exchange.head(200, {{"Content-Length", "3"}});
    exchange.data("abc");
    exchange.finish();
    turnEventLoop();
    EXPECT_EQ(first->status(), DownloadStatus::completed);
    EXPECT_EQ(second->status(), DownloadStatus::downloading);
    auto& other = *engine.http.exchanges()[2];
    EXPECT_EQ(other.header("Range"), std::nullopt);
    other.head(200, {{"Content-Length", "3"}});
    other.data("xyz");
    other.finish();
    turnEventLoop();
    EXPECT_EQ(engine.sandbox.read(finalFile), "abc");
    EXPECT_EQ(engine.sandbox.read(u"Downloads/x (1).rar"_s), "xyz");
    EXPECT_EQ(second->localPath(), engine.sandbox.path(u"Downloads/x (1).rar"_s));
}

TEST_F(TransferTroubleTest, TakesTheSecondLinkToAVolumeForAMirrorOfTheFirst)
{
    const ItemPtr first = engine.start(u"http://a/m.part1.rar"_s);
    const ItemPtr second = engine.add(u"http://b/m.part1.rar"_s);
    engine.manager().commands().startAll();
    turnEventLoop();
    say(200, {{"Content-Length", "3"}});
    send("abc");
    close();
    EXPECT_EQ(second->status(), DownloadStatus::completed);
    EXPECT_EQ(second->localPath(), first->localPath());
    EXPECT_EQ(engine.http.exchanges().size(), 1U);
}

TEST_F(TransferTroubleTest, ClosesItsFilesAndSavesAtTheEnd)
{
    engine.start(rarLink);
    say(200, {{"Content-Length", "6"}});
    send("abc");
    engine.manager().shutDown();
    server().data("def");
    EXPECT_EQ(engine.sandbox.read(partFile), "abc");
    EXPECT_TRUE(engine.sandbox.read(u"data/Vormel/download_queue.json"_s).contains("x.rar"));
}

TEST_F(TransferTroubleTest, DropsABlockThatArrivesAfterAPause)
{
    const ItemPtr item = engine.start(rarLink);
    say(200, {{"Content-Length", "6"}});
    send("abc");
    engine.manager().commands().pauseAll();
    EXPECT_TRUE(server().isDropped);
    server().data("def");
    EXPECT_EQ(engine.sandbox.read(partFile), "abc");
    EXPECT_EQ(item->status(), DownloadStatus::paused);
    EXPECT_DOUBLE_EQ(item->speedBytesPerSec(), 0);
}

namespace {

struct HostileName
{
    const char* label;
    QByteArray header;
};

class HostileHeader : public OneTransfer, public ::testing::WithParamInterface<HostileName>
{};

TEST_P(HostileHeader, EndsAsAFileInTheDownloadFolder)
{
    engine.settings().autoExtract.set(false);
    engine.sandbox.write(u"precious"_s, "keep");
    const ItemPtr item = engine.start(u"http://h/get"_s);
    say(200, {{"Content-Length", "3"}, {"Content-Disposition", GetParam().header}});
    send("abc");
    close();
    ASSERT_EQ(item->status(), DownloadStatus::completed);
    const QString relative = QDir(engine.sandbox.path(u"Downloads"_s)).relativeFilePath(*item->localPath());
    EXPECT_FALSE(relative.startsWith(u"../"_s)) << qPrintable(relative);
    EXPECT_LE(relative.count(u'/'), 1);
    EXPECT_EQ(engine.sandbox.read(u"Downloads/"_s + relative), "abc");
    EXPECT_EQ(engine.sandbox.read(u"precious"_s), "keep");
    EXPECT_EQ(engine.sandbox.files(u"Downloads"_s).size(), 1);
}

INSTANTIATE_TEST_SUITE_P(
    Names, HostileHeader,
    ::testing::Values(
        HostileName{"Parents", "filename=\"../../precious\""}, HostileName{"DotDot", "filename=\"..\""},
        HostileName{"Encoded", "filename*=UTF-8''..%2F..%2Fprecious"}, HostileName{"Nul", "filename*=UTF-8''a%00b.rar"},
        HostileName{"Newline", "filename*=UTF-8''a%0Ab.rar"},
        HostileName{"Long", "filename=\"" + QByteArray(300, 'n') + ".rar\""},
        HostileName{"LongAndWide", "filename=\"" + QByteArray("\xe6\xbc\xa2").repeated(200) + ".rar\""},
        HostileName{"SetWithoutBase", "filename=\".part1.rar\""},
        HostileName{"SetNamedDotDot", "filename=\"...part1.rar\""},
        HostileName{"SetNamedDot", "filename=\"..part1.rar\""}, HostileName{"Absolute", "filename=\"/etc/passwd\""},
        HostileName{"Latin1", "filename=\"caf\xe9.rar\""}, HostileName{"Backslashes", "filename=\"..\\\\..\\\\x\""}),
    [](const ::testing::TestParamInfo<HostileName>& row) { return std::string(row.param.label); });

class HostileLink : public OneTransfer, public ::testing::WithParamInterface<const char*>
{};

TEST_P(HostileLink, EndsAsAFileInTheDownloadFolder)
{
    engine.settings().autoExtract.set(false);
    const ItemPtr item = engine.start(u"http://h"_s + QLatin1StringView(GetParam()));
    say(200, {{"Content-Length", "3"}});
    send("abc");
    close();
    ASSERT_EQ(item->status(), DownloadStatus::completed);
    const QStringList files = engine.sandbox.files();
    EXPECT_EQ(files.filter(u"Downloads/"_s).size(), 1);
    const QStringList own{u"Downloads/"_s, u"data/"_s, u"config/"_s};
    for (const QString& file : files)
        EXPECT_TRUE(own.contains(file.left(file.indexOf(u'/') + 1))) << qPrintable(file);
}

INSTANTIATE_TEST_SUITE_P(Paths, HostileLink,
                         ::testing::Values("/..%2F..%2Fprecious", "/a%00b.rar", "/%2E%2E", "/a%0Ab.rar",
                                           "/...part1.rar", "/.part1.rar", "/%2F%2F", "/", "",
                                           "/a%2F..%2F..part1.rar"));

} // namespace
