#include "KeyringScene.h"
#include "Prompter.h"
#include "platform/secrets/KeyringItems.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace vormel {
namespace {

using fixtures::load;
using fixtures::save;
using Place = SecretStore::Place;

/// A keyring that holds a password, is locked, and asks its user.
class LockedKeyringTest : public fixtures::UnlockedKeyring
{
protected:
    void SetUp() override
    {
        UnlockedKeyring::SetUp();
        if (IsSkipped() || HasFatalFailure())
            return;
        keyring->add(fixtures::keyOfPassword, "secret");
        keyring->lock();
        user.emplace(bus->connection());
    }

    void waitForPrompt()
    {
        ASSERT_TRUE(fixtures::waitUntil([this] { return user->isOpen(); }));
    }

    std::optional<fixtures::Prompter> user;
};

TEST_F(LockedKeyringTest, AsksTheUserWhileTheProgramGoesOn)
{
    const fixtures::Call<QString> password = load(store->secrets);
    waitForPrompt();
    fixtures::turnEventLoop();
    EXPECT_FALSE(password.isOver());
    user->answer(fixtures::RealKeyring::password);
    EXPECT_EQ(password.end(), u"secret");
}

TEST_F(LockedKeyringTest, AsksOnceForAllWhoWait)
{
    const fixtures::Call<QString> first = load(store->secrets);
    const fixtures::Call<QString> second = load(store->secrets);
    waitForPrompt();
    user->answer(fixtures::RealKeyring::password);
    EXPECT_EQ(first.end(), u"secret");
    EXPECT_EQ(second.end(), u"secret");
    EXPECT_EQ(user->shown(), 1);
}

TEST_F(LockedKeyringTest, HasNoPasswordWhenTheUserDismissesThePrompt)
{
    const fixtures::Call<QString> password = load(store->secrets);
    waitForPrompt();
    user->dismiss();
    EXPECT_EQ(password.end(), u"");
    EXPECT_EQ(store->secrets.place(), Place::keyring);
}

TEST_F(LockedKeyringTest, LeavesAUserWhoHasDismissedAPromptInPeaceForAWhile)
{
    const fixtures::Call<QString> password = load(store->secrets);
    waitForPrompt();
    user->dismiss();
    EXPECT_EQ(password.end(), u"");
    clock.advance(KeyringSecrets::peace - 1ms);
    EXPECT_EQ(load(store->secrets).end(), u"");
    EXPECT_EQ(user->shown(), 1);
    clock.advance(1ms);
    const fixtures::Call<QString> next = load(store->secrets);
    waitForPrompt();
    user->answer(fixtures::RealKeyring::password);
    EXPECT_EQ(next.end(), u"secret");
}

TEST_F(LockedKeyringTest, HasNoPasswordWhenTheUserNeverAnswers)
{
    const fixtures::Call<QString> password = load(store->secrets);
    waitForPrompt();
    clock.advance(KeyringItems::patience - 1ms);
    EXPECT_FALSE(password.isOver());
    clock.advance(1ms);
    EXPECT_TRUE(password.isOver());
    EXPECT_EQ(password.end(), u"");
    // The prompt is still there, and the answer helps who asks next.
    EXPECT_TRUE(user->isOpen());
    user->answer(fixtures::RealKeyring::password);
    ASSERT_TRUE(fixtures::waitUntil([this] {
        const std::vector<fixtures::RealKeyring::Item> items = keyring->items(fixtures::keyOfPassword);
        return !items.empty() && items.front().secret == "secret";
    }));
    EXPECT_EQ(load(store->secrets).end(), u"secret");
    EXPECT_EQ(user->shown(), 1);
}

TEST_F(LockedKeyringTest, KeepsTheOldPasswordWhenTheUserDismissesThePromptOfASave)
{
    const fixtures::Call<bool> saved = save(store->secrets, u"new"_s);
    waitForPrompt();
    user->dismiss();
    EXPECT_TRUE(saved.end());
    EXPECT_EQ(user->shown(), 1);
    clock.advance(KeyringSecrets::peace);
    const fixtures::Call<QString> password = load(store->secrets);
    waitForPrompt();
    user->answer(fixtures::RealKeyring::password);
    EXPECT_EQ(password.end(), u"secret");
    EXPECT_EQ(keyring->items(fixtures::keyOfPassword).size(), 1U);
}

TEST_F(LockedKeyringTest, SavesWhenTheUserUnlocks)
{
    const fixtures::Call<bool> saved = save(store->secrets, u"new"_s);
    waitForPrompt();
    user->answer(fixtures::RealKeyring::password);
    EXPECT_TRUE(saved.end());
    ASSERT_EQ(keyring->items(fixtures::keyOfPassword).size(), 1U);
    EXPECT_EQ(keyring->items(fixtures::keyOfPassword).front().secret, "new");
}

TEST_F(LockedKeyringTest, EndsWhatIsUnderWayWithItself)
{
#if defined(__SANITIZE_ADDRESS__)
    // GLib lets go of an open prompt's subscriptions in a context that nobody turns any more: 72 bytes at the end.
    const __lsan::ScopedDisabler tolerance;
#endif
    const fixtures::Call<QString> password = load(store->secrets);
    const fixtures::Call<bool> saved = save(store->secrets, u"new"_s);
    waitForPrompt();
    store.reset();
    EXPECT_TRUE(password.isOver());
    EXPECT_TRUE(saved.isOver());
    EXPECT_EQ(password.end(), u"");
    // The prompt is left to the user, and the keyring works for the next.
    store.emplace(clock, bus->address());
    const fixtures::Call<QString> next = load(store->secrets);
    EXPECT_TRUE(user->isOpen());
    user->answer(fixtures::RealKeyring::password);
    EXPECT_EQ(next.end(), u"secret");
}

TEST_F(LockedKeyringTest, HasNoPasswordWhenTheKeyringEndsWithItsPrompt)
{
    const fixtures::Call<QString> password = load(store->secrets);
    waitForPrompt();
    keyring->kill();
    EXPECT_EQ(password.end(), u"");
    EXPECT_TRUE(fixtures::waitUntil([this] { return store->secrets.place() == Place::nowhere; }));
}

} // namespace
} // namespace vormel
