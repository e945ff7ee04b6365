#include "app/update/Version.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;

namespace {

Version version(const char* text)
{
    return Version::parse(QString::fromLatin1(text)).value();
}

TEST(VersionTest, NumbersAreComparedAsNumbers)
{
    EXPECT_GT(version("1.10"), version("1.9"));
    EXPECT_GT(version("2"), version("1.99.99"));
    EXPECT_LT(version("1.2"), version("1.2.1"));
}

TEST(VersionTest, MissingNumbersCountAsZero)
{
    EXPECT_EQ(version("1"), version("1.0.0"));
    EXPECT_EQ(version("0.0"), version("0"));
    EXPECT_LT(version("1.0"), version("1.0.1"));
}

TEST(VersionTest, WhatPrecedesAReleaseSortsBeforeIt)
{
    EXPECT_LT(version("1.10-beta"), version("1.10"));
    EXPECT_LT(version("1.10rc1"), version("1.10.0"));
    EXPECT_GT(version("1.10-beta"), version("1.9.9"));
}

TEST(VersionTest, SuffixesAreComparedPieceByPiece)
{
    EXPECT_LT(version("1-alpha"), version("1-beta"));
    EXPECT_LT(version("1-beta2"), version("1-beta10"));
    EXPECT_LT(version("1-beta"), version("1-beta2"));
    EXPECT_EQ(version("1-rc01"), version("1-RC1"));
    EXPECT_LT(version("1-rc99999999999999999998"), version("1-rc99999999999999999999"));
}

TEST(VersionTest, HowItWasBuiltDoesNotCount)
{
    EXPECT_EQ(version("1.2+deb12"), version("1.2"));
    EXPECT_EQ(version("1.2-rc1+7"), version("1.2-rc1"));
}

TEST(VersionTest, ALetterInFrontAndSpaceAroundDoNotCount)
{
    EXPECT_EQ(version(" v1.2\n"), version("1.2"));
    EXPECT_EQ(version(" v1.2\n").text(), u"v1.2"_s);
}

TEST(VersionTest, WhatDoesNotBeginWithANumberIsNoVersion)
{
    for (const char* text : {"", "v", "beta", ".1", "-1", "vv1", "99999999999"})
        EXPECT_FALSE(Version::parse(QString::fromLatin1(text))) << text;
}

TEST(VersionTest, ATextWithoutEndIsNoVersion)
{
    EXPECT_FALSE(Version::parse(QString(65, u'1')));
    EXPECT_FALSE(Version::parse(u"1-"_s + QString(1'000'000, u'a')));
}

TEST(VersionTest, ADotWithoutANumberBehindItBelongsToTheSuffix)
{
    EXPECT_LT(version("1."), version("1"));
    EXPECT_LT(version("1.x"), version("1"));
}

} // namespace
