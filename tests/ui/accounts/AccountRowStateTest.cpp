#include "ui/accounts/AccountRowState.h"

#include "ui/accounts/Plans.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::goldPlan;

AccountRowState checked()
{
    AccountRowState state;
    state.checkBegan();
    state.checkSucceeded(goldPlan());
    return state;
}

AccountRowState signingIn()
{
    AccountRowState state;
    state.checkBegan();
    state.signInBegan();
    return state;
}

QString messages(const AccountRowState& state)
{
    const AccountTestStatus& status = state.testStatus();
    return status.message(AppLanguage::english) + u'|' + status.message(AppLanguage::italian);
}

TEST(AccountRowState, KnowsNothingAtFirst)
{
    const AccountRowState state;
    EXPECT_EQ(state.testStatus(), AccountTestStatus::idle);
    EXPECT_EQ(state.premiumInfo(), std::nullopt);
    EXPECT_FALSE(state.isSigningIn());
    EXPECT_EQ(messages(state), u"|");
}

TEST(AccountRowState, KeepsWhatASuccessfulCheckTold)
{
    const AccountRowState state = checked();
    EXPECT_EQ(state.testStatus(), AccountTestStatus::success);
    EXPECT_EQ(state.premiumInfo(), goldPlan());
}

TEST(AccountRowState, ForgetsTheLastResultWhenACheckBegins)
{
    AccountRowState state = checked();
    state.checkBegan();
    EXPECT_EQ(state.testStatus(), AccountTestStatus::testing);
    EXPECT_EQ(state.premiumInfo(), std::nullopt);
}

TEST(AccountRowState, TellsAFailureInTheLanguageInWhichItCame)
{
    AccountRowState state = checked();
    state.checkFailed(u"Authentication failed"_s);
    EXPECT_EQ(state.testStatus(), AccountTestStatus::failure(u"Authentication failed"_s));
    EXPECT_EQ(state.premiumInfo(), std::nullopt);
    EXPECT_EQ(messages(state), u"Authentication failed|Authentication failed");
}

TEST(AccountRowState, StaysTestingWhileTheUserSignsIn)
{
    const AccountRowState state = signingIn();
    EXPECT_EQ(state.testStatus(), AccountTestStatus::testing);
    EXPECT_EQ(state.premiumInfo(), std::nullopt);
    EXPECT_TRUE(state.isSigningIn());
}

TEST(AccountRowState, TakesWhatASignInTold)
{
    AccountRowState state = signingIn();
    state.signInEnded({true, goldPlan()});
    EXPECT_EQ(state.testStatus(), AccountTestStatus::success);
    EXPECT_EQ(state.premiumInfo(), goldPlan());
    EXPECT_FALSE(state.isSigningIn());
}

TEST(AccountRowState, AsksForAnotherCheckAfterASignInThatToldNothing)
{
    AccountRowState state = signingIn();
    state.signInEnded({true, std::nullopt});
    EXPECT_EQ(state.testStatus().kind(), AccountTestStatus::failed);
    EXPECT_EQ(messages(state), u"Couldn't read account — try Check again|"
                               u"Impossibile leggere l'account — riprova Verifica");
    EXPECT_EQ(state.premiumInfo(), std::nullopt);
    EXPECT_FALSE(state.isSigningIn());
}

TEST(AccountRowState, FailsWhenTheSignInIsCancelled)
{
    AccountRowState state = signingIn();
    state.signInEnded({false, goldPlan()});
    EXPECT_EQ(state.testStatus().kind(), AccountTestStatus::failed);
    EXPECT_EQ(messages(state), u"Sign-in cancelled|Accesso annullato");
    EXPECT_EQ(state.premiumInfo(), std::nullopt);
    EXPECT_FALSE(state.isSigningIn());
}

TEST(AccountTestStatus, FailuresAreEqualOnlyWithEqualMessages)
{
    const AccountTestStatus one = AccountTestStatus::failure(u"one"_s);
    EXPECT_EQ(one, AccountTestStatus::failure(u"one"_s));
    EXPECT_NE(one, AccountTestStatus::failure(u"two"_s));
    EXPECT_NE(one, AccountTestStatus::failure(TextPair{u"one", u"uno"}));
    EXPECT_NE(one, AccountTestStatus(AccountTestStatus::idle));
}

} // namespace
} // namespace vormel
