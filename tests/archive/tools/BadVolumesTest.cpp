#include "archive/tools/BadVolumes.h"

#include "platform/process/OutputLines.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace vormel {
namespace {

const QString first = QStringLiteral("/x/a.part1.rar");

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
        names << QStringLiteral("a.part%1.rar").arg(number);
    return names;
}

/// How the tools tell that a member is tested.
QString member(const QString& name)
{
    return QStringLiteral("Testing     ") + name + QStringLiteral("          \b\b\b\b 27%\b\b\b\b\b  OK \n");
}

TEST(BadVolumes, AVolumeThatCannotBeFoundIsNamedWithoutItsFolder)
{
    EXPECT_EQ(badVolumes(QStringLiteral("Cannot find volume /x/a.part3.rar\n")), partsOfA({3}));
    EXPECT_EQ(badVolumes(QStringLiteral("Cannot find volume /x/a.part3.rar"), QStringLiteral("a.part1.rar")),
              partsOfA({3}));
    EXPECT_EQ(badVolumes(QStringLiteral("cannot FIND volume   a.part3.rar     \n")), partsOfA({3}));
}

TEST(BadVolumes, AVolumeWithAChecksumErrorIsNamed)
{
    EXPECT_EQ(badVolumes(QStringLiteral("big.bin : packed data checksum error in volume /x/a.part3.rar")),
              partsOfA({3}));
    EXPECT_EQ(badVolumes(QStringLiteral("Checksum error in /x/a.rar"), QStringLiteral("/x/a.rar")),
              QStringList{QStringLiteral("a.rar")});
}

TEST(BadVolumes, AVolumeBeforeAWordOfComplaintIsNamed)
{
    for (const QString& line :
         {QStringLiteral("/x/a.part2.rar - CRC failed"), QStringLiteral("/x/a.part2.rar : checksum mismatch"),
          QStringLiteral("/x/a.part2.rar is corrupt"), QStringLiteral("/x/a.part2.rar: damaged"),
          QStringLiteral("Volume /x/A.PART2.rar  crc bad").toLower(), QStringLiteral("/x/a.part2.rar y is Damaged")})
        EXPECT_EQ(badVolumes(line), partsOfA({2})) << line.toStdString();
}

TEST(BadVolumes, AWordOfComplaintInAnotherLineOrBeforeTheVolumeNamesNobody)
{
    EXPECT_EQ(badVolumes(QStringLiteral("Testing archive /x/a.part3.rar\r\n\r\n\nCRC failed in it\n")), QStringList());
    EXPECT_EQ(badVolumes(QStringLiteral("failed: /x/a.part2.rar\nfine\n")), QStringList());
}

TEST(BadVolumes, AVolumeNamedTwiceAppearsOnceAndTheNamesAreSorted)
{
    EXPECT_EQ(badVolumes(QStringLiteral("Cannot find volume /x/a.part4.rar\n"
                                        "checksum error in volume /x/a.part3.rar\n"
                                        "/x/a.part3.rar - CRC failed\n")),
              partsOfA({3, 4}));
}

TEST(BadVolumes, ACorruptHeaderWithoutAVolumeBlamesTheTestedArchive)
{
    for (const QString& line :
         {QStringLiteral("Corrupt header\n"), QStringLiteral("the HEADER IS CORRUPT\n"),
          QStringLiteral("Corrupt header is found"), QStringLiteral("Main archive header is corrupt"),
          QStringLiteral("film.mkv - the file header is corrupt")})
        EXPECT_EQ(badVolumes(line), partsOfA({1})) << line.toStdString();
}

TEST(BadVolumes, ACorruptHeaderOfALaterVolumeBlamesThatAlone)
{
    EXPECT_EQ(badVolumes(QStringLiteral("Testing archive /x/a.part1.rar\n") + member(QStringLiteral("f")) +
                         QStringLiteral("Testing archive /x/a.part3.rar\nCorrupt header is found\n"
                                        "Main archive header is corrupt\n")),
              partsOfA({3}));
}

TEST(BadVolumes, LettersStayAsTheToolWroteThem)
{
    EXPECT_EQ(badVolumes(QStringLiteral("Cannot find volume /x/A.PART2.RAR")),
              QStringList{QStringLiteral("A.PART2.RAR")});
}

TEST(BadVolumes, AFileThatIsNoArchiveIsNamed)
{
    EXPECT_EQ(badVolumes(QStringLiteral("ERROR: Bad archive /x/a.part3.rar\n\nProgram aborted\n")), partsOfA({3}));
    EXPECT_EQ(badVolumes(QStringLiteral("/x/a.part1.rar is not RAR archive\nNo files to extract\n")), partsOfA({1}));
}

