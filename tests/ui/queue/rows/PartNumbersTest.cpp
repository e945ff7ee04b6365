#include "ui/queue/rows/PartNumbers.h"

#include "fixtures/Languages.h"

#include <gtest/gtest.h>

namespace vormel {
namespace {

TEST(PartNumbers, StandInASentence)
{
    using fixtures::english;
    EXPECT_EQ(partNumbersText({}, english), u"");
    EXPECT_EQ(partNumbersText({{3, 3}}, english), u"3");
    EXPECT_EQ(partNumbersText({{3, 3}, {7, 7}}, english), u"3 and 7");
    EXPECT_EQ(partNumbersText({{3, 3}, {7, 7}}, fixtures::italian), u"3 e 7");
    EXPECT_EQ(partNumbersText({{3, 4}}, english), u"3 and 4");
    EXPECT_EQ(partNumbersText({{3, 5}}, english), u"3–5");
    EXPECT_EQ(partNumbersText({{3, 5}, {9, 9}, {12, 40}}, english), u"3–5, 9 and 12–40");
}

} // namespace
} // namespace vormel
