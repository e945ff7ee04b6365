#include "resolvers/filestore/FilestoreForms.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

Link formPage()
{
    return *Link::parse(u"https://filestore.example/abc/file.html?x=1");
}

/// Readable in a failure: name=value, joined with "&".
std::string shown(const FormFields& fields)
{
    return encodeFormFields(fields).toStdString();
}

struct HtmlRow
{
    QString html;
    const char* expected;
};

void expectHidden(const std::vector<HtmlRow>& rows)
{
    for (const auto& [html, expected] : rows)
        EXPECT_EQ(shown(parseHiddenInputs(html)), expected) << html.toStdString();
}

TEST(FilestoreHiddenInputs, HaveTheirAttributesInAnyOrder)
{
    expectHidden({{u"<input type=\"hidden\" name=\"a\" value=\"1\">"_s, "a=1"},
                  {u"<input value='1' name='a' type='hidden'/>"_s, "a=1"},
                  {u"<INPUT NAME=\"a\" TYPE=\"HIDDEN\" VALUE=\"B\">"_s, "a=B"},
                  {u"<input\n type=\"hidden\"\n name=\"a\"\n value=\"1\"\n>"_s, "a=1"},
                  {u"<inputtype=\"hidden\"name=\"a\"value=\"1\">"_s, "a=1"},
                  {u"<input type=\"hidden\" name=\"a\" value=\"\">"_s, "a="}});
}

TEST(FilestoreHiddenInputs, AnyQuoteOpensAndEndsAValue)
{
    expectHidden({{u"<input type=\"hidden' name='a\" value=\"it's\">"_s, "a=it"},
                  {u"<input type=hidden name=\"a\" value=\"1\">"_s, ""},
                  {u"<input type=\"hidden\" name=a value=\"1\">"_s, ""},
                  {u"<input type = \"hidden\" name=\"a\" value=\"1\">"_s, ""}});
}

TEST(FilestoreHiddenInputs, OtherInputsAreLeftOut)
{
    expectHidden({{u"<input type=\"text\" name=\"a\" value=\"1\">"_s, ""},
                  {u"<input name=\"a\" value=\"1\">"_s, ""},
                  {u"<input type=\"hiddenx\" name=\"a\" value=\"1\">"_s, ""},
                  {u"<inputype=\"hidden\" name=\"a\" value=\"1\">"_s, ""},
                  {u"<button type=\"hidden\" name=\"a\" value=\"1\">"_s, ""},
                  {u"<input type=\"text\" data-type=\"hidden\" name=\"a\" value=\"1\">"_s, "a=1"}});
}

TEST(FilestoreHiddenInputs, WithoutANameOrAValueTheyAreLeftOut)
{
    expectHidden({{u"<input type=\"hidden\" name=\"a\">"_s, ""},
                  {u"<input type=\"hidden\" value=\"1\">"_s, ""},
                  {u"<input type=\"hidden\" name=\"a\"><input type=\"hidden\" name=\"b\" value=\"2\">"_s, "b=2"}});
}

TEST(FilestoreHiddenInputs, ATagEndsAtItsFirstBracketEvenInsideAValue)
{
    expectHidden({{u"<input type=\"hidden\" name=\"a\" value=\"1>2\">"_s, ""},
                  {u"<input type=\"text\" > type=\"hidden\" name=\"a\" value=\"1\">"_s, ""},
                  {u"<input <input type=\"hidden\" name=\"a\" value=\"1\">"_s, "a=1"},
                  {u"<input type=\"hidden\" name=\"a\" value=\"1\""_s, ""}});
}

TEST(FilestoreHiddenInputs, TheFirstAttributeWhoseNameEndsRightCounts)
{
    expectHidden({{u"<input type=\"hidden\" data-name=\"x\" name=\"a\" default-value=\"7\" value=\"1\">"_s, "x=7"},
                  {u"<input type=\"hidden\" name= name=\"a\" value=value=\"1\">"_s, "a=1"}});
}

TEST(FilestoreHiddenInputs, ALaterOneOfTheSameNameGivesTheValueAndKeepsThePlace)
{
    expectHidden({{u"<input type='hidden' name='a' value='1'><input type='hidden' name='b' value='2'>"
                   "<input type='hidden' name='a' value='3'><input type='hidden' name='A' value='4'>"_s,
                   "a=3&b=2&A=4"}});
}

