#include "archive/workspace/Placement.h"

#include "archive/workspace/HarmlessTree.h"
#include "archive/workspace/OrdinaryUser.h"
#include "archive/workspace/PlacementScene.h"
#include "archive/workspace/TreeRemoval.h"
#include "archive/workspace/Trees.h"
#include "archive/workspace/WorkFolder.h"
#include "fixtures/FakeTrash.h"
#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <sched.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class PlacementTest : public PlacementScene
{};

TEST_F(PlacementTest, EverythingMovesIntoTheDestination)
{
    own(u"old"_s);
    unpacked(u"file"_s);
    unpacked(u".hidden"_s);
    unpacked(u"folder/sub/file"_s);
    ASSERT_EQ(::symlinkat("folder", work.filesHandle(), "link"), 0);
    EXPECT_EQ(place(), (QStringList{u".hidden"_s, u"file"_s, u"folder"_s, u"link"_s}));
    EXPECT_EQ(files(), (QStringList{u".hidden"_s, u"file"_s, u"folder/sub/file"_s, u"old"_s}));
    EXPECT_TRUE(QFileInfo(in(u"link"_s)).isSymLink());
    EXPECT_TRUE(namesIn(work.filesHandle()).isEmpty());
    EXPECT_TRUE(trashed().isEmpty());
}

TEST_F(PlacementTest, NothingComesOfAnEmptyFolder)
{
    own(u"old"_s);
    EXPECT_TRUE(place().isEmpty());
    EXPECT_EQ(files(), QStringList{u"old"_s});
}

TEST_F(PlacementTest, EntriesKeepTheirPermissions)
{
    unpacked(u"file"_s);
    unpacked(u"folder/x"_s);
    ASSERT_EQ(::fchmodat(work.filesHandle(), "file", 0640, 0), 0);
    ASSERT_EQ(::fchmodat(work.filesHandle(), "folder", 0751, 0), 0);
    place();
    struct stat facts = {};
    ASSERT_EQ(::stat(QFile::encodeName(in(u"file"_s)).constData(), &facts), 0);
    EXPECT_EQ(facts.st_mode & ALLPERMS, 0640U);
    ASSERT_EQ(::stat(QFile::encodeName(in(u"folder"_s)).constData(), &facts), 0);
    EXPECT_EQ(facts.st_mode & ALLPERMS, 0751U);
}

TEST_F(PlacementTest, FoldersMergeAtEveryLevel)
{
    own(u"a/b/old"_s);
    own(u"a/other/old"_s);
    unpacked(u"a/b/new"_s);
    unpacked(u"a/b/c/new"_s);
    unpacked(u"a/new"_s);
    unpacked(u"z"_s);
    ASSERT_EQ(::chmod(QFile::encodeName(in(u"a/b"_s)).constData(), 0751), 0);
    EXPECT_EQ(place(), (QStringList{u"a"_s, u"z"_s}));
    EXPECT_EQ(files(), (QStringList{u"a/b/c/new"_s, u"a/b/new"_s, u"a/b/old"_s, u"a/new"_s, u"a/other/old"_s, u"z"_s}));
    EXPECT_TRUE(trashed().isEmpty());
    struct stat facts = {};
    ASSERT_EQ(::stat(QFile::encodeName(in(u"a/b"_s)).constData(), &facts), 0);
    EXPECT_EQ(facts.st_mode & ALLPERMS, 0751U);
}

TEST_F(PlacementTest, WhatStandsInTheWayGoesToTheTrash)
{
    own(u"file"_s);
    own(u"fileOverFolder/old"_s);
    own(u"folderOverFile"_s);
    own(u"a/b/deep"_s);
    unpacked(u"file"_s);
    unpacked(u"fileOverFolder"_s);
    unpacked(u"folderOverFile/x"_s);
    unpacked(u"a/b/deep"_s);
    place();
    EXPECT_EQ(files(), (QStringList{u"a/b/deep"_s, u"file"_s, u"fileOverFolder"_s, u"folderOverFile/x"_s}));
    EXPECT_EQ(read(u"file"_s), "new");
    EXPECT_EQ(read(u"a/b/deep"_s), "new");
    EXPECT_EQ(trashed(), (QStringList{u"deep"_s, u"file"_s, u"fileOverFolder/old"_s, u"folderOverFile"_s}));
}

