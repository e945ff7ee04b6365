#include "engine/OneTransfer.h"

#include <QFile>
#include <QTemporaryDir>

#include <cerrno>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// What an item has begun, and what happens to it while the item waits.
class BegunItem : public OneTransfer
{
protected:
    /// Has three bytes of six.
    ItemPtr paused()
    {
        ItemPtr item = engine.start(rarLink);
        say(200, {{"Content-Length", "6"}, {"ETag", "\"1\""}});
        send("abc");
        engine.manager().commands().pauseAll();
        return item;
    }
    void goOn()
    {
        engine.manager().commands().startAll();
        turnEventLoop();
    }
};

} // namespace

TEST_F(BegunItem, IsNotCompleteWithAFileOfAnotherSizeThatAppearsUnderItsName)
{
    const ItemPtr item = paused();
    engine.sandbox.write(finalFile, "");
    goOn();
    ASSERT_EQ(item->status(), DownloadStatus::downloading);
    say(206, {{"Content-Range", "bytes 3-5/6"}, {"ETag", "\"1\""}});
    send("def");
    close();
    EXPECT_EQ(item->localPath(), engine.sandbox.path(u"Downloads/x (1).rar"_s));
    EXPECT_EQ(engine.sandbox.read(u"Downloads/x (1).rar"_s), "abcdef");
    EXPECT_EQ(engine.sandbox.read(finalFile), "");
}

TEST_F(BegunItem, IsCompleteWithAFileOfItsSize)
{
    const ItemPtr item = paused();
    engine.sandbox.write(finalFile, "sixsix");
    goOn();
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_EQ(item->localPath(), engine.sandbox.path(finalFile));
}

TEST_F(BegunItem, ForgetsAPartFileThatWasEmptyAndIsGone)
{
    const ItemPtr dead = engine.start(rarLink);
    ASSERT_TRUE(dead->partPlace());
    say(404, {});
    close();
    EXPECT_FALSE(dead->partPlace());
    const ItemPtr pausedSoon = engine.start(u"http://h/y.rar"_s);
    ASSERT_TRUE(pausedSoon->partPlace());
    engine.manager().commands().pauseAll();
    EXPECT_FALSE(pausedSoon->partPlace());
    EXPECT_TRUE(engine.sandbox.files(u"Downloads"_s).isEmpty());
}

TEST_F(BegunItem, LeavesAPartFileAloneThatAnotherItemWritesUnderTheNameOfItsOwn)
{
    const ItemPtr first = engine.start(u"http://a/x.rar"_s);
    engine.manager().commands().pauseAll();
    const ItemPtr second = engine.add(u"http://b/x.rar"_s);
    engine.manager().commands().startItems({second});
    turnEventLoop();
    say(200, {{"Content-Length", "3"}});
    send("ab");
    engine.manager().commands().retryItem(*first);
    turnEventLoop();
    EXPECT_EQ(engine.sandbox.read(partFile), "ab");
}

TEST_F(BegunItem, IsFoundAgainAfterAKillWhenTheFolderForDownloadsWasChanged)
{
    paused();
    engine.flush();
    engine.settings().downloadFolderPath.set(engine.sandbox.path(u"Other"_s));
    engine.flush();
    engine.restart(true);
    const ItemPtr item = engine.manager().items().front();
    EXPECT_EQ(item->bytesReceived(), 3);
    ASSERT_TRUE(item->partPlace());
    EXPECT_EQ(item->partPlace()->path, engine.sandbox.path(partFile));
}

TEST_F(BegunItem, IsBegunAnewOnceAndNotForEverWhereTheDiskLosesWhatWasWritten)
{
    engine.sync.error = ENOSPC;
    const ItemPtr item = engine.start(rarLink);
    for (int i = 0; i < 2; ++i) {
        ASSERT_EQ(item->status(), DownloadStatus::downloading) << i;
        say(200, {{"Content-Length", "3"}});
        send("a");
        send("bc", 2s); // which earns the tries back
        close();
        engine.clock.advance(2s);
        turnEventLoop();
    }
    ASSERT_EQ(item->status(), DownloadStatus::failed);
    EXPECT_TRUE(item->status().message().contains(u"disk is full"_s)) << item->status().message().toStdString();
}
