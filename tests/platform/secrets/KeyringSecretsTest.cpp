#include "platform/secrets/KeyringSecrets.h"

#include "Call.h"
#include "Prompter.h"
#include "RealKeyring.h"
#include "fixtures/EventLoop.h"
#include "fixtures/ManualClock.h"
#include "fixtures/RealTools.h"
#include "platform/secrets/KeyringItems.h"
#include "platform/storage/FileDescriptor.h"

#include <QCoreApplication>

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <optional>
#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace vormel {
namespace {

using Place = SecretStore::Place;

const QString key = u"vormel_filestore_somebody@example.com"_s;

fixtures::Call<QString> load(KeyringSecrets& secrets, const QString& which = key)
{
    return fixtures::Call<QString>(secrets.load(which));
}

fixtures::Call<bool> save(KeyringSecrets& secrets, const QString& secret)
{
    return fixtures::Call<bool>(fixtures::endOf(secrets.save(key, secret)));
}

/// Whoever connects to it hears nothing.
FileDescriptor silentSocket(const QString& path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, path.toUtf8().constData(), sizeof(address.sun_path));
    FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const void* const generic = &address;
    if (::bind(socket.get(), static_cast<const sockaddr*>(generic), sizeof(address)) != 0 ||
        ::listen(socket.get(), 1) != 0)
        socket.close();
    return socket;
}

/// A bus without a keyring. Whatever is started on it ends with the test.
class KeyringSecretsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        VORMEL_NEEDS_TOOL("dbus-daemon");
        VORMEL_NEEDS_TOOL("gnome-keyring-daemon");
    }

    /// The store of the program, and where it has said it is since.
    struct Store
    {
        Store(fixtures::ManualClock& clock, const QString& address)
            : secrets(clock, address)
        {
            QObject::connect(&secrets, &SecretStore::placeChanged, &secrets,
                             [this] { places.push_back(secrets.place()); });
        }

        KeyringSecrets secrets;
        std::vector<Place> places;
    };

    fixtures::Sandbox sandbox;
    fixtures::ManualClock clock;
};

/// And one with a keyring that is unlocked.
class UnlockedKeyringTest : public KeyringSecretsTest
{
protected:
    void SetUp() override
    {
        KeyringSecretsTest::SetUp();
        if (IsSkipped() || HasFatalFailure())
            return;
        bus.emplace(sandbox);
        keyring.emplace(sandbox, *bus);
        ASSERT_TRUE(keyring->start());
        store.emplace(clock, bus->address());
    }

    std::optional<fixtures::PrivateBus> bus;
    std::optional<fixtures::RealKeyring> keyring;
    std::optional<Store> store;
};

/// And one that holds a password, is locked, and asks its user.
class LockedKeyringTest : public UnlockedKeyringTest
{
protected:
    void SetUp() override
    {
        UnlockedKeyringTest::SetUp();
        if (IsSkipped() || HasFatalFailure())
            return;
        keyring->add(key, "secret");
        keyring->lock();
        user.emplace(bus->connection());
    }

    void waitForPrompt()
    {
        ASSERT_TRUE(fixtures::waitUntil([this] { return user->isOpen(); }));
    }

    std::optional<fixtures::Prompter> user;
};

TEST_F(KeyringSecretsTest, WaitsForABusThatSaysNothingOnlyForAWhile)
{
    const QString path = sandbox.path(u"bus"_s);
    const FileDescriptor silent = silentSocket(path);
    ASSERT_TRUE(silent.isOpen());
    Store store(clock, u"unix:path="_s + path);
    const fixtures::Call<QString> password = load(store.secrets);
    clock.advance(9s);
    fixtures::turnEventLoop();
    EXPECT_EQ(store.secrets.place(), Place::keyring);
    clock.advance(1s);
    fixtures::turnEventLoop();
    clock.advance(10s); // it is asked once more
    EXPECT_EQ(password.end(), u"");
    EXPECT_EQ(store.secrets.place(), Place::nowhere);
}

