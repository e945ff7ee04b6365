#include "resolvers/ResolverTables.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/FakeResolvers.h"
#include "model/HostGroups.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::link;

ResolverTables tables(const QStringList& containers = {})
{
    return fixtures::fakeServices(std::make_shared<fixtures::ServiceLog>(), containers);
}

std::optional<SupportedHost> hostFor(const QString& url)
{
    const ResolverTables all = tables();
    const HostResolver* const resolver = all.hostResolverForURL(link(url));
    return resolver ? std::optional(resolver->supportedHost()) : std::nullopt;
}

TEST(ResolverTables, PremiumHostsAreKnownByTheirDomainInAnyLetterCaseAndBelowAnySubdomain)
{
    for (const QString& url : {u"http://filestore.example/x"_s, u"https://WWW.FileStore.Example:8443/x"_s,
                               u"http://dl7.filestore.example/x"_s})
        EXPECT_EQ(hostFor(url), SupportedHost::filestore) << url.toStdString();
    for (const QString& url : {u"http://terabytez.example/x"_s, u"http://www.TeraBytez.other/x"_s})
        EXPECT_EQ(hostFor(url), SupportedHost::terabytez) << url.toStdString();
}

TEST(ResolverTables, AHostWithoutAResolverIsADirectLink)
{
    for (const QString& url :
         {u"http://cdn.example/filestore.example/x"_s, u"http://filestore.other/x"_s, u"http://terabytez/x"_s,
          u"http://cdn.example/?u=terabytez.example"_s, u"mailto:filestore.example"_s, u"http:///terabytez.example"_s})
        EXPECT_EQ(hostFor(url), std::nullopt) << url.toStdString();
    EXPECT_EQ(ResolverTables().hostResolverForURL(link(u"http://filestore.example/x"_s)), nullptr);
}

TEST(ResolverTables, AHostOfBothNamesResolvesAtTheFirstButIsGroupedAsTerabytez)
{
    const QString both = u"http://terabytez.filestore.example/x"_s;
    EXPECT_EQ(hostFor(both), SupportedHost::filestore);
    EXPECT_EQ(hostGroupLabel(link(both), HostProfiles()), u"Terabytez");
}

TEST(ResolverTables, ALinkOfTheDomainThatAServiceMovedToIsResolvedThere)
{
    Services services = Services::builtIn();
    services.filestoreDomain = u"boxes.test"_s;
    const ResolverTables all =
        fixtures::fakeServices(std::make_shared<fixtures::ServiceLog>(), {}, HostProfiles(services));
    const HostResolver* const resolver = all.hostResolverForURL(link(u"http://dl.boxes.test/x"_s));
    ASSERT_NE(resolver, nullptr);
    EXPECT_EQ(resolver->supportedHost(), SupportedHost::filestore);
    EXPECT_EQ(all.hostResolverForURL(link(u"http://filestore.example/x"_s)), nullptr);
}

TEST(ResolverTables, APremiumHostHasItsResolver)
{
    const ResolverTables all = tables();
    for (const SupportedHost host : {SupportedHost::filestore, SupportedHost::terabytez})
        EXPECT_EQ(all.hostResolver(host)->supportedHost(), host);
    EXPECT_EQ(ResolverTables().hostResolver(SupportedHost::filestore), nullptr);
}

TEST(ResolverTables, TheFirstContainerServiceThatClaimsALinkGetsIt)
{
    const ResolverTables all = tables({u"/a/"_s, u"/b/"_s, u"http"_s});
    EXPECT_EQ(all.containerResolverForURL(link(u"http://x.example/b/a/c"_s))->name(), u"/a/");
    EXPECT_EQ(all.containerResolverForURL(link(u"http://x.example/b/c"_s))->name(), u"/b/");
    EXPECT_EQ(all.containerResolverForURL(link(u"http://x.example/c"_s))->name(), u"http");
}

TEST(ResolverTables, ALinkThatNoContainerServiceClaimsIsNoContainer)
{
    EXPECT_EQ(tables({u"/a/"_s}).containerResolverForURL(link(u"http://x.example/b/"_s)), nullptr);
    EXPECT_EQ(ResolverTables().containerResolverForURL(link(u"http://x.example/a/"_s)), nullptr);
}

} // namespace
} // namespace vormel
