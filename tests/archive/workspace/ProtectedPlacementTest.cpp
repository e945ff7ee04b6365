#include "archive/workspace/PlacementScene.h"

#include <unistd.h>

namespace vormel {
namespace {

/// Files that must stay where they are.
class ProtectedPlacementTest : public PlacementScene
{};

TEST_F(ProtectedPlacementTest, WhatIsProtectedStaysAndTheNewcomerGetsANumber)
{
    own(QStringLiteral("set.part1.rar"));
    own(QStringLiteral("sub/film.mkv.download"));
    unpacked(QStringLiteral("set.part1.rar"));
    unpacked(QStringLiteral("sub/film.mkv.download"));
    EXPECT_EQ(place({in(QStringLiteral("set.part1.rar")), in(QStringLiteral("sub/film.mkv.download"))}),
              (QStringList{QStringLiteral("set.part1 (1).rar"), QStringLiteral("sub")}));
    EXPECT_EQ(read(QStringLiteral("set.part1.rar")), "old");
    EXPECT_EQ(read(QStringLiteral("sub/film.mkv.download")), "old");
    EXPECT_EQ(read(QStringLiteral("sub/film (1).mkv")), "new");
    EXPECT_TRUE(trashed().isEmpty());
}

TEST_F(ProtectedPlacementTest, AFolderThatHoldsSomethingProtectedStays)
{
    own(QStringLiteral("folder/deep/volume.rar"));
    own(QStringLiteral("other/x"));
    unpacked(QStringLiteral("folder"));
    unpacked(QStringLiteral("other"));
    EXPECT_EQ(place({in(QStringLiteral("folder/deep/volume.rar"))}),
              (QStringList{QStringLiteral("folder (1)"), QStringLiteral("other")}));
    EXPECT_EQ(read(QStringLiteral("folder/deep/volume.rar")), "old");
    EXPECT_EQ(trashed(), QStringList{QStringLiteral("other/x")});
}

TEST_F(ProtectedPlacementTest, AFolderWithSomethingProtectedIsMergedInto)
{
    own(QStringLiteral("folder/volume.rar"));
    unpacked(QStringLiteral("folder/new"));
    EXPECT_EQ(place({in(QStringLiteral("folder/volume.rar"))}), QStringList{QStringLiteral("folder")});
    EXPECT_EQ(files(), (QStringList{QStringLiteral("folder/new"), QStringLiteral("folder/volume.rar")}));
}

TEST_F(ProtectedPlacementTest, AProtectedNameIsNotGivenAwayAlsoIfNothingStandsThereYet)
{
    own(QStringLiteral("b.bin"));
    unpacked(QStringLiteral("a.bin.download"));
    unpacked(QStringLiteral("b.bin"));
    ScriptedTrash refusing([](const QString&) { return false; });
    EXPECT_EQ(placeWith(refusing, {in(QStringLiteral("a.bin.download")), in(QStringLiteral("b (1).bin"))}),
              (QStringList{QStringLiteral("a (1).bin"), QStringLiteral("b (2).bin")}));
}

TEST_F(ProtectedPlacementTest, WhatIsProtectedIsKnownByWhateverName)
{
    // As on a disk that takes no notice of letter case.
    own(QStringLiteral("Film.mkv"));
    ASSERT_EQ(::link(in(QStringLiteral("Film.mkv")).toUtf8().constData(),
                     in(QStringLiteral("film.mkv")).toUtf8().constData()),
              0);
    unpacked(QStringLiteral("film.mkv"));
    EXPECT_EQ(place({in(QStringLiteral("Film.mkv"))}), QStringList{QStringLiteral("film (1).mkv")});
    EXPECT_EQ(read(QStringLiteral("film.mkv")), "old");
    EXPECT_TRUE(trashed().isEmpty());
}

TEST_F(ProtectedPlacementTest, WhatIsProtectedIsKnownByWhateverPath)
{
    own(QStringLiteral("x.rar"));
    own(QStringLiteral("folder/inner/y.rar"));
    ASSERT_EQ(::symlink("dest", QFile::encodeName(sandbox.path(QStringLiteral("alias"))).constData()), 0);
    ASSERT_EQ(::symlink("dest/folder/inner", QFile::encodeName(sandbox.path(QStringLiteral("short"))).constData()), 0);
    unpacked(QStringLiteral("x.rar"));
    unpacked(QStringLiteral("folder"));
    EXPECT_EQ(place({sandbox.path(QStringLiteral("alias/x.rar")), sandbox.path(QStringLiteral("short/y.rar")),
                     QStringLiteral("/no/such/folder/z.rar"), QStringLiteral("/top")}),
              (QStringList{QStringLiteral("folder (1)"), QStringLiteral("x (1).rar")}));
    EXPECT_TRUE(trashed().isEmpty());
}

} // namespace
} // namespace vormel
