#include "engine/transfer/ContentHeaders.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;

namespace {

std::optional<QString> nameFrom(const QString& header)
{
    return filenameFromContentDisposition(header);
}

} // namespace

TEST(TotalFromContentRange, IsTheNumberBehindTheLastSlash)
{
    EXPECT_EQ(totalFromContentRange("bytes 1000-1999/2000"), 2000);
    EXPECT_EQ(totalFromContentRange("bytes */77"), 77);
    EXPECT_EQ(totalFromContentRange("bytes 0-0/1/9223372036854775807"), 9223372036854775807);
}

TEST(TotalFromContentRange, IsNothingWithoutANumber)
{
    for (const char* value : {"bytes 0-99/*", "bytes 0-99", "bytes 0-99/", "", "bytes 0-99/12x", "bytes 0-9/-5",
                              "bytes 0-9/9223372036854775808", "bytes 0-9/+5"})
        EXPECT_EQ(totalFromContentRange(value), std::nullopt) << value;
}

TEST(ContentRange, TellsWhichBytesOfHowMany)
{
    using Range = std::pair<qint64, qint64>;
    const auto whole = contentRangeFrom("bytes 1000-1999/2000");
    ASSERT_TRUE(whole);
    EXPECT_EQ(whole->range, Range(1000, 2000));
    EXPECT_EQ(whole->total, 2000);
    const auto unknown = contentRangeFrom("  Bytes   0-99/*");
    ASSERT_TRUE(unknown);
    EXPECT_EQ(unknown->range, Range(0, 100));
    EXPECT_EQ(unknown->total, std::nullopt);
    const auto none = contentRangeFrom("bytes */2000");
    ASSERT_TRUE(none);
    EXPECT_EQ(none->range, std::nullopt);
    EXPECT_EQ(none->total, 2000);
}

TEST(ContentRange, IsNotReadHalf)
{
    for (const char* value :
         {"", "nonsense", "bytes", "bytes 5-4/10", "bytes 0-10/10", "items 0-9/10", "bytes=0-9/10", "0-9/10",
          "bytes 0x1-9/10", "bytes 0-9x/10", "bytes 0-9/10x", "bytes 0-9/1e1", "bytes -9/10", "bytes 0-/10",
          "bytes 0-9", "bytes 0-9/", "bytes 0-9, 20-29/30", "bytes 99999999999999999999-1/2", "bytes 0-9/0x10"})
        EXPECT_FALSE(contentRangeFrom(value)) << value;
}

TEST(ContentDisposition, DecodesTheExtendedName)
{
    EXPECT_EQ(nameFrom(u"attachment; filename*=UTF-8''a%20b.rar"_s), u"a b.rar"_s);
    EXPECT_EQ(nameFrom(u"attachment; filename*=UTF-8'en'%E2%82%AC.rar"_s), std::nullopt);
    EXPECT_EQ(nameFrom(u"attachment; filename*=UTF-8''%E2%82%AC.rar"_s), u"€.rar"_s);
}

TEST(ContentDisposition, LooksForTheExtendedNameInSmallLettersOnly)
{
    EXPECT_EQ(nameFrom(u"FILENAME*=UTF-8''a.rar; filename=b.rar"_s), u"b.rar"_s);
}

TEST(ContentDisposition, TakesAnUndecodableExtendedNameAsItStands)
{
    EXPECT_EQ(nameFrom(u"filename*=UTF-8''a%ZZ.rar"_s), u"a%ZZ.rar"_s);
}

TEST(ContentDisposition, ReadsPlainNamesQuotedOrNotInAnyLetterCase)
{
    EXPECT_EQ(nameFrom(u"attachment; filename=\"my file.rar\""_s), u"my file.rar"_s);
    EXPECT_EQ(nameFrom(u"attachment; FileName = plain.rar ; size=3"_s), u"plain.rar"_s);
    EXPECT_EQ(nameFrom(u"attachment"_s), std::nullopt);
    EXPECT_EQ(nameFrom(QString()), std::nullopt);
}

