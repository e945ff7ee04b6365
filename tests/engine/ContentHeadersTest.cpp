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

TEST(StartFromContentRange, IsTheNumberBeforeTheDash)
{
    EXPECT_EQ(startFromContentRange("bytes 1000-1999/2000"), 1000);
    EXPECT_EQ(startFromContentRange("bytes 0-99/*"), 0);
    EXPECT_EQ(startFromContentRange("  bytes   5-6/7"), 5);
    EXPECT_EQ(startFromContentRange("bytes */2000"), std::nullopt);
    EXPECT_EQ(startFromContentRange("nonsense"), std::nullopt);
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
