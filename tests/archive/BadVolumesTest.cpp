#include "archive/BadVolumes.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace vormel {
namespace {

const QString first = QStringLiteral("a.part1.rar");

TEST(BadVolumes, aVolumeThatCannotBeFoundIsNamedWithoutItsFolder)
{
    EXPECT_EQ(badVolumes(QStringLiteral("Cannot find volume /x/a.part3.rar\n"), first),
              QStringList{QStringLiteral("a.part3.rar")});
    EXPECT_EQ(badVolumes(QStringLiteral("cannot FIND volume   a.part3.rar     \n"), first),
              QStringList{QStringLiteral("a.part3.rar")});
}

TEST(BadVolumes, aVolumeWithAChecksumErrorIsNamed)
{
    EXPECT_EQ(badVolumes(QStringLiteral("big.bin : packed data checksum error in volume /x/a.part3.rar"), first),
              QStringList{QStringLiteral("a.part3.rar")});
    EXPECT_EQ(badVolumes(QStringLiteral("Checksum error in /x/a.rar"), first), QStringList{QStringLiteral("a.rar")});
}

TEST(BadVolumes, aVolumeBeforeAWordOfComplaintIsNamed)
{
    for (const QString& line :
         {QStringLiteral("/x/a.part2.rar - CRC failed"), QStringLiteral("/x/a.part2.rar : checksum mismatch"),
          QStringLiteral("a.part2.rar is corrupt"), QStringLiteral("a.part2.rar: damaged"),
          QStringLiteral("Volume A.PART2.rar  crc bad").toLower(), QStringLiteral("x a.part2.rar y is Damaged")})
        EXPECT_EQ(badVolumes(line, first), QStringList{QStringLiteral("a.part2.rar")}) << line.toStdString();
}

TEST(BadVolumes, theComplaintMayStandOnTheNextLineThatIsNotBlank)
{
    EXPECT_EQ(badVolumes(QStringLiteral("Testing archive /x/a.part3.rar\r\n\r\n\nCRC failed in it\n"), first),
              QStringList{QStringLiteral("a.part3.rar")});
    EXPECT_EQ(badVolumes(QStringLiteral("see a.part3.rar\nsomething else\nit failed\n"), first), QStringList());
}

TEST(BadVolumes, aVolumeBehindTheComplaintIsNotNamedByIt)
{
    EXPECT_EQ(badVolumes(QStringLiteral("failed: a.part2.rar\nfine\n"), first), QStringList());
}

TEST(BadVolumes, aVolumeNamedTwiceAppearsOnceAndTheNamesAreSorted)
{
    const QString output = QStringLiteral("Cannot find volume /x/a.part4.rar\n"
                                          "checksum error in volume /x/a.part3.rar\n"
                                          "/x/a.part3.rar - CRC failed\n");
    EXPECT_EQ(badVolumes(output, first), (QStringList{QStringLiteral("a.part3.rar"), QStringLiteral("a.part4.rar")}));
}

TEST(BadVolumes, aCorruptHeaderWithoutAVolumeBlamesTheTestedArchive)
{
    EXPECT_EQ(badVolumes(QStringLiteral("Corrupt header\n"), first), QStringList{first});
    EXPECT_EQ(badVolumes(QStringLiteral("the HEADER IS CORRUPT\n"), first), QStringList{first});
}

TEST(BadVolumes, lettersStayAsTheToolWroteThem)
{
    EXPECT_EQ(badVolumes(QStringLiteral("Cannot find volume /x/A.PART2.RAR"), first),
              QStringList{QStringLiteral("A.PART2.RAR")});
}

TEST(BadVolumes, aFileThatIsNoArchiveIsNamed)
{
    EXPECT_EQ(badVolumes(QStringLiteral("ERROR: Bad archive /x/a.part3.rar\n\nProgram aborted\n"), first),
              QStringList{QStringLiteral("a.part3.rar")});
    EXPECT_EQ(badVolumes(QStringLiteral("/x/a.part1.rar is not RAR archive\nNo files to extract\n"), first),
              QStringList{first});
}

TEST(BadVolumes, aVolumeThatEndsTooEarlyIsTheOneBeingTested)
{
    const QString output = QStringLiteral("\nTesting archive /x/a.part1.rar\n\nTesting     f   \b\b\b\b 27%\n"
                                          "\nTesting archive /x/a.part2.rar\n\nUnexpected end of archive\n"
                                          "...         f   \b\b\b\b 57%\nf    - checksum error\n"
                                          "Unexpected end of archive\n\nTesting archive /x/a.part3.rar\n\n");
    EXPECT_EQ(badVolumes(output, first), QStringList{QStringLiteral("a.part2.rar")});
}

TEST(BadVolumes, aBadFileBlamesTheVolumeInWhichItEndsUnlessAnotherIsToBlame)
{
    const QString start = QStringLiteral("Testing archive /x/a.part1.rar\n\nTesting     f    100%\n");
    const QString named = QStringLiteral("f   : packed data checksum error in volume /x/a.part1.rar\n");
    const QString end = QStringLiteral("\nTesting archive /x/a.part2.rar\n\n...   f   100%\nf   - checksum error\n");
    EXPECT_EQ(badVolumes(start + end, first), QStringList{QStringLiteral("a.part2.rar")});
    EXPECT_EQ(badVolumes(start + named + end, first), QStringList{first});
}

TEST(BadVolumes, blanksInTheSetsOwnPathHideNoVolume)
{
    const QString output = QStringLiteral("Cannot find volume /x y/My own film.part3.rar\n"
                                          "checksum error in volume /x y/My own film.part2.rar\n");
    EXPECT_EQ(badVolumes(output, QStringLiteral("/x y/My own film.part1.rar")),
              (QStringList{QStringLiteral("My own film.part2.rar"), QStringLiteral("My own film.part3.rar")}));
    EXPECT_EQ(badVolumes(QStringLiteral("Cannot find volume /x y/a.part3.rar\n"), QStringLiteral("/x y/a.part1.rar")),
              QStringList{QStringLiteral("a.part3.rar")});
}

TEST(BadVolumes, outputThatBlamesNobodyNamesNobody)
{
    EXPECT_EQ(badVolumes(QString(), first), QStringList());
    EXPECT_EQ(badVolumes(QStringLiteral("Total errors: 1\nProgram aborted\n"), first), QStringList());
}

class HostileOutput : public ::testing::TestWithParam<QString>
{};

TEST_P(HostileOutput, aMegabyteOfItIsReadInTime)
{
    constexpr qsizetype size = 1024 * 1024;
    const QString output = GetParam().repeated(size / GetParam().size());
    QElapsedTimer watch;
    watch.start();
    static_cast<void>(badVolumes(output, first));
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