TEST_F(PlacementTest, ALinkInTheWayIsNotFollowed)
{
    sandbox.write(u"outside/old"_s, "old");
    const QByteArray outside = QFile::encodeName(sandbox.path(u"outside"_s));
    ASSERT_EQ(::symlink(outside.constData(), QFile::encodeName(in(u"folder"_s)).constData()), 0);
    ASSERT_EQ(::symlink("nowhere", QFile::encodeName(in(u"file"_s)).constData()), 0);
    unpacked(u"folder/new"_s);
    unpacked(u"file"_s);
    place();
    EXPECT_EQ(sandbox.files(u"outside"_s), QStringList{u"old"_s});
    EXPECT_FALSE(QFileInfo(in(u"folder"_s)).isSymLink());
    EXPECT_EQ(read(u"folder/new"_s), "new");
    EXPECT_TRUE(QFileInfo(sandbox.path(u"trash/folder"_s)).isSymLink());
}

TEST_F(PlacementTest, TheNewcomerGetsANumberWhereTheTrashTakesNothing)
{
    ScriptedTrash refusing([](const QString&) { return false; });
    own(u"film.mkv"_s);
    own(u"film (1).mkv"_s);
    own(u"plain"_s);
    own(u"folder.d"_s);
    own(u"a/b/deep.txt"_s);
    unpacked(u"film.mkv"_s);
    unpacked(u"plain"_s);
    unpacked(u"folder.d/x"_s);
    unpacked(u"a/b/deep.txt"_s);
    EXPECT_EQ(placeWith(refusing), (QStringList{u"a"_s, u"film (2).mkv"_s, u"folder.d (1)"_s, u"plain (1)"_s}));
    EXPECT_EQ(refusing.asked,
              (QStringList{in(u"a/b/deep.txt"_s), in(u"film.mkv"_s), in(u"folder.d"_s), in(u"plain"_s)}));
    EXPECT_EQ(read(u"film.mkv"_s), "old");
    EXPECT_EQ(read(u"film (2).mkv"_s), "new");
    EXPECT_EQ(read(u"a/b/deep (1).txt"_s), "new");
    EXPECT_EQ(read(u"folder.d (1)/x"_s), "new");
}

TEST_F(PlacementTest, TheNewcomerGetsANumberWhereThereIsNoTrash)
{
    own(u"file"_s);
    unpacked(u"file"_s);
    EXPECT_EQ(placeInto(work, {}).placed, QStringList{in(u"file (1)"_s)});
    EXPECT_EQ(read(u"file"_s), "old");
}

TEST_F(PlacementTest, WhatAppearsWhileItIsPlacedIsNotOverwritten)
{
    own(u"file"_s, "first");
    unpacked(u"file"_s);
    bool hasAppeared = false;
    ScriptedTrash racing([this, &hasAppeared](const QString& path) {
        if (std::exchange(hasAppeared, true))
            return QFile::rename(path, sandbox.path(u"trash/another"_s));
        EXPECT_TRUE(trash.moveToTrash(path));
        own(u"file"_s, "second");
        return true;
    });
    EXPECT_EQ(placeWith(racing), QStringList{u"file"_s});
    EXPECT_EQ(racing.asked.size(), 2);
    EXPECT_EQ(sandbox.read(u"trash/file"_s), "first");
    EXPECT_EQ(sandbox.read(u"trash/another"_s), "second");
    EXPECT_EQ(read(u"file"_s), "new");
}

TEST_F(PlacementTest, WhereSomethingAppearsAgainAndAgainTheNewcomerGetsANumber)
{
    own(u"file"_s);
    unpacked(u"file"_s);
    ScriptedTrash futile([](const QString&) { return true; });
    EXPECT_EQ(placeWith(futile), QStringList{u"file (1)"_s});
    EXPECT_LE(futile.asked.size(), 3);
    EXPECT_EQ(read(u"file"_s), "old");
}

TEST_F(PlacementTest, ANameWithoutRoomForANumberIsShortened)
{
    const QString name = QString(251, u'x') + u".mkv"_s;
    own(name);
    unpacked(name);
    const QStringList placed = place({in(name)});
    ASSERT_EQ(placed.size(), 1);
    EXPECT_TRUE(placed.front().startsWith(u'x') && placed.front().endsWith(u"x (1).mkv"_s));
    EXPECT_EQ(read(placed.front()), "new");
    EXPECT_EQ(read(name), "old");
}

