#include "engine/OneTransfer.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;

using TransferTest = OneTransfer;

TEST_F(TransferTest, FetchesAFreshFileWithoutARange)
{
    const ItemPtr item = engine.start(rarLink);
    EXPECT_EQ(server().header("Range"), std::nullopt);
    EXPECT_TRUE(server().request.headers.empty());
    say(200, {{"Content-Length", "6"}});
    EXPECT_EQ(item->totalBytes(), 6);
    send("abc");
    send("def");
    EXPECT_EQ(engine.sandbox.read(partFile), "abcdef");
    EXPECT_FALSE(engine.sandbox.exists(finalFile));
    close();
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_EQ(engine.sandbox.read(finalFile), "abcdef");
    EXPECT_FALSE(engine.sandbox.exists(partFile));
    EXPECT_EQ(item->localPath(), engine.sandbox.path(finalFile));
    EXPECT_DOUBLE_EQ(item->progress(), 1.0);
}

TEST_F(TransferTest, AsksForNoRangeWithAnEmptyPartFile)
{
    engine.sandbox.write(partFile, "");
    engine.start(rarLink);
    EXPECT_EQ(server().header("Range"), std::nullopt);
}

TEST_F(TransferTest, GoesOnBehindThePartFile)
{
    const ItemPtr item = engine.resume(rarLink, QByteArray(1000, 'a'));
    EXPECT_EQ(server().header("Range"), "bytes=1000-");
    EXPECT_EQ(item->bytesReceived(), 1000);
    say(206, {{"Content-Range", "bytes 1000-1999/2000"}, {"Content-Length", "1000"}});
    EXPECT_EQ(item->totalBytes(), 2000);
    send(QByteArray(1000, 'b'));
    close();
    EXPECT_EQ(engine.sandbox.read(finalFile), QByteArray(1000, 'a') + QByteArray(1000, 'b'));
}

TEST_F(TransferTest, StartsOverWhenTheServerIgnoresTheRange)
{
    const ItemPtr item = engine.resume(rarLink, QByteArray(1000, 'a'));
    say(200, {{"Content-Length", "4"}});
    EXPECT_EQ(engine.sandbox.read(partFile), "");
    EXPECT_EQ(item->bytesReceived(), 0);
    EXPECT_DOUBLE_EQ(item->progress(), 0);
    EXPECT_EQ(item->totalBytes(), 4);
    send("body");
    close();
    EXPECT_EQ(engine.sandbox.read(finalFile), "body");
}

TEST_F(TransferTest, KeepsTheTotalWhenThePieceDoesNotTellIt)
{
    const ItemPtr item = engine.add(rarLink);
    engine.begin(item, "0123456789");
    item->setTotalBytes(20);
    engine.manager().commands().startAll();
    turnEventLoop();
    say(206, {{"Content-Range", "bytes 10-19/*"}});
    EXPECT_EQ(item->totalBytes(), 20);
    send("abcdefghij");
    close();
    EXPECT_EQ(item->status(), DownloadStatus::completed);
}

TEST_F(TransferTest, TakesTheOffsetFromTheDiskAndNothingElse)
{
    const ItemPtr item = engine.add(rarLink);
    engine.begin(item, "12345");
    item->setBytesReceived(777);
    engine.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(server().header("Range"), "bytes=5-");
    EXPECT_EQ(item->bytesReceived(), 5);
}

TEST_F(TransferTest, CompletesWithoutARequestWhenTheFileIsThere)
{
    engine.settings().autoExtract.set(true);
    const ItemPtr item = engine.add(rarLink);
    engine.sandbox.write(finalFile, "already");
    engine.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_TRUE(engine.http.exchanges().empty());
    EXPECT_EQ(item->totalBytes(), 7);
    EXPECT_EQ(item->bytesReceived(), 7);
    EXPECT_FALSE(item->extractionStatus() == ExtractionStatus::idle);
}

TEST_F(TransferTest, OnlyFinishesWhenThePartFileHoldsTheWholeKnownTotal)
{
    const ItemPtr item = engine.add(rarLink);
    engine.begin(item, "0123456789");
    item->setTotalBytes(10);
    engine.manager().commands().startAll();
    turnEventLoop();
    EXPECT_TRUE(engine.http.exchanges().empty());
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_EQ(engine.sandbox.read(finalFile), "0123456789");
}

TEST_F(TransferTest, FinishesWhenTheServerSaysThatNothingIsLeft)
{
    const ItemPtr item = engine.resume(rarLink, "0123456789");
    say(416, {{"Content-Type", "text/html"}, {"Content-Range", "bytes */10"}});
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_EQ(engine.sandbox.read(finalFile), "0123456789");
}

TEST_F(TransferTest, PutsTheMembersOfASetInOneFolder)
{
    engine.start(u"http://h/movie.part1.rar"_s);
    engine.start(u"http://h/movie.part2.rar"_s);
    engine.start(u"http://h/movie.rar"_s);
    EXPECT_EQ(engine.sandbox.files(u"Downloads"_s),
              (QStringList{u"movie.rar.download"_s, u"movie/movie.part1.rar.download"_s,
                           u"movie/movie.part2.rar.download"_s}));
}

