#include "engine/OneTransfer.h"
#include "engine/SavedQueue.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;
using ::testing::ElementsAre;

namespace {

const QString secondPart = u"Downloads/x.rar (1).download"_s;

/// Whose bytes a part file holds, and who may go on with them.
class PartOwnership : public OneTransfer
{
protected:
    void SetUp() override
    {
        const QString path = engine.sandbox.write(u"Downloads/probe"_s, "");
        PartFile probe(path, PartFile::Opening::existing);
        probe.setMarks({});
        keepsMarks = probe.isMarked();
        ASSERT_TRUE(QFile::remove(path));
    }

    /// A part file that another item has left, of a row that was removed since.
    void leaveOrphan(const std::vector<HttpHeader>& headers)
    {
        const ItemPtr orphan = engine.start(u"http://first/x.rar"_s);
        say(200, headers);
        send("abc");
        engine.manager().commands().pauseAll();
        engine.manager().commands().removeItems({orphan->id()});
        ASSERT_EQ(engine.sandbox.read(partFile), "abc");
    }
    void finish(const QByteArray& bytes)
    {
        say(200, {{"Content-Length", QByteArray::number(bytes.size())}});
        send(bytes);
        close();
    }
    /// The link is fetched from its first byte, and what another has left stays as it is.
    void expectBegunAnewBeside(const QByteArray& stranger)
    {
        const ItemPtr item = engine.start(rarLink);
        EXPECT_EQ(server().header("Range"), std::nullopt);
        EXPECT_EQ(item->bytesReceived(), 0);
        finish("second");
        EXPECT_EQ(engine.sandbox.read(finalFile), "second");
        EXPECT_EQ(engine.sandbox.read(partFile), stranger);
    }
    /// A new start of the program that finds the queue as it was some time ago.
    void restartWith(const QByteArray& savedQueue)
    {
        engine.restart(true);
        engine.flush();
        engine.sandbox.write(queueFile, savedQueue);
        engine.restart(true);
    }
    QByteArray savedQueue()
    {
        engine.manager().saveQueue();
        engine.flush();
        return engine.sandbox.read(queueFile);
    }
    [[nodiscard]] const DownloadItem& only() { return *engine.manager().items().at(0); }

    bool keepsMarks = false;
};

#define VORMEL_NEEDS_MARKS                                                                                             \
    if (!keepsMarks)                                                                                                   \
    GTEST_SKIP() << "this file system keeps no extended attributes"

} // namespace

TEST_F(PartOwnership, WhatOneLinkLeftIsNotTheBeginningOfAnother)
{
    leaveOrphan({{"Content-Length", "6"}});
    expectBegunAnewBeside("abc");
}

TEST_F(PartOwnership, WhatOneLinkLeftOfUnknownLengthIsNotTheBeginningOfAnother)
{
    leaveOrphan({});
    expectBegunAnewBeside("abc");
}

TEST_F(PartOwnership, WhatNobodyIsKnownToHaveBegunIsBegunAnewAndLeftAlone)
{
    engine.sandbox.write(partFile, "whatever this is");
    expectBegunAnewBeside("whatever this is");
}

TEST_F(PartOwnership, ALinkThatIsAddedAgainGoesOn)
{
    VORMEL_NEEDS_MARKS;
    leaveOrphan({{"Content-Length", "6"}, {"ETag", "\"one\""}});
    const ItemPtr item = engine.start(u"http://first/x.rar"_s);
    EXPECT_EQ(server().header("Range"), "bytes=3-");
    EXPECT_EQ(item->totalBytes(), 6);
    say(206, {{"Content-Range", "bytes 3-5/6"}, {"ETag", "\"one\""}});
    send("def");
    close();
    EXPECT_EQ(engine.sandbox.read(finalFile), "abcdef");
    EXPECT_FALSE(readMarks(engine.sandbox.path(finalFile)).areThere());
}

