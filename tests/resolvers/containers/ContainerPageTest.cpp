#include "resolvers/containers/ContainerPage.h"

#include <gtest/gtest.h>

#include <string>

using namespace Qt::StringLiterals;

namespace vormel::tests {
namespace {

void expectVerdict(bool (*judge)(const QString&), bool verdict, const std::vector<const char*>& pages)
{
    for (const char* page : pages)
        EXPECT_EQ(judge(QString::fromUtf8(page)), verdict) << page;
}

TEST(ContainerPage, ACaptchaShowsInAnyOfItsMarks)
{
    expectVerdict(&containsCaptcha, true,
                  {"<div class=\"h-captcha\">", "https://hcaptcha.com/1/api.js", "<div class='g-recaptcha'>",
                   "<div data-sitekey=x>", "H-CAPTCHA", "hCaptcha", "G-ReCaptcha", "DATA-SITEKEY"});
    expectVerdict(&containsCaptcha, false,
                  {"", "captcha", "recaptcha", "h_captcha", "data-site-key", "g-re captcha", "sitekey"});
}

TEST(ContainerPage, APasswordFieldIsAnAttributeInQuotes)
{
    expectVerdict(
        &hasPasswordField, true,
        {"<input type=\"password\">", "<input type='password'>", "type='password\"", "data-type=\"password\""});
    expectVerdict(&hasPasswordField, false,
                  {"", "<input type=password>", "<input type = \"password\">", "<input type=\"Password\">",
                   "<input TYPE=\"password\">", "<input type=\"passwords\">", "type='password"});
}

TEST(ContainerPage, AWrongPasswordIsToldInEnglishOrGerman)
{
    expectVerdict(&saysWrongPassword, true,
                  {"Wrong password", "wrongpass", "WRONG-PASS", "falsches Passwort", "FalschesPass",
                   "incorrect password", "incorrect_pass", "Passwort falsch", "passwortfalsch", "wrong\xc3\xa9pass",
                   "wrong\xf0\x9f\x98\x80pass"});
    expectVerdict(&saysWrongPassword, false,
                  {"", "wrong  password", "wrong\npassword", "wrong pas", "falsch Passwort", "invalid password",
                   "password wrong", "Passwort ist falsch"});
}

TEST(ContainerPage, KeeplinksHasOtherWordsForIt)
{
    expectVerdict(&saysKeeplinksWrongPassword, true,
                  {"Wrong password", "incorrect-pass", "INVALID PASSWORD", "invalidpass"});
    expectVerdict(&saysKeeplinksWrongPassword, false,
                  {"", "falsches Passwort", "Passwort falsch", "invalid  password", "wrong\npass"});
}

TEST(ContainerPage, SignsAreFoundBehindNulAndRepairedText)
{
    const QString before = QChar(0) + QString::fromUtf8("\xff\xfe\xed\xa0\x80\xc3");
    EXPECT_TRUE(containsCaptcha(before + u"hcaptcha"_s));
    EXPECT_TRUE(hasPasswordField(before + u"type='password'"_s));
    EXPECT_TRUE(saysWrongPassword(before + u"wrong pass"_s));
    EXPECT_TRUE(saysKeeplinksWrongPassword(before + u"wrong pass"_s));
}

} // namespace
} // namespace vormel::tests
