#include "model/PremiumAccountInfo.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace vormel {
namespace {

using namespace Qt::StringLiterals;

const QLocale english(QLocale::English, QLocale::UnitedStates);

QDateTime noon(int year, int month, int day)
{
    return {QDate(year, month, day), QTime(12, 0)};
}

WallTime wall(const QDateTime& moment)
{
    return WallTime(std::chrono::milliseconds(moment.toMSecsSinceEpoch()));
}

/// Noon of the first of June 2026.
WallTime now()
{
    return wall(noon(2026, 6, 1));
}

std::optional<QDateTime> expiry(const QString& html)
{
    return parseExpiry(html, {u"expir"_s, u"valid until"_s}, now());
}

TEST(PremiumAccountInfo, WithoutAnExpiryThereIsNoTextOfIt)
{
    EXPECT_EQ(expiresText({}, english), std::nullopt);
}

TEST(PremiumAccountInfo, TheExpiryIsADateWithoutATimeInTheUsersWay)
{
    PremiumAccountInfo info;
    info.expiresAt = QDateTime(QDate(2026, 12, 31), QTime(23, 59, 59));
    const std::vector<std::pair<QLocale, QString>> rows{
        {english, u"Expires Dec 31, 2026"_s},
        {QLocale(QLocale::English, QLocale::UnitedKingdom), u"Expires 31 Dec 2026"_s},
        {QLocale(QLocale::Italian, QLocale::Italy), u"Expires 31 dic 2026"_s},
        {QLocale(QLocale::German, QLocale::Germany), u"Expires 31. Dez. 2026"_s},
        {QLocale(QLocale::French, QLocale::France), u"Expires 31 déc. 2026"_s},
        {QLocale(QLocale::Danish, QLocale::Denmark), u"Expires 31. dec. 2026"_s},
        {QLocale(QLocale::Hungarian, QLocale::Hungary), u"Expires 2026. dec. 31."_s},
        {QLocale(QLocale::Japanese, QLocale::Japan), u"Expires 2026年12月31日"_s},
        {QLocale::c(), u"Expires 31 Dec 2026"_s},
    };
    for (const auto& [locale, text] : rows)
        EXPECT_EQ(expiresText(info, locale)->toStdString(), text.toStdString()) << locale.name().toStdString();
}

TEST(PremiumAccountInfo, NoLanguageShowsTheDayOfTheWeekOrLosesTheYear)
{
    PremiumAccountInfo info;
    info.expiresAt = noon(2026, 12, 31);
    for (const QLocale& locale :
         QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry)) {
        const QString text = *expiresText(info, locale);
        EXPECT_FALSE(text.contains(locale.dayName(4, QLocale::LongFormat))) << text.toStdString();
        EXPECT_TRUE(text.contains(locale.toString(info.expiresAt->date(), u"yyyy"_s))) << text.toStdString();
        EXPECT_EQ(text, text.trimmed());
    }
}

TEST(PremiumAccountInfo, AnExpiryElsewhereIsShownAsTheDayThatItIsHere)
{
    PremiumAccountInfo info;
    info.expiresAt = noon(2026, 12, 31).toOffsetFromUtc(14 * 3600);
    EXPECT_EQ(expiresText(info, english), u"Expires Dec 31, 2026"_s);
    info.expiresAt = noon(2026, 12, 31).toOffsetFromUtc(-14 * 3600);
    EXPECT_EQ(expiresText(info, english), u"Expires Dec 31, 2026"_s);
}

TEST(PremiumAccountInfo, TheTrafficNamesItsTotalWhereItIsKnown)
{
    PremiumAccountInfo info;
    EXPECT_EQ(trafficText(info), std::nullopt);
    info.trafficTotalBytes = 50'000'000'000;
    EXPECT_EQ(trafficText(info), std::nullopt);
    info.trafficRemainingBytes = 10'500'000'000;
    EXPECT_EQ(trafficText(info), u"9.78 GB / 46.57 GB"_s);
    info.trafficTotalBytes = 0;
    EXPECT_EQ(trafficText(info), u"9.78 GB / Zero KB"_s);
    info.trafficTotalBytes.reset();
    EXPECT_EQ(trafficText(info), u"9.78 GB"_s);
    info.trafficRemainingBytes = 0;
    EXPECT_EQ(trafficText(info), u"Zero KB"_s);
}

