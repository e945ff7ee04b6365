#include "text/FormEncoding.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

TEST(FormEncoding, WhatMayStandInAQueryStaysAsItIs)
{
    const QString allowed = u"azAZ09-._~!$&'()*+,;=:@/?"_s;
    EXPECT_EQ(queryEncoded(allowed), allowed.toLatin1());
}

TEST(FormEncoding, AllElseIsEncodedInUtf8)
{
    EXPECT_EQ(queryEncoded(u" \"#%<>[\\]^`{|}\n"_s), "%20%22%23%25%3C%3E%5B%5C%5D%5E%60%7B%7C%7D%0A");
    EXPECT_EQ(queryEncoded(u"pässwörd 漢"_s), "p%C3%A4ssw%C3%B6rd%20%E6%BC%A2");
    EXPECT_EQ(queryEncoded({}), "");
}

TEST(FormEncoding, FieldsAreJoinedInTheirOrder)
{
    EXPECT_EQ(encodeFormFields({}), "");
    EXPECT_EQ(encodeFormFields({{u"b"_s, u"x y"_s}, {u"a"_s, {}}, {u"b"_s, u"&"_s}}), "b=x%20y&a=&b=&");
}

} // namespace
} // namespace vormel
