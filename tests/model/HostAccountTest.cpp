#include "model/HostAccount.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

HostAccount account(SupportedHost host, const QString& username, bool isEnabled = true)
{
    return {QUuid::createUuid(), host, username, isEnabled};
}

TEST(HostAccount, AHostIsStoredUnderOneNameAndShownUnderAnother)
{
    EXPECT_EQ(rawValue(SupportedHost::filestore), u"filestore.example");
    EXPECT_EQ(displayName(SupportedHost::filestore), u"Filestore.example");
    EXPECT_EQ(rawValue(SupportedHost::terabytez), u"terabytez-host.example");
    EXPECT_EQ(displayName(SupportedHost::terabytez), u"Terabytez");
}

TEST(HostAccount, OnlyTheExactStoredNameGivesAHost)
{
    EXPECT_EQ(supportedHostFromRawValue(u"filestore.example"), SupportedHost::filestore);
    EXPECT_EQ(supportedHostFromRawValue(u"terabytez-host.example"), SupportedHost::terabytez);
    for (const QStringView value : {u"", u"Filestore.example", u"terabytez.example", u"Terabytez", u"other"})
        EXPECT_EQ(supportedHostFromRawValue(value), std::nullopt) << value.toString().toStdString();
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