TEST(PremiumAccountInfo, ThePlanIsTheFirstOfTheListAndNotOfThePage)
{
    const std::vector<std::pair<const char*, const char*>> rows{
        {"gold before premium", "Premium"},
        {"vip before GOLD", "Gold"},
        {"pro before Vip", "VIP"},
        {"PREMIUM", "Premium"},
        {"<b>Pro</b>", "Pro"},
        {"Your profile", "Pro"},
        {"Standard", "Free"},
        {"", "Free"},
    };
    for (const auto& [page, plan] : rows)
        EXPECT_EQ(parsePlan(QString::fromUtf8(page)).toStdString(), plan) << page;
}

TEST(PremiumAccountInfo, TheExpiryIsTheFirstDateToComeNearItsKeyword)
{
    EXPECT_EQ(expiry(u"<b>Expires:</b> 31 December 2026, renewed 1 January 2028"_s), noon(2026, 12, 31));
    EXPECT_EQ(expiry(u"Expires on 2026-12-31 10:20"_s), QDateTime(QDate(2026, 12, 31), QTime(10, 20)));
    EXPECT_EQ(expiry(u"31.12.26 expiry"_s), noon(2026, 12, 31));
    EXPECT_EQ(expiry(u"No keyword 31 December 2026"_s), std::nullopt);
    EXPECT_EQ(expiry(u"It expires some day"_s), std::nullopt);
    EXPECT_EQ(expiry(QString()), std::nullopt);
}

TEST(PremiumAccountInfo, TheKeywordIsAStemInAnyLetterCase)
{
    for (const QString& word : {u"expires"_s, u"EXPIRY"_s, u"Expiration"_s, u"expired"_s, u"unexpired"_s})
        EXPECT_EQ(expiry(word + u" 31.12.2026"_s), noon(2026, 12, 31)) << word.toStdString();
}

TEST(PremiumAccountInfo, DatesInThePastAreSkipped)
{
    EXPECT_EQ(expiry(u"Expiry: since 1.1.2026, to 31.12.2026"_s), noon(2026, 12, 31));
    EXPECT_EQ(expiry(u"Expired 1.1.2026"_s + QString(200, u' ') + u"valid until 31.12.2026"_s), noon(2026, 12, 31));
    EXPECT_EQ(expiry(u"Expired 1.1.2026"_s), std::nullopt);
}

TEST(PremiumAccountInfo, ADateMustBeLaterThanNow)
{
    const QDateTime moment(QDate(2026, 12, 31), QTime(10, 20));
    const QStringList keywords{u"expir"_s};
    const QString page = u"expires 2026-12-31 10:20"_s;
    using namespace std::chrono_literals;
    EXPECT_EQ(parseExpiry(page, keywords, wall(moment) - 1ms), moment);
    EXPECT_EQ(parseExpiry(page, keywords, wall(moment) - 1ns), moment);
    EXPECT_EQ(parseExpiry(page, keywords, wall(moment)), std::nullopt);
    EXPECT_EQ(parseExpiry(page, keywords, wall(moment) + 1ms), std::nullopt);
}

TEST(PremiumAccountInfo, ADateWithoutATimeHoldsUntilNoon)
{
    using namespace std::chrono_literals;
    EXPECT_EQ(parseExpiry(u"expires 31.12.2026"_s, {u"expir"_s}, wall(noon(2026, 12, 31)) - 1ms), noon(2026, 12, 31));
    EXPECT_EQ(parseExpiry(u"expires 31.12.2026"_s, {u"expir"_s}, wall(noon(2026, 12, 31))), std::nullopt);
}

TEST(PremiumAccountInfo, PlansForLifeAreToCome)
{
    EXPECT_EQ(expiry(u"Expires: 31 December 9999"_s), noon(9999, 12, 31));
}

TEST(PremiumAccountInfo, KeywordsAreTriedInTheirOrderAndNotInThatOfThePage)
{
    const QString page = u"valid until 1.1.2027"_s + QString(200, u' ') + u"expires 1.1.2028"_s;
    EXPECT_EQ(parseExpiry(page, {u"expir"_s, u"valid until"_s}, now()), noon(2028, 1, 1));
    EXPECT_EQ(parseExpiry(page, {u"valid until"_s, u"expir"_s}, now()), noon(2027, 1, 1));
    EXPECT_EQ(parseExpiry(page, {}, now()), std::nullopt);
}

