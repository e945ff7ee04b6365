#include "resolvers/HostResolver.h"

#include "fixtures/Workshop.h"
#include "resolvers/FakeResolvers.h"

#include <qcoro/qcorotask.h>

#include <gtest/gtest.h>

namespace vormel {
namespace {

using fixtures::link;

std::optional<QString> fetchedName(const QString& address, const std::optional<QString>& given)
{
    const FakeHostResolver resolver(SupportedHost::filestore, ResolvedDownload{link(address), given});
    return QCoro::waitFor(resolver.fetchFilename(link(QStringLiteral("http://filestore.example/abc")), HostAccount()));
}

QCoro::Task<std::optional<ResolverError::Kind>> errorOfFetch(const HostResolver& resolver)
{
    try {
        co_await resolver.fetchFilename(link(QStringLiteral("http://filestore.example/abc")), HostAccount());
    } catch (const ResolverError& error) {
        co_return error.kind();
    }
    co_return std::nullopt;
}

TEST(HostResolver, theNameIsTheLastPathComponentOfTheDownloadAddress)
{
    EXPECT_EQ(fetchedName(QStringLiteral("http://cdn.example/d/the%20file.rar?t=1.2"), QStringLiteral("other.zip")),
              u"the file.rar");
    EXPECT_EQ(fetchedName(QStringLiteral("http://cdn.example/file.rar/"), std::nullopt), u"file.rar");
}

TEST(HostResolver, anAddressWithoutAFullStopInItsLastComponentLeavesTheGivenName)
{
    EXPECT_EQ(fetchedName(QStringLiteral("http://cdn.example/v1.0/token"), QStringLiteral("other.zip")), u"other.zip");
    EXPECT_EQ(fetchedName(QStringLiteral("http://cdn.example/"), QStringLiteral("other")), u"other");
    EXPECT_EQ(fetchedName(QStringLiteral("http://cdn.example/token"), std::nullopt), std::nullopt);
}

TEST(HostResolver, aLinkThatDoesNotResolveHasNoNameEither)
{
    const FakeHostResolver resolver(SupportedHost::filestore);
    EXPECT_EQ(QCoro::waitFor(errorOfFetch(resolver)), ResolverError::Kind::linkNotFound);
}

} // namespace
} // namespace vormel
