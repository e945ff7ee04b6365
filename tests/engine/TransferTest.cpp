#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"
#include "fixtures/Workshop.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;

namespace {

const QString rarLink = QStringLiteral("http://h/x.rar");
const QString partFile = QStringLiteral("Downloads/x.rar.download");
const QString finalFile = QStringLiteral("Downloads/x.rar");

/// One item, fetched over a scripted network.
class TransferTest : public ::testing::Test
{
protected:
    ScriptedHttpClient::Exchange& server() { return shop.http.last(); }
    void say(int status, const std::vector<HttpHeader>& headers)
    {
        server().head(status, headers);
        turnEventLoop();
    }
    void send(const QByteArray& bytes, std::chrono::milliseconds after = 0ms)
    {
        shop.clock.advance(after);
        server().data(bytes);
        turnEventLoop();
    }
    void close()
    {
        server().finish();
        turnEventLoop();
    }

    Workshop shop;
};

} // namespace

TEST_F(TransferTest, FetchesAFreshFileWithoutARange)
{
    const ItemPtr item = shop.start(rarLink);
    EXPECT_EQ(server().header("Range"), std::nullopt);
    EXPECT_TRUE(server().request.headers.empty());
    say(200, {{"Content-Length", "6"}});
    EXPECT_EQ(item->totalBytes(), 6);
    send("abc");
    send("def");
    EXPECT_EQ(shop.sandbox.read(partFile), "abcdef");
    EXPECT_FALSE(shop.sandbox.exists(finalFile));
    close();
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_EQ(shop.sandbox.read(finalFile), "abcdef");
    EXPECT_FALSE(shop.sandbox.exists(partFile));
    EXPECT_EQ(item->localPath(), shop.sandbox.path(finalFile));
    EXPECT_DOUBLE_EQ(item->progress(), 1.0);
}

TEST_F(TransferTest, AsksForNoRangeWithAnEmptyPartFile)
{
    shop.sandbox.write(partFile, "");
    shop.start(rarLink);
    EXPECT_EQ(server().header("Range"), std::nullopt);
}

TEST_F(TransferTest, GoesOnBehindThePartFile)
{
    shop.sandbox.write(partFile, QByteArray(1000, 'a'));
    const ItemPtr item = shop.start(rarLink);
    EXPECT_EQ(server().header("Range"), "bytes=1000-");
    EXPECT_EQ(item->bytesReceived(), 1000);
    say(206, {{"Content-Range", "bytes 1000-1999/2000"}, {"Content-Length", "1000"}});
    EXPECT_EQ(item->totalBytes(), 2000);
    send(QByteArray(1000, 'b'));
    close();
    EXPECT_EQ(shop.sandbox.read(finalFile), QByteArray(1000, 'a') + QByteArray(1000, 'b'));
}

TEST_F(TransferTest, StartsOverWhenTheServerIgnoresTheRange)
{
    shop.sandbox.write(partFile, QByteArray(1000, 'a'));
    const ItemPtr item = shop.start(rarLink);
    say(200, {{"Content-Length", "4"}});
    EXPECT_EQ(shop.sandbox.read(partFile), "");
    EXPECT_EQ(item->bytesReceived(), 0);
    EXPECT_DOUBLE_EQ(item->progress(), 0);
    EXPECT_EQ(item->totalBytes(), 4);
    send("body");
    close();
    EXPECT_EQ(shop.sandbox.read(finalFile), "body");
}

TEST_F(TransferTest, KeepsTheTotalWhenThePieceDoesNotTellIt)
{
    shop.sandbox.write(partFile, "0123456789");
    const ItemPtr item = shop.add(rarLink);
    item->setTotalBytes(20);
    shop.manager().startAll();
    turnEventLoop();
    say(206, {{"Content-Range", "bytes 10-19/*"}});
    EXPECT_EQ(item->totalBytes(), 20);
    send("abcdefghij");
    close();
    EXPECT_EQ(item->status(), DownloadStatus::completed);
}