TEST(PremiumAccountInfo, OnlyTheFirstOccurrenceOfAKeywordCounts)
{
    EXPECT_EQ(expiry(u"expires"_s + QString(200, u' ') + u"expires 31.12.2026"_s), std::nullopt);
}

TEST(PremiumAccountInfo, TheExpiryMayStandTenCharactersBeforeAndAHundredAndFiftyBehind)
{
    EXPECT_EQ(expiry(u"31.12.2026expir"_s), std::nullopt) << "joined to the word, it is no date";
    EXPECT_EQ(expiry(u"1.12.2026 expir"_s), noon(2026, 12, 1));
    EXPECT_EQ(expiry(u"1.12.2026  expir"_s), std::nullopt) << "what is left says 12.2026";
    EXPECT_EQ(expiry(u"expir"_s + QString(140, u' ') + u"31.12.2026"_s), noon(2026, 12, 31));
    EXPECT_EQ(expiry(u"expir"_s + QString(149, u' ') + u"31.12.2026"_s), std::nullopt);
    EXPECT_EQ(expiry(u"expir"_s + QString(141, u' ') + u"1.12.2026"_s), noon(2026, 12, 1));
    EXPECT_EQ(expiry(u"expir"_s + QString(142, u' ') + u"1.12.2026"_s), std::nullopt) << "what is left says 1.12.202";
}

