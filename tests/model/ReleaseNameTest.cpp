#include "model/ReleaseName.h"

#include "fixtures/ProcessorTime.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace vormel {
namespace {

QString cleaned(const char* name)
{
    return cleanedName(QString::fromUtf8(name), true, false);
}

QString spaced(const char* name)
{
    return cleanedName(QString::fromUtf8(name), false, true);
}

TEST(ReleaseName, TheCutFallsAtTheFirstTagAndKeepsTheYearBeforeIt)
{
    EXPECT_EQ(cleaned("Some.Movie.2021.1080p.WEB-DL.x264-GROUP.mkv"), u"Some.Movie.2021.mkv");
}

TEST(ReleaseName, BothSettingsTogetherReadLikeATitle)
{
    EXPECT_EQ(cleanedName(u"Some.Movie.2021.1080p.WEB-DL.x264-GROUP.mkv"_s, true, true), u"Some Movie 2021.mkv");
}

TEST(ReleaseName, FullStopsAndUnderscoresBecomeSingleBlanks)
{
    EXPECT_EQ(spaced("a.b_c..d.mkv"), u"a b c d.mkv");
    EXPECT_EQ(spaced("\ta._. b-c.mkv"), u"a b-c.mkv");
}

TEST(ReleaseName, ATagAtTheVeryStartStays)
{
    EXPECT_EQ(cleaned("1080p.mkv"), u"1080p.mkv");
}

TEST(ReleaseName, ANameOfWhichNothingWouldBeLeftStays)
{
    EXPECT_EQ(cleaned("..._.mkv"), u"..._.mkv");
    EXPECT_EQ(spaced("..._.mkv"), u"..._.mkv");
    EXPECT_EQ(cleaned("-1080p-.mkv"), u"-1080p-.mkv");
}

TEST(ReleaseName, AnyTagBetweenSeparatorsCutsAlsoCommonWords)
{
    EXPECT_EQ(cleaned("Multi.Track.Drifting.mkv"), u"Multi.Track.Drifting.mkv");
    EXPECT_EQ(cleaned("The.Multi.Show.mkv"), u"The.mkv");
    EXPECT_EQ(cleaned("The Proper Way.mkv"), u"The.mkv");
    EXPECT_EQ(cleaned("Propertius.Engine.mkv"), u"Propertius.Engine.mkv");
}

TEST(ReleaseName, ANameWithoutExtensionAndTagIsOnlyTrimmed)
{
    EXPECT_EQ(cleaned("_- a b -_"), u"a b");
    EXPECT_EQ(cleanedName(u"_name_"_s, false, false), u"name");
}

TEST(ReleaseName, TheExtensionKeepsItsCase)
{
    EXPECT_EQ(cleaned("Film.720P.MKV"), u"Film.MKV");
}

TEST(ReleaseName, ATagMayEndTheStem)
{
    EXPECT_EQ(stripReleaseTags(u"Film - HDR"_s), u"Film");
    EXPECT_EQ(stripReleaseTags(u"Film-hdr10+"_s), u"Film");
}

TEST(ReleaseName, AStemWithoutATagComesBackUntouched)
{
    EXPECT_EQ(stripReleaseTags(u"-Film-"_s), u"-Film-");
}

class ReleaseTag : public ::testing::TestWithParam<const char*>
{};

TEST_P(ReleaseTag, CutsTheName)
{
    EXPECT_EQ(stripReleaseTags(u"Film.%1.rest"_s.arg(QString::fromUtf8(GetParam()))), u"Film");
}

INSTANTIATE_TEST_SUITE_P(ReleaseName, ReleaseTag,
                         ::testing::Values("2160p", "1080p", "720p", "480p", "540p", "web-dl", "WEBDL", "web rip",
                                           "WEBRip", "bluray", "blu-ray", "bdrip", "brrip", "hdtv", "dvdrip", "hdrip",
                                           "remux", "x264", "x 265", "h264", "h 265", "hevc", "avc", "xvid", "hdr10",
                                           "hdr10+", "hdr", "dovi", "dv", "10bit", "10 bit", "8bit", "aac", "ac3",
                                           "eac3", "e-ac-3", "dd", "ddp", "ddp5", "dts", "dts-hd", "flac", "atmos",
                                           "truehd", "multi", "multisub", "sub", "subs", "ita", "eng", "vostfr", "vf",
                                           "repack", "proper", "imax", "amzn", "nf", "dsnp", "atvp", "hmax"));

TEST(ReleaseName, AHostileNameOfAMegabyteIsCleanedInTime)
{
    constexpr qsizetype size = 1024 * 1024;
    for (const QString& piece : {u"a"_s, u"."_s, u".x"_s, u" e-ac-"_s, u"_multisubs"_s, u" ."_s, u".dts-h"_s}) {
        const fixtures::ProcessorTime watch;
        static_cast<void>(cleanedName(piece.repeated(size / piece.size()), true, true));
        EXPECT_LT(watch.elapsed(), 10s) << piece.toStdString();
    }
}

} // namespace
} // namespace vormel