TEST_F(TransferTest, TakesTheOffsetFromTheDiskAndNothingElse)
{
    shop.sandbox.write(partFile, "12345");
    const ItemPtr item = shop.add(rarLink);
    item->setBytesReceived(777);
    shop.manager().startAll();
    turnEventLoop();
    EXPECT_EQ(server().header("Range"), "bytes=5-");
    EXPECT_EQ(item->bytesReceived(), 5);
}

TEST_F(TransferTest, CompletesWithoutARequestWhenTheFileIsThere)
{
    const ItemPtr item = shop.add(rarLink);
    shop.sandbox.write(finalFile, "already");
    shop.manager().startAll();
    turnEventLoop();
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_TRUE(shop.http.exchanges().empty());
    EXPECT_EQ(item->totalBytes(), 7);
    EXPECT_EQ(item->bytesReceived(), 7);
    EXPECT_FALSE(item->extractionStatus() == ExtractionStatus::idle);
}

TEST_F(TransferTest, OnlyFinishesWhenThePartFileHoldsTheWholeKnownTotal)
{
    shop.sandbox.write(partFile, "0123456789");
    const ItemPtr item = shop.add(rarLink);
    item->setTotalBytes(10);
    shop.manager().startAll();
    turnEventLoop();
    EXPECT_TRUE(shop.http.exchanges().empty());
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_EQ(shop.sandbox.read(finalFile), "0123456789");
}

TEST_F(TransferTest, FinishesWhenTheServerSaysThatNothingIsLeft)
{
    shop.sandbox.write(partFile, "0123456789");
    const ItemPtr item = shop.start(rarLink);
    say(416, {{"Content-Type", "text/html"}, {"Content-Range", "bytes */10"}});
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_EQ(shop.sandbox.read(finalFile), "0123456789");
}

TEST_F(TransferTest, PutsTheMembersOfASetInOneFolder)
{
    shop.start(QStringLiteral("http://h/movie.part1.rar"));
    shop.start(QStringLiteral("http://h/movie.part2.rar"));
    shop.start(QStringLiteral("http://h/movie.rar"));
    EXPECT_EQ(shop.sandbox.files(QStringLiteral("Downloads")),
              (QStringList{QStringLiteral("movie.rar.download"), QStringLiteral("movie/movie.part1.rar.download"),
                           QStringLiteral("movie/movie.part2.rar.download")}));
}

TEST_F(TransferTest, WritesNoByteOfAPageThatComesInsteadOfTheFile)
{
    const ItemPtr item = shop.start(rarLink);
    say(200, {{"Content-Type", "text/html"}});
    send("<html>no</html>");
    EXPECT_EQ(shop.sandbox.read(partFile), "");
    close();
    EXPECT_EQ(item->status().kind(), DownloadStatus::failed);
    EXPECT_FALSE(shop.sandbox.exists(partFile));
}

TEST_F(TransferTest, FetchesAPageThatIsTheFile)
{
    const ItemPtr item = shop.start(QStringLiteral("http://h/x.html"));
    say(200, {{"Content-Type", "text/html"}});
    send("<html>yes</html>");
    close();
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_EQ(shop.sandbox.read(QStringLiteral("Downloads/x.html")), "<html>yes</html>");
}

TEST_F(TransferTest, KeepsAtMost8192BytesOfAPage)
{
    const ItemPtr item = shop.start(rarLink);
    say(200, {{"Content-Type", "text/html"}});
    // The word stands behind the bytes that are kept.
    send(QByteArray(8192, ' ') + "geolocation");
    EXPECT_TRUE(server().isOver);
    turnEventLoop();
    EXPECT_FALSE(item->status().message().contains(QStringLiteral("geo")));
}

TEST_F(TransferTest, TakesTheServersNameForADirectLink)
{
    const ItemPtr item = shop.start(QStringLiteral("http://h/get?id=1"));
    say(200, {{"Content-Length", "3"}, {"Content-Disposition", "attachment; filename=\"movie.part1.rar\""}});
    EXPECT_EQ(item->filename(), QStringLiteral("movie.part1.rar"));
    EXPECT_TRUE(shop.sandbox.exists(QStringLiteral("Downloads/movie/movie.part1.rar.download")));
    EXPECT_FALSE(shop.sandbox.exists(QStringLiteral("Downloads/get.download")));
    send("abc");
    close();
    EXPECT_EQ(item->localPath(), shop.sandbox.path(QStringLiteral("Downloads/movie/movie.part1.rar")));
}

