#include "resolvers/terabytez/TerabytezNames.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

std::string nameIn(const QString& heading)
{
    return terabytezFileName(heading).value_or(u"-"_s).toStdString();
}

TEST(TerabytezNames, TheNameIsWhatEndsAsAFileDoes)
{
    EXPECT_EQ(nameIn(u"\n  The Film-2.part1.rar (1.2 GB)\n"_s), "The Film-2.part1.rar");
    EXPECT_EQ(nameIn(u"Download: film_2.MKV"_s), "film_2.MKV");
    EXPECT_EQ(nameIn(u"[group] a.zip [b.rar]"_s), "a.zip");
}

TEST(TerabytezNames, NineEndingsAreKnown)
{
    for (const QString& ending :
         {u"zip"_s, u"rar"_s, u"r00"_s, u"r100"_s, u"7z"_s, u"mkv"_s, u"mp4"_s, u"avi"_s, u"iso"_s, u"part12.rar"_s})
        EXPECT_EQ(nameIn(u"x."_s + ending), "x." + ending.toStdString());
    for (const QString& heading : {u"x.pdf"_s, u"x.r1"_s, u"x"_s, u"zip"_s, u".zip"_s, u"a:.zip"_s})
        EXPECT_EQ(nameIn(heading), "-") << heading.toStdString();
}

TEST(TerabytezNames, TheLastEndingOfAnUnbrokenNameEndsIt)
{
    EXPECT_EQ(nameIn(u"a.zip.b.rar c"_s), "a.zip.b.rar");
    EXPECT_EQ(nameIn(u"a.zipped"_s), "a.zip");
}

TEST(TerabytezNames, LettersOfAnyLanguageAndTheirMarksBelongToIt)
{
    for (const QString& name : {u"Caffè Ω.rar"_s, u"Caffe\u0300.rar"_s, u"映画.mkv"_s})
        EXPECT_EQ(nameIn(u"“%1”"_s.arg(name)), name.toStdString());
}

TEST(TerabytezNames, ABlankHeadingTellsNone)
{
    EXPECT_EQ(nameIn({}), "-");
    EXPECT_EQ(nameIn(u" \n\t "_s), "-");
}

TEST(TerabytezNames, ALongHeadingIsReadOnceAndNotAnewFromEachCharacter)
{
    for (const QString& text : {u"x"_s, u"x."_s})
        EXPECT_EQ(nameIn(text.repeated(1024 * 1024) + u"|film.rar"_s), "film.rar") << text.toStdString();
}

} // namespace
} // namespace vormel
