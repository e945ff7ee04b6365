#include "fixtures/EngineOnScript.h"
#include "fixtures/FakeResolvers.h"

#include <qcoro/qcorotask.h>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

QCoro::Task<QString> planOrError(DownloadManager& manager, HostAccount account, std::stop_token stop)
{
    try {
        const PremiumAccountInfo info = co_await manager.checkAccount(account, stop);
        co_return info.plan;
    } catch (const ResolverError& error) {
        co_return error.errorDescription();
    }
}

TEST(AccountChecks, AskTheResolverOfTheAccountsHost)
{
    const auto log = std::make_shared<fixtures::ServiceLog>();
    fixtures::EngineOnScript engine(fixtures::fakeServices(log));
    const HostAccount asked = fixtures::account(SupportedHost::terabytez);
    std::stop_source stop;
    QCoro::Task<QString> plan = planOrError(engine.manager(), asked, stop.get_token());
    ASSERT_EQ(log->checks.size(), 1U);
    EXPECT_EQ(log->checks.front().account, asked);
    stop.request_stop();
    EXPECT_TRUE(log->checks.front().stop.stop_requested());
    log->checks.front().answer->deliver(PremiumAccountInfo{u"Gold"_s, {}, {}, {}});
    EXPECT_EQ(QCoro::waitFor(std::move(plan)), u"Gold");
}

TEST(AccountChecks, FailAsTheResolverDoes)
{
    const auto log = std::make_shared<fixtures::ServiceLog>();
    fixtures::EngineOnScript engine(fixtures::fakeServices(log));
    QCoro::Task<QString> plan = planOrError(engine.manager(), fixtures::account(SupportedHost::filestore), {});
    log->checks.at(0).answer->deliver(ResolverError::authenticationFailed());
    EXPECT_EQ(QCoro::waitFor(std::move(plan)), u"Authentication failed");
}

TEST(AccountChecks, FailWhereTheHostHasNoResolver)
{
    fixtures::EngineOnScript engine;
    EXPECT_EQ(QCoro::waitFor(planOrError(engine.manager(), fixtures::account(SupportedHost::filestore), {})),
              u"Unsupported host");
}

} // namespace
} // namespace vormel