TEST_F(TransferTest, FindsItsPartFileAgainUnderTheServersName)
{
    const ItemPtr item = shop.start(QStringLiteral("http://h/get?id=1"));
    say(200, {{"Content-Length", "6"}, {"Content-Disposition", "attachment; filename=movie.rar"}});
    send("abc");
    shop.restart(true);
    const ItemPtr again = shop.manager().items().at(0);
    EXPECT_EQ(again->filename(), QStringLiteral("movie.rar"));
    EXPECT_EQ(again->bytesReceived(), 3);
    EXPECT_EQ(again->totalBytes(), 6);
    shop.manager().startAll();
    turnEventLoop();
    EXPECT_EQ(server().header("Range"), "bytes=3-");
}

TEST_F(TransferTest, LeavesAPartFileAloneThatStandsUnderTheServersName)
{
    shop.sandbox.write(QStringLiteral("Downloads/movie.rar.download"), "somebody else's");
    const ItemPtr item = shop.start(QStringLiteral("http://h/get"));
    say(200, {{"Content-Length", "3"}, {"Content-Disposition", "attachment; filename=movie.rar"}});
    send("abc");
    close();
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_EQ(shop.sandbox.read(QStringLiteral("Downloads/movie.rar.download")), "somebody else's");
    EXPECT_EQ(shop.sandbox.read(QStringLiteral("Downloads/movie.rar")), "abc");
}

TEST_F(TransferTest, IgnoresTheServersNameOnAResume)
{
    shop.sandbox.write(partFile, "abc");
    const ItemPtr item = shop.start(rarLink);
    say(206, {{"Content-Range", "bytes 3-5/6"}, {"Content-Disposition", "attachment; filename=other.rar"}});
    EXPECT_EQ(item->filename(), QStringLiteral("x.rar"));
}

TEST_F(TransferTest, TellsTheViewsAtMostTwiceASecond)
{
    const ItemPtr item = shop.start(rarLink);
    say(200, {{"Content-Length", "100000"}});
    int changes = 0;
    QObject::connect(&shop.manager(), &DownloadManager::itemChanged, &shop.manager(), [&changes] { ++changes; });
    for (int i = 0; i < 49; ++i)
        send(QByteArray(10, 'x'), 10ms);
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(item->bytesReceived(), 0);
    send(QByteArray(10, 'x'), 10ms);
    EXPECT_EQ(item->bytesReceived(), 500);
    EXPECT_DOUBLE_EQ(item->speedBytesPerSec(), 1000.0);
    EXPECT_DOUBLE_EQ(shop.manager().totalSpeedBytesPerSec(), 1000.0);
    EXPECT_DOUBLE_EQ(item->progress(), 0.005);
}

TEST_F(TransferTest, KeepsProgressWithinOneWhenMoreComesThanWasTold)
{
    const ItemPtr item = shop.start(rarLink);
    say(200, {{"Content-Length", "4"}});
    send("12345678", 500ms);
    EXPECT_DOUBLE_EQ(item->progress(), 1.0);
}

TEST_F(TransferTest, AsksForTheRestOnlyAndMixesNothingWhenThePieceBeginsElsewhere)
{
    shop.sandbox.write(partFile, "0123456789");
    const ItemPtr item = shop.start(rarLink);
    say(206, {{"Content-Range", "bytes 0-19/20"}});
    EXPECT_EQ(shop.sandbox.read(partFile), "0123456789");
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    shop.clock.advance(2s);
    EXPECT_EQ(server().header("Range"), "bytes=10-");
    EXPECT_EQ(shop.http.exchanges().size(), 2U);
}