TEST_F(TransferTest, WritesNoByteOfAPageThatComesInsteadOfTheFile)
{
    const ItemPtr item = engine.start(rarLink);
    say(200, {{"Content-Type", "text/html"}});
    send("<html>no</html>");
    EXPECT_EQ(engine.sandbox.read(partFile), "");
    close();
    EXPECT_EQ(item->status().kind(), DownloadStatus::failed);
    EXPECT_FALSE(engine.sandbox.exists(partFile));
}

TEST_F(TransferTest, FetchesAPageThatIsTheFile)
{
    const ItemPtr item = engine.start(u"http://h/x.html"_s);
    say(200, {{"Content-Type", "text/html"}});
    send("<html>yes</html>");
    close();
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_EQ(engine.sandbox.read(u"Downloads/x.html"_s), "<html>yes</html>");
}

TEST_F(TransferTest, KeepsAtMost8192BytesOfAPage)
{
    const ItemPtr item = engine.start(rarLink);
    say(200, {{"Content-Type", "text/html"}});
    // The word stands behind the bytes that are kept.
    send(QByteArray(8192, ' ') + "geolocation");
    EXPECT_TRUE(server().isOver);
    turnEventLoop();
    EXPECT_FALSE(item->status().message().contains(u"geo"_s));
}

TEST_F(TransferTest, TakesTheServersNameForADirectLink)
{
    const ItemPtr item = engine.start(u"http://h/get?id=1"_s);
    say(200, {{"Content-Length", "3"}, {"Content-Disposition", "attachment; filename=\"movie.part1.rar\""}});
    EXPECT_EQ(item->filename(), u"movie.part1.rar"_s);
    send("abc");
    EXPECT_EQ(engine.sandbox.read(u"Downloads/get.download"_s), "abc");
    close();
    EXPECT_FALSE(engine.sandbox.exists(u"Downloads/get.download"_s));
    EXPECT_EQ(item->localPath(), engine.sandbox.path(u"Downloads/movie/movie.part1.rar"_s));
}

TEST_F(TransferTest, FindsItsPartFileAgainUnderTheServersName)
{
    const ItemPtr item = engine.start(u"http://h/get?id=1"_s);
    say(200, {{"Content-Length", "6"}, {"Content-Disposition", "attachment; filename=movie.rar"}});
    send("abc");
    engine.restart(true);
    const ItemPtr again = engine.manager().items().at(0);
    EXPECT_EQ(again->filename(), u"movie.rar"_s);
    EXPECT_EQ(again->bytesReceived(), 3);
    EXPECT_EQ(again->totalBytes(), 6);
    engine.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(server().header("Range"), "bytes=3-");
}

TEST_F(TransferTest, LeavesAPartFileAloneThatStandsUnderTheServersName)
{
    engine.sandbox.write(u"Downloads/movie.rar.download"_s, "somebody else's");
    const ItemPtr item = engine.start(u"http://h/get"_s);
    say(200, {{"Content-Length", "3"}, {"Content-Disposition", "attachment; filename=movie.rar"}});
    send("abc");
    close();
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_EQ(engine.sandbox.read(u"Downloads/movie.rar.download"_s), "somebody else's");
    EXPECT_EQ(engine.sandbox.read(u"Downloads/movie.rar"_s), "abc");
}

TEST_F(TransferTest, IgnoresTheServersNameOnAResume)
{
    const ItemPtr item = engine.resume(rarLink, "abc");
    say(206, {{"Content-Range", "bytes 3-5/6"}, {"Content-Disposition", "attachment; filename=other.rar"}});
    EXPECT_EQ(item->filename(), u"x.rar"_s);
}

TEST_F(TransferTest, TellsTheViewsAtMostTwiceASecond)
{
    const ItemPtr item = engine.start(rarLink);
    say(200, {{"Content-Length", "100000"}});
    int changes = 0;
    QObject::connect(&engine.manager(), &DownloadManager::itemChanged, &engine.manager(), [&changes] { ++changes; });
    for (int i = 0; i < 49; ++i)
        send(QByteArray(10, 'x'), 10ms);
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(item->bytesReceived(), 0);
    send(QByteArray(10, 'x'), 10ms);
    EXPECT_EQ(item->bytesReceived(), 500);
    EXPECT_DOUBLE_EQ(item->speedBytesPerSec(), 1000.0);
    EXPECT_DOUBLE_EQ(engine.manager().totalSpeedBytesPerSec(), 1000.0);
    EXPECT_DOUBLE_EQ(item->progress(), 0.005);
}

TEST_F(TransferTest, TakesNothingOfAnAnswerThatIsLongerThanItAnnounced)
{
    const ItemPtr item = engine.start(rarLink);
    say(200, {{"Content-Length", "4"}});
    send("123", 500ms);
    EXPECT_DOUBLE_EQ(item->progress(), 0.75);
    send("45678");
    EXPECT_TRUE(engine.http.exchanges()[0]->isOver);
    EXPECT_DOUBLE_EQ(item->progress(), 0);
    EXPECT_EQ(engine.sandbox.read(partFile), "");
}