TEST(BadVolumes, AVolumeThatEndsTooEarlyIsTheOneBeingTested)
{
    const QString output = QStringLiteral("\nTesting archive /x/a.part1.rar\n\nTesting     f   \b\b\b\b 27%\n"
                                          "\nTesting archive /x/a.part2.rar\n\nUnexpected end of archive\n"
                                          "...         f   \b\b\b\b 57%\nf    - checksum error\n"
                                          "Unexpected end of archive\n\nTesting archive /x/a.part3.rar\n\n");
    EXPECT_EQ(badVolumes(output), partsOfA({2}));
}

TEST(BadVolumes, ABadFileBlamesTheVolumeInWhichItEndsUnlessAnotherIsToBlame)
{
    const QString start = QStringLiteral("Testing archive /x/a.part1.rar\n\nTesting     f    \b\b\b\b100%\n");
    const QString named = QStringLiteral("f   : packed data checksum error in volume /x/a.part1.rar\n");
    const QString end =
        QStringLiteral("\nTesting archive /x/a.part2.rar\n\n...         f   \b\b\b\b100%\nf   - checksum error\n");
    EXPECT_EQ(badVolumes(start + end), partsOfA({2}));
    EXPECT_EQ(badVolumes(start + named + end), partsOfA({1}));
}

TEST(BadVolumes, BlanksInTheSetsOwnPathHideNoVolume)
{
    const QString output = QStringLiteral("Cannot find volume /x y/My own film.part3.rar\n"
                                          "checksum error in volume /x y/My own film.part2.rar\n");
    EXPECT_EQ(badVolumes(output, QStringLiteral("/x y/My own film.part1.rar")),
              (QStringList{QStringLiteral("My own film.part2.rar"), QStringLiteral("My own film.part3.rar")}));
    EXPECT_EQ(badVolumes(QStringLiteral("Cannot find volume /x y/a.part3.rar\n"), QStringLiteral("/x y/a.part1.rar")),
              partsOfA({3}));
}

TEST(BadVolumes, OutputThatBlamesNobodyNamesNobody)
{
    EXPECT_EQ(badVolumes(QString()), QStringList());
    EXPECT_EQ(badVolumes(QStringLiteral("Total errors: 1\nProgram aborted\n")), QStringList());
}

class MemberName : public ::testing::TestWithParam<QString>
{};

TEST_P(MemberName, AMemberIsNeverTakenForAVolumeWhateverItIsCalled)
{
    const QString& name = GetParam();
    const QString start = QStringLiteral("Testing archive /x/a.part1.rar\n\n") + member(name) +
                          QStringLiteral("Testing     ") + name + QStringLiteral("     \b\b\b\b 33%\n\n") +
                          QStringLiteral("Testing archive /x/a.part2.rar\n\n...         ") + name +
                          QStringLiteral("     \b\b\b\b 40%\n");
    const QString named = QStringLiteral("Cannot find volume /x/a.part3.rar\n");
    const QString bad = name + QStringLiteral(" - checksum error\n");
    EXPECT_EQ(badVolumes(start), QStringList());
    EXPECT_EQ(badVolumes(start + named + bad), partsOfA({3}));
    EXPECT_EQ(
        badVolumes(start + name + QStringLiteral(" : packed data checksum error in volume /x/a.part2.rar\n") + bad),
        partsOfA({2}));
    EXPECT_FALSE(readWhole(start + named + bad).wantsPassword());
}

INSTANTIATE_TEST_SUITE_P(
    BadVolumes, MemberName,
    ::testing::Values(
        QStringLiteral("Damaged film.mkv"), QStringLiteral("Failed.txt"), QStringLiteral("CRC.sfv"),
        QStringLiteral("a.part1.rar"), QStringLiteral("sub/a.part4.rar"),
        QStringLiteral("a.part4.rar - checksum error"), QStringLiteral("a.part4.rar is not RAR archive"),
        QStringLiteral("a.part4.rar is corrupt"), QStringLiteral("Cannot find volume a.part4.rar"),
        QStringLiteral("Cannot find volume /x/a.part4.rar"), QStringLiteral("Unexpected end of archive"),
        QStringLiteral("Corrupt header is found"), QStringLiteral("header is corrupt"),
        QStringLiteral("Testing archive /x/a.part4.rar"), QStringLiteral("checksum error in volume a.part4.rar"),
        QStringLiteral("ERROR: Bad archive x.rar"), QStringLiteral("Enter password (will not be echoed) for x:"),
        QStringLiteral("one\nUnexpected end of archive\ntwo"), QStringLiteral("one\nCorrupt header is found\ntwo"),
        QStringLiteral("one\nCannot find volume a.part4.rar\ntwo"),
        QStringLiteral("one\nCannot find volume /y/a.part4.rar\ntwo"), QStringLiteral("one\nx - checksum error\ntwo")));

