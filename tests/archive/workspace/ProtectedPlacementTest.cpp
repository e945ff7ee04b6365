#include "archive/workspace/PlacementScene.h"

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

/// Files that must stay where they are.
class ProtectedPlacementTest : public PlacementScene
{};

TEST_F(ProtectedPlacementTest, WhatIsProtectedStaysAndTheNewcomerGetsANumber)
{
    own(u"set.part1.rar"_s);
    own(u"sub/film.mkv.download"_s);
    unpacked(u"set.part1.rar"_s);
    unpacked(u"sub/film.mkv.download"_s);
    EXPECT_EQ(place({in(u"set.part1.rar"_s), in(u"sub/film.mkv.download"_s)}),
              (QStringList{u"set.part1 (1).rar"_s, u"sub"_s}));
    EXPECT_EQ(read(u"set.part1.rar"_s), "old");
    EXPECT_EQ(read(u"sub/film.mkv.download"_s), "old");
    EXPECT_EQ(read(u"sub/film (1).mkv"_s), "new");
    EXPECT_TRUE(trashed().isEmpty());
}

TEST_F(ProtectedPlacementTest, AFolderThatHoldsSomethingProtectedStays)
{
    own(u"folder/deep/volume.rar"_s);
    own(u"other/x"_s);
    unpacked(u"folder"_s);
    unpacked(u"other"_s);
    EXPECT_EQ(place({in(u"folder/deep/volume.rar"_s)}), (QStringList{u"folder (1)"_s, u"other"_s}));
    EXPECT_EQ(read(u"folder/deep/volume.rar"_s), "old");
    EXPECT_EQ(trashed(), QStringList{u"other/x"_s});
}

TEST_F(ProtectedPlacementTest, AFolderWithSomethingProtectedIsMergedInto)
{
    own(u"folder/volume.rar"_s);
    unpacked(u"folder/new"_s);
    EXPECT_EQ(place({in(u"folder/volume.rar"_s)}), QStringList{u"folder"_s});
    EXPECT_EQ(files(), (QStringList{u"folder/new"_s, u"folder/volume.rar"_s}));
}

TEST_F(ProtectedPlacementTest, AProtectedNameIsNotGivenAwayAlsoIfNothingStandsThereYet)
{
    own(u"b.bin"_s);
    unpacked(u"a.bin.download"_s);
    unpacked(u"b.bin"_s);
    ScriptedTrash refusing([](const QString&) { return false; });
    EXPECT_EQ(placeWith(refusing, {in(u"a.bin.download"_s), in(u"b (1).bin"_s)}),
              (QStringList{u"a (1).bin"_s, u"b (2).bin"_s}));
}

TEST_F(ProtectedPlacementTest, WhatIsProtectedIsKnownByWhateverName)
{
    // As on a disk that takes no notice of letter case.
    own(u"Film.mkv"_s);
    ASSERT_EQ(::link(in(u"Film.mkv"_s).toUtf8().constData(), in(u"film.mkv"_s).toUtf8().constData()), 0);
    unpacked(u"film.mkv"_s);
    EXPECT_EQ(place({in(u"Film.mkv"_s)}), QStringList{u"film (1).mkv"_s});
    EXPECT_EQ(read(u"film.mkv"_s), "old");
    EXPECT_TRUE(trashed().isEmpty());
}

TEST_F(ProtectedPlacementTest, WhatIsProtectedIsKnownByWhateverPath)
{
    own(u"x.rar"_s);
    own(u"folder/inner/y.rar"_s);
    ASSERT_EQ(::symlink("dest", QFile::encodeName(sandbox.path(u"alias"_s)).constData()), 0);
    ASSERT_EQ(::symlink("dest/folder/inner", QFile::encodeName(sandbox.path(u"short"_s)).constData()), 0);
    unpacked(u"x.rar"_s);
    unpacked(u"folder"_s);
    EXPECT_EQ(
        place({sandbox.path(u"alias/x.rar"_s), sandbox.path(u"short/y.rar"_s), u"/no/such/folder/z.rar"_s, u"/top"_s}),
        (QStringList{u"folder (1)"_s, u"x (1).rar"_s}));
    EXPECT_TRUE(trashed().isEmpty());
}

} // namespace
} // namespace vormel
