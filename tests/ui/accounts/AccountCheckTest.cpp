#include "ui/accounts/AccountCheck.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"
#include "ui/FakeDesktop.h"
#include "ui/accounts/Plans.h"
#include "ui/sheets/SignInSheetPorts.h"
#include "ui/sheets/signin/PageSignInSheet.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::goldPlan;

class AccountCheckTest : public ::testing::Test
{
protected:
    AccountCheckTest() { check->run(); }
    [[nodiscard]] const AccountTestStatus& status() const { return check->state().testStatus(); }
    [[nodiscard]] QString message() const { return status().message(AppLanguage::english); }
    void answer(const std::variant<PremiumAccountInfo, ResolverError>& result) const
    {
        log->checks.back().answer->deliver(result);
    }
    void wantSignIn() const { answer(fixtures::loginRequired(SupportedHost::terabytez)); }

    std::shared_ptr<fixtures::ServiceLog> log = std::make_shared<fixtures::ServiceLog>();
    fixtures::EngineOnScript engine{fixtures::fakeServices(log)};
    fixtures::FakeDesktop desktop{engine};
    QWidget parent;
    HostAccount account = fixtures::account(SupportedHost::terabytez, u"anna"_s);
    std::unique_ptr<AccountCheck> check =
        std::make_unique<AccountCheck>(AccountCheck::Ports{engine.manager(), desktop.signIn}, account, &parent);
    QSignalSpy changed{check.get(), &AccountCheck::changed};
};

TEST_F(AccountCheckTest, TellsOfItsBeginAndItsEnd)
{
    EXPECT_EQ(status(), AccountTestStatus::testing);
    EXPECT_EQ(changed.count(), 1);
    answer(goldPlan());
    EXPECT_EQ(status(), AccountTestStatus::success);
    EXPECT_EQ(check->state().premiumInfo(), goldPlan());
    EXPECT_EQ(changed.count(), 2);
}

TEST_F(AccountCheckTest, RunsOnceAtATime)
{
    check->run();
    EXPECT_EQ(log->checks.size(), 1U);
    EXPECT_EQ(changed.count(), 1);
    answer(goldPlan());
    check->run();
    EXPECT_EQ(log->checks.size(), 2U);
}

TEST_F(AccountCheckTest, FailsWithTheErrorsOwnWords)
{
    answer(ResolverError::authenticationFailed());
    EXPECT_EQ(status(), AccountTestStatus::failure(u"Authentication failed"_s));
}

TEST_F(AccountCheckTest, FailsWhereNobodyKnowsTheHost)
{
    fixtures::EngineOnScript bare;
    AccountCheck alone({bare.manager(), desktop.signIn}, account, &parent);
    alone.run();
    EXPECT_EQ(alone.state().testStatus(), AccountTestStatus::failure(u"Unsupported host"_s));
}

TEST_F(AccountCheckTest, LetsTheUserSignInWhereTheHostWantsABrowser)
{
    engine.secrets.kept.insert(keychainAccountKey(account, HostProfiles()), u"s3cret"_s);
    wantSignIn();
    ASSERT_EQ(desktop.signIn.calls.size(), 1U);
    const SignInRequest& request = desktop.signIn.calls[0].request;
    EXPECT_EQ(request.host, SupportedHost::terabytez);
    EXPECT_EQ(request.username, u"anna");
    EXPECT_EQ(request.password, u"s3cret");
    EXPECT_EQ(request.parent, &parent);
    EXPECT_EQ(status(), AccountTestStatus::testing);
    EXPECT_TRUE(check->state().isSigningIn());
    check->run();
    EXPECT_EQ(log->checks.size(), 1U);
}

TEST_F(AccountCheckTest, EndsAsTheSignInDoes)
{
    wantSignIn();
    desktop.signIn.calls.at(0).answer->deliver({true, goldPlan()});
    EXPECT_EQ(status(), AccountTestStatus::success);
    EXPECT_EQ(check->state().premiumInfo(), goldPlan());
    check->run();
    wantSignIn();
    desktop.signIn.calls.at(1).answer->deliver({true, std::nullopt});
    EXPECT_EQ(message(), u"Couldn't read account — try Check again");
    check->run();
    wantSignIn();
    desktop.signIn.calls.at(2).answer->deliver({});
    EXPECT_EQ(message(), u"Sign-in cancelled");
}

TEST_F(AccountCheckTest, WaitsForALockedKeyringBeforeItAsksToSignIn)
{
    engine.secrets.lock();
    wantSignIn();
    EXPECT_TRUE(desktop.signIn.calls.empty());
    EXPECT_EQ(status(), AccountTestStatus::testing);
    engine.secrets.unlock();
    EXPECT_EQ(desktop.signIn.calls.size(), 1U);
}

TEST_F(AccountCheckTest, IsStoppedByItsEnd)
{
    EXPECT_FALSE(log->checks[0].stop.stop_requested());
    check.reset();
    EXPECT_TRUE(log->checks[0].stop.stop_requested());
    answer(goldPlan()); // into the void
}

TEST_F(AccountCheckTest, StopsTheSignInByItsEnd)
{
    wantSignIn();
    check.reset();
    EXPECT_TRUE(desktop.signIn.calls.at(0).stop.stop_requested());
    desktop.signIn.calls[0].answer->deliver({true, goldPlan()});
}

TEST_F(AccountCheckTest, TakesItsSheetWithItAndTellsNobodyOfThat)
{
    PageSignInSheet sheets(fixtures::signInPorts(desktop));
    auto alone = std::make_unique<AccountCheck>(AccountCheck::Ports{engine.manager(), sheets}, account, &parent);
    alone->run();
    wantSignIn();
    fixtures::turnEventLoop();
    ASSERT_EQ(desktop.web.pages.size(), 1U);
    const QSignalSpy told(alone.get(), &AccountCheck::changed);
    alone.reset();
    fixtures::turnEventLoop();
    EXPECT_TRUE(desktop.web.pages.empty());
    EXPECT_EQ(told.count(), 0);
    answer(goldPlan());
}

TEST_F(AccountCheckTest, OpensNoSheetOnceItHasGone)
{
    engine.secrets.lock();
    wantSignIn();
    check.reset();
    engine.secrets.unlock();
    EXPECT_TRUE(desktop.signIn.calls.empty());
}

} // namespace
} // namespace vormel
