#include "archive/workspace/ResultNames.h"

#include "archive/workspace/Placement.h"
#include "archive/workspace/Trees.h"
#include "archive/workspace/WorkFolder.h"
#include "fixtures/FakeTrash.h"
#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vormel {
namespace {

const QString film = QStringLiteral("Film.2021.1080p.x264.mkv");
const QString cleanFilm = QStringLiteral("Film 2021.mkv");

class ResultNamesTest : public ::testing::Test
{
protected:
    ResultNamesTest()
        : work(WorkFolder::make(sandbox.path(QStringLiteral("dest"))))
    {}

    void unpacked(const QString& name, const QByteArray& bytes = "new") const
    {
        const QString path = work.path() + u'/' + name;
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size());
    }
    void link(const QString& name, const QByteArray& target) const
    {
        ASSERT_EQ(::symlinkat(target.constData(), work.filesHandle(), QFile::encodeName(name).constData()), 0);
    }
    void clean() const { cleanNames(work, true, true); }
    [[nodiscard]] QList<QByteArray> names() const { return vormel::namesIn(work.filesHandle()); }
    [[nodiscard]] QByteArray read(const QString& name) const
    {
        return readIn(work.filesHandle(), QFile::encodeName(name));
    }

    fixtures::Sandbox sandbox;
    WorkFolder work;
};

TEST_F(ResultNamesTest, FilesGetCleanNames)
{
    unpacked(film, "a");
    unpacked(QStringLiteral("Other_film.avi"), "b");
    clean();
    EXPECT_EQ(names(), (QList<QByteArray>{"Film 2021.mkv", "Other film.avi"}));
    EXPECT_EQ(read(cleanFilm), "a");
}

TEST_F(ResultNamesTest, TheSettingsAreHeld)
{
    unpacked(film);
    cleanNames(work, false, false);
    EXPECT_EQ(names(), QList<QByteArray>{film.toUtf8()});
    cleanNames(work, true, false);
    EXPECT_EQ(names(), QList<QByteArray>{"Film.2021.mkv"});
    cleanNames(work, false, true);
    EXPECT_EQ(names(), QList<QByteArray>{"Film 2021.mkv"});
}

TEST_F(ResultNamesTest, HiddenFilesAndFoldersKeepTheirNames)
{
    unpacked(QStringLiteral(".hid_den.720p.x"));
    unpacked(QStringLiteral("Folder.720p.x/in_side.mkv"));
    clean();
    EXPECT_EQ(names(), (QList<QByteArray>{".hid_den.720p.x", "Folder.720p.x"}));
    EXPECT_EQ(namesIn(folderAt(work.path() + QStringLiteral("/Folder.720p.x")).get()),
              QList<QByteArray>{"in_side.mkv"});
}

TEST_F(ResultNamesTest, MembersOfSetsAndBadVolumesKeepTheirNames)
{
    const QList<QByteArray> kept{"A.720p.x.part1.rar", "A.720p.x.part1.rev", "B.720p.x.part01.rar.bad", "C.720p.x.BAD"};
    for (const QByteArray& name : kept)
        unpacked(QString::fromUtf8(name));
    clean();
    EXPECT_EQ(names(), kept);
}

TEST_F(ResultNamesTest, ACleanNameThatIsTakenByTheArchiveIsNotGiven)
{
    unpacked(film, "a");
    unpacked(cleanFilm, "b");
    clean();
    EXPECT_EQ(read(film), "a");
    EXPECT_EQ(read(cleanFilm), "b");
}

TEST_F(ResultNamesTest, ACleanNameThatIsTakenInTheDestinationIsNotGiven)
{
    sandbox.write(QStringLiteral("dest/Film 2021.mkv"), "old");
    unpacked(film);
    clean();
    EXPECT_EQ(read(film), "new");
    QFile::remove(sandbox.path(QStringLiteral("dest/Film 2021.mkv")));
    ASSERT_EQ(::symlink("nowhere", sandbox.path(QStringLiteral("dest/Film 2021.mkv")).toUtf8().constData()), 0);
    clean();
    EXPECT_EQ(read(film), "new");
}

TEST_F(ResultNamesTest, OfTwoFilesWithOneCleanNameTheFirstGetsIt)
{
    unpacked(film, "a");
    unpacked(QStringLiteral("Film.2021.720p.mkv"), "b");
    clean();
    EXPECT_EQ(read(cleanFilm), "a");
    EXPECT_EQ(read(QStringLiteral("Film.2021.720p.mkv")), "b");
}

TEST_F(ResultNamesTest, ALinkThatLeadsNowhereAlsoTakesAName)
{
    unpacked(film);
    link(cleanFilm, "nowhere");
    clean();
    EXPECT_EQ(read(film), "new");
}

