#include "archive/sources/SetVolumes.h"

#include "fixtures/Sandbox.h"

#include <QDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

struct VolumeRow
{
    const char* name;
    const char16_t* archive;
    const char16_t* file;
    bool isVolume;
    bool isSource;
};

class SetVolumes : public ::testing::TestWithParam<VolumeRow>
{
protected:
    /// Does it tell the file, once, by its whole path?
    [[nodiscard]] bool tells(const QStringList& paths) const
    {
        return paths.count(sandbox.path(QString::fromUtf16(GetParam().file))) == 1;
    }

    fixtures::Sandbox sandbox;
};

const VolumeRow volumeRows[] = {
    {"itself", u"a.part1.rar", u"a.part1.rar", true, true},
    {"anotherPart", u"a.part1.rar", u"a.part2.rar", true, true},
    {"aPartInAnotherLetterCase", u"a.part1.rar", u"a.PART3.RAR", true, true},
    {"aPartWithZeros", u"a.part1.rar", u"a.part0004.rar", true, true},
    {"aRecoveryVolume", u"a.part1.rar", u"a.part1.rev", true, true},
    {"aRecoveryVolumeInCapitals", u"a.part1.rar", u"a.part1.REV", true, true},
    {"fromTheSecondPart", u"a.part2.rar", u"a.part1.rar", true, true},
    {"aHiddenSet", u".part1.rar", u".part2.rar", true, true},
    {"whatARepairReplaced", u"a.part1.rar", u"a.part2.rar.bad", false, true},
    {"aRecoveryVolumeThatARepairReplaced", u"a.part1.rar", u"a.part2.rev.bad", false, true},
    {"whatARepairReplacedOfAHiddenSet", u".part1.rar", u".part2.rar.bad", false, true},

    {"aSetOfAnotherLetterCase", u"a.part1.rar", u"A.part1.rar", false, false},
    {"aSetWhoseNameBeginsAlike", u"a.part1.rar", u"ab.part1.rar", false, false},
    {"aSetWhoseNameGoesOn", u"a.part1.rar", u"a.b.part1.rar", false, false},
    {"aSetWhoseNameIsOnlyTheBeginning", u"a.b.part1.rar", u"a.part1.rar", false, false},
    {"aSingleArchiveOfTheName", u"a.part1.rar", u"a.rar", false, false},
    {"aSingleRecoveryVolume", u"a.part1.rar", u"a.rev", false, false},
    {"aPartWithoutANumber", u"a.part1.rar", u"a.part.rar", false, false},
    {"aPartThatComesDown", u"a.part1.rar", u"a.part2.rar.download", false, false},
    {"aPartThatHadToGetAnotherName", u"a.part1.rar", u"a.part2 (1).rar", false, false},
    {"whatWasInIt", u"a.part1.rar", u"a.mkv", false, false},
    {"whatARepairReplacedOfAnotherSet", u"a.part1.rar", u"ab.part1.rar.bad", false, false},
    {"whatIsBadInItself", u"a.part1.rar", u"a.bad", false, false},
    {"whatWasReplacedTwice", u"a.part1.rar", u"a.part2.rar.bad.bad", false, false},

    {"aSingleArchive", u"a.rar", u"a.rar", false, true},
    {"nothingBesideASingleArchive", u"a.rar", u"a.part1.rar", false, false},
    {"nothingReplacedBesideASingleArchive", u"a.rar", u"a.rar.bad", false, false},
    {"aSingleArchiveOfAnotherKind", u"a.zip", u"a.zip", false, true},
    {"aRecoveryVolumeHasNoSet", u"a.part1.rev", u"a.part1.rar", false, false},
};

TEST_P(SetVolumes, AreThoseOfTheSetAlone)
{
    const QString archive = sandbox.write(QString::fromUtf16(GetParam().archive), "x");
    sandbox.write(QString::fromUtf16(GetParam().file), "x");
    EXPECT_EQ(tells(volumesOfSet(archive)), GetParam().isVolume);
    EXPECT_EQ(tells(sourcesOf(archive)), GetParam().isSource);
}

INSTANTIATE_TEST_SUITE_P(Rows, SetVolumes, ::testing::ValuesIn(volumeRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(SetVolumesOnDisk, AreOfTheArchivesOwnFolder)
{
    const fixtures::Sandbox sandbox;
    const QString archive = sandbox.write(u"m/a.part1.rar"_s, "x");
    sandbox.write(u"m/deep/a.part2.rar"_s, "x");
    sandbox.write(u"a.part3.rar"_s, "x");
    sandbox.write(u"a.part3.rar.bad"_s, "x");
    EXPECT_EQ(sourcesOf(archive), QStringList{archive});
}

TEST(SetVolumesOnDisk, AreNoFolderThatARepairIsSaidToHaveReplaced)
{
    const fixtures::Sandbox sandbox;
    const QString archive = sandbox.write(u"a.part1.rar"_s, "x");
    ASSERT_TRUE(QDir().mkpath(sandbox.path(u"a.part2.rar.bad"_s)));
    EXPECT_EQ(sourcesOf(archive), QStringList{archive});
}

TEST(SetVolumesOnDisk, OfASetThatIsGoneAreNone)
{
    const fixtures::Sandbox sandbox;
    EXPECT_EQ(volumesOfSet(sandbox.path(u"gone/a.part1.rar"_s)), QStringList());
    EXPECT_EQ(sourcesOf(sandbox.path(u"gone/a.part1.rar"_s)), QStringList());
}

} // namespace
} // namespace vormel