TEST_F(UnlockedKeyringTest, GivesBackWhatWasSaved)
{
    for (const QString& secret : {u"pa&ss=wörd\n\"𝄞"_s, QString(), QString(100'000, u'x'), u"another"_s}) {
        EXPECT_TRUE(save(store->secrets, secret).end());
        EXPECT_EQ(load(store->secrets).end(), secret);
    }
}

TEST_F(UnlockedKeyringTest, KeepsNothingElseWithThePasswordThanItsKey)
{
    EXPECT_TRUE(save(store->secrets, u"first"_s).end());
    EXPECT_TRUE(save(store->secrets, u"second"_s).end());
    const std::vector<fixtures::RealKeyring::Item> items = keyring->items(key);
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items.front().secret, "second");
    const QMap<QString, QString> wanted{{u"account"_s, key}, {u"xdg:schema"_s, u"org.vormel.Vormel"_s}};
    EXPECT_EQ(items.front().attributes, wanted);
}

TEST_F(UnlockedKeyringTest, HasNoPasswordForAnotherKey)
{
    keyring->add(key, "secret");
    EXPECT_EQ(load(store->secrets, key + u'm').end(), u"");
}

TEST_F(UnlockedKeyringTest, RepairsAPasswordThatIsNotUtf8)
{
    keyring->add(key, "caf\xe9!");
    EXPECT_EQ(load(store->secrets).end(), u"caf\ufffd!");
}

TEST_F(UnlockedKeyringTest, TakesOneOfSeveralAndLeavesOneAfterTheNextSave)
{
    keyring->add(key, "one");
    keyring->add(key, "other");
    ASSERT_EQ(keyring->items(key).size(), 2U);
    EXPECT_THAT(load(store->secrets).end(), testing::AnyOf(u"one"_s, u"other"_s));
    EXPECT_TRUE(save(store->secrets, u"new"_s).end());
    ASSERT_EQ(keyring->items(key).size(), 1U);
    EXPECT_EQ(keyring->items(key).front().secret, "new");
}

TEST_F(UnlockedKeyringTest, RemovesAllUnderTheKey)
{
    keyring->add(key, "one");
    keyring->add(key, "other");
    keyring->add(u"another"_s, "stays");
    EXPECT_TRUE(fixtures::Call<bool>(fixtures::endOf(store->secrets.remove(key))).end());
    EXPECT_TRUE(keyring->items(key).empty());
    EXPECT_EQ(keyring->items(u"another"_s).size(), 1U);
}

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
        const std::vector<fixtures::RealKeyring::Item> items = keyring->items(key);
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
    EXPECT_EQ(keyring->items(key).size(), 1U);
}

