#include "resolvers/filestore/FilestoreLogin.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

TEST(FilestoreLogin, TheLoginStandsOverTheHiddenInputsOfItsPage)
{
    const QString page = u"<input type='hidden' name='token' value='t'><input type='hidden' name='login' value='x'>"
                         "<input type='text' name='user' value='y'>"_s;
    EXPECT_EQ(encodeFormFields(loginFields(page, u"a@b"_s, u"p w"_s)), "token=t&login=a@b&password=p%20w&redirect=/");
    EXPECT_EQ(encodeFormFields(loginFields({}, u"a"_s, u"b"_s)), "login=a&password=b&redirect=/");
}

TEST(FilestoreLogin, ARedirectOfThePageIsKept)
{
    const QString page = u"<input type='hidden' name='redirect' value='%1'>"_s;
    EXPECT_EQ(encodeFormFields(loginFields(page.arg(u"/x"), u"a"_s, u"b"_s)), "redirect=/x&login=a&password=b");
    EXPECT_EQ(encodeFormFields(loginFields(page.arg(u""), u"a"_s, u"b"_s)), "redirect=&login=a&password=b");
}

TEST(FilestoreLogin, APasswordGoesOutRawWhereAQueryAllowsIt)
{
    EXPECT_EQ(encodeFormFields(loginFields({}, u"a"_s, u"&=+/%"_s)), "login=a&password=&=+/%25&redirect=/");
}

TEST(FilestoreLogin, NineTextsTellOfARefusal)
{
    for (const QString& text :
         {u"wrong login"_s, u"invalid login"_s, u"incorrect password"_s, u"wrong password"_s, u"invalid credentials"_s,
          u"login error"_s, u"invalid email"_s, u"wrong email"_s, u"incorrect email"_s}) {
        EXPECT_TRUE(tellsRefusedLogin(u"<p>"_s + text + u"</p>"_s)) << text.toStdString();
        EXPECT_TRUE(tellsRefusedLogin(text.toUpper())) << text.toStdString();
    }
}

TEST(FilestoreLogin, AnyOtherTextIsNoRefusal)
{
    for (const QString& text : {u""_s, u"welcome"_s, u"incorrect login"_s, u"wrong  password"_s, u"wrong&nbsp;login"_s,
                                u"invalid password"_s, u"login failed"_s})
        EXPECT_FALSE(tellsRefusedLogin(text)) << text.toStdString();
}

struct AddressRow
{
    QStringView url;
    bool isLoggedOut;
    bool isLogin;
};

TEST(FilestoreLogin, TheRootAndALoginSayThatTheSessionIsNotLoggedIn)
{
    const std::vector<AddressRow> rows{
        {u"https://filestore.example/", true, false},
        {u"https://filestore.example", true, false},
        {u"https://filestore.example?a", true, false},
        {u"https://filestore.example/?login", true, false},
        {u"https://other.example/#login", true, false},
        {u"https://filestore.example/login", true, true},
        {u"https://filestore.example/user/login.html?a", true, true},
        {u"https://filestore.example/abc/relogins", true, true},
        {u"https://filestore.example/lo%67in", true, true},
        {u"https://filestore.example/%FFlogin", true, true},
        {u"https://filestore.example/Login", false, false},
        {u"https://filestore.example/abc?login", false, false},
        {u"https://login.filestore.example/abc", false, false},
        {u"https://filestore.example/abc", false, false},
    };
    for (const auto& [url, isLoggedOut, isLogin] : rows) {
        EXPECT_EQ(isLoggedOutAddress(*Link::parse(url)), isLoggedOut) << url.toString().toStdString();
        EXPECT_EQ(isLoginAddress(*Link::parse(url)), isLogin) << url.toString().toStdString();
    }
}

TEST(FilestoreLogin, AnAnswerWithoutAnAddressSaysNothing)
{
    EXPECT_FALSE(isLoggedOutAddress(Link()));
    EXPECT_FALSE(isLoginAddress(Link()));
}

} // namespace
} // namespace vormel
