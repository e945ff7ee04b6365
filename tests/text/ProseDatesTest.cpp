#include "text/ProseDates.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <limits>
#include <vector>

namespace vormel {
namespace {

using namespace Qt::StringLiterals;

struct ProseRow
{
    const char* text;
    const char* dates; ///< in local time, parted by commas
};

void expectDates(const std::vector<ProseRow>& rows)
{
    for (const ProseRow& row : rows) {
        QStringList dates;
        for (const ProseDate& date : datesIn(QString::fromUtf8(row.text)))
            dates << date.moment.toString(u"yyyy-MM-dd HH:mm:ss"_s);
        EXPECT_EQ(dates.join(u", "_s).toStdString(), row.dates) << row.text;
    }
}

void expectNone(const std::vector<const char*>& texts)
{
    for (const char* text : texts)
        expectDates({{text, ""}});
}

TEST(ProseDates, ADateWithoutATimeMeansNoonOfThatDay)
{
    expectDates({{"2026-12-31", "2026-12-31 12:00:00"}, {"31 December 2026", "2026-12-31 12:00:00"}});
}

TEST(ProseDates, AYearOfFourFiguresMayStandFirst)
{
    expectDates({{"until 2026-12-31.", "2026-12-31 12:00:00"},
                 {"2026/12/31", "2026-12-31 12:00:00"},
                 {"2026-1-5", "2026-01-05 12:00:00"},
                 {"2028-02-29", "2028-02-29 12:00:00"},
                 {"9999-12-31", "9999-12-31 12:00:00"}});
    expectNone({"2026.12.31", "2026-31-12", "2026-12/31", "2026-012-31", "2026-12-031", "0000-12-31"});
}

TEST(ProseDates, WithFullStopsTheDayAlwaysComesFirst)
{
    expectDates({{"31.12.2026", "2026-12-31 12:00:00"},
                 {"1.2.2027", "2027-02-01 12:00:00"},
                 {"03.04.2027", "2027-04-03 12:00:00"}});
    expectNone({"12.31.2026", "32.1.2026", "1.13.2026"});
}

TEST(ProseDates, WithSlashesAndHyphensTheDayComesFirstUnlessThatIsNoDate)
{
    expectDates({{"31/12/2026", "2026-12-31 12:00:00"},
                 {"12/31/2026", "2026-12-31 12:00:00"},
                 {"03/04/2027", "2027-04-03 12:00:00"},
                 {"12/12/2026", "2026-12-12 12:00:00"},
                 {"12/13/2026", "2026-12-13 12:00:00"},
                 {"31-12-2026", "2026-12-31 12:00:00"},
                 {"12-31-2026", "2026-12-31 12:00:00"}});
    expectNone({"13/13/2026", "31/12-2026", "31-12/2026", "031/12/2026", "31/012/2026"});
}

TEST(ProseDates, AYearOfTwoFiguresCountsFromTwoThousand)
{
    expectDates({{"31.12.26", "2026-12-31 12:00:00"},
                 {"31/12/26", "2026-12-31 12:00:00"},
                 {"12/31/26", "2026-12-31 12:00:00"},
                 {"01.01.00", "2000-01-01 12:00:00"}});
    expectNone({"1.12.26", "31.1.26", "1/2/26", "31-12-26", "31.12.6", "31.12.126", "31.12.20260", "31 December 26"});
}

TEST(ProseDates, EveryMonthHasItsNamesInFourLanguages)
{
    const std::vector<std::vector<const char*>> names{
        {"January", "Jan", "gennaio", "gen", "Januar", "Jänner", "Jaenner", "janvier", "janv"},
        {"February", "Feb", "febbraio", "Februar", "février", "févr", "fév", "fevrier"},
        {"March", "Mar", "marzo", "März", "Marz", "Maerz", "Mär", "Mrz", "mars"},
        {"April", "Apr", "aprile", "avril", "avr"},
        {"May", "maggio", "mag", "Mai"},
        {"June", "Jun", "giugno", "giu", "Juni", "juin"},
        {"July", "Jul", "luglio", "lug", "Juli", "juillet", "juil"},
        {"August", "Aug", "agosto", "ago", "août", "aout"},
        {"September", "Sep", "Sept", "settembre", "set", "sett", "septembre"},
        {"October", "Oct", "ottobre", "ott", "Oktober", "Okt", "octobre"},
        {"November", "Nov", "novembre"},
        {"December", "Dec", "dicembre", "dic", "Dezember", "Dez", "décembre", "déc", "decembre", "dec"},
    };
    ASSERT_EQ(names.size(), 12U);
    for (std::size_t month = 0; month < names.size(); ++month) {
        const QDate expected(2027, static_cast<int>(month) + 1, 5);
        for (const char* name : names[month]) {
            const std::vector<ProseDate> found = datesIn(u"5 %1 2027"_s.arg(QString::fromUtf8(name)));
            ASSERT_EQ(found.size(), 1U) << name;
            EXPECT_EQ(found[0].moment.date(), expected) << name;
        }
    }
}

TEST(ProseDates, LetterCaseAndTheSpellingOfAccentsDoNotMatter)
{
    expectDates({{"31 DECEMBER 2026", "2026-12-31 12:00:00"},
                 {"31 dÉcEmBrE 2026", "2026-12-31 12:00:00"},
                 {"31 de\u0301cembre 2026", "2026-12-31 12:00:00"},
                 {"1 ma\u0308rz 2027", "2027-03-01 12:00:00"}});
}

TEST(ProseDates, AMonthThatHasANameMayStandBehindItsDay)
{
    expectDates({{"Expires on 31 December 2026", "2026-12-31 12:00:00"},
                 {"31. Dezember 2026", "2026-12-31 12:00:00"},
                 {"1.Januar 2027", "2027-01-01 12:00:00"},
                 {"31. Dez. 2026", "2026-12-31 12:00:00"},
                 {"31 déc. 2026", "2026-12-31 12:00:00"},
                 {"31 dicembre 2026", "2026-12-31 12:00:00"},
                 {"31 Dec, 2026", "2026-12-31 12:00:00"},
                 {"31-Dec-2026", "2026-12-31 12:00:00"},
                 {"31/Dec/2026", "2026-12-31 12:00:00"},
                 {"31\u00A0December\n  2026", "2026-12-31 12:00:00"}});
}

TEST(ProseDates, AMonthThatHasANameMayStandBeforeItsDay)
{
    expectDates({{"Dec 31, 2026", "2026-12-31 12:00:00"},
                 {"Dec. 31, 2026", "2026-12-31 12:00:00"},
                 {"December 31 2026", "2026-12-31 12:00:00"},
                 {"December 31,2026", "2026-12-31 12:00:00"},
                 {"Thursday, Dec-31-2026", "2026-12-31 12:00:00"}});
}

TEST(ProseDates, OrdinalsAreDays)
{
    expectDates({{"December 31st, 2026", "2026-12-31 12:00:00"},
                 {"1st January 2027", "2027-01-01 12:00:00"},
                 {"2ND May 2027", "2027-05-02 12:00:00"},
                 {"May 3rd 2027", "2027-05-03 12:00:00"},
                 {"4th May 2027", "2027-05-04 12:00:00"},
                 {"1er janvier 2027", "2027-01-01 12:00:00"},
                 {"1º gennaio 2027", "2027-01-01 12:00:00"},
                 {"1° gennaio 2027", "2027-01-01 12:00:00"}});
    expectNone({"31x December 2026", "31stDecember 2026", "31sth December 2026"});
}

TEST(ProseDates, ANamedMonthNeedsDayAndYearAndSpaceBetweenThem)
{
    expectNone({"December 2026",
                "31 December",
                "31 Decembers 2026",
                "31 De 2026",
                "31 Decemb 2026",
                "31 cember 2026",
                "31 Smarch 2026",
                "31December 2026",
                "31 December2026",
                "Dec31, 2026",
                "131 December 2026",
                "31 December 20261",
                "December 131, 2026",
                "December 31, 20261",
                "31 and 2026",
                "Decemberdecember 31, 2026",
                "Dec",
                "Dec 31",
                "Dec 31,",
                "31 Dec "});
}

TEST(ProseDates, ATimeBehindTheDateBelongsToIt)
{
    expectDates({{"2026-12-31 10:20", "2026-12-31 10:20:00"},
                 {"2026-12-31 10:20:30", "2026-12-31 10:20:30"},
                 {"2026-12-31T10:20", "2026-12-31 10:20:00"},
                 {"2026-12-31t10:20:30.123", "2026-12-31 10:20:30"},
                 {"31.12.2026, 10:20", "2026-12-31 10:20:00"},
                 {"31.12.2026,10:20", "2026-12-31 10:20:00"},
                 {"31/12/2026 9:05", "2026-12-31 09:05:00"},
                 {"Dec 31, 2026 10:20:30", "2026-12-31 10:20:30"},
                 {"31 December 2026 at 10:20", "2026-12-31 10:20:00"},
                 {"31 dicembre 2026 alle 10:20", "2026-12-31 10:20:00"},
                 {"31 dicembre 2026, alle ore 10:20", "2026-12-31 10:20:00"},
                 {"31 dicembre 2026 ore 10:20", "2026-12-31 10:20:00"},
                 {"31. Dezember 2026 um 10:20 Uhr", "2026-12-31 10:20:00"},
                 {"31 décembre 2026 à 10:20", "2026-12-31 10:20:00"},
                 {"31 décembre 2026 a\u0300 10:20", "2026-12-31 10:20:00"},
                 {"As of 2026-12-31 10:20: premium", "2026-12-31 10:20:00"},
                 {"It ends 2026-12-31 10:20:30.", "2026-12-31 10:20:30"},
                 {"2026-12-31 00:00", "2026-12-31 00:00:00"}});
}

TEST(ProseDates, HalvesOfTheDayAreUnderstood)
{
    expectDates({{"31 December 2026 10:20 PM", "2026-12-31 22:20:00"},
                 {"31 December 2026 10:20 AM", "2026-12-31 10:20:00"},
                 {"31 December 2026 10:20:30pm", "2026-12-31 22:20:30"},
                 {"31 December 2026 at 10:20 p.m.", "2026-12-31 22:20:00"},
                 {"31 December 2026 10:20 a.m., or later", "2026-12-31 10:20:00"},
                 {"31 December 2026 12:20 AM", "2026-12-31 00:20:00"},
                 {"31 December 2026 12:20 PM", "2026-12-31 12:20:00"},
                 {"31 December 2026 10:20 PMs", "2026-12-31 10:20:00"}});
}

TEST(ProseDates, WhatCannotBeATimeIsPassedOver)
{
    expectDates({{"31.12.2026 24:00", "2026-12-31 12:00:00"},
                 {"31.12.2026 10:60", "2026-12-31 12:00:00"},
                 {"31.12.2026 10:20:61", "2026-12-31 12:00:00"},
                 {"31.12.2026 10:2", "2026-12-31 12:00:00"},
                 {"31.12.2026 10:200", "2026-12-31 12:00:00"},
                 {"31.12.2026 110:20", "2026-12-31 12:00:00"},
                 {"31.12.2026 10:20:3", "2026-12-31 12:00:00"},
                 {"31.12.2026 10:20:30:40", "2026-12-31 12:00:00"},
                 {"31.12.2026 13:20 PM", "2026-12-31 12:00:00"},
                 {"31.12.2026 10.20", "2026-12-31 12:00:00"},
                 {"31.12.2026 at noon", "2026-12-31 12:00:00"},
                 {"31.12.2026 10:20x", "2026-12-31 12:00:00"}});
}

TEST(ProseDates, ATimeZoneIsReckonedIntoLocalTime)
{
    const QDateTime expected(QDate(2026, 12, 31), QTime(10, 20, 30), Qt::UTC);
    for (const char* text :
         {"2026-12-31T10:20:30Z", "2026-12-31 10:20:30 UTC", "31 December 2026 10:20:30 GMT", "2026-12-31T10:20:30.5Z",
          "2026-12-31T11:20:30+01:00", "2026-12-31 11:20:30 +0100", "2026-12-31 11:20:30+01",
          "12/31/2026 10:20:30 AM UTC", "2026-12-31T04:50:30-05:30", "2027-01-01T00:20:30+14:00"}) {
        const std::vector<ProseDate> found = datesIn(QString::fromUtf8(text));
        ASSERT_EQ(found.size(), 1U) << text;
        EXPECT_EQ(found[0].moment, expected) << text;
        EXPECT_EQ(found[0].moment.timeSpec(), Qt::LocalTime) << text;
    }
}

/// The local time of Rome while it lives, written so that no list of time zones is needed.
class RomanTime
{
public:
    RomanTime() { qputenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3"); }
    RomanTime(const RomanTime&) = delete;
    RomanTime& operator=(const RomanTime&) = delete;
    ~RomanTime()
    {
        if (m_before.isNull())
            qunsetenv("TZ");
        else
            qputenv("TZ", m_before);
    }

private:
    QByteArray m_before = qgetenv("TZ");
};

TEST(ProseDates, LocalTimeIsThatOfTheUser)
{
    const RomanTime rome;
    expectDates({{"2026-12-31T23:20Z", "2027-01-01 00:20:00"},
                 {"2026-06-30T10:20Z", "2026-06-30 12:20:00"},
                 {"2026-06-30 10:20", "2026-06-30 10:20:00"}});
}

TEST(ProseDates, ATimeThatTheClocksSkipIsTheOneThatTheyShowInstead)
{
    const RomanTime rome;
    expectDates({{"28.03.2027 01:59", "2027-03-28 01:59:00"},
                 {"28.03.2027 02:30", "2027-03-28 03:30:00"},
                 {"28.03.2027 03:00", "2027-03-28 03:00:00"}});
    EXPECT_TRUE(datesIn(u"28.03.2027 02:30").front().moment.isValid());
}

TEST(ProseDates, WhatCannotBeATimeZoneIsNone)
{
    expectDates({{"31.12.2026 10:20-12:00", "2026-12-31 12:00:00"},
                 {"31.12.2026 10:20 -12:00", "2026-12-31 10:20:00"},
                 {"2026-12-31 10:20 +30 days", "2026-12-31 10:20:00"},
                 {"2026-12-31 10:20 +15:00", "2026-12-31 10:20:00"},
                 {"2026-12-31 10:20 +01:60", "2026-12-31 10:20:00"},
                 {"2026-12-31 10:20 +1:00", "2026-12-31 10:20:00"},
                 {"2026-12-31 10:20 - tomorrow", "2026-12-31 10:20:00"},
                 {"2026-12-31 10:20 Zurich", "2026-12-31 10:20:00"}});
    expectNone({"2026-12-31T10:20+15:00", "2026-12-31T25:00", "2026-12-31T", "2026-12-31T10:20x", "31.12.2026T10:20"});
}

TEST(ProseDates, DaysThatNoCalendarHasAreNone)
{
    expectNone({"2026-02-31", "31/02/2026", "02/31/2026", "31.02.2026", "29.02.2026", "31 February 2026",
                "February 29, 2026", "0 May 2026", "00.01.2026", "32 December 2026", "2026-00-10", "2026-13-10"});
}

TEST(ProseDates, WhatBelongsToSomethingLongerIsNone)
{
    expectNone({"1.2.2026.4",
                "4.1.2.2026",
                "10.12.20.26",
                "192.168.10.26",
                "10.20.2026.1:8080",
                "v1.2.2026",
                "1.2.2026b",
                "1.2.2026-4",
                "1.2.2026+5",
                "12026-12-31",
                "2026-12-311",
                "2026-12-31-15",
                "15-2026-12-31",
                "20261231",
                "backup-2026-12-31.zip",
                "backup_2026-12-31",
                "2026-12-31_backup",
                "/2026/12/31/page.html",
                "a/2026-12-31",
                "file.31.12.2026.zip",
                "5:31.12.2026",
                "x31 December 2026",
                "1.31 December 2026",
                "31 December 2026-final",
                "to-Dec 31, 2026x",
                "é31.12.2026",
                "31.12.2026é"});
}

TEST(ProseDates, OtherCharactersMayStandBesideADate)
{
    expectDates({{"<td>31.12.2026</td>", "2026-12-31 12:00:00"},
                 {"\"expires\":\"2026-12-31T10:20:30\"", "2026-12-31 10:20:30"},
                 {"Expires:31.12.2026", "2026-12-31 12:00:00"},
                 {"date=31.12.2026;", "2026-12-31 12:00:00"},
                 {"(31.12.2026)", "2026-12-31 12:00:00"},
                 {"- 31.12.2026 -", "2026-12-31 12:00:00"},
                 {"-31.12.2026-", "2026-12-31 12:00:00"},
                 {"on 31.12.2026: nothing", "2026-12-31 12:00:00"},
                 {"dall'8 dicembre 2026", "2026-12-08 12:00:00"}});
}

TEST(ProseDates, SeveralDatesComeInTheirOrderWithTheirPlaces)
{
    const std::vector<ProseDate> found =
        datesIn(u"From 1.1.2026 10:00 to Dec 31, 2026 (30 February 2026), then 2027-05-05"_s);
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[0].position, 5);
    EXPECT_EQ(found[0].moment, QDateTime(QDate(2026, 1, 1), QTime(10, 0)));
    EXPECT_EQ(found[1].position, 23);
    EXPECT_EQ(found[1].moment, QDateTime(QDate(2026, 12, 31), QTime(12, 0)));
    EXPECT_EQ(found[2].position, 61);
    EXPECT_EQ(found[2].moment, QDateTime(QDate(2027, 5, 5), QTime(12, 0)));
}

TEST(ProseDates, WhatIsNoDateDoesNotHideTheOneBehindIt)
{
    expectDates({{"32 December 31, 2026", "2026-12-31 12:00:00"},
                 {"12 Dec 31, 2026", "2026-12-31 12:00:00"},
                 {"2026 31.12.2026", "2026-12-31 12:00:00"},
                 {"31 31 December 2026", "2026-12-31 12:00:00"},
                 {"May May 5, 2027", "2027-05-05 12:00:00"},
                 {"31.12.2026 1.1.2027", "2026-12-31 12:00:00, 2027-01-01 12:00:00"},
                 {"31.12.2026 at 1.1.2027", "2026-12-31 12:00:00, 2027-01-01 12:00:00"}});
}

TEST(ProseDates, ATextWithoutDatesHasNone)
{
    expectNone({"", " ", "-", "Premium", "10 GB of 50 GB", "10:20", "1.2", "31.12.", "31/12", "2026-12", "2026-12-"});
}

/// Processor time, so that other programs do not count; the least of several runs.
double secondsFor(const QString& text, int runs)
{
    double least = std::numeric_limits<double>::max();
    for (int run = 0; run < runs; ++run) {
        const std::clock_t start = std::clock();
        static_cast<void>(datesIn(text));
        least = std::min(least, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return least;
}

TEST(ProseDates, TheWorkGrowsWithTheTextAndNotFaster)
{
    constexpr qsizetype size = 1024 * 1024;
    constexpr qsizetype steps = 16;
    for (const QString& piece : {u"1"_s, u"12"_s + QString(60, u' '), u"a"_s, u"\u0301"_s, u"1.2."_s, u"Dec 31, "_s,
                                 u"31 Dec "_s, u"31.12.2026 at "_s}) {
        const double small = secondsFor(piece.repeated(size / steps / piece.size()), 3);
        const double large = secondsFor(piece.repeated(size / piece.size()), 1);
        // Sixteen times the text takes sixteen times as long; work that grew with its square would take 256 times.
        EXPECT_LT(large, 64 * std::max(small, 0.001)) << piece.left(20).toStdString();
    }
}

} // namespace
} // namespace vormel
