#include "engine/transfer/ContentHeaders.h"

#include <gtest/gtest.h>

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
    EXPECT_EQ(nameFrom(QStringLiteral("attachment; filename*=UTF-8''a%20b.rar")), QStringLiteral("a b.rar"));
    EXPECT_EQ(nameFrom(QStringLiteral("attachment; filename*=UTF-8'en'%E2%82%AC.rar")), std::nullopt);
    EXPECT_EQ(nameFrom(QStringLiteral("attachment; filename*=UTF-8''%E2%82%AC.rar")), QStringLiteral("€.rar"));
}

TEST(ContentDisposition, LooksForTheExtendedNameInSmallLettersOnly)
{
    EXPECT_EQ(nameFrom(QStringLiteral("FILENAME*=UTF-8''a.rar; filename=b.rar")), QStringLiteral("b.rar"));
}

TEST(ContentDisposition, TakesAnUndecodableExtendedNameAsItStands)
{
    EXPECT_EQ(nameFrom(QStringLiteral("filename*=UTF-8''a%ZZ.rar")), QStringLiteral("a%ZZ.rar"));
}

TEST(ContentDisposition, ReadsPlainNamesQuotedOrNotInAnyLetterCase)
{
    EXPECT_EQ(nameFrom(QStringLiteral("attachment; filename=\"my file.rar\"")), QStringLiteral("my file.rar"));
    EXPECT_EQ(nameFrom(QStringLiteral("attachment; FileName = plain.rar ; size=3")), QStringLiteral("plain.rar"));
    EXPECT_EQ(nameFrom(QStringLiteral("attachment")), std::nullopt);
    EXPECT_EQ(nameFrom(QString()), std::nullopt);
}

TEST(ContentDisposition, CutsANameThatNobodyCouldRead)
{
    const QString name =
        nameFrom(QStringLiteral("filename=\"") + QString(200'000, u'W') + QStringLiteral(".part1.rar\"")).value();
    EXPECT_LE(name.size(), 1000);
    EXPECT_TRUE(name.endsWith(QStringLiteral("W.part1.rar")));
}

TEST(ContentDisposition, NeverNamesAnotherFolder)
{
    EXPECT_EQ(nameFrom(QStringLiteral("filename=\"../../x.rar\"")), QStringLiteral("x.rar"));
    EXPECT_EQ(nameFrom(QStringLiteral("filename=\"..\"")), std::nullopt);
    EXPECT_EQ(nameFrom(QStringLiteral("filename*=UTF-8''..%2F..%2Fetc%2Fpasswd")), QStringLiteral("passwd"));
    EXPECT_EQ(nameFrom(QStringLiteral("filename=\"/\"")), std::nullopt);
}

TEST(ContentDisposition, AnswersAHostileHeaderInTime)
{
    QString header = QStringLiteral("filename*");
    header +=
        QString(1000000, u' ') + QStringLiteral("x; ") + QString(1000, u'\'') + QStringLiteral("filename=\"ok.rar\"");
    EXPECT_EQ(nameFrom(header), QStringLiteral("ok.rar"));
}

TEST(SanitizedHeaderFilename, TrimsQuotesAndBlanks)
{
    EXPECT_EQ(sanitizedHeaderFilename(QStringLiteral(" 'a b.rar' ")), QStringLiteral("a b.rar"));
    EXPECT_EQ(sanitizedHeaderFilename(QStringLiteral("\"\"")), std::nullopt);
    EXPECT_EQ(sanitizedHeaderFilename(QStringLiteral("dir/")), QStringLiteral("dir"));
    EXPECT_EQ(sanitizedHeaderFilename(QStringLiteral(" . ")), std::nullopt);
}
