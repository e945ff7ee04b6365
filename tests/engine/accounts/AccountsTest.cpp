#include "engine/accounts/Accounts.h"

#include "engine/accounts/AccountRecords.h"
#include "fixtures/FakeSecrets.h"
#include "fixtures/Sandbox.h"
#include "platform/async/Spawn.h"
#include "platform/storage/FileWriter.h"
#include "platform/storage/UserDefaults.h"

#include <qcoro/qcorotask.h>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;

namespace {

const QString storeKey = u"vormel_accounts"_s;

HostAccount account(SupportedHost host, const QString& username, bool isEnabled = true)
{
    return {QUuid::createUuid(), host, username, isEnabled};
}

class AccountsTest : public ::testing::Test
{
protected:
    void store(const char* json) { defaults.setObject(storeKey, QString::fromUtf8(json)); }
    static QString keyOf(const HostAccount& account) { return keychainAccountKey(account, HostProfiles()); }
    /// The user names of those whose logins are to be forgotten from here on.
    static std::shared_ptr<QStringList> forgotten(Accounts& accounts)
    {
        auto names = std::make_shared<QStringList>();
        QObject::connect(&accounts, &Accounts::credentialsChanged,
                         [names](const HostAccount& account) { *names << account.username; });
        return names;
    }
    [[nodiscard]] QString stored() const { return defaults.stringForKey(storeKey).value_or(QString()); }

    fixtures::Sandbox sandbox;
    FileWriter writer;
    UserDefaults defaults{sandbox.path(u"preferences.json"_s), writer};
    fixtures::FakeSecrets secrets;
    HostProfiles profiles;
};

constexpr const char* oneRecord =
    R"([{"id":"0E3B2E0C-6F0A-4C5B-9D55-0B7A4C1D9A11","host":"files.terabytez.example","username":"a \"b\"","isEnabled":false}])";

} // namespace

TEST_F(AccountsTest, AreStoredInTheirOrderAndReadAgain)
{
    const std::vector list{account(SupportedHost::terabytez, u"one"_s),
                           account(SupportedHost::filestore, u"twö"_s, false)};
    {
        Accounts accounts(defaults, secrets, profiles);
        EXPECT_TRUE(accounts.list().empty());
        int changes = 0;
        QObject::connect(&accounts, &Accounts::changed, [&changes] { ++changes; });
        accounts.set(list);
        EXPECT_EQ(changes, 1);
    }
    EXPECT_EQ(Accounts(defaults, secrets, profiles).list(), list);
}

TEST_F(AccountsTest, HaveFourKeysInARecord)
{
    store(oneRecord);
    const Accounts accounts(defaults, secrets, profiles);
    ASSERT_EQ(accounts.list().size(), 1U);
    EXPECT_EQ(accounts.list().front().host, SupportedHost::terabytez);
    EXPECT_EQ(accounts.list().front().username, u"a \"b\"");
    EXPECT_FALSE(accounts.list().front().isEnabled);
    EXPECT_EQ(encodeAccounts(accounts.list(), profiles), oneRecord);
}

TEST_F(AccountsTest, AreWrittenBackAtOnceInTodaysForm)
{
    store(R"([ {"isEnabled": true, "username": "x", "host": "filestore.example",
                "id": "{0e3b2e0c-6f0a-4c5b-9d55-0b7a4c1d9a11}", "more": 1} ])");
    const Accounts accounts(defaults, secrets, profiles);
    EXPECT_EQ(stored(), uR"([{"id":"0E3B2E0C-6F0A-4C5B-9D55-0B7A4C1D9A11","host":"filestore.example","username":"x",)"
                        uR"("isEnabled":true}])"_s);
}

