#include "text/FileName.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <vector>

namespace vormel {
namespace {

constexpr qsizetype longestNameBytes = 235;

TEST(FileName, ThePathExtensionStandsBehindTheLastFullStop)
{
    EXPECT_EQ(pathExtension(u"a.zip"), u"zip");
    EXPECT_EQ(pathExtension(u"a.tar.GZ"), u"GZ");
    EXPECT_EQ(pathExtension(u"..x"), u"x");
    EXPECT_EQ(withoutPathExtension(u"a.tar.gz"), u"a.tar");
}

TEST(FileName, NamesWithoutOneWithOnlyAFirstOrWithALastFullStopHaveNoPathExtension)
{
    for (const QStringView name : {u"", u"a", u".profile", u"a.", u".", u"a.b."}) {
        EXPECT_EQ(pathExtension(name), u"") << name.toString().toStdString();
        EXPECT_EQ(withoutPathExtension(name), name) << name.toString().toStdString();
    }
}

TEST(FileName, ANumberStandsBeforeThePathExtension)
{
    EXPECT_EQ(numberedFileName(QStringLiteral("a.tar.gz"), 1), u"a.tar (1).gz");
    EXPECT_EQ(numberedFileName(QStringLiteral("%1 %2"), 12), u"%1 %2 (12)");
    EXPECT_EQ(numberedFileName(QStringLiteral(".profile"), 1), u".profile (1)");
}

TEST(FileName, TheLastComponentStandsBehindTheLastSlashThatIsNotAtTheEnd)
{
    EXPECT_EQ(lastComponent(u"/home/me/file"), u"file");
    EXPECT_EQ(lastComponent(u"file"), u"file");
    EXPECT_EQ(lastComponent(u"/home/me//"), u"me");
    EXPECT_EQ(lastComponent(u"/"), u"");
    EXPECT_EQ(lastComponent(u""), u"");
}

TEST(SafeFileName, ASafeNameComesBackAsItIs)
{
    for (const QString& name : {QStringLiteral("file.zip"), QStringLiteral(".hidden"), QStringLiteral("..."),
                                QStringLiteral("a b (1) è 日本 🍺.rar"), QStringLiteral("con\\aux:*?\"<>|"),
                                QString(231, u'x') + QStringLiteral(".zip")})
        EXPECT_EQ(safeFileName(name), name) << name.toStdString();
}

TEST(SafeFileName, NamesThatStandForAFolderOrForNothingBecomeAnUnderscore)
{
    for (const QString& name : {QString(), QStringLiteral("."), QStringLiteral("..")})
        EXPECT_EQ(safeFileName(name), u"_") << name.toStdString();
}

TEST(SafeFileName, SlashesAndControlCharactersBecomeUnderscores)
{
    EXPECT_EQ(safeFileName(QStringLiteral("/")), u"_");
    EXPECT_EQ(safeFileName(QStringLiteral("../../etc/passwd")), u".._.._etc_passwd");
    EXPECT_EQ(safeFileName(QStringLiteral("a\nb\r\tc\x1b\x7f")), u"a_b__c__");
    EXPECT_EQ(safeFileName(QStringLiteral("a\u0085b\u009fc")), u"a_b_c");
    EXPECT_EQ(safeFileName(QStringLiteral("a") + QChar(0) + QStringLiteral("b")), u"a_b");
}

TEST(SafeFileName, NoNameEndsAsUnfinishedFilesDo)
{
    EXPECT_EQ(safeFileName(QStringLiteral("x.bin.download")), u"x.bin");
    EXPECT_EQ(safeFileName(QStringLiteral("x.bin.DownLoad.download")), u"x.bin");
    EXPECT_EQ(safeFileName(QStringLiteral(".download")), u"_");
    EXPECT_EQ(safeFileName(QStringLiteral("..download")), u"_");
    EXPECT_EQ(safeFileName(QStringLiteral("...download")), u"_");
    EXPECT_EQ(safeFileName(QString(300, u'x') + QStringLiteral(".download")).right(2), u"xx");
    EXPECT_EQ(safeFileName(QStringLiteral("download")), u"download");
    EXPECT_EQ(safeFileName(QStringLiteral("x.download.zip")), u"x.download.zip");
}

TEST(ReadableName, AHugeNameIsCutInItsMiddleAndNamesTheSameFile)
{
    for (const QString& filler :
         {QStringLiteral("x"), QStringLiteral("日"), QStringLiteral("🍺"), QStringLiteral("a🍺")}) {
        const QString huge = filler.repeated(200'000) + QStringLiteral(".part1.rar");
        const QString cut = readableName(huge);
        EXPECT_LE(cut.size(), 1000);
        EXPECT_TRUE(cut.isValidUtf16());
        EXPECT_EQ(safeFileName(cut), safeFileName(huge));
    }
    EXPECT_EQ(readableName(QString(1000, u'x')), QString(1000, u'x'));
}

TEST(SafeFileName, ALongNameIsCutAndKeepsItsExtension)
{
    EXPECT_EQ(safeFileName(QString(300, u'x') + QStringLiteral(".zip")), QString(231, u'x') + QStringLiteral(".zip"));
    EXPECT_EQ(safeFileName(QString(300, u'x')), QString(235, u'x'));
}

TEST(SafeFileName, AnExtensionTooLongToBeOneIsCutLikeTheRest)
{
    const QString name = QStringLiteral("a.") + QString(300, u'x');
    EXPECT_EQ(safeFileName(name), name.left(longestNameBytes));
}

TEST(SafeFileName, ALongNameIsMeasuredInBytesAndCutBetweenCharacters)
{
    for (const QString& character : {QStringLiteral("è"), QStringLiteral("日"), QStringLiteral("🍺")}) {
        const QString safe = safeFileName(QStringLiteral("x") + character.repeated(300) + QStringLiteral(".zip"));
        const qsizetype bytes = safe.toUtf8().size();
        EXPECT_LE(bytes, longestNameBytes);
        EXPECT_GT(bytes, longestNameBytes - 4) << "more was cut than needed";
        EXPECT_TRUE(safe.endsWith(character + QStringLiteral(".zip"))) << safe.toStdString();
        EXPECT_TRUE(safe.isValidUtf16());
    }
}

TEST(SafeFileName, ALoneSurrogateIsReplacedBySomethingThatCanBeWritten)
{
    const QString loneHigh = QStringLiteral("a") + QChar(0xD83C) + QStringLiteral(".zip");
    const QString loneLow = QStringLiteral("a") + QChar(0xDF7A) + QStringLiteral(".zip");
    for (const QString& name : {loneHigh, loneLow, QString(QChar(0xD83C)), QString(300, QChar(0xD83C))}) {
        const QString safe = safeFileName(name);
        EXPECT_FALSE(safe.isEmpty());
        EXPECT_TRUE(safe.isValidUtf16());
        EXPECT_EQ(QString::fromUtf8(safe.toUtf8()), safe);
    }
}

TEST(SafeFileName, WhatItMadeSafeStaysAsItIs)
{
    const std::vector<QString> names = {QStringLiteral("a/b\n.zip"),
                                        QStringLiteral(".."),
                                        QString(300, u'è') + QStringLiteral(".tar.gz"),
                                        QString(300, u'.'),
                                        QString(230, u'x') + QStringLiteral(".") + QString(20, u'日'),
                                        QString(200, u'x') + QStringLiteral("🍺").repeated(50),
                                        QString(300, QChar(0xD83C))};
    for (const QString& name : names) {
        const QString once = safeFileName(name);
        EXPECT_LE(once.toUtf8().size(), longestNameBytes);
        EXPECT_EQ(safeFileName(once), once) << once.toStdString();
    }
}

TEST(SafeFileName, AHugeNameIsCutAtOnce)
{
    QElapsedTimer timer;
    timer.start();
    for (const QChar c : {QChar(u'x'), QChar(u'日'), QChar(u'/'), QChar(0xD83C)})
        EXPECT_LE(safeFileName(QString(1'000'000, c)).toUtf8().size(), longestNameBytes);
    EXPECT_LT(timer.elapsed(), 1500);
}

} // namespace
} // namespace vormel