TEST_F(PartOwnership, ALinkThatIsAddedAgainRefusesAPieceOfAnotherSize)
{
    VORMEL_NEEDS_MARKS;
    leaveOrphan({{"Content-Length", "6"}});
    const ItemPtr item = engine.start(u"http://first/x.rar"_s);
    say(206, {{"Content-Range", "bytes 3-8/9"}});
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    EXPECT_FALSE(engine.sandbox.exists(finalFile));
}

TEST_F(PartOwnership, TwoItemsOfOneNameHaveAPartFileEach)
{
    const ItemPtr first = engine.start(u"http://first/x.rar"_s);
    say(200, {{"Content-Length", "6"}});
    send("abc");
    engine.manager().commands().pauseItems({first});
    const ItemPtr second = engine.add(rarLink);
    engine.manager().commands().startItems({second});
    turnEventLoop();
    say(200, {{"Content-Length", "6"}});
    send("uvw");
    EXPECT_THAT(downloads(), ElementsAre(u"x.rar (1).download"_s, u"x.rar.download"_s));
    EXPECT_EQ(engine.sandbox.read(partFile), "abc");
    EXPECT_EQ(engine.sandbox.read(secondPart), "uvw");
    engine.restart(true);
    EXPECT_EQ(engine.manager().items()[0]->bytesReceived(), 3);
    EXPECT_EQ(engine.manager().items()[1]->partPlace()->path, engine.sandbox.path(secondPart));
    engine.manager().commands().startItems({engine.manager().items()[1]});
    turnEventLoop();
    EXPECT_EQ(server().header("Range"), "bytes=3-");
    say(206, {{"Content-Range", "bytes 3-5/6"}});
    send("xyz");
    close();
    EXPECT_EQ(engine.sandbox.read(finalFile), "uvwxyz");
    EXPECT_EQ(engine.sandbox.read(partFile), "abc");
}

TEST_F(PartOwnership, APauseKeepsProgressThoughAnOrphanHasTheServersName)
{
    engine.sandbox.write(u"Downloads/movie.rar.download"_s, "somebody else's");
    engine.start(u"http://h/get"_s);
    say(200, {{"Content-Length", "6"}, {"Content-Disposition", "attachment; filename=movie.rar"}});
    send("abc");
    engine.manager().commands().pauseAll();
    engine.restart(true);
    EXPECT_EQ(only().filename(), u"movie.rar"_s);
    EXPECT_EQ(only().bytesReceived(), 3);
    startAll();
    EXPECT_EQ(server().header("Range"), "bytes=3-");
    say(206, {{"Content-Range", "bytes 3-5/6"}});
    send("def");
    close();
    EXPECT_EQ(engine.sandbox.read(u"Downloads/movie.rar"_s), "abcdef");
    EXPECT_EQ(engine.sandbox.read(u"Downloads/movie.rar.download"_s), "somebody else's");
}

TEST_F(PartOwnership, AKillBeforeTheServersNameIsSavedLosesNothing)
{
    engine.start(u"http://h/get"_s);
    const QByteArray before = savedQueue();
    say(200, {{"Content-Length", "6"}, {"Content-Disposition", "attachment; filename=movie.part1.rar"}});
    send("abc");
    restartWith(before);
    EXPECT_EQ(only().filename(), u"get"_s);
    startAll();
    EXPECT_EQ(server().header("Range"), "bytes=3-");
}

TEST_F(PartOwnership, AKillBeforeAPathIsSavedLosesNothing)
{
    VORMEL_NEEDS_MARKS;
    engine.sandbox.write(partFile, "somebody else's");
    engine.add(rarLink);
    const QByteArray before = savedQueue();
    startAll();
    say(200, {{"Content-Length", "6"}});
    send("abc");
    restartWith(before);
    EXPECT_EQ(only().bytesReceived(), 3);
    EXPECT_EQ(only().totalBytes(), 6);
    startAll();
    EXPECT_EQ(server().header("Range"), "bytes=3-");
}