TEST_F(LockedKeyringTest, SavesWhenTheUserUnlocks)
{
    const fixtures::Call<bool> saved = save(store->secrets, u"new"_s);
    waitForPrompt();
    user->answer(fixtures::RealKeyring::password);
    EXPECT_TRUE(saved.end());
    ASSERT_EQ(keyring->items(key).size(), 1U);
    EXPECT_EQ(keyring->items(key).front().secret, "new");
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

TEST_F(UnlockedKeyringTest, SurvivesAKeyringThatIsKilledInMidCallAndComesBack)
{
    keyring->add(key, "secret");
    EXPECT_EQ(load(store->secrets).end(), u"secret");
    keyring->hold();
    const fixtures::Call<QString> password = load(store->secrets);
    const fixtures::Call<bool> saved = save(store->secrets, u"new"_s);
    fixtures::turnEventLoop();
    EXPECT_FALSE(password.isOver());
    keyring->kill();
    EXPECT_EQ(password.end(), u"");
    EXPECT_TRUE(saved.end());
    ASSERT_TRUE(fixtures::waitUntil([this] { return store->places == std::vector{Place::nowhere}; }));
    ASSERT_TRUE(keyring->start());
    ASSERT_TRUE(fixtures::waitUntil([this] { return store->places.size() == 2; }));
    EXPECT_EQ(store->secrets.place(), Place::keyring);
    EXPECT_EQ(load(store->secrets).end(), u"secret");
}

TEST_F(KeyringSecretsTest, HasNothingWhereThereIsNoBus)
{
    for (const QString& address : {QString(), u"unix:path=/nowhere"_s, u"no address"_s}) {
        Store store(clock, address);
        EXPECT_EQ(load(store.secrets).end(), u"");
        EXPECT_TRUE(save(store.secrets, u"secret"_s).end());
        EXPECT_EQ(store.secrets.place(), Place::nowhere);
    }
}

TEST_F(KeyringSecretsTest, SaysSoWhereThereIsNoKeyringAndWhenOneAppears)
{
    const fixtures::PrivateBus bus(sandbox);
    Store store(clock, bus.address());
    ASSERT_TRUE(fixtures::waitUntil([&store] { return !store.places.empty(); }));
    EXPECT_EQ(store.places, std::vector{Place::nowhere});
    EXPECT_EQ(load(store.secrets).end(), u"");
    fixtures::RealKeyring keyring(sandbox, bus);
    ASSERT_TRUE(keyring.start());
    ASSERT_TRUE(fixtures::waitUntil([&store] { return store.places.size() == 2; }));
    EXPECT_EQ(store.places.back(), Place::keyring);
}

TEST_F(KeyringSecretsTest, CountsAKeyringThatTheBusCanStart)
{
    fixtures::RealKeyring::letTheBusStartIt(sandbox);
    const fixtures::PrivateBus bus(sandbox);
    const fixtures::RealKeyring keyring(sandbox, bus);
    Store store(clock, bus.address());
    EXPECT_TRUE(save(store.secrets, u"secret"_s).end());
    EXPECT_EQ(load(store.secrets).end(), u"secret");
    EXPECT_THAT(store.places, testing::IsEmpty());
}

TEST_F(KeyringSecretsTest, AsksAgainOfAKeyringThatIsKilledInMidCallAndStartedByTheBus)
{
    fixtures::RealKeyring::letTheBusStartIt(sandbox);
    const fixtures::PrivateBus bus(sandbox);
    fixtures::RealKeyring keyring(sandbox, bus);
    Store store(clock, bus.address());
    EXPECT_TRUE(save(store.secrets, u"secret"_s).end());
    EXPECT_EQ(load(store.secrets).end(), u"secret");
    keyring.hold();
    const fixtures::Call<QString> password = load(store.secrets);
    fixtures::turnEventLoop();
    keyring.kill();
    EXPECT_EQ(password.end(), u"secret");
}

TEST_F(KeyringSecretsTest, IsNowhereWhenTheBusCannotStartTheKeyring)
{
    sandbox.write(u"services/org.freedesktop.secrets.service"_s,
                  "[D-BUS Service]\nName=org.freedesktop.secrets\nExec=/bin/false\n");
    const fixtures::PrivateBus bus(sandbox);
    Store store(clock, bus.address());
    EXPECT_EQ(load(store.secrets).end(), u"");
    EXPECT_EQ(store.secrets.place(), Place::nowhere);
}

TEST_F(UnlockedKeyringTest, SurvivesTheEndOfTheBus)
{
    bus->end();
    EXPECT_TRUE(fixtures::waitUntil([this] { return store->secrets.place() == Place::nowhere; }));
    EXPECT_EQ(load(store->secrets).end(), u"");
}

TEST_F(KeyringSecretsTest, WorksInAnEventLoopThatIsNotGlibs)
{
    QProcess again;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_NO_GLIB"_s, u"1"_s);
    again.setProcessEnvironment(environment);
    fixtures::endWithTheTest(again);
    const QString tests = u"--gtest_filter=GlibCalls.*:UnlockedKeyringTest.GivesBack*:LockedKeyringTest.AsksTheUser*"_s;
    again.start(QCoreApplication::applicationFilePath(), {tests});
    constexpr int longestMs = 50'000;
    ASSERT_TRUE(again.waitForFinished(longestMs));
    const QByteArray output = again.readAllStandardOutput();
    EXPECT_EQ(again.exitCode(), 0) << output.constData();
    EXPECT_THAT(output.toStdString(), testing::HasSubstr("[  PASSED  ]"));
}

} // namespace
} // namespace vormel