TEST(FilestoreHiddenInputs, NulAndBrokenUtf8StayInTheirValues)
{
    const QByteArray page = "\xff<input type='hidden' name='a\0' value='\xe9x'>"_ba;
    const FormFields fields = parseHiddenInputs(QString::fromUtf8(page));
    ASSERT_EQ(fields.size(), 1U);
    EXPECT_EQ(fields[0].first, QString(u'a') + QChar(0));
    EXPECT_EQ(fields[0].second, u"\uFFFDx");
}

/// A hidden input.
QString input(const QString& name, const QString& value)
{
    return u"<input type=\"hidden\" name=\"%1\" value=\"%2\">"_s.arg(name, value);
}

/// The action and the fields of the form that is found; "" for none.
std::string formIn(const QString& html)
{
    const std::optional<DownloadForm> form = findDownloadForm(html, formPage());
    return form ? form->action.absoluteString().toStdString() + " " + shown(form->fields) : std::string();
}

TEST(FilestoreForms, TheFormWhoseOperationSpeaksOfADownloadIsChosenAtOnce)
{
    for (const QString& operation : {u"download1"_s, u"DOWNLOAD2"_s, u"predownload"_s}) {
        EXPECT_EQ(formIn(u"<form action=\"/first\">"_s + input(u"id"_s, u"7"_s) + u"</form><form action='/second'>"_s +
                         input(u"op"_s, operation) + u"</form><form action='/third'>"_s +
                         input(u"op"_s, u"download1"_s) + u"</form>"_s),
                  "https://filestore.example/second op=" + operation.toStdString());
    }
}

TEST(FilestoreForms, ElseTheFirstWithAnIdOrARandIsChosen)
{
    for (const QString& name : {u"id"_s, u"rand"_s}) {
        EXPECT_EQ(formIn(u"<form action=\"/search\">"_s + input(u"op"_s, u"search"_s) +
                         u"</form><form action='/second'>"_s + input(name, u""_s) + u"</form><form action='/third'>"_s +
                         input(u"id"_s, u"7"_s) + input(u"rand"_s, u"8"_s) + u"</form>"_s),
                  "https://filestore.example/second " + name.toStdString() + "=");
    }
}

TEST(FilestoreForms, AFormWithAnotherOperationMayStillHaveAnId)
{
    EXPECT_EQ(formIn(u"<form action=\"/a\">"_s + input(u"op"_s, u"view"_s) + input(u"id"_s, u"7"_s) + u"</form>"_s),
              "https://filestore.example/a op=view&id=7");
}

TEST(FilestoreForms, AFormWithNeitherIsNeverChosen)
{
    EXPECT_EQ(formIn(u"<form action=\"/a\">"_s + input(u"token"_s, u"download"_s) + input(u"ID"_s, u"7"_s) +
                     input(u"OP"_s, u"download1"_s) + u"</form>"_s),
              "");
    EXPECT_EQ(formIn(u"<form action=\"/download\"><input name=\"op\" value=\"download1\"></form>"_s), "");
    EXPECT_EQ(formIn(u""_s), "");
}

TEST(FilestoreForms, OnlyWholeFormsCount)
{
    const QString fields = input(u"op"_s, u"download1"_s);
    EXPECT_EQ(formIn(u"<form action=\"/a\">"_s + fields), "");
    EXPECT_EQ(formIn(u"<form action=\"/a\" "_s), "");
    EXPECT_EQ(formIn(u"<form"_s), "");
    EXPECT_EQ(formIn(u"<formula action=\"/a\">"_s + fields + u"</form>"_s), "");
    EXPECT_EQ(formIn(u"<form_ action=\"/a\">"_s + fields + u"</form>"_s), "");
    EXPECT_EQ(formIn(u"<form\U0001D400 action=\"/a\">"_s + fields + u"</form>"_s), "");
    EXPECT_EQ(formIn(u"<form>"_s + fields + u"</form >"_s), "");
    EXPECT_EQ(formIn(u"<FORM>"_s + fields + u"</FORM>"_s), "https://filestore.example/abc/file.html?x=1 op=download1");
    EXPECT_EQ(formIn(u"<form-x action=\"/a\">"_s + fields + u"</form>"_s), "https://filestore.example/a op=download1");
}

