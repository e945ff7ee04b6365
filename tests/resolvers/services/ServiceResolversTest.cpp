#include "resolvers/services/ServiceResolvers.h"

#include "fixtures/EngineOnScript.h"
#include "platform/async/Background.h"
#include "platform/web/KeptCookies.h"
#include "resolvers/filestore/FilestoreLoginCache.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class ServiceResolversTest : public testing::Test
{
protected:
    [[nodiscard]] std::optional<SupportedHost> hostOf(const QString& url) const
    {
        const HostResolver* const resolver = tables.hostResolverForURL(fixtures::link(url));
        return resolver ? std::optional(resolver->supportedHost()) : std::nullopt;
    }

    fixtures::ManualClock clock;
    fixtures::ScriptedHttpClient http;
    fixtures::FakeSecrets secrets;
    CookieStore cookies;
    NoWebBrowser web;
    Background background;
    FilestoreLoginCache logins{clock};
    KeptCookies kept{{web, secrets, cookies}, [](const QByteArray&) { return true; }};
    ResolverTables tables = serviceResolvers(Services::builtIn(),
                                             {http, cookies, secrets, clock, background, logins, web, kept});
};

TEST_F(ServiceResolversTest, EachPremiumHostHasItsOwn)
{
    EXPECT_EQ(hostOf(u"https://filestore.example/f/1"_s), SupportedHost::filestore);
    EXPECT_EQ(hostOf(u"https://terabytez.example/f/1"_s), SupportedHost::terabytez);
    EXPECT_EQ(hostOf(u"https://other.example/f/1"_s), std::nullopt);
}

TEST_F(ServiceResolversTest, WhereAHostIsOfBothFilestoreIsAsked)
{
    EXPECT_EQ(hostOf(u"https://terabytez.filestore.example/f/1"_s), SupportedHost::filestore);
}

TEST(SignInCookies, AreThoseOfTerabytezWhereverItIs)
{
    Services moved = Services::builtIn();
    moved.terabytezDomain = u"bytez.test"_s;
    for (const QByteArray domain : {".terabytez.example", "files.terabytez.cc"}) {
        EXPECT_TRUE(isSignInCookie(Services::builtIn(), domain));
        EXPECT_TRUE(isSignInCookie(moved, domain));
    }
    EXPECT_TRUE(isSignInCookie(moved, ".bytez.test"));
    EXPECT_FALSE(isSignInCookie(Services::builtIn(), ".bytez.test"));
    EXPECT_FALSE(isSignInCookie(moved, "filestore.example"));
}

} // namespace
} // namespace vormel