TEST(PremiumAccountInfo, LettersThatGrowInSmallLettersMoveNothing)
{
    const QChar growing(0x130);
    ASSERT_EQ(QString(growing).toLower().size(), 2);
    EXPECT_EQ(expiry(growing + u" expires 31.12.2026"_s), noon(2026, 12, 31));
    EXPECT_EQ(expiry(QString(1000, growing) + u"expires 31.12.2026"_s), noon(2026, 12, 31));
    EXPECT_EQ(parseTraffic(QString(1000, growing) + u"traffic 10 GB"_s).remainingBytes, 10'000'000'000);
}

TEST(PremiumAccountInfo, TwoSizesNearTheKeywordAreWhatIsLeftAndTheTotal)
{
    EXPECT_EQ(parseTraffic(u"Traffic left: 10.5 GB of 50 GB"_s), (PremiumTraffic{10'500'000'000, 50'000'000'000}));
    EXPECT_EQ(parseTraffic(u"Bandwidth 1 TB / 2 TB / 3 TB"_s), (PremiumTraffic{1'000'000'000'000, 2'000'000'000'000}));
}

TEST(PremiumAccountInfo, ASingleSizeIsWhatIsLeft)
{
    EXPECT_EQ(parseTraffic(u"download limit: 12 MB"_s), (PremiumTraffic{12'000'000, std::nullopt}));
}

TEST(PremiumAccountInfo, WithoutASizeTheNextKeywordIsTried)
{
    const QString gap(300, u' ');
    EXPECT_EQ(parseTraffic(u"download limit 3 GB"_s + gap + u"bandwidth 2 GB"_s + gap + u"traffic 1 GB"_s),
              (PremiumTraffic{1'000'000'000, std::nullopt}));
    EXPECT_EQ(parseTraffic(u"download limit 3 GB"_s + gap + u"BANDWIDTH 2 GB"_s + gap + u"traffic none"_s),
              (PremiumTraffic{2'000'000'000, std::nullopt}));
    EXPECT_EQ(parseTraffic(u"Download Limit 3 GB"_s + gap + u"traffic none"_s),
              (PremiumTraffic{3'000'000'000, std::nullopt}));
    EXPECT_EQ(parseTraffic(u"traffic none"_s + gap + u"traffic 1 GB"_s), PremiumTraffic()) << "only the first counts";
    EXPECT_EQ(parseTraffic(u"1 GB"_s), PremiumTraffic());
    EXPECT_EQ(parseTraffic(QString()), PremiumTraffic());
}

TEST(PremiumAccountInfo, TrafficMayStandTwentyCharactersBeforeAndTwoHundredBehind)
{
    const PremiumTraffic oneGigabyte{1'000'000'000, std::nullopt};
    EXPECT_EQ(parseTraffic(u"1 GB"_s + QString(16, u' ') + u"traffic"_s), oneGigabyte);
    EXPECT_EQ(parseTraffic(u"1 GB"_s + QString(17, u' ') + u"traffic"_s), PremiumTraffic());
    EXPECT_EQ(parseTraffic(u"traffic"_s + QString(196, u' ') + u"1 GB"_s), oneGigabyte);
    EXPECT_EQ(parseTraffic(u"traffic"_s + QString(197, u' ') + u"1 GB"_s), PremiumTraffic());
}

TEST(PremiumAccountInfo, SizesCountInThousands)
{
    const std::vector<std::pair<const char*, std::vector<qint64>>> rows{
        {"1 TB 1 GB 1 MB 1 KB", {1'000'000'000'000, 1'000'000'000, 1'000'000, 1'000}},
        {"1tb,2Gb;3mB 4kb", {1'000'000'000'000, 2'000'000'000, 3'000'000, 4'000}},
        {"10.5 GB", {10'500'000'000}},
        {"0.0001 KB", {0}},
        {"1.2345 KB", {1234}},
        {"1,5 GB", {5'000'000'000}},
        {"1.2.3 GB", {2'300'000'000}},
        {".5 GB", {5'000'000'000}},
        {"5. GB", {}},
        {"5\n\t MB", {5'000'000}},
        {"5 bytes, 5 PB, GB, 5 G B", {}},
        {"5 GBit", {5'000'000'000}},
        {"", {}},
    };
    for (const auto& [text, sizes] : rows)
        EXPECT_EQ(parseSizes(QString::fromUtf8(text)), sizes) << text;
}

TEST(PremiumAccountInfo, ASizeThatNoCountHoldsIsNone)
{
    EXPECT_EQ(parseSizes(u"9223372 TB"_s), (std::vector<qint64>{9'223'372'000'000'000'000}));
    EXPECT_EQ(parseSizes(u"9223373 TB"_s), std::vector<qint64>());
    EXPECT_EQ(parseSizes(u"9223372036854775.808 KB"_s), std::vector<qint64>()) << "the first that no count holds";
    EXPECT_EQ(parseSizes(QString(400, u'9') + u" KB 1 KB"_s), std::vector<qint64>{1000});
    EXPECT_EQ(parseTraffic(u"Traffic: 99999999 TB of 50 GB"_s), (PremiumTraffic{50'000'000'000, std::nullopt}));
    EXPECT_EQ(parseTraffic(u"Traffic: 99999999 TB"_s), PremiumTraffic());
}

TEST(PremiumAccountInfo, AnAccountPageGivesPlanExpiryAndTraffic)
{
    const PremiumAccountInfo info = parseAccountPage(u"<h1>My account</h1><tr><td>Type</td><td>Premium</td></tr>"
                                                     "<tr><td>Expires</td><td>31 December 2026</td></tr>"
                                                     "<tr><td>Traffic left</td><td>10.5 GB of 50 GB</td></tr>"_s,
                                                     now());
    EXPECT_EQ(info, (PremiumAccountInfo{u"Premium"_s, noon(2026, 12, 31), 10'500'000'000, 50'000'000'000}));
    EXPECT_EQ(parseAccountPage(QString(), now()), (PremiumAccountInfo{u"Free"_s, {}, {}, {}}));
}

TEST(PremiumAccountInfo, AnAccountPageMayCallItsExpiryInThreeWays)
{
    for (const QString& words : {u"EXPIRE:"_s, u"Valid until"_s, u"valid till"_s})
        EXPECT_EQ(parseAccountPage(words + u" 31.12.2026"_s, now()).expiresAt, noon(2026, 12, 31))
            << words.toStdString();
    EXPECT_EQ(parseAccountPage(u"premium until 31.12.2026"_s, now()).expiresAt, std::nullopt);
    const QString page = u"valid till 3.12.2026"_s + QString(200, u' ') + u"valid until 2.12.2026"_s +
                         QString(200, u' ') + u"expires 1.12.2026"_s;
    EXPECT_EQ(parseAccountPage(page, now()).expiresAt, noon(2026, 12, 1));
    EXPECT_EQ(parseAccountPage(page.left(400), now()).expiresAt, noon(2026, 12, 2));
}

} // namespace
} // namespace vormel
