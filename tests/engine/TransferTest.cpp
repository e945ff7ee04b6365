#include "engine/OneTransfer.h"

#include <QDir>
#include <QFile>

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;

using TransferTest = OneTransfer;

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
    const ItemPtr item = shop.resume(rarLink, QByteArray(1000, 'a'));
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
    const ItemPtr item = shop.resume(rarLink, QByteArray(1000, 'a'));
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
    const ItemPtr item = shop.add(rarLink);
    shop.begin(item, "0123456789");
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
    const ItemPtr item = shop.add(rarLink);
    shop.begin(item, "12345");
    item->setBytesReceived(777);
    shop.manager().startAll();
    turnEventLoop();
    EXPECT_EQ(server().header("Range"), "bytes=5-");
    EXPECT_EQ(item->bytesReceived(), 5);
}

TEST_F(TransferTest, CompletesWithoutARequestWhenTheFileIsThere)
{
    shop.settings().autoExtract.set(true);
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
    const ItemPtr item = shop.add(rarLink);
    shop.begin(item, "0123456789");
    item->setTotalBytes(10);
    shop.manager().startAll();
    turnEventLoop();
    EXPECT_TRUE(shop.http.exchanges().empty());
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_EQ(shop.sandbox.read(finalFile), "0123456789");
}

TEST_F(TransferTest, FinishesWhenTheServerSaysThatNothingIsLeft)
{
    const ItemPtr item = shop.resume(rarLink, "0123456789");
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
    send("abc");
    EXPECT_EQ(shop.sandbox.read(QStringLiteral("Downloads/get.download")), "abc");
    close();
    EXPECT_FALSE(shop.sandbox.exists(QStringLiteral("Downloads/get.download")));
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
    const ItemPtr item = shop.resume(rarLink, "abc");
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

TEST_F(TransferTest, TakesNothingOfAnAnswerThatIsLongerThanItAnnounced)
{
    const ItemPtr item = shop.start(rarLink);
    say(200, {{"Content-Length", "4"}});
    send("123", 500ms);
    EXPECT_DOUBLE_EQ(item->progress(), 0.75);
    send("45678");
    EXPECT_TRUE(shop.http.exchanges()[0]->isOver);
    EXPECT_DOUBLE_EQ(item->progress(), 0);
    EXPECT_EQ(shop.sandbox.read(partFile), "");
}
