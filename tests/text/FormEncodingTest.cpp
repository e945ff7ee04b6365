#include "text/FormEncoding.h"

#include <gtest/gtest.h>

namespace vormel {
namespace {

TEST(FormEncoding, WhatMayStandInAQueryStaysAsItIs)
{
    const QString allowed = QStringLiteral("azAZ09-._~!$&'()*+,;=:@/?");
    EXPECT_EQ(queryEncoded(allowed), allowed.toLatin1());
}

TEST(FormEncoding, AllElseIsEncodedInUtf8)
{
    EXPECT_EQ(queryEncoded(QStringLiteral(" \"#%<>[\\]^`{|}\n")), "%20%22%23%25%3C%3E%5B%5C%5D%5E%60%7B%7C%7D%0A");
    EXPECT_EQ(queryEncoded(QStringLiteral("pässwörd 漢")), "p%C3%A4ssw%C3%B6rd%20%E6%BC%A2");
    EXPECT_EQ(queryEncoded({}), "");
}

TEST(FormEncoding, FieldsAreJoinedInTheirOrder)
{
    EXPECT_EQ(encodeFormFields({}), "");
    EXPECT_EQ(encodeFormFields({{QStringLiteral("b"), QStringLiteral("x y")},
                                {QStringLiteral("a"), {}},
                                {QStringLiteral("b"), QStringLiteral("&")}}),
              "b=x%20y&a=&b=&");
}

} // namespace
} // namespace vormel
