#include "text/QuotedValues.h"

#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

/// All values behind href=, each in brackets.
std::string valuesIn(const QString& text, const QString& quotes)
{
    QuotedValues values(text, u"href=", quotes);
    QString all;
    while (const std::optional<QStringView> value = values.next())
        all += u'[' + value->toString() + u']';
    EXPECT_FALSE(values.next()) << "there is nothing behind the last one";
    return all.toStdString();
}

TEST(QuotedValues, AreFoundFromLeftToRight)
{
    EXPECT_EQ(valuesIn(u"<a href=\"one\"> <a x href=\"\"><a href=\"t>w\no\">"_s, u"\""_s), "[one][][t>w\no]");
    EXPECT_EQ(valuesIn(u""_s, u"\""_s), "");
    EXPECT_EQ(valuesIn(u"no value"_s, u"\""_s), "");
}

TEST(QuotedValues, LetterCaseAndTheStartOfTheWordDoNotMatter)
{
    EXPECT_EQ(valuesIn(u"HREF=\"one\" hReF=\"two\" data-href=\"three\""_s, u"\""_s), "[one][two][three]");
}

TEST(QuotedValues, TheQuoteFollowsTheLeadAtOnce)
{
    EXPECT_EQ(valuesIn(u"href= \"one\" href =\"two\" href=three href==\"four\" href=href=\"five\" href="_s, u"\""_s),
              "[five]");
}

TEST(QuotedValues, OnlyTheQuotesThatAreNamedCount)
{
    EXPECT_EQ(valuesIn(u"href='one' href=\"it's\""_s, u"\""_s), "[it's]");
    EXPECT_EQ(valuesIn(u"href='one' href=\"it's\""_s, u"'"_s), "[one]");
}

TEST(QuotedValues, EveryQuoteThatIsNamedEndsAValue)
{
    EXPECT_EQ(valuesIn(u"href='one\" href=\"it's\""_s, u"'\""_s), "[one][it]");
}

TEST(QuotedValues, AValueWithoutItsEndIsNone)
{
    EXPECT_EQ(valuesIn(u"href=\"one\" href=\"two"_s, u"\""_s), "[one]");
    EXPECT_EQ(valuesIn(u"href=\""_s, u"\""_s), "");
}

TEST(QuotedValues, AValueThatBeginsInsideAnotherIsOneToo)
{
    EXPECT_EQ(valuesIn(u"href=\"href=\"two\""_s, u"\""_s), "[href=][two]");
}

TEST(QuotedValues, TakeTimeInProportionToTheText)
{
    const auto time = [](const QString& text) {
        double least = 1e9;
        for (int i = 0; i < 3; ++i) {
            const std::clock_t start = std::clock();
            QuotedValues values(text, u"href=", u"\"'");
            while (values.next()) {
            }
            least = std::min(least, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
        }
        return least;
    };
    constexpr double leastMeasured = 0.0005;
    constexpr double growth = 16;
    for (const QString& piece : {u"href="_s, u"href=\""_s, u"href=\"x\""_s, u"href=x\""_s, u"\"href='"_s}) {
        const double shortTime = std::max(time(piece.repeated(4096)), leastMeasured);
        EXPECT_LT(time(piece.repeated(4096 * 16)), 4 * growth * shortTime) << piece.toStdString();
    }
    const double shortTime = std::max(time(u"href="_s.repeated(4096) + u"href=\"x"_s.repeated(4096)), leastMeasured);
    EXPECT_LT(time(u"href="_s.repeated(4096 * 16) + u"href=\"x"_s.repeated(4096 * 16)), 4 * growth * shortTime);
}

} // namespace
} // namespace vormel
