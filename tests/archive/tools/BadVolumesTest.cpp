#include "archive/tools/BadVolumes.h"

#include "fixtures/ProcessorTime.h"
#include "platform/process/OutputLines.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace vormel {
namespace {

const QString first = u"/x/a.part1.rar"_s;

BadVolumes readWhole(const QString& output, const QString& archive = first)
{
    BadVolumes blame(archive);
    OutputLines lines([&blame](const QByteArray& line) { blame.readLine(line); });
    lines.append(output.toUtf8());
    lines.end();
    return blame;
}

QStringList badVolumes(const QString& output, const QString& archive = first)
{
    return readWhole(output, archive).names();
}

QStringList partsOfA(std::initializer_list<int> numbers)
{
    QStringList names;
    for (const int number : numbers)
        names << u"a.part%1.rar"_s.arg(number);
    return names;
}

/// How the tools tell that a member is tested.
QString member(const QString& name)
{
    return u"Testing     "_s + name + u"          \b\b\b\b 27%\b\b\b\b\b  OK \n"_s;
}

TEST(BadVolumes, AVolumeThatCannotBeFoundIsNamedWithoutItsFolder)
{
    EXPECT_EQ(badVolumes(u"Cannot find volume /x/a.part3.rar\n"_s), partsOfA({3}));
    EXPECT_EQ(badVolumes(u"Cannot find volume /x/a.part3.rar"_s, u"a.part1.rar"_s), partsOfA({3}));
    EXPECT_EQ(badVolumes(u"cannot FIND volume   a.part3.rar     \n"_s), partsOfA({3}));
}

TEST(BadVolumes, AVolumeWithAChecksumErrorIsNamed)
{
    EXPECT_EQ(badVolumes(u"big.bin : packed data checksum error in volume /x/a.part3.rar"_s), partsOfA({3}));
    EXPECT_EQ(badVolumes(u"Checksum error in /x/a.rar"_s, u"/x/a.rar"_s), QStringList{u"a.rar"_s});
}

TEST(BadVolumes, AVolumeBeforeAWordOfComplaintIsNamed)
{
    for (const QString& line : {u"/x/a.part2.rar - CRC failed"_s, u"/x/a.part2.rar : checksum mismatch"_s,
                                u"/x/a.part2.rar is corrupt"_s, u"/x/a.part2.rar: damaged"_s,
                                u"Volume /x/A.PART2.rar  crc bad"_s.toLower(), u"/x/a.part2.rar y is Damaged"_s})
        EXPECT_EQ(badVolumes(line), partsOfA({2})) << line.toStdString();
}

TEST(BadVolumes, AWordOfComplaintInAnotherLineOrBeforeTheVolumeNamesNobody)
{
    EXPECT_EQ(badVolumes(u"Testing archive /x/a.part3.rar\r\n\r\n\nCRC failed in it\n"_s), QStringList());
    EXPECT_EQ(badVolumes(u"failed: /x/a.part2.rar\nfine\n"_s), QStringList());
}

TEST(BadVolumes, AVolumeNamedTwiceAppearsOnceAndTheNamesAreSorted)
{
    EXPECT_EQ(badVolumes(u"Cannot find volume /x/a.part4.rar\n"
                         u"checksum error in volume /x/a.part3.rar\n"
                         u"/x/a.part3.rar - CRC failed\n"_s),
              partsOfA({3, 4}));
}

TEST(BadVolumes, ACorruptHeaderWithoutAVolumeBlamesTheTestedArchive)
{
    for (const QString& line : {u"Corrupt header\n"_s, u"the HEADER IS CORRUPT\n"_s, u"Corrupt header is found"_s,
                                u"Main archive header is corrupt"_s, u"film.mkv - the file header is corrupt"_s})
        EXPECT_EQ(badVolumes(line), partsOfA({1})) << line.toStdString();
}

TEST(BadVolumes, ACorruptHeaderOfALaterVolumeBlamesThatAlone)
{
    EXPECT_EQ(badVolumes(u"Testing archive /x/a.part1.rar\n"_s + member(u"f"_s) +
                         u"Testing archive /x/a.part3.rar\nCorrupt header is found\n"
                         u"Main archive header is corrupt\n"_s),
              partsOfA({3}));
}

TEST(BadVolumes, LettersStayAsTheToolWroteThem)
{
    EXPECT_EQ(badVolumes(u"Cannot find volume /x/A.PART2.RAR"_s), QStringList{u"A.PART2.RAR"_s});
}

TEST(BadVolumes, AFileThatIsNoArchiveIsNamed)
{
    EXPECT_EQ(badVolumes(u"ERROR: Bad archive /x/a.part3.rar\n\nProgram aborted\n"_s), partsOfA({3}));
    EXPECT_EQ(badVolumes(u"/x/a.part1.rar is not RAR archive\nNo files to extract\n"_s), partsOfA({1}));
}

TEST(BadVolumes, AVolumeThatEndsTooEarlyIsTheOneBeingTested)
{
    const QString output = u"\nTesting archive /x/a.part1.rar\n\nTesting     f   \b\b\b\b 27%\n"
                           u"\nTesting archive /x/a.part2.rar\n\nUnexpected end of archive\n"
                           u"...         f   \b\b\b\b 57%\nf    - checksum error\n"
                           u"Unexpected end of archive\n\nTesting archive /x/a.part3.rar\n\n"_s;
    EXPECT_EQ(badVolumes(output), partsOfA({2}));
}

TEST(BadVolumes, ABadFileBlamesTheVolumeInWhichItEndsUnlessAnotherIsToBlame)
{
    const QString start = u"Testing archive /x/a.part1.rar\n\nTesting     f    \b\b\b\b100%\n"_s;
    const QString named = u"f   : packed data checksum error in volume /x/a.part1.rar\n"_s;
    const QString end = u"\nTesting archive /x/a.part2.rar\n\n...         f   \b\b\b\b100%\nf   - checksum error\n"_s;
    EXPECT_EQ(badVolumes(start + end), partsOfA({2}));
    EXPECT_EQ(badVolumes(start + named + end), partsOfA({1}));
}

TEST(BadVolumes, BlanksInTheSetsOwnPathHideNoVolume)
{
    const QString output = u"Cannot find volume /x y/My own film.part3.rar\n"
                           u"checksum error in volume /x y/My own film.part2.rar\n"_s;
    EXPECT_EQ(badVolumes(output, u"/x y/My own film.part1.rar"_s),
              (QStringList{u"My own film.part2.rar"_s, u"My own film.part3.rar"_s}));
    EXPECT_EQ(badVolumes(u"Cannot find volume /x y/a.part3.rar\n"_s, u"/x y/a.part1.rar"_s), partsOfA({3}));
}

TEST(BadVolumes, OutputThatBlamesNobodyNamesNobody)
{
    EXPECT_EQ(badVolumes(QString()), QStringList());
    EXPECT_EQ(badVolumes(u"Total errors: 1\nProgram aborted\n"_s), QStringList());
}

class MemberName : public ::testing::TestWithParam<QString>
{};

TEST_P(MemberName, AMemberIsNeverTakenForAVolumeWhateverItIsCalled)
{
    const QString& name = GetParam();
    const QString start = u"Testing archive /x/a.part1.rar\n\n"_s + member(name) + u"Testing     "_s + name +
                          u"     \b\b\b\b 33%\n\n"_s + u"Testing archive /x/a.part2.rar\n\n...         "_s + name +
                          u"     \b\b\b\b 40%\n"_s;
    const QString named = u"Cannot find volume /x/a.part3.rar\n"_s;
    const QString bad = name + u" - checksum error\n"_s;
    EXPECT_EQ(badVolumes(start), QStringList());
    EXPECT_EQ(badVolumes(start + named + bad), partsOfA({3}));
    EXPECT_EQ(badVolumes(start + name + u" : packed data checksum error in volume /x/a.part2.rar\n"_s + bad),
              partsOfA({2}));
    EXPECT_FALSE(readWhole(start + named + bad).wantsPassword());
}

INSTANTIATE_TEST_SUITE_P(
    BadVolumes, MemberName,
    ::testing::Values(u"Damaged film.mkv"_s, u"Failed.txt"_s, u"CRC.sfv"_s, u"a.part1.rar"_s, u"sub/a.part4.rar"_s,
                      u"a.part4.rar - checksum error"_s, u"a.part4.rar is not RAR archive"_s,
                      u"a.part4.rar is corrupt"_s, u"Cannot find volume a.part4.rar"_s,
                      u"Cannot find volume /x/a.part4.rar"_s, u"Unexpected end of archive"_s,
                      u"Corrupt header is found"_s, u"header is corrupt"_s, u"Testing archive /x/a.part4.rar"_s,
                      u"checksum error in volume a.part4.rar"_s, u"ERROR: Bad archive x.rar"_s,
                      u"Enter password (will not be echoed) for x:"_s, u"one\nUnexpected end of archive\ntwo"_s,
                      u"one\nCorrupt header is found\ntwo"_s, u"one\nCannot find volume a.part4.rar\ntwo"_s,
                      u"one\nCannot find volume /y/a.part4.rar\ntwo"_s, u"one\nx - checksum error\ntwo"_s));

TEST(BadVolumes, ABadMemberThatIsCalledLikeAVolumeBlamesTheOneThatItLiesIn)
{
    EXPECT_EQ(badVolumes(u"Testing archive /x/a.part1.rar\n\na.part4.rar - checksum error\n"_s), partsOfA({1}));
}

TEST(BadVolumes, AMemberThatBeginsAtTheEndOfAVolumeBreaksNoName)
{
    // So little of it that no figure was drawn.
    const QString start = u"Testing archive /x/a.part1.rar\n\n"_s + member(u"f"_s) +
                          u"Testing     g                        \n\n"
                          u"Testing archive /x/a.part2.rar\n\n"
                          u"...         g             \b\b\b\b 27%\b\b\b\b\b  OK \n"_s;
    EXPECT_EQ(badVolumes(start + u"h - checksum error\n"_s), partsOfA({2}));
    EXPECT_EQ(badVolumes(start + u"Unexpected end of archive\n"_s), partsOfA({2}));
}

TEST(BadVolumes, AMemberThatIsSkippedBreaksNoName)
{
    EXPECT_EQ(badVolumes(u"Testing archive /x/a.part2.rar\n\nUnexpected end of archive\n"
                         u"Testing archive /x/a.part3.rar\n\nSkipping    f       \b\b\b\b\b     \n"_s),
              partsOfA({2}));
}

TEST(BadVolumes, ARecoveryRecordInAVolumeIsNoMember)
{
    const QString record = u"Testing the recovery record      \b\b\b\b 25%\b\b\b\b100%\b\b\b\b"_s;
    const QString start = u"Testing archive /x/a.part1.rar\n\n"_s + record + u"   OK\n"_s +
                          u"Testing archive /x/a.part2.rar\n\n"_s + record;
    EXPECT_EQ(badVolumes(start + u"   OK\nCorrupt header is found\nTotal errors: 1\n"_s), partsOfA({2}));
    EXPECT_EQ(badVolumes(start + u"  Failed\nRecovery record is corrupt.\nTotal errors: 1\n"_s), partsOfA({2}));
}

TEST(BadVolumes, AVolumeOfAnotherSetIsNotBlamed)
{
    EXPECT_EQ(badVolumes(u"Cannot find volume /x/b.part3.rar\n"_s), QStringList());
}

TEST(BadVolumes, APromptForAPasswordIsSeen)
{
    EXPECT_TRUE(readWhole(u"Testing archive /x/a.part1.rar\n\n\nEnter password (will not be echoed) for "
                          u"z.bin: \n\nProgram aborted\n"_s)
                    .wantsPassword());
}

class HostileOutput : public ::testing::TestWithParam<QString>
{};

TEST_P(HostileOutput, AMegabyteOfItIsReadInTime)
{
    constexpr qsizetype size = 1024 * 1024;
    const QString output = GetParam().repeated(size / GetParam().size());
    const fixtures::ProcessorTime watch;
    static_cast<void>(badVolumes(output));
    EXPECT_LT(watch.elapsed(), 10s);
}

INSTANTIATE_TEST_SUITE_P(BadVolumes, HostileOutput,
                         ::testing::Values(u"x"_s, u"a.part1.rar"_s, u"a.part1.rar "_s, u"a.part1.rar\n"_s,
                                           u"Testing archive a.rar\nx\nx\n"_s,
                                           QString(u"a.part1.rar "_s.repeated(340) + u'\n'), u".part1"_s, u" "_s,
                                           u"\n"_s, u"\b\b\b\b  5%"_s, u"cannot find volume "_s,
                                           u"checksum error in volume "_s, u"CRC"_s,
                                           QString(QString(4000, u' ') + u"x\n"_s)));

} // namespace
} // namespace vormel
