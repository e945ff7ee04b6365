#include "resolvers/ResolverTables.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/FakeResolvers.h"
#include "model/HostGroups.h"

#include <gtest/gtest.h>

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
    for (const QString& url :
         {QStringLiteral("http://filestore.example/x"), QStringLiteral("https://WWW.FileStore.Example:8443/x"),
          QStringLiteral("http://dl7.filestore.example/x")})
        EXPECT_EQ(hostFor(url), SupportedHost::filestore) << url.toStdString();
    for (const QString& url :
         {QStringLiteral("http://terabytez.example/x"), QStringLiteral("http://www.TeraBytez.other/x")})
        EXPECT_EQ(hostFor(url), SupportedHost::terabytez) << url.toStdString();
}

TEST(ResolverTables, AHostWithoutAResolverIsADirectLink)
{
    for (const QString& url :
         {QStringLiteral("http://cdn.example/filestore.example/x"), QStringLiteral("http://filestore.other/x"),
          QStringLiteral("http://terabytez/x"), QStringLiteral("http://cdn.example/?u=terabytez.example"),
          QStringLiteral("mailto:filestore.example"), QStringLiteral("http:///terabytez.example")})
        EXPECT_EQ(hostFor(url), std::nullopt) << url.toStdString();
    EXPECT_EQ(ResolverTables().hostResolverForURL(link(QStringLiteral("http://filestore.example/x"))), nullptr);
}

TEST(ResolverTables, AHostOfBothNamesResolvesAtTheFirstButIsGroupedAsTerabytez)
{
    const QString both = QStringLiteral("http://terabytez.filestore.example/x");
    EXPECT_EQ(hostFor(both), SupportedHost::filestore);
    EXPECT_EQ(hostGroupLabel(link(both)), u"Terabytez");
}

TEST(ResolverTables, TheFirstContainerServiceThatClaimsALinkGetsIt)
{
    const ResolverTables all = tables({QStringLiteral("/a/"), QStringLiteral("/b/"), QStringLiteral("http")});
    EXPECT_EQ(all.containerResolverForURL(link(QStringLiteral("http://x.example/b/a/c")))->name(), u"/a/");
    EXPECT_EQ(all.containerResolverForURL(link(QStringLiteral("http://x.example/b/c")))->name(), u"/b/");
    EXPECT_EQ(all.containerResolverForURL(link(QStringLiteral("http://x.example/c")))->name(), u"http");
}

TEST(ResolverTables, ALinkThatNoContainerServiceClaimsIsNoContainer)
{
    EXPECT_EQ(tables({QStringLiteral("/a/")}).containerResolverForURL(link(QStringLiteral("http://x.example/b/"))),
              nullptr);
    EXPECT_EQ(ResolverTables().containerResolverForURL(link(QStringLiteral("http://x.example/a/"))), nullptr);
}

} // namespace
} // namespace vormel