TEST_F(PartOwnership, AFileWithoutMarksIsTheItemsWhereTheQueueSaysSo)
{
    engine.sandbox.write(partFile, "somebody else's");
    const ItemPtr item = engine.start(rarLink);
    say(200, {{"Content-Length", "6"}});
    send("abc");
    engine.manager().commands().pauseAll();
    removeMarks(engine.sandbox.path(secondPart));
    item->setPartPlace(PartPlace{engine.sandbox.path(secondPart), false});
    engine.manager().saveQueue();
    engine.restart(true);
    EXPECT_EQ(only().partPlace(), (PartPlace{engine.sandbox.path(secondPart), false}));
    EXPECT_EQ(only().bytesReceived(), 3);
    startAll();
    EXPECT_EQ(server().header("Range"), "bytes=3-");
}

TEST_F(PartOwnership, TheQueueStoresAPathOnlyWhereNothingElseLeadsToTheFile)
{
    VORMEL_NEEDS_MARKS;
    engine.start(rarLink);
    say(200, {{"Content-Length", "6"}});
    send("abc");
    EXPECT_FALSE(savedQueue().contains("partPath"));
    engine.settings().downloadFolderPath.set(engine.sandbox.path(u"elsewhere"_s));
    const QByteArray queue = savedQueue();
    EXPECT_TRUE(queue.contains(",\"extractionStatusType\":\"idle\",\"partPath\":\"file:///")) << queue.constData();
    engine.settings().downloadFolderPath.set(engine.sandbox.path(u"Downloads"_s));
    EXPECT_FALSE(savedQueue().contains("partPath"));
}

TEST_F(PartOwnership, APathInTheQueueThatIsNoPartFilesIsNotBelieved)
{
    const QString precious = engine.sandbox.write(u"precious"_s, "keep");
    engine.add(rarLink);
    for (const QString& path : {precious, engine.sandbox.path(u"Downloads/../precious"_s), u"precious.download"_s}) {
        QByteArray queue = savedQueue();
        queue.replace("}]", ",\"partPath\":\"file://" + path.toUtf8() + "\"}]");
        restartWith(queue);
        EXPECT_FALSE(only().partPlace()) << qPrintable(path);
    }
    EXPECT_EQ(engine.sandbox.read(u"precious"_s), "keep");
}

TEST_F(PartOwnership, AStrangersPartIsNotDeletedByARetry)
{
    leaveOrphan({{"Content-Length", "6"}});
    const ItemPtr item = engine.start(rarLink);
    say(200, {{"Content-Length", "6"}});
    send("uvw");
    engine.manager().commands().interruptItem(*item, DownloadStatus::failure(u"gone"_s));
    engine.settings().maxConcurrentDownloads.set(0);
    engine.manager().commands().retryItem(*item);
    EXPECT_THAT(downloads(), ElementsAre(u"x.rar.download"_s));
    EXPECT_EQ(engine.sandbox.read(partFile), "abc");
}

TEST_F(PartOwnership, WhatIsNoFileUnderThePartsNameIsLeftAloneAndHoldsNothingUp)
{
    const QByteArray part = QFile::encodeName(engine.sandbox.path(partFile));
    const QByteArray precious = QFile::encodeName(engine.sandbox.write(u"precious"_s, ""));
    const std::vector<std::function<int()>> obstacles{[&] { return ::mkfifo(part.constData(), 0600); },
                                                      [&] { return ::mkdir(part.constData(), 0700); },
                                                      [&] { return ::symlink(precious.constData(), part.constData()); },
                                                      [&] { return ::link(precious.constData(), part.constData()); }};
    for (const std::function<int()>& putInTheWay : obstacles) {
        ASSERT_EQ(putInTheWay(), 0);
        const ItemPtr item = engine.start(rarLink);
        finish("mine");
        EXPECT_EQ(item->status(), DownloadStatus::completed);
        EXPECT_EQ(engine.sandbox.read(finalFile), "mine");
        EXPECT_EQ(::remove(part.constData()), 0);
        EXPECT_TRUE(QFile::remove(engine.sandbox.path(finalFile)));
        engine.manager().commands().removeItems({item->id()});
    }
    EXPECT_EQ(engine.sandbox.read(u"precious"_s), "");
}