TEST_F(ResultNamesTest, FilesOfTheUserKeepTheirNames)
{
    sandbox.write(QStringLiteral("dest/") + film, "old");
    sandbox.write(QStringLiteral("dest/My_file.720p.txt"), "old");
    unpacked(QStringLiteral("Other_film.avi"));
    clean();
    giveCustomName(work, QStringLiteral("Mine"));
    EXPECT_EQ(sandbox.read(QStringLiteral("dest/") + film), "old");
    EXPECT_EQ(sandbox.read(QStringLiteral("dest/My_file.720p.txt")), "old");
}

TEST_F(ResultNamesTest, TheOneFileGetsTheCustomNameAndKeepsItsExtension)
{
    unpacked(QStringLiteral(".hidden"));
    unpacked(QStringLiteral("x.mkv"));
    giveCustomName(work, QStringLiteral("a/b:c"));
    EXPECT_EQ(names(), (QList<QByteArray>{".hidden", "a-b-c.mkv"}));
}

TEST_F(ResultNamesTest, TheOneFolderGetsTheCustomName)
{
    unpacked(QStringLiteral("folder/x"));
    giveCustomName(work, QStringLiteral("Mine"));
    EXPECT_EQ(names(), QList<QByteArray>{"Mine"});
    EXPECT_EQ(namesIn(folderAt(work.path() + QStringLiteral("/Mine")).get()), QList<QByteArray>{"x"});
}

TEST_F(ResultNamesTest, WithSeveralEntriesOrNoneNothingIsRenamed)
{
    giveCustomName(work, QStringLiteral("Mine"));
    EXPECT_TRUE(names().isEmpty());
    unpacked(QStringLiteral("a.mkv"));
    unpacked(QStringLiteral("b.mkv"));
    giveCustomName(work, QStringLiteral("Mine"));
    EXPECT_EQ(names(), (QList<QByteArray>{"a.mkv", "b.mkv"}));
}

TEST_F(ResultNamesTest, ACustomNameNeverReplacesAnotherEntry)
{
    unpacked(QStringLiteral(".hidden.mkv"), "hidden");
    unpacked(QStringLiteral("x.mkv"));
    giveCustomName(work, QStringLiteral(".hidden"));
    EXPECT_EQ(names(), (QList<QByteArray>{".hidden.mkv", "x.mkv"}));
    EXPECT_EQ(read(QStringLiteral(".hidden.mkv")), "hidden");
}

TEST_F(ResultNamesTest, NoCustomNameLeadsElsewhere)
{
    unpacked(QStringLiteral("x"));
    for (const QString& name : {QStringLiteral(".."), QStringLiteral("../up"), QStringLiteral("/etc/x"), QString()}) {
        giveCustomName(work, name);
        EXPECT_EQ(names().size(), 1) << name.toStdString();
    }
    EXPECT_TRUE(sandbox.files(QStringLiteral("dest")).front().startsWith(QStringLiteral(".vormel-unpack-")));
}

TEST_F(ResultNamesTest, WhatHasTheCustomNameInTheDestinationGoesToTheTrash)
{
    fixtures::FakeTrash trash(sandbox.path(QStringLiteral("trash")));
    sandbox.write(QStringLiteral("dest/Mine.mkv"), "old");
    unpacked(QStringLiteral("x.mkv"));
    giveCustomName(work, QStringLiteral("Mine"));
    EXPECT_EQ(placeInto(work, {{}, &trash}).systemError, 0);
    EXPECT_EQ(sandbox.read(QStringLiteral("dest/Mine.mkv")), "new");
    EXPECT_EQ(sandbox.read(QStringLiteral("trash/Mine.mkv")), "old");
}

TEST_F(ResultNamesTest, TwoSetsWithOneCustomNameKeepBothTheirFilms)
{
    fixtures::FakeTrash trash(sandbox.path(QStringLiteral("trash")));
    const WorkFolder second = WorkFolder::make(sandbox.path(QStringLiteral("dest")));
    unpacked(QStringLiteral("x.mkv"), "first");
    writeIn(second.filesHandle(), "y.mkv", "second");
    giveCustomName(work, QStringLiteral("Mine"));
    giveCustomName(second, QStringLiteral("Mine"));
    EXPECT_EQ(placeInto(work, {{}, &trash}).systemError, 0);
    EXPECT_EQ(placeInto(second, {{}, &trash}).systemError, 0);
    EXPECT_EQ(sandbox.read(QStringLiteral("dest/Mine.mkv")), "second");
    EXPECT_EQ(sandbox.read(QStringLiteral("trash/Mine.mkv")), "first");
}

} // namespace
} // namespace vormel
