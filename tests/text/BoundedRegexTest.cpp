#include "text/BoundedRegex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using Outcome = BoundedRegex::Outcome;

/// Long enough that the compiled form of the patterns below runs out of its stack.
constexpr qsizetype longText = 120 * 1024;

TEST(BoundedRegex, AMatchIsFoundWithItsGroups)
{
    const BoundedRegex regex(u"part(\\d+)"_s);
    const BoundedRegex::Result found = regex.search(u"name.part12.rar"_s);
    EXPECT_EQ(found.outcome, Outcome::match);
    EXPECT_TRUE(found);
    EXPECT_EQ(found.match.captured(1), u"12");
}

TEST(BoundedRegex, NoMatchIsTold)
{
    const BoundedRegex::Result found = BoundedRegex(u"part(\\d+)"_s).search(u"name.rar"_s);
    EXPECT_EQ(found.outcome, Outcome::none);
    EXPECT_FALSE(found);
}

TEST(BoundedRegex, OptionsApply)
{
    const QString text = u"PART1"_s;
    EXPECT_FALSE(BoundedRegex(u"part\\d"_s).search(text));
    EXPECT_TRUE(BoundedRegex(u"part\\d"_s, QRegularExpression::CaseInsensitiveOption).search(text));
}

TEST(BoundedRegex, ASearchBeyondItsBoundsIsAnErrorAndNotAnAnswer)
{
    const BoundedRegex regex(u"^(?:a|a)*$"_s);
    const BoundedRegex::Result found = regex.search(QString(40, u'a') + u'b');
    EXPECT_EQ(found.outcome, Outcome::error);
    EXPECT_FALSE(found);
}

TEST(BoundedRegex, ALongTextThatTheCompiledFormGivesUpOnIsStillJudgedRightly)
{
    const QString pattern = u"^(?:(a)|b)*c$"_s;
    const QString matching = QString(longText, u'a') + u'c';
    const QString other = QString(longText, u'a') + u'd';
    ASSERT_FALSE(QRegularExpression(pattern).match(matching).isValid()) << "the text is too short to be a test";

    const BoundedRegex regex(pattern);
    const BoundedRegex::Result found = regex.search(matching);
    EXPECT_EQ(found.outcome, Outcome::match);
    EXPECT_EQ(found.match.capturedLength(), matching.size());
    EXPECT_EQ(regex.search(other).outcome, Outcome::none);
}

TEST(BoundedRegex, AHundredAndTenKilobytesOfPageAreJudgedRightly)
{
    const BoundedRegex regex(u"<a(?:[^>]|\\n)*href=\"([^\"]+)\""_s);
    const QString page = u"<a "_s + u"x=1 "_s.repeated(30 * 1024) + u"href=\"http://a/b\">"_s;
    ASSERT_GT(page.size(), 110 * 1024);
    EXPECT_EQ(regex.search(page).match.captured(1), u"http://a/b");
}

TEST(BoundedRegex, OnlyTheFirstMatchIsRemoved)
{
    const BoundedRegex regex(u"\\d+"_s);
    EXPECT_EQ(regex.removedFrom(u"a12b34"_s), u"ab34");
    EXPECT_EQ(regex.removedFrom(u"12"_s), u"");
}

TEST(BoundedRegex, NothingIsRemovedWithoutAMatch)
{
    EXPECT_EQ(BoundedRegex(u"\\d+"_s).removedFrom(u"abc"_s), u"abc");
}

TEST(BoundedRegex, AllMatchesAreFoundFromLeftToRight)
{
    QStringList found;
    for (const QRegularExpressionMatch& match : BoundedRegex(u"(\\w)="_s).all(u"a=1 b=2 c=3"_s))
        found << match.captured(1);
    EXPECT_EQ(found.join(u' '), u"a b c");
    EXPECT_TRUE(BoundedRegex(u"x"_s).all(u"abc"_s).empty());
}

TEST(BoundedRegex, EmptyMatchesComeToAnEnd)
{
    EXPECT_EQ(BoundedRegex(u"b*"_s).all(u"abba"_s).size(), 4U);
    EXPECT_EQ(BoundedRegex(QString()).all(QString()).size(), 1U);
}

TEST(BoundedRegex, WhatAGroupHoldsIsFoundInAllMatches)
{
    const BoundedRegex regex(u"(?:(\\w)|-)="_s);
    const QString text = u"a=1 -=2 c=3"_s;
    EXPECT_EQ(regex.captures(text, 0), (std::vector<QStringView>{u"a=", u"-=", u"c="}));
    EXPECT_EQ(regex.captures(text, 1), (std::vector<QStringView>{u"a", {}, u"c"}));
    EXPECT_TRUE(regex.captures(u"abc"_s, 1).empty());
}

TEST(BoundedRegex, HalfAListIsNone)
{
    const BoundedRegex regex(u"x|y(?:a|a)*$"_s);
    const QString text = u"x y"_s + QString(40, u'a') + u"b x"_s;
    EXPECT_TRUE(regex.all(text).empty());
    EXPECT_TRUE(regex.captures(text, 0).empty());
}

TEST(BoundedRegex, AnEmptyMatchBetweenHalvesOfACharacterIsNone)
{
    EXPECT_EQ(BoundedRegex(u"b*"_s).all(u"a\U0001F37Aa"_s).size(), 4U);
}

TEST(BoundedRegex, AllMatchesOfATextThatIsNoTextAreNone)
{
    const QString broken = u"a a "_s + QChar(0xD83C) + u" a"_s;
    EXPECT_TRUE(BoundedRegex(u"a"_s).all(broken).empty());
}

TEST(BoundedRegex, AllMatchesTakeTimeInProportionToTheText)
{
    const BoundedRegex regex(u"href=\\w"_s);
    const auto time = [&regex](qsizetype links) {
        const QString page = u"<a href=x> and what follows it </a>"_s.repeated(links);
        double least = 1e9;
        for (int i = 0; i < 3; ++i) {
            const std::clock_t start = std::clock();
            EXPECT_EQ(regex.all(page).size(), static_cast<std::size_t>(links));
            least = std::min(least, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
        }
        return least;
    };
    constexpr double leastMeasured = 0.0005;
    constexpr double growth = 16;
    EXPECT_LT(time(16'000), 4 * growth * std::max(time(1000), leastMeasured));
}

} // namespace
} // namespace vormel