TEST_F(AccountsTest, ThatCannotBeUnderstoodAreNoneAndStayAsTheyAre)
{
    const QByteArray id = R"("id":"0E3B2E0C-6F0A-4C5B-9D55-0B7A4C1D9A11")";
    const QByteArray host = R"("host":"filestore.example")";
    const QByteArray rest = R"("username":"x","isEnabled":true)";
    for (const QByteArray& json :
         {QByteArray(), QByteArray("{}"), QByteArray("["), QByteArray("[1]"), "[{" + host + ',' + rest + "}]",
          "[{\"id\":\"1\"," + host + ',' + rest + "}]", "[{" + id + ",\"host\":\"Filestore.example\"," + rest + "}]",
          "[{" + id + ',' + host + ",\"username\":1,\"isEnabled\":true}]",
          "[{" + id + ',' + host + ",\"username\":\"x\",\"isEnabled\":1}]",
          "[{" + id + ',' + host + ',' + rest + "},{}]"}) {
        store(json.constData());
        EXPECT_TRUE(Accounts(defaults, secrets, profiles).list().empty()) << json.constData();
        EXPECT_EQ(stored(), QString::fromUtf8(json));
    }
    defaults.setObject(storeKey, 7);
    EXPECT_TRUE(Accounts(defaults, secrets, profiles).list().empty());
}

TEST_F(AccountsTest, ThatCannotBeUnderstoodAreKeptBesideOnceTheUserChangesTheList)
{
    const QString beside = storeKey + u".unreadable"_s;
    const auto change = [this] {
        Accounts(defaults, secrets, profiles).set({account(SupportedHost::filestore, u"x"_s)});
    };
    store(oneRecord);
    change();
    EXPECT_EQ(defaults.objectForKey(beside), std::nullopt);
    store("[1]");
    change();
    EXPECT_EQ(defaults.stringForKey(beside), u"[1]");
    EXPECT_EQ(Accounts(defaults, secrets, profiles).list().size(), 1U);
    change();
    defaults.setObject(storeKey, 7);
    change();
    EXPECT_EQ(defaults.stringForKey(beside), u"[1]");
    EXPECT_EQ(defaults.objectForKey(beside + u".2"_s), QJsonValue(7));
    EXPECT_EQ(defaults.objectForKey(beside + u".3"_s), std::nullopt);
}

TEST_F(AccountsTest, GiveTheFirstEnabledOneOfAHost)
{
    Accounts accounts(defaults, secrets, profiles);
    accounts.set({account(SupportedHost::filestore, u"off"_s, false), account(SupportedHost::filestore, u"on"_s),
                  account(SupportedHost::filestore, u"later"_s)});
    ASSERT_TRUE(accounts.firstEnabled(SupportedHost::filestore));
    EXPECT_EQ(accounts.firstEnabled(SupportedHost::filestore)->username, u"on");
    EXPECT_EQ(accounts.firstEnabled(SupportedHost::terabytez), nullptr);
}

TEST_F(AccountsTest, OfOneHostAndUserNameShareTheirPassword)
{
    Accounts accounts(defaults, secrets, profiles);
    const HostAccount one = account(SupportedHost::terabytez, u"a %1 b"_s);
    const HostAccount twin = account(SupportedHost::terabytez, u"a %1 b"_s, false);
    QCoro::waitFor(accounts.savePassword(one, u"first"_s));
    QCoro::waitFor(accounts.savePassword(twin, u"second"_s));
    EXPECT_EQ(secrets.kept, (QHash<QString, QString>{{u"vormel_files.terabytez.example_a %1 b"_s, u"second"_s}}));
    EXPECT_EQ(QCoro::waitFor(accounts.loadPassword(one)), u"second");
}

TEST_F(AccountsTest, KeepPasswordsOfOtherHostsAndUserNamesApart)
{
    Accounts accounts(defaults, secrets, profiles);
    const HostAccount one = account(SupportedHost::filestore, u"me"_s);
    const HostAccount other = account(SupportedHost::terabytez, u"me"_s);
    QCoro::waitFor(accounts.savePassword(one, u"first"_s));
    QCoro::waitFor(accounts.savePassword(other, u"second"_s));
    QCoro::waitFor(accounts.deletePassword(one));
    EXPECT_EQ(QCoro::waitFor(accounts.loadPassword(one)), u"");
    EXPECT_EQ(QCoro::waitFor(accounts.loadPassword(other)), u"second");
}