TEST_F(PartOwnership, ItsOwnFileWithASecondNameIsNotWrittenThrough)
{
    const ItemPtr item = engine.start(rarLink);
    say(200, {{"Content-Length", "6"}});
    send("abc");
    engine.manager().commands().pauseAll();
    const QString kept = engine.sandbox.path(u"kept"_s);
    ASSERT_EQ(::link(QFile::encodeName(engine.sandbox.path(partFile)).constData(), QFile::encodeName(kept).constData()),
              0);
    startAll();
    EXPECT_EQ(server().header("Range"), std::nullopt);
    finish("ABCDEF");
    EXPECT_EQ(engine.sandbox.read(finalFile), "ABCDEF");
    EXPECT_EQ(engine.sandbox.read(u"kept"_s), "abc");
    EXPECT_EQ(item->status(), DownloadStatus::completed);
}

TEST_F(PartOwnership, AFolderOrPipeUnderTheFilesNameIsNoFinishedFile)
{
    ASSERT_TRUE(QDir().mkpath(engine.sandbox.path(finalFile)));
    const ItemPtr item = engine.add(rarLink);
    EXPECT_EQ(item->status(), DownloadStatus::paused);
    const ItemPtr second = engine.add(u"http://h/y.rar"_s);
    const QByteArray pipe = QFile::encodeName(engine.sandbox.path(u"Downloads/y.rar"_s));
    ASSERT_EQ(::mkfifo(pipe.constData(), 0600), 0);
    startAll();
    ASSERT_EQ(engine.http.exchanges().size(), 2U);
    finish("y");
    EXPECT_EQ(second->localPath(), engine.sandbox.path(u"Downloads/y (1).rar"_s));
    auto& first = *engine.http.exchanges()[0];
    first.head(200, {{"Content-Length", "1"}});
    first.data("x");
    first.finish();
    turnEventLoop();
    EXPECT_EQ(item->localPath(), engine.sandbox.path(u"Downloads/x (1).rar"_s));
}

TEST_F(PartOwnership, ANameThatEndsAsPartFilesDoIsNotAnothersPart)
{
    engine.start(u"http://first/get"_s);
    say(200, {{"Content-Length", "6"}, {"Content-Disposition", "filename=x.rar.download"}});
    send("poison");
    close();
    EXPECT_THAT(downloads(), ElementsAre(u"x.rar"_s));
    const ItemPtr item = engine.start(u"http://h/y.rar.download"_s);
    EXPECT_EQ(server().header("Range"), std::nullopt);
    finish("mine");
    EXPECT_EQ(item->localPath(), engine.sandbox.path(u"Downloads/y.rar"_s));
}

TEST_F(PartOwnership, ADeadLinkLeavesNothingBehind)
{
    const ItemPtr item = engine.start(rarLink);
    for (int i = 0; i < 9; ++i) {
        say(404, {{"Content-Type", "text/plain"}});
        EXPECT_TRUE(downloads().isEmpty()) << i;
        engine.clock.advance(10s);
        turnEventLoop();
    }
    EXPECT_EQ(item->status().kind(), DownloadStatus::failed);
}

TEST_F(PartOwnership, APauseBeforeTheFirstByteLeavesNothingBehind)
{
    engine.start(rarLink);
    say(200, {{"Content-Length", "6"}});
    EXPECT_THAT(downloads(), ElementsAre(u"x.rar.download"_s));
    engine.manager().commands().pauseAll();
    EXPECT_TRUE(downloads().isEmpty());
    startAll();
    engine.manager().shutDown();
    EXPECT_TRUE(downloads().isEmpty());
}
