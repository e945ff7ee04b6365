#include "resolvers/captcha/AddressCookies.h"

#include "resolvers/containers/LinkTexts.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel::tests {
namespace {

QByteArray browserCookie(const QByteArray& domain, const QByteArray& subdomains, const QByteArray& path = "/",
                         const QByteArray& secure = "FALSE")
{
    return domain + '\t' + subdomains + '\t' + path + '\t' + secure + "\t0\tname\tvalue";
}

/// Does the cookie go with a request for that address?
bool goesTo(const QString& url, const QByteArray& cookie)
{
    return !cookiesForAddress(linkOf(url), {cookie}).isEmpty();
}

TEST(AddressCookies, BelongToTheHostThatTheyNameOrToThoseBelowIt)
{
    EXPECT_TRUE(goesTo(u"https://Box.example/"_s, browserCookie("box.example", "FALSE")));
    EXPECT_TRUE(goesTo(u"https://box.example:8443/"_s, browserCookie(".BOX.example", "TRUE")));
    EXPECT_TRUE(goesTo(u"https://www.box.example/"_s, browserCookie(".box.example", "TRUE")));
    EXPECT_TRUE(goesTo(u"https://box.example/"_s, browserCookie("#HttpOnly_.box.example", "TRUE")));
    EXPECT_FALSE(goesTo(u"https://www.box.example/"_s, browserCookie("box.example", "FALSE")));
    EXPECT_FALSE(goesTo(u"https://mybox.example/"_s, browserCookie(".box.example", "TRUE")));
    EXPECT_FALSE(goesTo(u"https://example/"_s, browserCookie(".box.example", "TRUE")));
    EXPECT_FALSE(goesTo(u"https://terabytez.example/"_s, browserCookie(".filestore.example", "TRUE")));
    EXPECT_FALSE(goesTo(u"https://box.example/"_s, browserCookie(".", "TRUE")));
}

TEST(AddressCookies, BelongToTheirPathAndToThoseBelowIt)
{
    const auto at = [](const QString& path) { return u"https://box.example"_s + path; };
    EXPECT_TRUE(goesTo(at(u""_s), browserCookie("box.example", "FALSE")));
    EXPECT_TRUE(goesTo(at(u"/in/l.txt?x"_s), browserCookie("box.example", "FALSE", "/in")));
    EXPECT_TRUE(goesTo(at(u"/in"_s), browserCookie("box.example", "FALSE", "/in")));
    EXPECT_TRUE(goesTo(at(u"/in/l.txt"_s), browserCookie("box.example", "FALSE", "/in/")));
    EXPECT_FALSE(goesTo(at(u"/inner/l.txt"_s), browserCookie("box.example", "FALSE", "/in")));
    EXPECT_FALSE(goesTo(at(u"/l.txt"_s), browserCookie("box.example", "FALSE", "/in")));
}

TEST(AddressCookies, SecureOnesGoOverHttpsAlone)
{
    EXPECT_TRUE(goesTo(u"https://box.example/"_s, browserCookie("box.example", "FALSE", "/", "TRUE")));
    EXPECT_FALSE(goesTo(u"http://box.example/"_s, browserCookie("box.example", "FALSE", "/", "TRUE")));
}

TEST(AddressCookies, AreForThatHostAlone)
{
    EXPECT_EQ(cookiesForAddress(linkOf(u"https://www.Box.example/"_s),
                                {browserCookie("#HttpOnly_.box.example", "TRUE", "/", "TRUE"), "no cookie"}),
              QByteArrayList{"www.box.example\tFALSE\t/\tTRUE\t0\tname\tvalue"});
}

} // namespace
} // namespace vormel::tests