TEST_F(AccountsTest, PutNoPasswordIntoThePreferences)
{
    Accounts accounts(defaults, secrets, profiles);
    const HostAccount one = account(SupportedHost::filestore, u"me"_s);
    accounts.set({one});
    QCoro::waitFor(accounts.savePassword(one, u"canary"_s));
    EXPECT_FALSE(stored().contains(u"canary"));
}

TEST_F(AccountsTest, SurviveAMoveOfTheServiceWithTheirPasswords)
{
    const std::vector list{account(SupportedHost::filestore, u"me"_s), account(SupportedHost::terabytez, u"you"_s)};
    {
        Accounts accounts(defaults, secrets, profiles);
        accounts.set(list);
        QCoro::waitFor(accounts.savePassword(list.front(), u"first"_s));
    }
    Services services = Services::builtIn();
    services.filestoreDomain = u"boxes.test"_s;
    services.terabytezDomain = u"terra.test"_s;
    const HostProfiles moved(services);
    Accounts accounts(defaults, secrets, moved);
    EXPECT_EQ(accounts.list(), list);
    EXPECT_EQ(QCoro::waitFor(accounts.loadPassword(list.front())), u"first");
}

TEST_F(AccountsTest, ThatAreNewComeLastWithTheirPassword)
{
    Accounts accounts(defaults, secrets, profiles);
    const HostAccount one = account(SupportedHost::terabytez, u"one"_s);
    const HostAccount two = account(SupportedHost::filestore, u"two"_s, false);
    QCoro::waitFor(accounts.put(one, u"first"_s));
    QCoro::waitFor(accounts.put(two, u"second"_s));
    EXPECT_EQ(accounts.list(), (std::vector{one, two}));
    EXPECT_EQ(secrets.kept, (QHash<QString, QString>{{keyOf(one), u"first"_s}, {keyOf(two), u"second"_s}}));
    EXPECT_EQ(Accounts(defaults, secrets, profiles).list(), accounts.list());
}

TEST_F(AccountsTest, ThatAreEditedKeepTheirPlaceAndLeaveNoPasswordUnderTheFormerLogin)
{
    Accounts accounts(defaults, secrets, profiles);
    HostAccount one = account(SupportedHost::filestore, u"one"_s);
    const HostAccount two = account(SupportedHost::filestore, u"two"_s);
    QCoro::waitFor(accounts.put(one, u"first"_s));
    QCoro::waitFor(accounts.put(two, u"second"_s));
    one.username = u"uno"_s;
    QCoro::waitFor(accounts.put(one, u"third"_s));
    EXPECT_EQ(accounts.list(), (std::vector{one, two}));
    EXPECT_EQ(secrets.kept, (QHash<QString, QString>{{keyOf(one), u"third"_s}, {keyOf(two), u"second"_s}}));
    one.host = SupportedHost::terabytez;
    QCoro::waitFor(accounts.put(one, u"fourth"_s));
    EXPECT_EQ(secrets.kept, (QHash<QString, QString>{{keyOf(one), u"fourth"_s}, {keyOf(two), u"second"_s}}));
}

TEST_F(AccountsTest, ThatGoTakeTheirPasswordWithThem)
{
    Accounts accounts(defaults, secrets, profiles);
    const HostAccount one = account(SupportedHost::filestore, u"one"_s);
    const HostAccount two = account(SupportedHost::filestore, u"two"_s);
    QCoro::waitFor(accounts.put(one, u"first"_s));
    QCoro::waitFor(accounts.put(two, u"second"_s));
    QCoro::waitFor(accounts.remove(one.id));
    QCoro::waitFor(accounts.remove(QUuid::createUuid()));
    EXPECT_EQ(accounts.list(), std::vector{two});
    EXPECT_EQ(secrets.kept, (QHash<QString, QString>{{keyOf(two), u"second"_s}}));
    EXPECT_EQ(Accounts(defaults, secrets, profiles).list(), std::vector{two});
}