TEST_F(TransferTest, NeverJoinsTwoVersionsOfAFile)
{
    const ItemPtr item = shop.start(rarLink);
    say(200, {{"Content-Length", "6"}, {"ETag", "\"one\""}});
    send("abc");
    server().fail(HttpError::Kind::ConnectionLost);
    turnEventLoop();
    shop.clock.advance(2s);
    ASSERT_EQ(server().header("Range"), "bytes=3-");
    say(206, {{"Content-Range", "bytes 3-5/6"}, {"ETag", "\"two\""}});
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    EXPECT_EQ(shop.sandbox.read(partFile), "abc");
    shop.clock.advance(4s);
    say(206, {{"Content-Range", "bytes 3-6/7"}, {"ETag", "\"one\""}});
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    EXPECT_EQ(shop.sandbox.read(partFile), "abc");
}

TEST_F(TransferTest, AcceptsTheCertificatesOfTheTwoPremiumServicesUnseen)
{
    shop.start(rarLink);
    EXPECT_TRUE(server().acceptsAnyCertificateOf(QStringLiteral("cdn7.filestore.example")));
    EXPECT_TRUE(server().acceptsAnyCertificateOf(QStringLiteral("terabytez.mirror")));
    EXPECT_FALSE(server().acceptsAnyCertificateOf(QStringLiteral("other.example")));
    EXPECT_FALSE(server().acceptsAnyCertificateOf(QStringLiteral("terabytez-host.example")));
}

TEST_F(TransferTest, EndsSoonWhenThePartFileIsRemovedMeanwhile)
{
    const ItemPtr item = shop.start(rarLink);
    say(200, {{"Content-Length", "6"}});
    send("abc");
    ASSERT_TRUE(QFile::remove(shop.sandbox.path(partFile)));
    send("def");
    EXPECT_TRUE(server().isOver || shop.http.exchanges().size() > 1);
    EXPECT_FALSE(shop.sandbox.exists(finalFile));
    // The queue tries again at once, from nothing.
    say(200, {{"Content-Length", "6"}});
    send("abcdef");
    close();
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_EQ(shop.sandbox.read(finalFile), "abcdef");
}

TEST_F(TransferTest, ResumesFromWhatIsLeftWhenThePartFileIsShortened)
{
    const ItemPtr item = shop.start(rarLink);
    say(200, {{"Content-Length", "6"}});
    send("abc");
    ASSERT_TRUE(QFile::resize(shop.sandbox.path(partFile), 1));
    send("def");
    EXPECT_EQ(server().header("Range"), "bytes=1-");
    say(206, {{"Content-Range", "bytes 1-5/6"}});
    send("bcdef");
    close();
    EXPECT_EQ(shop.sandbox.read(finalFile), "abcdef");
}

TEST_F(TransferTest, FailsWhereTheFolderCannotBeMadeAndCompletesOnceItCan)
{
    shop.sandbox.write(QStringLiteral("blocked"), "a file where the folder should be");
    shop.settings().downloadFolderPath.set(shop.sandbox.path(QStringLiteral("blocked")));
    const ItemPtr item = shop.start(rarLink);
    EXPECT_EQ(item->status(), DownloadStatus::failure(QStringLiteral("The download folder is missing.")));
    ASSERT_TRUE(QFile::remove(shop.sandbox.path(QStringLiteral("blocked"))));
    item->setStatus(DownloadStatus::queued);
    shop.manager().processQueue();
    turnEventLoop();
    say(200, {{"Content-Length", "3"}});
    send("abc");
    close();
    EXPECT_EQ(shop.sandbox.read(QStringLiteral("blocked/x.rar")), "abc");
}

TEST_F(TransferTest, TellsAFileErrorInItalian)
{
    shop.settings().language.set(AppLanguage::italian);
    shop.sandbox.write(QStringLiteral("blocked"), "x");
    shop.settings().downloadFolderPath.set(shop.sandbox.path(QStringLiteral("blocked")));
    EXPECT_EQ(shop.start(rarLink)->status().message(), QStringLiteral("La cartella dei download non esiste."));
}