TEST_F(PlacementTest, WhereTheSystemRefusesWhatWasPlacedStaysAndTheErrorIsTold)
{
    const OrdinaryUser user;
    own(u"b/old"_s);
    unpacked(u"a"_s);
    unpacked(u"b/new"_s);
    unpacked(u"c"_s);
    ASSERT_EQ(::chmod(QFile::encodeName(in(u"b"_s)).constData(), 0555), 0);
    const PlacementResult result = placeInto(work, {{}, &trash});
    EXPECT_EQ(result.systemError, EACCES);
    EXPECT_EQ(result.placed, (QStringList{in(u"a"_s), in(u"b"_s)}));
    EXPECT_EQ(files(), (QStringList{u"a"_s, u"b/old"_s}));
    ASSERT_EQ(::chmod(QFile::encodeName(in(u"b"_s)).constData(), 0755), 0);
}

TEST_F(PlacementTest, ADestinationThatIsMovedMeanwhileIsStillTheOne)
{
    unpacked(u"file"_s);
    ASSERT_TRUE(QDir().rename(in({}), sandbox.path(u"moved"_s)));
    own(u"file"_s);
    place();
    EXPECT_EQ(sandbox.read(u"moved/file"_s), "new");
    EXPECT_EQ(read(u"file"_s), "old");
}

TEST_F(PlacementTest, VeryDeepFoldersAreMovedAndMergedInto)
{
    writeIn(makeDeepFolders(work.filesHandle()).get(), "file", "first");
    place();
    WorkFolder again = WorkFolder::make(sandbox.path(u"dest"_s));
    const FileDescriptor deep = makeDeepFolders(again.filesHandle());
    writeIn(deep.get(), "file", "second");
    writeIn(deep.get(), "other", "third");
    PlacementResult result;
    runInNarrowPlace([&] { result = placeInto(again, {{}, &trash}); });
    EXPECT_EQ(result.systemError, 0);
    EXPECT_EQ(result.placed, QStringList{in(u"d"_s)});
    // The Trash knows only paths, and none reaches so far.
    const FileDescriptor placed = deepFolder(folderAt(in({})).get());
    EXPECT_EQ(namesIn(placed.get()), (QList<QByteArray>{"file", "file (1)", "other"}));
    EXPECT_EQ(readIn(placed.get(), "file"), "first");
    EXPECT_EQ(readIn(placed.get(), "file (1)"), "second");
    EXPECT_TRUE(removeTree(folderAt(sandbox.root()).get(), "dest"));
}

TEST_F(PlacementTest, ManyThousandFilesAreLookedOverPlacedAndRemoved)
{
    constexpr int folders = 10;
    constexpr int files = 1'000;
    own(u"0/old"_s);
    for (int i = 0; i < folders; ++i) {
        unpacked(QString::number(i) + u"/new"_s);
        const FileDescriptor folder = folderAt(work.path() + u'/' + QString::number(i));
        for (int j = 0; j < files; ++j)
            writeIn(folder.get(), QByteArray::number(j), {});
        ASSERT_EQ(::symlinkat("/etc", folder.get(), "out"), 0);
    }
    ASSERT_EQ(makeHarmless(work.path(), ArchiveFormat::tar), 0);
    EXPECT_EQ(place().size(), folders);
    EXPECT_EQ(namesIn(folderAt(in(u"0"_s)).get()).size(), files + 2);
    EXPECT_EQ(namesIn(folderAt(in(u"9"_s)).get()).size(), files + 1);
    EXPECT_TRUE(removeTree(folderAt(sandbox.root()).get(), "dest"));
    EXPECT_FALSE(sandbox.exists(u"dest"_s));
}

/// Runs in a process with mounts of its own.
TEST_F(PlacementTest, AFolderOnAnotherFileSystemIsNotMergedInto)
{
    own(u"disk/hidden"_s);
    constexpr int cannotMount = 77;
    const pid_t child = ::fork();
    if (child == 0) {
        const QByteArray disk = QFile::encodeName(in(u"disk"_s));
        if (::unshare(CLONE_NEWNS) != 0 || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount("none", disk.constData(), "tmpfs", 0, nullptr) != 0)
            ::_exit(cannotMount);
        PlacementResult result;
        {
            const WorkFolder other = WorkFolder::make(sandbox.path(u"dest"_s));
            QDir(other.path()).mkpath(u"disk/new"_s);
            result = placeInto(other, {{}, &trash});
        }
        ::_exit(result.systemError);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    if (WEXITSTATUS(status) == cannotMount)
        GTEST_SKIP() << "only root mounts";
    EXPECT_EQ(status, 0);
    EXPECT_EQ(files(), QStringList{u"disk/hidden"_s});
    EXPECT_TRUE(QFileInfo(in(u"disk (1)/new"_s)).isDir());
    EXPECT_TRUE(trashed().isEmpty());
}

} // namespace
} // namespace vormel
