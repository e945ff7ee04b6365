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

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

const QString film = u"Film.2021.1080p.x264.mkv"_s;
const QString cleanFilm = u"Film 2021.mkv"_s;

class ResultNamesTest : public ::testing::Test
{
protected:
    ResultNamesTest()
        : work(WorkFolder::make(sandbox.path(u"dest"_s)))
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
    unpacked(u"Other_film.avi"_s, "b");
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
    unpacked(u".hid_den.720p.x"_s);
    unpacked(u"Folder.720p.x/in_side.mkv"_s);
    clean();
    EXPECT_EQ(names(), (QList<QByteArray>{".hid_den.720p.x", "Folder.720p.x"}));
    EXPECT_EQ(namesIn(folderAt(work.path() + u"/Folder.720p.x"_s).get()), QList<QByteArray>{"in_side.mkv"});
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
    sandbox.write(u"dest/Film 2021.mkv"_s, "old");
    unpacked(film);
    clean();
    EXPECT_EQ(read(film), "new");
    QFile::remove(sandbox.path(u"dest/Film 2021.mkv"_s));
    ASSERT_EQ(::symlink("nowhere", sandbox.path(u"dest/Film 2021.mkv"_s).toUtf8().constData()), 0);
    clean();
    EXPECT_EQ(read(film), "new");
}

TEST_F(ResultNamesTest, OfTwoFilesWithOneCleanNameTheFirstGetsIt)
{
    unpacked(film, "a");
    unpacked(u"Film.2021.720p.mkv"_s, "b");
    clean();
    EXPECT_EQ(read(cleanFilm), "a");
    EXPECT_EQ(read(u"Film.2021.720p.mkv"_s), "b");
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
    sandbox.write(u"dest/"_s + film, "old");
    sandbox.write(u"dest/My_file.720p.txt"_s, "old");
    unpacked(u"Other_film.avi"_s);
    clean();
    giveCustomName(work, u"Mine"_s);
    EXPECT_EQ(sandbox.read(u"dest/"_s + film), "old");
    EXPECT_EQ(sandbox.read(u"dest/My_file.720p.txt"_s), "old");
}

TEST_F(ResultNamesTest, TheOneFileGetsTheCustomNameAndKeepsItsExtension)
{
    unpacked(u".hidden"_s);
    unpacked(u"x.mkv"_s);
    giveCustomName(work, u"a/b:c"_s);
    EXPECT_EQ(names(), (QList<QByteArray>{".hidden", "a-b-c.mkv"}));
}

TEST_F(ResultNamesTest, TheOneFolderGetsTheCustomName)
{
    unpacked(u"folder/x"_s);
    giveCustomName(work, u"Mine"_s);
    EXPECT_EQ(names(), QList<QByteArray>{"Mine"});
    EXPECT_EQ(namesIn(folderAt(work.path() + u"/Mine"_s).get()), QList<QByteArray>{"x"});
}

TEST_F(ResultNamesTest, WithSeveralEntriesOrNoneNothingIsRenamed)
{
    giveCustomName(work, u"Mine"_s);
    EXPECT_TRUE(names().isEmpty());
    unpacked(u"a.mkv"_s);
    unpacked(u"b.mkv"_s);
    giveCustomName(work, u"Mine"_s);
    EXPECT_EQ(names(), (QList<QByteArray>{"a.mkv", "b.mkv"}));
}

TEST_F(ResultNamesTest, ACustomNameNeverReplacesAnotherEntry)
{
    unpacked(u".hidden.mkv"_s, "hidden");
    unpacked(u"x.mkv"_s);
    giveCustomName(work, u".hidden"_s);
    EXPECT_EQ(names(), (QList<QByteArray>{".hidden.mkv", "x.mkv"}));
    EXPECT_EQ(read(u".hidden.mkv"_s), "hidden");
}

TEST_F(ResultNamesTest, NoCustomNameLeadsElsewhere)
{
    unpacked(u"x"_s);
    for (const QString& name : {u".."_s, u"../up"_s, u"/etc/x"_s, QString()}) {
        giveCustomName(work, name);
        EXPECT_EQ(names().size(), 1) << name.toStdString();
    }
    EXPECT_TRUE(sandbox.files(u"dest"_s).front().startsWith(u".vormel-unpack-"_s));
}

TEST_F(ResultNamesTest, WhatHasTheCustomNameInTheDestinationGoesToTheTrash)
{
    fixtures::FakeTrash trash(sandbox.path(u"trash"_s));
    sandbox.write(u"dest/Mine.mkv"_s, "old");
    unpacked(u"x.mkv"_s);
    giveCustomName(work, u"Mine"_s);
    EXPECT_EQ(placeInto(work, {{}, &trash}).systemError, 0);
    EXPECT_EQ(sandbox.read(u"dest/Mine.mkv"_s), "new");
    EXPECT_EQ(sandbox.read(u"trash/Mine.mkv"_s), "old");
}

TEST_F(ResultNamesTest, TwoSetsWithOneCustomNameKeepBothTheirFilms)
{
    fixtures::FakeTrash trash(sandbox.path(u"trash"_s));
    const WorkFolder second = WorkFolder::make(sandbox.path(u"dest"_s));
    unpacked(u"x.mkv"_s, "first");
    writeIn(second.filesHandle(), "y.mkv", "second");
    giveCustomName(work, u"Mine"_s);
    giveCustomName(second, u"Mine"_s);
    EXPECT_EQ(placeInto(work, {{}, &trash}).systemError, 0);
    EXPECT_EQ(placeInto(second, {{}, &trash}).systemError, 0);
    EXPECT_EQ(sandbox.read(u"dest/Mine.mkv"_s), "second");
    EXPECT_EQ(sandbox.read(u"trash/Mine.mkv"_s), "first");
}

} // namespace
} // namespace vormel