TEST_F(TransferTest, LetsTheSecondOfTwoLinksOfOneNameWaitForTheFirst)
{
    const ItemPtr first = shop.start(QStringLiteral("http://a/x.rar"));
    const ItemPtr second = shop.add(QStringLiteral("http://b/x.rar"));
    const ItemPtr third = shop.add(QStringLiteral("http://b/y.rar"));
    shop.manager().startAll();
    turnEventLoop();
    EXPECT_EQ(second->status(), DownloadStatus::queued);
    EXPECT_EQ(third->status(), DownloadStatus::downloading);
    auto& exchange = *shop.http.exchanges()[0];
    exchange.head(200, {{"Content-Length", "3"}});
    exchange.data("abc");
    exchange.finish();
    turnEventLoop();
    EXPECT_EQ(first->status(), DownloadStatus::completed);
    EXPECT_EQ(second->status(), DownloadStatus::completed);
    EXPECT_EQ(second->localPath(), first->localPath());
}

TEST_F(TransferTest, ClosesItsFilesAndSavesAtTheEnd)
{
    shop.start(rarLink);
    say(200, {{"Content-Length", "6"}});
    send("abc");
    shop.manager().shutDown();
    server().data("def");
    EXPECT_EQ(shop.sandbox.read(partFile), "abc");
    EXPECT_TRUE(shop.sandbox.read(QStringLiteral("data/Vormel/download_queue.json")).contains("x.rar"));
}

TEST_F(TransferTest, DropsABlockThatArrivesAfterAPause)
{
    const ItemPtr item = shop.start(rarLink);
    say(200, {{"Content-Length", "6"}});
    send("abc");
    shop.manager().pauseAll();
    EXPECT_TRUE(server().isDropped);
    server().data("def");
    EXPECT_EQ(shop.sandbox.read(partFile), "abc");
    EXPECT_EQ(item->status(), DownloadStatus::paused);
    EXPECT_DOUBLE_EQ(item->speedBytesPerSec(), 0);
}

namespace {

struct HostileName
{
    const char* label;
    QByteArray header;
};

class HostileHeader : public TransferTest, public ::testing::WithParamInterface<HostileName>
{};

TEST_P(HostileHeader, EndsAsAFileInTheDownloadFolder)
{
    shop.sandbox.write(QStringLiteral("precious"), "keep");
    const ItemPtr item = shop.start(QStringLiteral("http://h/get"));
    say(200, {{"Content-Length", "3"}, {"Content-Disposition", GetParam().header}});
    send("abc");
    close();
    ASSERT_EQ(item->status(), DownloadStatus::completed);
    const QString relative = QDir(shop.sandbox.path(QStringLiteral("Downloads"))).relativeFilePath(*item->localPath());
    EXPECT_FALSE(relative.startsWith(QStringLiteral("../"))) << qPrintable(relative);
    EXPECT_LE(relative.count(u'/'), 1);
    EXPECT_EQ(shop.sandbox.read(QStringLiteral("Downloads/") + relative), "abc");
    EXPECT_EQ(shop.sandbox.read(QStringLiteral("precious")), "keep");
    EXPECT_EQ(shop.sandbox.files(QStringLiteral("Downloads")).size(), 1);
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

class HostileLink : public TransferTest, public ::testing::WithParamInterface<const char*>
{};

TEST_P(HostileLink, EndsAsAFileInTheDownloadFolder)
{
    const ItemPtr item = shop.start(QStringLiteral("http://h") + QLatin1StringView(GetParam()));
    say(200, {{"Content-Length", "3"}});
    send("abc");
    close();
    ASSERT_EQ(item->status(), DownloadStatus::completed);
    const QStringList files = shop.sandbox.files();
    EXPECT_EQ(files.filter(QStringLiteral("Downloads/")).size(), 1);
    for (const QString& file : files)
        EXPECT_TRUE(file.startsWith(QStringLiteral("Downloads/")) || file.startsWith(QStringLiteral("data/")))
            << qPrintable(file);
}

INSTANTIATE_TEST_SUITE_P(Paths, HostileLink,
                         ::testing::Values("/..%2F..%2Fprecious", "/a%00b.rar", "/%2E%2E", "/a%0Ab.rar",
                                           "/...part1.rar", "/.part1.rar", "/%2F%2F", "/", "",
                                           "/a%2F..%2F..part1.rar"));

} // namespace
