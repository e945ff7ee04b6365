#include "text/FileName.h"

#include "fixtures/ProcessorTime.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace vormel {
namespace {

constexpr qsizetype maxNameBytes = 235;

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
    EXPECT_EQ(numberedFileName(u"a.tar.gz"_s, 1), u"a.tar (1).gz");
    EXPECT_EQ(numberedFileName(u"%1 %2"_s, 12), u"%1 %2 (12)");
    EXPECT_EQ(numberedFileName(u".profile"_s, 1), u".profile (1)");
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
    for (const QString& name : {u"file.zip"_s, u".hidden"_s, u"..."_s, u"a b (1) è 日本 🍺.rar"_s, u"con\\aux:*?\"<>|"_s,
                                QString(231, u'x') + u".zip"_s})
        EXPECT_EQ(safeFileName(name), name) << name.toStdString();
}

TEST(SafeFileName, NamesThatStandForAFolderOrForNothingBecomeAnUnderscore)
{
    for (const QString& name : {QString(), u"."_s, u".."_s})
        EXPECT_EQ(safeFileName(name), u"_") << name.toStdString();
}

TEST(SafeFileName, SlashesAndControlCharactersBecomeUnderscores)
{
    EXPECT_EQ(safeFileName(u"/"_s), u"_");
    EXPECT_EQ(safeFileName(u"../../etc/passwd"_s), u".._.._etc_passwd");
    EXPECT_EQ(safeFileName(u"a\nb\r\tc\x1b\x7f"_s), u"a_b__c__");
    EXPECT_EQ(safeFileName(u"a\u0085b\u009fc"_s), u"a_b_c");
    EXPECT_EQ(safeFileName(u"a"_s + QChar(0) + u"b"_s), u"a_b");
}

TEST(SafeFileName, NoNameEndsAsUnfinishedFilesDo)
{
    EXPECT_EQ(safeFileName(u"x.bin.download"_s), u"x.bin");
    EXPECT_EQ(safeFileName(u"x.bin.DownLoad.download"_s), u"x.bin");
    EXPECT_EQ(safeFileName(u".download"_s), u"_");
    EXPECT_EQ(safeFileName(u"..download"_s), u"_");
    EXPECT_EQ(safeFileName(u"...download"_s), u"_");
    EXPECT_EQ(safeFileName(QString(300, u'x') + u".download"_s).right(2), u"xx");
    EXPECT_EQ(safeFileName(u"download"_s), u"download");
    EXPECT_EQ(safeFileName(u"x.download.zip"_s), u"x.download.zip");
}

TEST(ReadableName, AHugeNameIsCutInItsMiddleAndNamesTheSameFile)
{
    for (const QString& filler : {u"x"_s, u"日"_s, u"🍺"_s, u"a🍺"_s}) {
        const QString huge = filler.repeated(200'000) + u".part1.rar"_s;
        const QString cut = readableName(huge);
        EXPECT_LE(cut.size(), 1000);
        EXPECT_TRUE(cut.isValidUtf16());
        EXPECT_EQ(safeFileName(cut), safeFileName(huge));
    }
    EXPECT_EQ(readableName(QString(1000, u'x')), QString(1000, u'x'));
}

TEST(SafeFileName, ALongNameIsCutAndKeepsItsExtension)
{
    EXPECT_EQ(safeFileName(QString(300, u'x') + u".zip"_s), QString(231, u'x') + u".zip"_s);
    EXPECT_EQ(safeFileName(QString(300, u'x')), QString(235, u'x'));
}

TEST(SafeFileName, AnExtensionTooLongToBeOneIsCutLikeTheRest)
{
    const QString name = u"a."_s + QString(300, u'x');
    EXPECT_EQ(safeFileName(name), name.left(maxNameBytes));
}

TEST(SafeFileName, ALongNameIsMeasuredInBytesAndCutBetweenCharacters)
{
    for (const QString& character : {u"è"_s, u"日"_s, u"🍺"_s}) {
        const QString safe = safeFileName(u"x"_s + character.repeated(300) + u".zip"_s);
        const qsizetype bytes = safe.toUtf8().size();
        EXPECT_LE(bytes, maxNameBytes);
        EXPECT_GT(bytes, maxNameBytes - 4) << "more was cut than needed";
        EXPECT_TRUE(safe.endsWith(character + u".zip"_s)) << safe.toStdString();
        EXPECT_TRUE(safe.isValidUtf16());
    }
}

TEST(SafeFileName, ALoneSurrogateIsReplacedBySomethingThatCanBeWritten)
{
    const QString loneHigh = u"a"_s + QChar(0xD83C) + u".zip"_s;
    const QString loneLow = u"a"_s + QChar(0xDF7A) + u".zip"_s;
    for (const QString& name : {loneHigh, loneLow, QString(QChar(0xD83C)), QString(300, QChar(0xD83C))}) {
        const QString safe = safeFileName(name);
        EXPECT_FALSE(safe.isEmpty());
        EXPECT_TRUE(safe.isValidUtf16());
        EXPECT_EQ(QString::fromUtf8(safe.toUtf8()), safe);
    }
}

TEST(SafeFileName, WhatItMadeSafeStaysAsItIs)
{
    const std::vector<QString> names = {u"a/b\n.zip"_s,
                                        u".."_s,
                                        QString(300, u'è') + u".tar.gz"_s,
                                        QString(300, u'.'),
                                        QString(230, u'x') + u"."_s + QString(20, u'日'),
                                        QString(200, u'x') + u"🍺"_s.repeated(50),
                                        QString(300, QChar(0xD83C))};
    for (const QString& name : names) {
        const QString once = safeFileName(name);
        EXPECT_LE(once.toUtf8().size(), maxNameBytes);
        EXPECT_EQ(safeFileName(once), once) << once.toStdString();
    }
}

TEST(SafeFileName, AHugeNameIsCutAtOnce)
{
    const fixtures::ProcessorTime timer;
    for (const QChar c : {QChar(u'x'), QChar(u'日'), QChar(u'/'), QChar(0xD83C)})
        EXPECT_LE(safeFileName(QString(1'000'000, c)).toUtf8().size(), maxNameBytes);
    EXPECT_LT(timer.elapsed(), 1500ms);
}

} // namespace
} // namespace vormel
