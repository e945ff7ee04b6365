#include "text/BoundedRegex.h"

#include <gtest/gtest.h>

namespace vormel {
namespace {

using Outcome = BoundedRegex::Outcome;

/// Long enough that the compiled form of the patterns below runs out of its stack.
constexpr qsizetype longText = 120 * 1024;

TEST(BoundedRegex, AMatchIsFoundWithItsGroups)
{
    const BoundedRegex regex(QStringLiteral("part(\\d+)"));
    const BoundedRegex::Result found = regex.search(QStringLiteral("name.part12.rar"));
    EXPECT_EQ(found.outcome, Outcome::match);
    EXPECT_TRUE(found);
    EXPECT_EQ(found.match.captured(1), u"12");
}

TEST(BoundedRegex, NoMatchIsTold)
{
    const BoundedRegex::Result found = BoundedRegex(QStringLiteral("part(\\d+)")).search(QStringLiteral("name.rar"));
    EXPECT_EQ(found.outcome, Outcome::none);
    EXPECT_FALSE(found);
}

TEST(BoundedRegex, OptionsApply)
{
    const QString text = QStringLiteral("PART1");
    EXPECT_FALSE(BoundedRegex(QStringLiteral("part\\d")).search(text));
    EXPECT_TRUE(BoundedRegex(QStringLiteral("part\\d"), QRegularExpression::CaseInsensitiveOption).search(text));
}

TEST(BoundedRegex, ASearchBeyondItsBoundsIsAnErrorAndNotAnAnswer)
{
    const BoundedRegex regex(QStringLiteral("^(?:a|a)*$"));
    const BoundedRegex::Result found = regex.search(QString(40, u'a') + u'b');
    EXPECT_EQ(found.outcome, Outcome::error);
    EXPECT_FALSE(found);
}

TEST(BoundedRegex, ALongTextThatTheCompiledFormGivesUpOnIsStillJudgedRightly)
{
    const QString pattern = QStringLiteral("^(?:(a)|b)*c$");
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
    const BoundedRegex regex(QStringLiteral("<a(?:[^>]|\\n)*href=\"([^\"]+)\""));
    const QString page =
        QStringLiteral("<a ") + QStringLiteral("x=1 ").repeated(30 * 1024) + QStringLiteral("href=\"http://a/b\">");
    ASSERT_GT(page.size(), 110 * 1024);
    EXPECT_EQ(regex.search(page).match.captured(1), u"http://a/b");
}

TEST(BoundedRegex, OnlyTheFirstMatchIsRemoved)
{
    const BoundedRegex regex(QStringLiteral("\\d+"));
    EXPECT_EQ(regex.removedFrom(QStringLiteral("a12b34")), u"ab34");
    EXPECT_EQ(regex.removedFrom(QStringLiteral("12")), u"");
}

TEST(BoundedRegex, NothingIsRemovedWithoutAMatch)
{
    EXPECT_EQ(BoundedRegex(QStringLiteral("\\d+")).removedFrom(QStringLiteral("abc")), u"abc");
}

TEST(BoundedRegex, AllMatchesAreFoundFromLeftToRight)
{
    QStringList found;
    for (const QRegularExpressionMatch& match :
         BoundedRegex(QStringLiteral("(\\w)=")).all(QStringLiteral("a=1 b=2 c=3")))
        found << match.captured(1);
    EXPECT_EQ(found.join(u' '), u"a b c");
    EXPECT_TRUE(BoundedRegex(QStringLiteral("x")).all(QStringLiteral("abc")).empty());
}

TEST(BoundedRegex, EmptyMatchesComeToAnEnd)
{
    EXPECT_EQ(BoundedRegex(QStringLiteral("b*")).all(QStringLiteral("abba")).size(), 4U);
    EXPECT_EQ(BoundedRegex(QString()).all(QString()).size(), 1U);
}

TEST(BoundedRegex, HalfAListIsNone)
{
    const BoundedRegex regex(QStringLiteral("x|y(?:a|a)*$"));
    EXPECT_TRUE(regex.all(QStringLiteral("x y") + QString(40, u'a') + QStringLiteral("b x")).empty());
}

} // namespace
} // namespace vormel
