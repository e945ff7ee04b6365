#include "resolvers/containers/ContainerForm.h"

#include <gtest/gtest.h>

#include <string>

using namespace Qt::StringLiterals;

namespace vormel::tests {
namespace {

/// The fields as name=value, joined with spaces.
std::string hiddenInputsOf(const QString& html)
{
    QStringList fields;
    for (const auto& [name, value] : parseFileCryptHiddenInputs(html))
        fields << name + u'=' + value;
    return fields.join(u' ').toStdString();
}

std::string bodyOf(const QString& html, const QString& password)
{
    return containerPasswordBody(html, password).toStdString();
}

TEST(ContainerForm, HiddenInputsAreReadInTheirOrder)
{
    EXPECT_EQ(hiddenInputsOf(u"<form><input type=\"hidden\" name=\"b\" value=\"1\">\n"
                             "<input class=x type='hidden' id=y name='a' z value='2' /></form>"_s),
              "b=1 a=2");
    EXPECT_EQ(hiddenInputsOf(u"<INPUT TYPE=\"Hidden\" NAME=\"A\" VALUE=\"B\">"_s), "A=B");
    EXPECT_EQ(hiddenInputsOf(u"<input\ntype=\"hidden\"\nname=\"a\"\nvalue=\"\">"_s), "a=");
    EXPECT_EQ(hiddenInputsOf(QString()), "");
}

TEST(ContainerForm, OnlyHiddenInputsWhoseAttributesComeInTheirOrderCount)
{
    for (const char* html :
         {"<input name=\"a\" type=\"hidden\" value=\"1\">", "<input value=\"1\" type=\"hidden\" name=\"a\">",
          "<input type=\"hidden\" value=\"1\" name=\"a\">", "<input type=\"text\" name=\"a\" value=\"1\">",
          "<input type=hidden name=\"a\" value=\"1\">", "<input type=\"hidden\" name=a value=\"1\">",
          "<input type=\"hidden\" name=\"a\" value=1>", "<input type=\"hidden\" name=\"\" value=\"1\">",
          "<input type=\"hidden\" name=\"a\">", "<input type=\"hidden\" name=\"a\" value=\"1",
          "<inputtype=\"hidden\" name=\"a\" value=\"1\">", "<input type=\"hidden\"name=\"a\" value=\"1\">",
          "<input type=\"hidden\" name=\"a\"value=\"1\">", "<input type=\"hidden\" > name=\"a\" value=\"1\">",
          "<input > type=\"hidden\" name=\"a\" value=\"1\">", "<select type=\"hidden\" name=\"a\" value=\"1\">"})
        EXPECT_EQ(hiddenInputsOf(QString::fromLatin1(html)), "") << html;
}

TEST(ContainerForm, AnUnclosedTagReachesAsFarAsTheNextBracket)
{
    EXPECT_EQ(hiddenInputsOf(u"<input type=\"hidden\" name=\"a\" value=\"1\" "
                             "<input type=\"hidden\" name=\"b\" value=\"2\">"
                             "<input type=\"hidden\" name=\"c\" value=\"3\">"_s),
              "b=2 c=3");
}

TEST(ContainerForm, OfTwoAttributesOfATagTheLastCounts)
{
    EXPECT_EQ(hiddenInputsOf(u"<input type=\"hidden\" name=\"a\" name=\"b\" value=\"1\" value=\"2\">"_s), "b=2");
    EXPECT_EQ(hiddenInputsOf(u"<input type=\"hidden\" name=\"a\" value=\"1\" name=\"b\">"_s), "a=1");
    EXPECT_EQ(hiddenInputsOf(u"<input type=\"hidden\" name=\"a\" data-value=\"1\" value=\"2>"_s), "a=1");
}

TEST(ContainerForm, AValueMayHoldABracketAndEndWithEitherQuote)
{
    EXPECT_EQ(hiddenInputsOf(u"<input type=\"hidden' name='a>b\" value=\"c>d'>"_s), "a>b=c>d");
}

TEST(ContainerForm, ANameThatComesAgainTakesTheLaterValue)
{
    EXPECT_EQ(
        hiddenInputsOf(u"<input type=\"hidden\" name=\"a\" value=\"1\"><input type=\"hidden\" name=\"b\" value=\"2\">"
                       "<input type=\"hidden\" name=\"a\" value=\"3\">"_s),
        "a=3 b=2");
}

TEST(ContainerForm, ThePasswordFollowsTheHiddenInputs)
{
    EXPECT_EQ(bodyOf(u"<input type=\"hidden\" name=\"token\" value=\"x1\">"_s, u"open"_s), "token=x1&password=open");
    EXPECT_EQ(bodyOf(QString(), u"open"_s), "password=open");
}

TEST(ContainerForm, ThePasswordReplacesAHiddenInputOfThatName)
{
    EXPECT_EQ(
        bodyOf(
            u"<input type=\"hidden\" name=\"password\" value=\"old\"><input type=\"hidden\" name=\"b\" value=\"\">"_s,
            u"new"_s),
        "password=new&b=");
    EXPECT_EQ(bodyOf(u"<input type=\"hidden\" name=\"Password\" value=\"old\">"_s, u"new"_s),
              "Password=old&password=new");
}

TEST(ContainerForm, NamesAndValuesAreEncodedOnceAsInAQuery)
{
    EXPECT_EQ(bodyOf(u"<input type=\"hidden\" name=\"a b[]\" value=\"1%202é&amp;\">"_s, u"p ä#%/?=&+\n"_s),
              "a%20b%5B%5D=1%25202%C3%A9&amp;&password=p%20%C3%A4%23%25/?=&+%0A");
}

TEST(ContainerForm, TheActionOfTheFormIsNoFieldOfIt)
{
    EXPECT_EQ(
        bodyOf(u"<form action=\"https://elsewhere.example/\"><input type=\"password\" name=\"password\"></form>"_s,
               u"x"_s),
        "password=x");
}

} // namespace
} // namespace vormel::tests
