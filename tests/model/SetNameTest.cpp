#include "model/SetName.h"

#include <gtest/gtest.h>

#include <vector>

namespace vormel {
namespace {

TEST(SetName, MembersEndInAPartNumberAndRarOrRevInAnyLetterCase)
{
    for (const QString& name :
         {QStringLiteral("a.part1.rar"), QStringLiteral("a.part01.RAR"), QStringLiteral("a.PART0012.Rar"),
          QStringLiteral("a.Part3.rev"), QStringLiteral("a.b.part2.REV"), QStringLiteral(".part1.rar")})
        EXPECT_TRUE(isSetMember(name)) << name.toStdString();
}

TEST(SetName, OtherNamesAreNoMembers)
{
    for (const QString& name :
         {QStringLiteral("movie.rar"), QStringLiteral("movie.rev"), QStringLiteral("a.part.rar"),
          QStringLiteral("a.part1.zip"), QStringLiteral("apart1.rar"), QStringLiteral("a.part1x.rar"),
          QStringLiteral("a.part1.rar.download"), QStringLiteral("a.part1rar"), QStringLiteral("a.r01"), QString()})
        EXPECT_FALSE(isSetMember(name)) << name.toStdString();
}

TEST(SetName, TheBaseNameIsTheRestInItsOwnLetterCase)
{
    EXPECT_EQ(setBaseName(QStringLiteral("The.Movie.PART01.rar")), u"The.Movie");
    EXPECT_EQ(setBaseName(QStringLiteral("x.part1.part2.rev")), u"x.part1");
    EXPECT_EQ(setBaseName(QStringLiteral(".part1.rar")), u"");
}

TEST(SetName, AllMembersOfASetHaveOneBaseName)
{
    EXPECT_EQ(setBaseName(QStringLiteral("a.part1.rar")), setBaseName(QStringLiteral("a.PART10.REV")));
    EXPECT_NE(setBaseName(QStringLiteral("a.part1.rar")), setBaseName(QStringLiteral("A.part1.rar")));
}

TEST(SetName, ANameThatIsNoMembersIsItsOwnBaseName)
{
    EXPECT_EQ(setBaseName(QStringLiteral("movie.rar")), u"movie.rar");
    EXPECT_EQ(setBaseName(QStringLiteral("a.part1.zip")), u"a.part1.zip");
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
