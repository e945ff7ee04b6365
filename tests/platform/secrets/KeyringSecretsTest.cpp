#include "platform/secrets/KeyringSecrets.h"

#include "KeyringScene.h"
#include "fixtures/EventLoop.h"
#include "platform/secrets/KeyringItems.h"
#include "platform/storage/FileDescriptor.h"

#include <QCoreApplication>

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/un.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace vormel {
namespace {

using fixtures::load;
using fixtures::save;
using Place = SecretStore::Place;

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

using KeyringSecretsTest = fixtures::KeyringScene;
using UnlockedKeyringTest = fixtures::UnlockedKeyring;

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
    const std::vector<fixtures::RealKeyring::Item> items = keyring->items(fixtures::keyOfPassword);
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items.front().secret, "second");
    const QMap<QString, QString> wanted{{u"account"_s, fixtures::keyOfPassword},
                                        {u"xdg:schema"_s, u"org.vormel.Vormel"_s}};
    EXPECT_EQ(items.front().attributes, wanted);
}

TEST_F(UnlockedKeyringTest, HasNoPasswordForAnotherKey)
{
    keyring->add(fixtures::keyOfPassword, "secret");
    EXPECT_EQ(load(store->secrets, fixtures::keyOfPassword + u'm').end(), u"");
}

TEST_F(UnlockedKeyringTest, RepairsAPasswordThatIsNotUtf8)
{
    keyring->add(fixtures::keyOfPassword, "caf\xe9!");
    EXPECT_EQ(load(store->secrets).end(), u"caf\ufffd!");
}

TEST_F(UnlockedKeyringTest, TakesOneOfSeveralAndLeavesOneAfterTheNextSave)
{
    keyring->add(fixtures::keyOfPassword, "one");
    keyring->add(fixtures::keyOfPassword, "other");
    ASSERT_EQ(keyring->items(fixtures::keyOfPassword).size(), 2U);
    EXPECT_THAT(load(store->secrets).end(), testing::AnyOf(u"one"_s, u"other"_s));
    EXPECT_TRUE(save(store->secrets, u"new"_s).end());
    ASSERT_EQ(keyring->items(fixtures::keyOfPassword).size(), 1U);
    EXPECT_EQ(keyring->items(fixtures::keyOfPassword).front().secret, "new");
}

TEST_F(UnlockedKeyringTest, RemovesAllUnderTheKey)
{
    keyring->add(fixtures::keyOfPassword, "one");
    keyring->add(fixtures::keyOfPassword, "other");
    keyring->add(u"another"_s, "stays");
    EXPECT_TRUE(fixtures::Call<bool>(fixtures::endOf(store->secrets.remove(fixtures::keyOfPassword))).end());
    EXPECT_TRUE(keyring->items(fixtures::keyOfPassword).empty());
    EXPECT_EQ(keyring->items(u"another"_s).size(), 1U);
}

TEST_F(UnlockedKeyringTest, SurvivesAKeyringThatIsKilledInMidCallAndComesBack)
{
    keyring->add(fixtures::keyOfPassword, "secret");
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
    environment.remove(u"GTEST_TOTAL_SHARDS"_s); // or it would run a part of them
    environment.remove(u"GTEST_SHARD_INDEX"_s);
    again.setProcessEnvironment(environment);
    fixtures::endWithTheTest(again);
    const QString tests = u"--gtest_filter=GlibCalls.*:UnlockedKeyringTest.GivesBack*:LockedKeyringTest.AsksTheUser*"_s;
    again.start(QCoreApplication::applicationFilePath(), {tests});
    constexpr int longestMs = 50'000;
    ASSERT_TRUE(again.waitForFinished(longestMs));
    const QByteArray output = again.readAllStandardOutput();
    EXPECT_EQ(again.exitCode(), 0) << output.constData();
    EXPECT_THAT(output.toStdString(), testing::HasSubstr("[  PASSED  ] 6 tests"));
}

} // namespace
} // namespace vormel
