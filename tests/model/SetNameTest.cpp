#include "model/SetName.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

TEST(SetName, MembersEndInAPartNumberAndRarOrRevInAnyLetterCase)
{
    for (const QString& name : {u"a.part1.rar"_s, u"a.part01.RAR"_s, u"a.PART0012.Rar"_s, u"a.Part3.rev"_s,
                                u"a.b.part2.REV"_s, u".part1.rar"_s})
        EXPECT_TRUE(isSetMember(name)) << name.toStdString();
}

TEST(SetName, OtherNamesAreNoMembers)
{
    for (const QString& name : {u"movie.rar"_s, u"movie.rev"_s, u"a.part.rar"_s, u"a.part1.zip"_s, u"apart1.rar"_s,
                                u"a.part1x.rar"_s, u"a.part1.rar.download"_s, u"a.part1rar"_s, u"a.r01"_s, QString()})
        EXPECT_FALSE(isSetMember(name)) << name.toStdString();
}

TEST(SetName, TheBaseNameIsTheRestInItsOwnLetterCase)
{
    EXPECT_EQ(setBaseName(u"The.Movie.PART01.rar"_s), u"The.Movie");
    EXPECT_EQ(setBaseName(u"x.part1.part2.rev"_s), u"x.part1");
    EXPECT_EQ(setBaseName(u".part1.rar"_s), u"");
}

TEST(SetName, AllMembersOfASetHaveOneBaseName)
{
    EXPECT_EQ(setBaseName(u"a.part1.rar"_s), setBaseName(u"a.PART10.REV"_s));
    EXPECT_NE(setBaseName(u"a.part1.rar"_s), setBaseName(u"A.part1.rar"_s));
}

TEST(SetName, ANameThatIsNoMembersIsItsOwnBaseName)
{
    EXPECT_EQ(setBaseName(u"movie.rar"_s), u"movie.rar");
    EXPECT_EQ(setBaseName(u"a.part1.zip"_s), u"a.part1.zip");
}

TEST(SetName, RecoveryVolumesEndInRevInAnyLetterCase)
{
    EXPECT_TRUE(isRevName(u"a.part1.rev"));
    EXPECT_TRUE(isRevName(u"a.REV"));
    EXPECT_FALSE(isRevName(u"a.part1.rar"));
    EXPECT_FALSE(isRevName(u"rev"));
}

} // namespace
} // namespace vormel