TEST(BadVolumes, ABadMemberThatIsCalledLikeAVolumeBlamesTheOneThatItLiesIn)
{
    EXPECT_EQ(badVolumes(QStringLiteral("Testing archive /x/a.part1.rar\n\na.part4.rar - checksum error\n")),
              partsOfA({1}));
}

TEST(BadVolumes, AMemberThatBeginsAtTheEndOfAVolumeBreaksNoName)
{
    // So little of it that no figure was drawn.
    const QString start = QStringLiteral("Testing archive /x/a.part1.rar\n\n") + member(QStringLiteral("f")) +
                          QStringLiteral("Testing     g                        \n\n"
                                         "Testing archive /x/a.part2.rar\n\n"
                                         "...         g             \b\b\b\b 27%\b\b\b\b\b  OK \n");
    EXPECT_EQ(badVolumes(start + QStringLiteral("h - checksum error\n")), partsOfA({2}));
    EXPECT_EQ(badVolumes(start + QStringLiteral("Unexpected end of archive\n")), partsOfA({2}));
}

TEST(BadVolumes, AMemberThatIsSkippedBreaksNoName)
{
    EXPECT_EQ(badVolumes(QStringLiteral("Testing archive /x/a.part2.rar\n\nUnexpected end of archive\n"
                                        "Testing archive /x/a.part3.rar\n\nSkipping    f       \b\b\b\b\b     \n")),
              partsOfA({2}));
}

TEST(BadVolumes, ARecoveryRecordInAVolumeIsNoMember)
{
    const QString record = QStringLiteral("Testing the recovery record      \b\b\b\b 25%\b\b\b\b100%\b\b\b\b");
    const QString start = QStringLiteral("Testing archive /x/a.part1.rar\n\n") + record + QStringLiteral("   OK\n") +
                          QStringLiteral("Testing archive /x/a.part2.rar\n\n") + record;
    EXPECT_EQ(badVolumes(start + QStringLiteral("   OK\nCorrupt header is found\nTotal errors: 1\n")), partsOfA({2}));
    EXPECT_EQ(badVolumes(start + QStringLiteral("  Failed\nRecovery record is corrupt.\nTotal errors: 1\n")),
              partsOfA({2}));
}

TEST(BadVolumes, AVolumeOfAnotherSetIsNotBlamed)
{
    EXPECT_EQ(badVolumes(QStringLiteral("Cannot find volume /x/b.part3.rar\n")), QStringList());
}

TEST(BadVolumes, APromptForAPasswordIsSeen)
{
    EXPECT_TRUE(readWhole(QStringLiteral("Testing archive /x/a.part1.rar\n\n\nEnter password (will not be echoed) for "
                                         "z.bin: \n\nProgram aborted\n"))
                    .wantsPassword());
}

class HostileOutput : public ::testing::TestWithParam<QString>
{};

TEST_P(HostileOutput, AMegabyteOfItIsReadInTime)
{
    constexpr qsizetype size = 1024 * 1024;
    const QString output = GetParam().repeated(size / GetParam().size());
    QElapsedTimer watch;
    watch.start();
    static_cast<void>(badVolumes(output));
    EXPECT_LT(watch.elapsed(), 10'000);
}

INSTANTIATE_TEST_SUITE_P(BadVolumes, HostileOutput,
                         ::testing::Values(QStringLiteral("x"), QStringLiteral("a.part1.rar"),
                                           QStringLiteral("a.part1.rar "), QStringLiteral("a.part1.rar\n"),
                                           QStringLiteral("Testing archive a.rar\nx\nx\n"),
                                           QString(QStringLiteral("a.part1.rar ").repeated(340) + u'\n'),
                                           QStringLiteral(".part1"), QStringLiteral(" "), QStringLiteral("\n"),
                                           QStringLiteral("\b\b\b\b  5%"), QStringLiteral("cannot find volume "),
                                           QStringLiteral("checksum error in volume "), QStringLiteral("CRC"),
                                           QString(QString(4000, u' ') + QStringLiteral("x\n"))));

} // namespace
} // namespace vormel
