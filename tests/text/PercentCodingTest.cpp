#include "text/PercentCoding.h"

#include <gtest/gtest.h>

#include <array>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

TEST(PercentCoding, CompleteEscapesAreUndone)
{
    EXPECT_EQ(percentDecoded(u"a%20b"), u"a b");
    EXPECT_EQ(percentDecoded(u"%41%5a%5A"), u"AZZ");
    EXPECT_EQ(percentDecoded(u"caff%C3%A8"), u"caffè");
    EXPECT_EQ(percentDecoded(u"%F0%9F%8D%BA"), u"🍺");
}

TEST(PercentCoding, TextWithoutEscapesComesBackAsItIs)
{
    EXPECT_EQ(percentDecoded(u""), u"");
    EXPECT_EQ(percentDecoded(u"plain+text è"), u"plain+text è");
    EXPECT_EQ(percentDecoded(u"è%20è"), u"è è");
}

TEST(PercentCoding, AnEscapedNulIsACharacterLikeAnyOther)
{
    EXPECT_EQ(percentDecoded(u"a%00b"), QString(u"a"_s + QChar(0) + u"b"_s));
}

TEST(PercentCoding, AnEscapeIsUndoneOnce)
{
    EXPECT_EQ(percentDecoded(u"%2541"), u"%41");
}

TEST(PercentCoding, IncompleteEscapesAreRefused)
{
    for (const QStringView text : {u"%", u"a%", u"a%4", u"%4g", u"%g4", u"%%41", u"100% sure", u"% 41"})
        EXPECT_EQ(percentDecoded(text), std::nullopt) << text.toString().toStdString();
}

TEST(PercentCoding, EscapesThatAreNoUtf8AreRefused)
{
    // A lone lead, a lone continuation, an overlong slash, half a surrogate pair, beyond the last character.
    for (const QStringView text :
         {u"%C3", u"a%C3b", u"%A8", u"%FF", u"%C0%AF", u"%ED%A0%80", u"%F4%90%80%80", u"%E2%82"})
        EXPECT_EQ(percentDecoded(text), std::nullopt) << text.toString().toStdString();
}

TEST(PercentCoding, OnlyWholeUtf8IsStrictUtf8)
{
    EXPECT_EQ(strictUtf8("caff\xC3\xA8"), u"caffè");
    EXPECT_EQ(strictUtf8(""), u"");
    EXPECT_EQ(strictUtf8("caff\xC3"), std::nullopt);
    EXPECT_EQ(strictUtf8("caff\xE8!"), std::nullopt);
}

TEST(PercentCoding, BytesOfUnknownOriginAreLatin1WhereTheyAreNoUtf8)
{
    EXPECT_EQ(lenientText("caff\xC3\xA8"), u"caffè");
    EXPECT_EQ(lenientText("caff\xE8"), u"caffè");
}

} // namespace
} // namespace vormel
