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

namespace vormel {
namespace {

class PlacementTest : public PlacementScene
{};

TEST_F(PlacementTest, EverythingMovesIntoTheDestination)
{
    own(QStringLiteral("old"));
    unpacked(QStringLiteral("file"));
    unpacked(QStringLiteral(".hidden"));
    unpacked(QStringLiteral("folder/sub/file"));
    ASSERT_EQ(::symlinkat("folder", work.filesHandle(), "link"), 0);
    EXPECT_EQ(place(), (QStringList{QStringLiteral(".hidden"), QStringLiteral("file"), QStringLiteral("folder"),
                                    QStringLiteral("link")}));
    EXPECT_EQ(files(), (QStringList{QStringLiteral(".hidden"), QStringLiteral("file"),
                                    QStringLiteral("folder/sub/file"), QStringLiteral("old")}));
    EXPECT_TRUE(QFileInfo(in(QStringLiteral("link"))).isSymLink());
    EXPECT_TRUE(namesIn(work.filesHandle()).isEmpty());
    EXPECT_TRUE(trashed().isEmpty());
}

TEST_F(PlacementTest, NothingComesOfAnEmptyFolder)
{
    own(QStringLiteral("old"));
    EXPECT_TRUE(place().isEmpty());
    EXPECT_EQ(files(), QStringList{QStringLiteral("old")});
}

TEST_F(PlacementTest, EntriesKeepTheirPermissions)
{
    unpacked(QStringLiteral("file"));
    unpacked(QStringLiteral("folder/x"));
    ASSERT_EQ(::fchmodat(work.filesHandle(), "file", 0640, 0), 0);
    ASSERT_EQ(::fchmodat(work.filesHandle(), "folder", 0751, 0), 0);
    place();
    struct stat facts = {};
    ASSERT_EQ(::stat(QFile::encodeName(in(QStringLiteral("file"))).constData(), &facts), 0);
    EXPECT_EQ(facts.st_mode & ALLPERMS, 0640U);
    ASSERT_EQ(::stat(QFile::encodeName(in(QStringLiteral("folder"))).constData(), &facts), 0);
    EXPECT_EQ(facts.st_mode & ALLPERMS, 0751U);
}

TEST_F(PlacementTest, FoldersMergeAtEveryLevel)
{
    own(QStringLiteral("a/b/old"));
    own(QStringLiteral("a/other/old"));
    unpacked(QStringLiteral("a/b/new"));
    unpacked(QStringLiteral("a/b/c/new"));
    unpacked(QStringLiteral("a/new"));
    unpacked(QStringLiteral("z"));
    ASSERT_EQ(::chmod(QFile::encodeName(in(QStringLiteral("a/b"))).constData(), 0751), 0);
    EXPECT_EQ(place(), (QStringList{QStringLiteral("a"), QStringLiteral("z")}));
    EXPECT_EQ(files(), (QStringList{QStringLiteral("a/b/c/new"), QStringLiteral("a/b/new"), QStringLiteral("a/b/old"),
                                    QStringLiteral("a/new"), QStringLiteral("a/other/old"), QStringLiteral("z")}));
    EXPECT_TRUE(trashed().isEmpty());
    struct stat facts = {};
    ASSERT_EQ(::stat(QFile::encodeName(in(QStringLiteral("a/b"))).constData(), &facts), 0);
    EXPECT_EQ(facts.st_mode & ALLPERMS, 0751U);
}

TEST_F(PlacementTest, WhatStandsInTheWayGoesToTheTrash)
{
    own(QStringLiteral("file"));
    own(QStringLiteral("fileOverFolder/old"));
    own(QStringLiteral("folderOverFile"));
    own(QStringLiteral("a/b/deep"));
    unpacked(QStringLiteral("file"));
    unpacked(QStringLiteral("fileOverFolder"));
    unpacked(QStringLiteral("folderOverFile/x"));
    unpacked(QStringLiteral("a/b/deep"));
    place();
    EXPECT_EQ(files(), (QStringList{QStringLiteral("a/b/deep"), QStringLiteral("file"),
                                    QStringLiteral("fileOverFolder"), QStringLiteral("folderOverFile/x")}));
    EXPECT_EQ(read(QStringLiteral("file")), "new");
    EXPECT_EQ(read(QStringLiteral("a/b/deep")), "new");
    EXPECT_EQ(trashed(), (QStringList{QStringLiteral("deep"), QStringLiteral("file"),
                                      QStringLiteral("fileOverFolder/old"), QStringLiteral("folderOverFile")}));
}

TEST_F(PlacementTest, ALinkInTheWayIsNotFollowed)
{
    sandbox.write(QStringLiteral("outside/old"), "old");
    const QByteArray outside = QFile::encodeName(sandbox.path(QStringLiteral("outside")));
    ASSERT_EQ(::symlink(outside.constData(), QFile::encodeName(in(QStringLiteral("folder"))).constData()), 0);
    ASSERT_EQ(::symlink("nowhere", QFile::encodeName(in(QStringLiteral("file"))).constData()), 0);
    unpacked(QStringLiteral("folder/new"));
    unpacked(QStringLiteral("file"));
    place();
    EXPECT_EQ(sandbox.files(QStringLiteral("outside")), QStringList{QStringLiteral("old")});
    EXPECT_FALSE(QFileInfo(in(QStringLiteral("folder"))).isSymLink());
    EXPECT_EQ(read(QStringLiteral("folder/new")), "new");
    EXPECT_TRUE(QFileInfo(sandbox.path(QStringLiteral("trash/folder"))).isSymLink());
}

TEST_F(PlacementTest, TheNewcomerGetsANumberWhereTheTrashTakesNothing)
{
    ScriptedTrash refusing([](const QString&) { return false; });
    own(QStringLiteral("film.mkv"));
    own(QStringLiteral("film (1).mkv"));
    own(QStringLiteral("plain"));
    own(QStringLiteral("folder.d"));
    own(QStringLiteral("a/b/deep.txt"));
    unpacked(QStringLiteral("film.mkv"));
    unpacked(QStringLiteral("plain"));
    unpacked(QStringLiteral("folder.d/x"));
    unpacked(QStringLiteral("a/b/deep.txt"));
    EXPECT_EQ(placeWith(refusing), (QStringList{QStringLiteral("a"), QStringLiteral("film (2).mkv"),
                                                QStringLiteral("folder.d (1)"), QStringLiteral("plain (1)")}));
    EXPECT_EQ(refusing.asked, (QStringList{in(QStringLiteral("a/b/deep.txt")), in(QStringLiteral("film.mkv")),
                                           in(QStringLiteral("folder.d")), in(QStringLiteral("plain"))}));
    EXPECT_EQ(read(QStringLiteral("film.mkv")), "old");
    EXPECT_EQ(read(QStringLiteral("film (2).mkv")), "new");
    EXPECT_EQ(read(QStringLiteral("a/b/deep (1).txt")), "new");
    EXPECT_EQ(read(QStringLiteral("folder.d (1)/x")), "new");
}

TEST_F(PlacementTest, TheNewcomerGetsANumberWhereThereIsNoTrash)
{
    own(QStringLiteral("file"));
    unpacked(QStringLiteral("file"));
    EXPECT_EQ(placeInto(work, {}).placed, QStringList{in(QStringLiteral("file (1)"))});
    EXPECT_EQ(read(QStringLiteral("file")), "old");
}

TEST_F(PlacementTest, WhatAppearsWhileItIsPlacedIsNotOverwritten)
{
    own(QStringLiteral("file"), "first");
    unpacked(QStringLiteral("file"));
    bool hasAppeared = false;
    ScriptedTrash racing([this, &hasAppeared](const QString& path) {
        if (std::exchange(hasAppeared, true))
            return QFile::rename(path, sandbox.path(QStringLiteral("trash/another")));
        EXPECT_TRUE(trash.moveToTrash(path));
        own(QStringLiteral("file"), "second");
        return true;
    });
    EXPECT_EQ(placeWith(racing), QStringList{QStringLiteral("file")});
    EXPECT_EQ(racing.asked.size(), 2);
    EXPECT_EQ(sandbox.read(QStringLiteral("trash/file")), "first");
    EXPECT_EQ(sandbox.read(QStringLiteral("trash/another")), "second");
    EXPECT_EQ(read(QStringLiteral("file")), "new");
}

TEST_F(PlacementTest, WhereSomethingAppearsAgainAndAgainTheNewcomerGetsANumber)
{
    own(QStringLiteral("file"));
    unpacked(QStringLiteral("file"));
    ScriptedTrash futile([](const QString&) { return true; });
    EXPECT_EQ(placeWith(futile), QStringList{QStringLiteral("file (1)")});
    EXPECT_LE(futile.asked.size(), 3);
    EXPECT_EQ(read(QStringLiteral("file")), "old");
}

TEST_F(PlacementTest, ANameWithoutRoomForANumberIsShortened)
{
    const QString name = QString(251, u'x') + QStringLiteral(".mkv");
    own(name);
    unpacked(name);
    const QStringList placed = place({in(name)});
    ASSERT_EQ(placed.size(), 1);
    EXPECT_TRUE(placed.front().startsWith(u'x') && placed.front().endsWith(QStringLiteral("x (1).mkv")));
    EXPECT_EQ(read(placed.front()), "new");
    EXPECT_EQ(read(name), "old");
}

TEST_F(PlacementTest, WhereTheSystemRefusesWhatWasPlacedStaysAndTheErrorIsTold)
{
    const OrdinaryUser user;
    own(QStringLiteral("b/old"));
    unpacked(QStringLiteral("a"));
    unpacked(QStringLiteral("b/new"));
    unpacked(QStringLiteral("c"));
    ASSERT_EQ(::chmod(QFile::encodeName(in(QStringLiteral("b"))).constData(), 0555), 0);
    const PlacementResult result = placeInto(work, {{}, &trash});
    EXPECT_EQ(result.systemError, EACCES);
    EXPECT_EQ(result.placed, (QStringList{in(QStringLiteral("a")), in(QStringLiteral("b"))}));
    EXPECT_EQ(files(), (QStringList{QStringLiteral("a"), QStringLiteral("b/old")}));
    ASSERT_EQ(::chmod(QFile::encodeName(in(QStringLiteral("b"))).constData(), 0755), 0);
}

TEST_F(PlacementTest, ADestinationThatIsMovedMeanwhileIsStillTheOne)
{
    unpacked(QStringLiteral("file"));
    ASSERT_TRUE(QDir().rename(in({}), sandbox.path(QStringLiteral("moved"))));
    own(QStringLiteral("file"));
    place();
    EXPECT_EQ(sandbox.read(QStringLiteral("moved/file")), "new");
    EXPECT_EQ(read(QStringLiteral("file")), "old");
}

TEST_F(PlacementTest, VeryDeepFoldersAreMovedAndMergedInto)
{
    writeIn(makeDeepFolders(work.filesHandle()).get(), "file", "first");
    place();
    WorkFolder again = WorkFolder::make(sandbox.path(QStringLiteral("dest")));
    const FileDescriptor deep = makeDeepFolders(again.filesHandle());
    writeIn(deep.get(), "file", "second");
    writeIn(deep.get(), "other", "third");
    PlacementResult result;
    runInNarrowPlace([&] { result = placeInto(again, {{}, &trash}); });
    EXPECT_EQ(result.systemError, 0);
    EXPECT_EQ(result.placed, QStringList{in(QStringLiteral("d"))});
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
    own(QStringLiteral("0/old"));
    for (int i = 0; i < folders; ++i) {
        unpacked(QString::number(i) + QStringLiteral("/new"));
        const FileDescriptor folder = folderAt(work.path() + u'/' + QString::number(i));
        for (int j = 0; j < files; ++j)
            writeIn(folder.get(), QByteArray::number(j), {});
        ASSERT_EQ(::symlinkat("/etc", folder.get(), "out"), 0);
    }
    ASSERT_EQ(makeHarmless(work.path(), ArchiveFormat::tar), 0);
    EXPECT_EQ(place().size(), folders);
    EXPECT_EQ(namesIn(folderAt(in(QStringLiteral("0"))).get()).size(), files + 2);
    EXPECT_EQ(namesIn(folderAt(in(QStringLiteral("9"))).get()).size(), files + 1);
    EXPECT_TRUE(removeTree(folderAt(sandbox.root()).get(), "dest"));
    EXPECT_FALSE(sandbox.exists(QStringLiteral("dest")));
}

/// Runs in a process with mounts of its own.
TEST_F(PlacementTest, AFolderOnAnotherFileSystemIsNotMergedInto)
{
    own(QStringLiteral("disk/hidden"));
    constexpr int cannotMount = 77;
    const pid_t child = ::fork();
    if (child == 0) {
        const QByteArray disk = QFile::encodeName(in(QStringLiteral("disk")));
        if (::unshare(CLONE_NEWNS) != 0 || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount("none", disk.constData(), "tmpfs", 0, nullptr) != 0)
            ::_exit(cannotMount);
        PlacementResult result;
        {
            const WorkFolder other = WorkFolder::make(sandbox.path(QStringLiteral("dest")));
            QDir(other.path()).mkpath(QStringLiteral("disk/new"));
            result = placeInto(other, {{}, &trash});
        }
        ::_exit(result.systemError);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    if (WEXITSTATUS(status) == cannotMount)
        GTEST_SKIP() << "only root mounts";
    EXPECT_EQ(status, 0);
    EXPECT_EQ(files(), QStringList{QStringLiteral("disk/hidden")});
    EXPECT_TRUE(QFileInfo(in(QStringLiteral("disk (1)/new"))).isDir());
    EXPECT_TRUE(trashed().isEmpty());
}

} // namespace
} // namespace vormel