TEST_F(AccountsTest, ThatGoOrGetAnotherNameLeaveThePasswordToTheOthersOfTheirLogin)
{
    Accounts accounts(defaults, secrets, profiles);
    HostAccount one = account(SupportedHost::filestore, u"me"_s);
    const HostAccount twin = account(SupportedHost::filestore, u"me"_s);
    const HostAccount third = account(SupportedHost::filestore, u"me"_s);
    const QString key = keyOf(one);
    for (const HostAccount& each : {one, twin, third})
        QCoro::waitFor(accounts.put(each, u"shared"_s));
    one.username = u"other"_s;
    QCoro::waitFor(accounts.put(one, u"own"_s));
    EXPECT_EQ(secrets.kept.value(key), u"shared");
    QCoro::waitFor(accounts.remove(twin.id));
    EXPECT_EQ(secrets.kept.value(key), u"shared");
    QCoro::waitFor(accounts.remove(third.id));
    EXPECT_FALSE(secrets.kept.contains(key));
}

TEST_F(AccountsTest, SayWhoseLoginMustBeForgotten)
{
    Accounts accounts(defaults, secrets, profiles);
    const auto names = forgotten(accounts);
    HostAccount one = account(SupportedHost::filestore, u"one"_s);
    secrets.lock();
    spawn(accounts.put(one, u"first"_s));
    EXPECT_TRUE(names->isEmpty()); // the old password is still there
    secrets.unlock();
    EXPECT_EQ(names->join(u' '), u"one");
    one.username = u"uno"_s;
    QCoro::waitFor(accounts.put(one, u"first"_s));
    EXPECT_EQ(names->join(u' '), u"one one uno");
    secrets.lock();
    spawn(accounts.remove(one.id));
    EXPECT_EQ(names->join(u' '), u"one one uno uno");
}

TEST_F(AccountsTest, ChangeWithoutWaitingForALockedKeyring)
{
    Accounts accounts(defaults, secrets, profiles);
    const HostAccount one = account(SupportedHost::filestore, u"one"_s);
    secrets.lock();
    spawn(accounts.put(one, u"first"_s));
    EXPECT_EQ(accounts.list(), std::vector{one});
    spawn(accounts.remove(one.id));
    EXPECT_TRUE(accounts.list().empty());
    secrets.unlock();
    EXPECT_TRUE(secrets.kept.isEmpty());
}

TEST_F(AccountsTest, MayBeGoneBeforeALockedKeyringAnswers)
{
    const HostAccount one = account(SupportedHost::filestore, u"one"_s);
    const HostAccount renamed{one.id, one.host, u"uno"_s, true};
    {
        Accounts accounts(defaults, secrets, profiles);
        QCoro::waitFor(accounts.put(one, u"first"_s));
        secrets.lock();
        spawn(accounts.put(renamed, u"second"_s));
    }
    secrets.unlock();
    EXPECT_EQ(secrets.kept.value(keyOf(renamed)), u"second");
}

TEST_F(AccountsTest, SayWhenTheirPasswordsGetAnotherPlace)
{
    const Accounts accounts(defaults, secrets, profiles);
    int changes = 0;
    QObject::connect(&accounts, &Accounts::passwordPlaceChanged, [&changes] { ++changes; });
    EXPECT_EQ(accounts.passwordPlace(), SecretStore::Place::keyring);
    secrets.moveTo(SecretStore::Place::ownFile);
    EXPECT_EQ(accounts.passwordPlace(), SecretStore::Place::ownFile);
    EXPECT_EQ(changes, 1);
}
