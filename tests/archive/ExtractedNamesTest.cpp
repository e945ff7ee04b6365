#include "archive/ExtractedNames.h"

#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>
#include <unistd.h>

namespace vormel {
namespace {

const QString film = QStringLiteral("Film.2021.1080p.x264.mkv");

class ExtractedNamesTest : public ::testing::Test
{
protected:
    void rename(const QSet<QString>& before = {}) { renameExtractedFiles(sandbox.root(), before, true, true); }
    void customise(const QString& name, const QSet<QString>& before = {})
    {
        applyCustomName(name, sandbox.root(), before);
    }

    fixtures::Sandbox sandbox;
};

TEST_F(ExtractedNamesTest, newFilesGetCleanNames)
{
    sandbox.write(film, "a");
    sandbox.write(QStringLiteral("Other_film.avi"), "b");
    rename();
    EXPECT_EQ(sandbox.files(), (QStringList{QStringLiteral("Film 2021.mkv"), QStringLiteral("Other film.avi")}));
    EXPECT_EQ(sandbox.read(QStringLiteral("Film 2021.mkv")), "a");
}

TEST_F(ExtractedNamesTest, theSettingsAreHeld)
{
    sandbox.write(film, "a");
    renameExtractedFiles(sandbox.root(), {}, true, false);
    EXPECT_EQ(sandbox.files(), QStringList{QStringLiteral("Film.2021.mkv")});
    renameExtractedFiles(sandbox.root(), {}, false, true);
    EXPECT_EQ(sandbox.files(), QStringList{QStringLiteral("Film 2021.mkv")});
}

TEST_F(ExtractedNamesTest, filesFromBeforeHiddenOnesAndFoldersKeepTheirNames)
{
    sandbox.write(film, "a");
    sandbox.write(QStringLiteral(".hid_den.720p.x"), "a");
    sandbox.write(QStringLiteral("Folder.720p.x/in_side.mkv"), "a");
    const QStringList files = sandbox.files();
    rename({film});
    EXPECT_EQ(sandbox.files(), files);
}

TEST_F(ExtractedNamesTest, aNameThatIsTakenIsNotTakenAgain)
{
    sandbox.write(film, "new");
    sandbox.write(QStringLiteral("Film 2021.mkv"), "old");
    rename();
    EXPECT_EQ(sandbox.read(QStringLiteral("Film 2021.mkv")), "old");
    EXPECT_EQ(sandbox.read(film), "new");
}

TEST_F(ExtractedNamesTest, ofTwoFilesWithOneCleanNameOneKeepsItsOwn)
{
    sandbox.write(QStringLiteral("Film.2021.720p.mkv"), "a");
    sandbox.write(film, "b");
    rename();
    EXPECT_EQ(sandbox.files().size(), 2);
    EXPECT_TRUE(sandbox.exists(QStringLiteral("Film 2021.mkv")));
}

TEST_F(ExtractedNamesTest, aLinkThatLeadsNowhereAlsoTakesAName)
{
    sandbox.write(film, "new");
    ASSERT_EQ(::symlink("nowhere", sandbox.path(QStringLiteral("Film 2021.mkv")).toUtf8().constData()), 0);
    rename();
    EXPECT_TRUE(sandbox.exists(film));
}

TEST_F(ExtractedNamesTest, aFolderThatIsNotThereIsNoError)
{
    renameExtractedFiles(QStringLiteral("/no/such/folder"), {}, true, true);
    applyCustomName(film, QStringLiteral("/no/such/folder"), {});
    EXPECT_TRUE(namesIn(QStringLiteral("/no/such/folder")).isEmpty());
}

TEST_F(ExtractedNamesTest, theNamesOfAFolderAreAllOfItsEntries)
{
    sandbox.write(QStringLiteral("a"), {});
    sandbox.write(QStringLiteral(".b"), {});
    sandbox.write(QStringLiteral("c/d"), {});
    ASSERT_EQ(::symlink("nowhere", sandbox.path(QStringLiteral("e")).toUtf8().constData()), 0);
    EXPECT_EQ(namesIn(sandbox.root()),
              (QSet<QString>{QStringLiteral("a"), QStringLiteral(".b"), QStringLiteral("c"), QStringLiteral("e")}));
}

TEST_F(ExtractedNamesTest, theOneNewFileGetsTheCustomNameAndKeepsItsExtension)
{
    sandbox.write(QStringLiteral("old.txt"), "o");
    sandbox.write(QStringLiteral(".hidden"), "h");
    sandbox.write(QStringLiteral("x.mkv"), "new");
    customise(QStringLiteral("a/b:c"), {QStringLiteral("old.txt")});
    EXPECT_EQ(sandbox.read(QStringLiteral("a-b-c.mkv")), "new");
    EXPECT_EQ(sandbox.files().size(), 3);
}

TEST_F(ExtractedNamesTest, theOneNewFolderGetsTheCustomName)
{
    sandbox.write(QStringLiteral("folder/x"), "new");
    customise(QStringLiteral("Mine"));
    EXPECT_EQ(sandbox.files(), QStringList{QStringLiteral("Mine/x")});
}

TEST_F(ExtractedNamesTest, withSeveralNewEntriesOrNoneNothingIsRenamed)
{
    sandbox.write(QStringLiteral("a.mkv"), "a");
    sandbox.write(QStringLiteral("b.mkv"), "b");
    const QStringList files = sandbox.files();
    customise(QStringLiteral("Mine"));
    EXPECT_EQ(sandbox.files(), files);
    customise(QStringLiteral("Mine"), {QStringLiteral("a.mkv"), QStringLiteral("b.mkv")});
    EXPECT_EQ(sandbox.files(), files);
}

TEST_F(ExtractedNamesTest, whateverHasTheCustomNameIsReplaced)
{
    sandbox.write(QStringLiteral("Mine.mkv"), "old");
    sandbox.write(QStringLiteral("x.mkv"), "new");
    customise(QStringLiteral("Mine"), {QStringLiteral("Mine.mkv")});
    EXPECT_EQ(sandbox.files(), QStringList{QStringLiteral("Mine.mkv")});
    EXPECT_EQ(sandbox.read(QStringLiteral("Mine.mkv")), "new");
}

TEST_F(ExtractedNamesTest, replacingALinkLeavesAloneWhatItLeadsTo)
{
    const fixtures::Sandbox outside;
    outside.write(QStringLiteral("precious"), "p");
    ASSERT_TRUE(QFile::link(outside.root(), sandbox.path(QStringLiteral("Mine.mkv"))));
    sandbox.write(QStringLiteral("x.mkv"), "new");
    customise(QStringLiteral("Mine"), {QStringLiteral("Mine.mkv")});
    EXPECT_EQ(outside.read(QStringLiteral("precious")), "p");
    EXPECT_EQ(sandbox.read(QStringLiteral("Mine.mkv")), "new");
}

TEST_F(ExtractedNamesTest, anEntryThatHasTheCustomNameAlreadyStays)
{
    sandbox.write(QStringLiteral("Mine.mkv"), "new");
    customise(QStringLiteral("Mine"));
    EXPECT_EQ(sandbox.read(QStringLiteral("Mine.mkv")), "new");
}

TEST(FolderNameOf, slashesAndColonsBecomeHyphens)
{
    EXPECT_EQ(folderNameOf(QStringLiteral("a/b:c")), u"a-b-c");
}

TEST(FolderNameOf, noNameLeavesTheParent)
{
    for (const QString& name : {QStringLiteral(".."), QStringLiteral("."), QStringLiteral("../.."), QString(),
                                QStringLiteral("/etc"), QString(QChar(u'\0')), QStringLiteral("x").repeated(5000)}) {
        const QString folder = folderNameOf(name);
        EXPECT_FALSE(folder.isEmpty() || folder == u"." || folder == u".." || folder.contains(u'/') ||
                     folder.contains(QChar(u'\0')))
            << name.toStdString();
        EXPECT_LT(folder.toUtf8().size(), 256);
    }
}

} // namespace
} // namespace vormel
