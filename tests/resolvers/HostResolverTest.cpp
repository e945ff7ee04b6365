#include "resolvers/HostResolver.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"

#include <qcoro/qcorotask.h>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::link;

/// What a look-up ends with.
struct Fetched
{
    std::optional<QString> name;
    std::optional<ResolverError::Kind> error;
};

QCoro::Task<> fetch(const HostResolver& resolver, Fetched& fetched)
{
    try {
        fetched.name = co_await resolver.fetchFilename(link(u"http://filestore.example/abc"_s), {}, {});
    } catch (const ResolverError& error) {
        fetched.error = error.kind();
    }
}

/// The host answers as the test says.
Fetched fetched(const std::function<void(const fixtures::ResolveCall&)>& answer)
{
    const auto log = std::make_shared<fixtures::ServiceLog>();
    const fixtures::FakeHostResolver resolver(SupportedHost::filestore, log);
    Fetched result;
    const QCoro::Task<> task = fetch(resolver, result);
    answer(log->resolves.front());
    fixtures::turnEventLoop();
    return result;
}

std::optional<QString> fetchedName(const QString& address, const std::optional<QString>& given)
{
    return fetched([&](const fixtures::ResolveCall& call) { answerWithAddress(call, address, given); }).name;
}

TEST(HostResolver, TheNameIsTheLastPathComponentOfTheDownloadAddress)
{
    EXPECT_EQ(fetchedName(u"http://cdn.example/d/the%20file.rar?t=1.2"_s, u"other.zip"_s), u"the file.rar");
    EXPECT_EQ(fetchedName(u"http://cdn.example/file.rar/"_s, std::nullopt), u"file.rar");
}

TEST(HostResolver, AnAddressWithoutAFullStopInItsLastComponentLeavesTheGivenName)
{
    EXPECT_EQ(fetchedName(u"http://cdn.example/v1.0/token"_s, u"other.zip"_s), u"other.zip");
    EXPECT_EQ(fetchedName(u"http://cdn.example/"_s, u"other"_s), u"other");
    EXPECT_EQ(fetchedName(u"http://cdn.example/token"_s, std::nullopt), std::nullopt);
}

TEST(HostResolver, ALinkThatDoesNotResolveHasNoNameEither)
{
    const Fetched none =
        fetched([](const fixtures::ResolveCall& call) { call.answer->deliver(ResolverError::linkNotFound()); });
    EXPECT_EQ(none.name, std::nullopt);
    EXPECT_EQ(none.error, ResolverError::Kind::linkNotFound);
}

} // namespace
} // namespace vormel
