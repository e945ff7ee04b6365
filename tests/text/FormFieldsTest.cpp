#include "text/FormFields.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

TEST(FormFields, AValueIsFoundByItsExactName)
{
    const FormFields fields{{u"op"_s, u"x"_s}, {u""_s, u"nameless"_s}, {u"empty"_s, u""_s}};
    ASSERT_TRUE(fieldValue(fields, u"op"));
    EXPECT_EQ(*fieldValue(fields, u"op"), u"x");
    EXPECT_EQ(*fieldValue(fields, u""), u"nameless");
    EXPECT_EQ(*fieldValue(fields, u"empty"), u"");
    EXPECT_FALSE(fieldValue(fields, u"OP"));
    EXPECT_FALSE(fieldValue(fields, u"o"));
    EXPECT_FALSE(fieldValue({}, u"op"));
}

TEST(FormFields, ANewNameComesLastAndAKnownOneKeepsItsPlace)
{
    FormFields fields;
    setField(fields, u"b"_s, u"1"_s);
    setField(fields, u"a"_s, u"2"_s);
    setField(fields, u"b"_s, u"3"_s);
    EXPECT_EQ(fields, (FormFields{{u"b"_s, u"3"_s}, {u"a"_s, u"2"_s}}));
}

TEST(FormFields, WhatIsRemovedIsGoneAndTheOthersKeepTheirOrder)
{
    FormFields fields{{u"b"_s, u"1"_s}, {u"a"_s, u"2"_s}, {u"c"_s, u"3"_s}};
    removeField(fields, u"a");
    removeField(fields, u"unknown");
    EXPECT_EQ(fields, (FormFields{{u"b"_s, u"1"_s}, {u"c"_s, u"3"_s}}));
}

} // namespace
} // namespace vormel
