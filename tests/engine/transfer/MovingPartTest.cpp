#include "engine/OneTransfer.h"

#include <QDir>
#include <QStorageInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;
using ::testing::ElementsAre;

namespace {

/// A part file whose item gets another name or folder.
class MovingPart : public OneTransfer
{};

} // namespace

TEST_F(MovingPart, AnItemThatGetsAnotherNameBringsItsBytesAlong)
{
    const ItemPtr item = engine.start(rarLink);
    say(200, {{"Content-Length", "6"}});
    send("abc");
    engine.manager().commands().pauseAll();
    item->setFilename(u"movie.part1.rar"_s);
    startAll();
    EXPECT_EQ(server().header("Range"), "bytes=3-");
    EXPECT_THAT(downloads(), ElementsAre(u"movie/movie.part1.rar.download"_s));
}

TEST_F(MovingPart, AnItemBringsItsBytesAlongToAnotherDownloadFolder)
{
    engine.start(rarLink);
    say(200, {{"Content-Length", "6"}});
    send("abc");
    engine.manager().commands().pauseAll();
    engine.settings().downloadFolderPath.set(engine.sandbox.path(u"elsewhere"_s));
    engine.restart();
    startAll();
    EXPECT_EQ(server().header("Range"), "bytes=3-");
    EXPECT_EQ(engine.sandbox.read(u"elsewhere/x.rar.download"_s), "abc");
    EXPECT_TRUE(downloads().isEmpty());
}

TEST_F(MovingPart, AnItemGoesOnWhereItsBytesLieWhenTheNewFolderIsOnAnotherDisk)
{
    const QTemporaryDir far(u"/dev/shm/vormel-far-XXXXXX"_s);
    if (!far.isValid() || QStorageInfo(far.path()).device() == QStorageInfo(engine.sandbox.root()).device())
        GTEST_SKIP() << "there is only one file system to write to";
    const ItemPtr item = engine.start(rarLink);
    say(200, {{"Content-Length", "6"}});
    send("abc");
    engine.manager().commands().pauseAll();
    engine.settings().downloadFolderPath.set(far.path());
    startAll();
    EXPECT_EQ(server().header("Range"), "bytes=3-");
    say(206, {{"Content-Range", "bytes 3-5/6"}});
    send("def");
    close();
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_EQ(item->localPath(), engine.sandbox.path(finalFile));
    EXPECT_EQ(engine.sandbox.read(finalFile), "abcdef");
    EXPECT_TRUE(QDir(far.path()).isEmpty());
}
