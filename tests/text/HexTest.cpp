#include "text/Hex.h"

#include <gtest/gtest.h>

namespace vormel {
namespace {

TEST(Hex, TwoDigitsOfEitherLetterCaseAreAByte)
{
    EXPECT_EQ(bytesFromHex(u"00fFA9"), QByteArray("\x00\xff\xa9", 3));
    EXPECT_EQ(bytesFromHex(u""), QByteArray());
}

TEST(Hex, WhatIsNoWholeNumberOfBytesIsNothing)
{
    for (const QStringView text : {u"0", u"000", u"0g", u" 00", u"0x00", u"０0", u"00\n"})
        EXPECT_EQ(bytesFromHex(text), std::nullopt) << text.toUtf8().constData();
}

} // namespace
} // namespace vormel
