#include "ui/sheets/signin/SignInFill.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

QString filledWith(const QString& username, const QString& password)
{
    return u"(function(){\n"
           u"    var loginEl=document.querySelector('input[name=\"login\"]');\n"
           u"    var passEl=document.querySelector('input[name=\"password\"]');\n"
           u"    if(loginEl && !loginEl.value) loginEl.value='"_s +
           username + u"';\n    if(passEl && !passEl.value) passEl.value='"_s + password + u"';\n})();"_s;
}

TEST(SignInFill, PutsBothValuesIntoEmptyFieldsAndSubmitsNothing)
{
    EXPECT_EQ(fillScript({u"anna@mail.example"_s, u"s3cret \"x\" é"_s}),
              filledWith(u"anna@mail.example"_s, u"s3cret \"x\" é"_s));
    EXPECT_EQ(fillScript({u"anna"_s, QString()}), filledWith(u"anna"_s, QString()));
}

TEST(SignInFill, StaysAScriptWhateverIsInTheValues)
{
    EXPECT_EQ(fillScript({uR"(o'neil)"_s, uR"(a\'b\\)"_s}), filledWith(uR"(o\'neil)"_s, uR"(a\\\'b\\\\)"_s));
    EXPECT_EQ(fillScript({u"a\nb"_s, u"c\r\nd\u2028e\u2029f"_s}),
              filledWith(uR"(a\nb)"_s, uR"(c\r\nd\u2028e\u2029f)"_s));
}

TEST(SignInFill, TakesNoValueForAPlaceOfTheOther)
{
    EXPECT_EQ(fillScript({u"%1%2"_s, u"%1"_s}), filledWith(u"%1%2"_s, u"%1"_s));
}

TEST(SignInFill, IsEmptyOnlyWithoutBothValues)
{
    EXPECT_TRUE(Credentials().areEmpty());
    EXPECT_FALSE((Credentials{u"anna"_s, QString()}.areEmpty()));
    EXPECT_FALSE((Credentials{QString(), u"s3cret"_s}.areEmpty()));
}

} // namespace
} // namespace vormel
