#include "model/HostAccount.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

HostAccount account(SupportedHost host, const QString& username, bool isEnabled = true)
{
    return {QUuid::createUuid(), host, username, isEnabled};
}

TEST(HostAccount, ItsPasswordIsKeptByHostAndUserNameAndSurvivesAMoveOfTheService)
{
    const HostAccount mine = account(SupportedHost::filestore, u"a %1 b"_s);
    EXPECT_EQ(keychainAccountKey(mine, HostProfiles()), u"vormel_filestore.example_a %1 b");
    Services moved = Services::builtIn();
    moved.filestoreDomain = u"boxes.test"_s;
    EXPECT_EQ(keychainAccountKey(mine, HostProfiles(moved)), u"vormel_filestore.example_a %1 b");
}

TEST(HostAccount, TheFirstEnabledAccountOfTheHostIsUsed)
{
    const std::vector<HostAccount> accounts = {
        account(SupportedHost::terabytez, u"other"_s), account(SupportedHost::filestore, u"off"_s, false),
        account(SupportedHost::filestore, u"first"_s), account(SupportedHost::filestore, u"second"_s)};
    EXPECT_EQ(firstEnabledAccount(accounts, SupportedHost::filestore), &accounts[2]);
}

TEST(HostAccount, WithoutAnEnabledAccountThereIsNone)
{
    const std::vector<HostAccount> accounts = {account(SupportedHost::filestore, u"off"_s, false)};
    EXPECT_EQ(firstEnabledAccount(accounts, SupportedHost::filestore), nullptr);
    EXPECT_EQ(firstEnabledAccount(accounts, SupportedHost::terabytez), nullptr);
    EXPECT_EQ(firstEnabledAccount({}, SupportedHost::terabytez), nullptr);
}

} // namespace
} // namespace vormel
