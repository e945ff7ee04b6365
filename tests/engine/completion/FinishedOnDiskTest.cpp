#include "engine/OneTransfer.h"
#include "platform/storage/FolderSyncs.h"

#include <QFile>

#include <sys/syscall.h>
#include <unistd.h>

#include <mutex>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// What was synced in this program, in its order, for as long as somebody listens.
class SyncLog
{
public:
    void add(int file)
    {
        const std::lock_guard lock(m_mutex);
        m_paths << QFile::symLinkTarget(u"/proc/self/fd/%1"_s.arg(file));
    }
    QStringList take()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_paths, {});
    }

private:
    std::mutex m_mutex;
    QStringList m_paths;
};

SyncLog& syncLog()
{
    static SyncLog log;
    return log;
}

} // namespace

/// Take the place of the system's own in this program.
extern "C" int fsync(int file)
{
    syncLog().add(file);
    return static_cast<int>(::syscall(SYS_fsync, file));
}

extern "C" int fdatasync(int file)
{
    syncLog().add(file);
    return static_cast<int>(::syscall(SYS_fdatasync, file));
}

namespace {

using FinishedOnDisk = OneTransfer;

TEST_F(FinishedOnDisk, AFileIsSyncedBeforeItGetsItsName)
{
    engine.sync.isHeld = true;
    const ItemPtr item = engine.start(rarLink);
    say(200, {{"Content-Length", "3"}});
    send("abc");
    close();
    EXPECT_EQ(engine.sync.syncs, 1);
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
    EXPECT_FALSE(engine.sandbox.exists(finalFile));
    EXPECT_EQ(engine.sandbox.read(partFile), "abc");
    engine.sync.release();
    turnEventLoop();
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_EQ(engine.sandbox.read(finalFile), "abc");
}

TEST_F(FinishedOnDisk, AFileThatWasWholeAlreadyIsSyncedTooAndNobodyIsAsked)
{
    engine.sync.isHeld = true;
    const ItemPtr item = engine.start(rarLink);
    say(200, {{"Content-Length", "3"}});
    send("abc");
    close();
    engine.manager().commands().pauseAll();
    EXPECT_EQ(item->status(), DownloadStatus::paused);
    engine.sync.release();
    turnEventLoop();
    EXPECT_EQ(item->status(), DownloadStatus::paused) << "what was dropped is not heard of again";
    engine.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(engine.http.exchanges().size(), 1U);
    EXPECT_EQ(engine.sync.syncs, 2);
    engine.sync.release();
    turnEventLoop();
    EXPECT_EQ(item->status(), DownloadStatus::completed);
}

TEST_F(FinishedOnDisk, AnItemMayBeRemovedWhileItsFileIsSynced)
{
    engine.sync.isHeld = true;
    const ItemPtr item = engine.start(rarLink);
    say(200, {{"Content-Length", "3"}});
    send("abc");
    close();
    engine.manager().commands().removeItems({item->id()});
    engine.sync.release();
    turnEventLoop();
    EXPECT_TRUE(engine.sandbox.files(u"Downloads"_s).isEmpty());
}

TEST_F(FinishedOnDisk, TheProgramMayEndWhileAFileIsSynced)
{
    engine.sync.isHeld = true;
    engine.start(rarLink);
    say(200, {{"Content-Length", "3"}});
    send("abc");
    close();
    engine.restart();
    EXPECT_EQ(engine.manager().items().at(0)->bytesReceived(), 3);
    EXPECT_EQ(engine.manager().items().at(0)->status(), DownloadStatus::paused);
}

TEST_F(FinishedOnDisk, BytesThatTheDiskMayHaveLostAreFetchedAgain)
{
    engine.sync.error = EIO;
    const ItemPtr item = engine.start(rarLink);
    say(200, {{"Content-Length", "3"}});
    send("abc");
    close();
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    EXPECT_FALSE(engine.sandbox.exists(finalFile));
    engine.sync.error = 0;
    engine.clock.advance(2s);
    turnEventLoop();
    ASSERT_EQ(engine.http.exchanges().size(), 2U);
    EXPECT_EQ(server().header("Range"), std::nullopt);
    say(200, {{"Content-Length", "3"}});
    send("abc");
    close();
    EXPECT_EQ(item->status(), DownloadStatus::completed);
}

TEST_F(FinishedOnDisk, TheNameOfAFileIsSyncedBeforeTheQueueThatTellsOfIt)
{
    const ItemPtr item = engine.start(u"http://h/movie.part1.rar"_s);
    say(200, {{"Content-Length", "3"}});
    send("abc");
    engine.flush();
    syncLog().take();
    close();
    ASSERT_EQ(item->status(), DownloadStatus::completed);
    engine.flush();
    const QStringList synced = syncLog().take();
    const qsizetype file = synced.indexOf(engine.sandbox.path(u"Downloads/movie/movie.part1.rar.download"_s));
    const qsizetype folder = synced.indexOf(engine.sandbox.path(u"Downloads/movie"_s));
    const qsizetype queue = synced.indexOf(engine.sandbox.path(u"data/Vormel/download_queue.json.new"_s));
    EXPECT_GE(file, 0) << qPrintable(synced.join(u'\n'));
    EXPECT_GT(folder, file);
    EXPECT_GT(queue, folder);
}

} // namespace
