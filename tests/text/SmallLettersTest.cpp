#include "text/SmallLetters.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

TEST(SmallLetters, StandForTheLettersFromAToZAlone)
{
    EXPECT_EQ(withSmallLetters(u"@AZ[`az{09"_s), u"@az[`az{09");
    EXPECT_EQ(withSmallLetters(u"\u00C9\u0130\u212A\U00010400"_s), u"\u00C9\u0130\u212A\U00010400");
    EXPECT_EQ(withSmallLetters({}), u"");
}

} // namespace
} // namespace vormel