TEST(ContentDisposition, CutsANameThatNobodyCouldRead)
{
    const QString name = nameFrom(u"filename=\""_s + QString(200'000, u'W') + u".part1.rar\""_s).value();
    EXPECT_LE(name.size(), 1000);
    EXPECT_TRUE(name.endsWith(u"W.part1.rar"_s));
}

TEST(ContentDisposition, NeverNamesAnotherFolder)
{
    EXPECT_EQ(nameFrom(u"filename=\"../../x.rar\""_s), u"x.rar"_s);
    EXPECT_EQ(nameFrom(u"filename=\"..\""_s), std::nullopt);
    EXPECT_EQ(nameFrom(u"filename*=UTF-8''..%2F..%2Fetc%2Fpasswd"_s), u"passwd"_s);
    EXPECT_EQ(nameFrom(u"filename=\"/\""_s), std::nullopt);
}

TEST(ContentDisposition, AnswersAHostileHeaderInTime)
{
    QString header = u"filename*"_s;
    header += QString(1000000, u' ') + u"x; "_s + QString(1000, u'\'') + u"filename=\"ok.rar\""_s;
    EXPECT_EQ(nameFrom(header), u"ok.rar"_s);
}

TEST(SanitizedHeaderFilename, TrimsQuotesAndBlanks)
{
    EXPECT_EQ(sanitizedHeaderFilename(u" 'a b.rar' "_s), u"a b.rar"_s);
    EXPECT_EQ(sanitizedHeaderFilename(u"\"\""_s), std::nullopt);
    EXPECT_EQ(sanitizedHeaderFilename(u"dir/"_s), u"dir"_s);
    EXPECT_EQ(sanitizedHeaderFilename(u" . "_s), std::nullopt);
}

namespace {

struct RetryAfterCase
{
    const char* value;
    std::optional<std::chrono::seconds> wait;
};

class RetryAfterTest : public ::testing::TestWithParam<RetryAfterCase>
{};

} // namespace

TEST_P(RetryAfterTest, IsSecondsOrADateAndAtMostTenMinutes)
{
    // Sun, 06 Nov 1994 08:49:37 GMT
    const WallTime now{std::chrono::seconds(784111777)};
    EXPECT_EQ(retryAfterFrom(GetParam().value, now), GetParam().wait);
}

INSTANTIATE_TEST_SUITE_P(All, RetryAfterTest,
                         ::testing::Values(RetryAfterCase{"1", std::chrono::seconds(1)},
                                           RetryAfterCase{" 120 ", std::chrono::seconds(120)},
                                           RetryAfterCase{"600", std::chrono::seconds(600)},
                                           RetryAfterCase{"601", std::chrono::seconds(600)},
                                           RetryAfterCase{"99999999999999999999999", std::chrono::seconds(600)},
                                           RetryAfterCase{"0", {}}, RetryAfterCase{"", {}}, RetryAfterCase{"-1", {}},
                                           RetryAfterCase{"+1", {}}, RetryAfterCase{"1.5", {}},
                                           RetryAfterCase{"later", {}}, RetryAfterCase{"12 34", {}},
                                           RetryAfterCase{"Sun, 06 Nov 1994 08:50:37 GMT", std::chrono::seconds(60)},
                                           RetryAfterCase{"Sun, 06 Nov 1994 08:49:37 GMT", {}},
                                           RetryAfterCase{"Sun, 06 Nov 1994 08:49:36 GMT", {}},
                                           RetryAfterCase{"Fri, 31 Dec 9999 23:59:59 GMT", std::chrono::seconds(600)},
                                           RetryAfterCase{"Mon, 06 Nov 1994 08:50:37 GMT", {}},
                                           RetryAfterCase{"Sun, 06 Nov 1994 08:50:37", {}},
                                           RetryAfterCase{"Sun, 31 Feb 1995 08:50:37 GMT", {}}));
