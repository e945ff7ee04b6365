#include "resolvers/terabytez/TerabytezAccountPage.h"

#include "resolvers/terabytez/TerabytezSite.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

WallTime newYear()
{
    return WallTime(std::chrono::milliseconds(QDateTime(QDate(2026, 1, 1), QTime(12, 0)).toMSecsSinceEpoch()));
}

std::optional<PremiumAccountInfo> account(const QString& html)
{
    return parseTerabytezAccount(html, newYear());
}

TEST(TerabytezSite, HasThreePagesOverHttps)
{
    const TerabytezSite site{u"bytez.example"_s};
    EXPECT_EQ(site.rootUrl().absoluteString(), u"https://bytez.example/");
    EXPECT_EQ(site.loginUrl().absoluteString(), u"https://bytez.example/login");
    EXPECT_EQ(site.accountUrl().absoluteString(), u"https://bytez.example/account/");
}

TEST(TerabytezAccountPage, AnyOfThreeTextsTellsTheAccountsOwnPage)
{
    for (const QString& marker : {u"Premium account expires"_s, u"MY AFFILIATE links"_s, u"<td>My username</td>"_s})
        EXPECT_TRUE(isTerabytezAccountPage(u"<p>"_s + marker + u"</p>"_s)) << marker.toStdString();
    for (const QString& other : {u""_s, u"my account"_s, u"premium  account expire"_s, u"username"_s})
        EXPECT_FALSE(isTerabytezAccountPage(other)) << other.toStdString();
}

TEST(TerabytezAccountPage, AWayOutWithoutAPasswordFieldIsASignIn)
{
    EXPECT_TRUE(isSignedInToTerabytez(u"<a href='/?op=LogOut'>bye</a>"_s));
    EXPECT_FALSE(isSignedInToTerabytez(u"<a>log out</a>"_s));
    EXPECT_FALSE(isSignedInToTerabytez({}));
}

TEST(TerabytezAccountPage, AWayOutBesideAPasswordFieldIsTheLoginForm)
{
    const QString page = u"<a>Logout</a><input NAME=\"Password\">"_s;
    EXPECT_FALSE(isSignedInToTerabytez(page));
    EXPECT_TRUE(asksForTerabytezPassword(page));
}

TEST(TerabytezAccountPage, APasswordFieldIsToldByItsNameInDoubleQuotesAlone)
{
    for (const QString& other : {u"<input name='password'>"_s, u"<input name=password>"_s, u"password"_s,
                                 u"<input type=\"password\">"_s, u"<input name=\"password2\">"_s}) {
        EXPECT_FALSE(asksForTerabytezPassword(other)) << other.toStdString();
        EXPECT_TRUE(isSignedInToTerabytez(other + u"logout"_s)) << other.toStdString();
    }
}

TEST(TerabytezAccountPage, TellsPlanExpiryAndTraffic)
{
    const std::optional<PremiumAccountInfo> info =
        account(u"<td>My username</td><td>ann</td> Premium account expires: 31 December 2026. "
                "Traffic available: 10.5 GB of 50 GB"_s);
    ASSERT_TRUE(info);
    EXPECT_EQ(info->plan, u"Premium");
    ASSERT_TRUE(info->expiresAt);
    EXPECT_EQ(info->expiresAt->date(), QDate(2026, 12, 31));
    EXPECT_EQ(info->trafficRemainingBytes, 10'500'000'000);
    EXPECT_EQ(info->trafficTotalBytes, 50'000'000'000);
}

TEST(TerabytezAccountPage, AnyOtherPageTellsNothing)
{
    EXPECT_EQ(account(u"Gold account, valid until 31 December 2026, traffic 5 GB"_s), std::nullopt);
    EXPECT_EQ(account({}), std::nullopt);
}

TEST(TerabytezAccountPage, WhereAPlanMustBeToldAnyOtherPagesIsUnknown)
{
    EXPECT_EQ(terabytezAccountOrUnknown(u"Gold, traffic 5 GB"_s, newYear()),
              (PremiumAccountInfo{u"Unknown"_s, {}, {}, {}}));
    EXPECT_EQ(terabytezAccountOrUnknown(u"my affiliate, gold"_s, newYear()).plan, u"Gold");
}

TEST(TerabytezAccountPage, WhatThePageDoesNotTellStaysEmpty)
{
    EXPECT_EQ(account(u"my affiliate"_s), (PremiumAccountInfo{u"Free"_s, {}, {}, {}}));
}

TEST(TerabytezAccountPage, FourWordsLeadToTheExpiryInTheirOrder)
{
    const QString far(200, u'-');
    struct Row
    {
        QString first;
        QString second;
    };
    const std::vector<Row> rows{
        {u"expir"_s, u"premium until"_s},
        {u"premium until"_s, u"valid until"_s},
        {u"valid until"_s, u"account type"_s},
        {u"account type"_s, u"valid till"_s},
    };
    for (const auto& [first, second] : rows) {
        const QString page = u"my username"_s + far + second + u" 5 May 2027 "_s + far + first + u" 6 June 2028"_s;
        const std::optional<PremiumAccountInfo> info = account(page);
        ASSERT_TRUE(info && info->expiresAt) << first.toStdString();
        EXPECT_EQ(info->expiresAt->date(), QDate(2028, 6, 6)) << first.toStdString();
    }
}

TEST(TerabytezAccountPage, AnExpiryThatHasPassedIsNone)
{
    const std::optional<PremiumAccountInfo> info = account(u"Premium account expired on 5 May 2025"_s);
    ASSERT_TRUE(info);
    EXPECT_EQ(info->expiresAt, std::nullopt);
}

} // namespace
} // namespace vormel
