#include "platform/web/CookieLine.h"

#include <gtest/gtest.h>

using namespace vormel;

TEST(CookieLine, HasEachFieldOfItsText)
{
    const CookieLine cookie =
        CookieLine::parse("#HttpOnly_.site.example\tTRUE\t/in\tTRUE\t1700000000\tname\tval ue=").value();
    EXPECT_EQ(cookie, (CookieLine{.domain = ".site.example",
                                  .path = "/in",
                                  .isSecure = true,
                                  .isForHttpAlone = true,
                                  .expiry = 1'700'000'000,
                                  .name = "name",
                                  .value = "val ue="}));
    EXPECT_EQ(cookie.text(), "#HttpOnly_.site.example\tTRUE\t/in\tTRUE\t1700000000\tname\tval ue=");
    EXPECT_TRUE(cookie.sharesSubdomains());
}

TEST(CookieLine, OfOneHostHasNoFullStop)
{
    EXPECT_EQ(CookieLine::parse(".site.example\tFALSE\t/\tFALSE\t0\tn\t")->text(),
              "site.example\tFALSE\t/\tFALSE\t0\tn\t");
    EXPECT_EQ(CookieLine::parse("site.example\tTRUE\t/\tFALSE\t0\tn\t")->text(),
              ".site.example\tTRUE\t/\tFALSE\t0\tn\t");
}

TEST(CookieLine, IsNotReadFromAnythingElse)
{
    for (const char* line : {"", "Set-Cookie: a=b", "site.example\tFALSE\t/\tFALSE\t0\tname",
                             "site.example\tFALSE\t/\tFALSE\t0\tname\tv\tw", "\tFALSE\t/\tFALSE\t0\tname\tv",
                             ".\tTRUE\t/\tFALSE\t0\tname\tv", "site.example\tFALSE\tpath\tFALSE\t0\tname\tv",
                             "site.example\tFALSE\t/\tFALSE\tsoon\tname\tv", "site.example\tFALSE\t/\tFALSE\t0\t\tv"})
        EXPECT_FALSE(CookieLine::parse(line)) << line;
}

TEST(CookieLine, CannotBecomeAnotherCookieInAHeader)
{
    for (const char* value : {"v; Domain=example", "v\r\nSet-Cookie: a=b", "v\n", "v\x7f", "v\x01"})
        EXPECT_FALSE(CookieLine::parse(QByteArray("site.example\tFALSE\t/\tFALSE\t0\tname\t") + value)) << value;
}

TEST(CookieLine, IsTheSameByDomainPathAndName)
{
    const CookieLine cookie = CookieLine::parse("site.example\tFALSE\t/\tFALSE\t0\tname\tv").value();
    EXPECT_TRUE(cookie.isSameAs(*CookieLine::parse("#HttpOnly_site.example\tFALSE\t/\tTRUE\t9\tname\tother")));
    EXPECT_FALSE(cookie.isSameAs(*CookieLine::parse(".site.example\tTRUE\t/\tFALSE\t0\tname\tv")));
    EXPECT_FALSE(cookie.isSameAs(*CookieLine::parse("site.example\tFALSE\t/in\tFALSE\t0\tname\tv")));
    EXPECT_FALSE(cookie.isSameAs(*CookieLine::parse("site.example\tFALSE\t/\tFALSE\t0\tNAME\tv")));
}
