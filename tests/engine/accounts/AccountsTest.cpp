#include "engine/accounts/Accounts.h"

#include "engine/accounts/AccountRecords.h"
#include "fixtures/FakeSecrets.h"
#include "fixtures/Sandbox.h"
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