TEST(FilestoreForms, FieldsOutsideOfAFormAreNotItsOwn)
{
    EXPECT_EQ(formIn(input(u"a"_s, u"1"_s) + u"<form action=/a>"_s + input(u"id"_s, u"2"_s) + u"</form>"_s +
                     input(u"op"_s, u"download1"_s)),
              "https://filestore.example/abc/file.html?x=1 id=2");
}

TEST(FilestoreForms, AFormInsideAnotherIsPartOfIt)
{
    EXPECT_EQ(formIn(u"<form action=\"/outer\">"_s + input(u"a"_s, u"1"_s) + u"<form action=\"/inner\">"_s +
                     input(u"id"_s, u"2"_s) + u"</form>"_s + input(u"b"_s, u"3"_s) + u"</form>"_s),
              "https://filestore.example/outer a=1&id=2");
}

TEST(FilestoreForms, TheActionStandsInTheFormsOwnTag)
{
    EXPECT_EQ(formIn(u"<form method=\"post\"><a action=\"/no\">"_s + input(u"id"_s, u"2"_s) + u"</form>"_s),
              "https://filestore.example/abc/file.html?x=1 id=2");
    EXPECT_EQ(formIn(u"<form data-action='/first\" ACTION='/second'>"_s + input(u"id"_s, u"2"_s) + u"</form>"_s),
              "https://filestore.example/first id=2");
    EXPECT_EQ(formIn(u"<form action=/no ACTION='/yes'>"_s + input(u"id"_s, u"2"_s) + u"</form>"_s),
              "https://filestore.example/yes id=2");
}

TEST(FilestoreForms, AnActionIsAnAddressOrRelativeToThePageOrThePageItself)
{
    const char* const page = "https://filestore.example/abc/file.html?x=1";
    const std::vector<HtmlRow> rows{
        {u""_s, page},
        {u"#"_s, page},
        {u"https://Other.Example/x"_s, "https://Other.Example/x"},
        {u"http://other.example/x y"_s, "http://other.example/x%20y"},
        {u"HTTP://other.example/x"_s, "HTTP://other.example/x"},
        {u"http://[broken"_s, page},
        {u"http://"_s, page},
        {u"httpdocs/go"_s, page},
        {u"/go"_s, "https://filestore.example/go"},
        {u"go?a=b"_s, "https://filestore.example/abc/go?a=b"},
        {u"?go"_s, "https://filestore.example/abc/file.html?go"},
        {u"//other.example/go"_s, "https://other.example/go"},
        {u"//[broken"_s, page},
        {u" "_s, page},
        {u"javascript:void(0)"_s, page},
        {u"mailto:a@other.example"_s, page},
        {u"ftp://other.example/x"_s, page},
        {u"file:///etc/passwd"_s, page},
    };
    for (const auto& [action, target] : rows)
        EXPECT_EQ(resolveFormAction(action, formPage()).absoluteString().toStdString(), target) << action.toStdString();
}

struct PremiumRow
{
    FormFields fields;
    const char* asked;
};

TEST(FilestoreForms, ThePremiumWayIsAskedForByTheFirstRuleThatFits)
{
    const auto field = [](const char* name, const char* value) {
        return std::pair(QString::fromLatin1(name), QString::fromLatin1(value));
    };
    const std::vector<PremiumRow> rows{
        {{field("method_free", "Free"), field("a", "1")}, "a=1&method_premium=1"},
        {{field("method_premium", ""), field("method_free", ""), field("a", "1")}, "method_premium=1&a=1"},
        {{field("op", "download1"), field("method_free", "Free")}, "op=download1&method_premium=1"},
        {{field("method_premium", "Go"), field("op", "download1")}, "method_premium=1&op=download1"},
        {{field("method_premium_x", "2"), field("op", "download1")},
         "method_premium_x=2&op=download1&method_premium=1"},
        {{field("op", "download1"), field("id", "7")}, "op=download2&id=7&method_premium=1"},
        {{field("op", "DownLoad1")}, "op=download2&method_premium=1"},
        {{field("op", "download2")}, "op=download2"},
        {{field("op", "download10")}, "op=download10"},
        {{field("id", "7"), field("METHOD_FREE", "x"), field("xmethod_premium", "y")},
         "id=7&METHOD_FREE=x&xmethod_premium=y"},
        {{}, ""},
    };
    for (PremiumRow row : rows) {
        applyPremiumFields(row.fields);
        EXPECT_EQ(shown(row.fields), row.asked);
    }
}

} // namespace
} // namespace vormel
