#include "archive/TaskEnd.h"
#include "archive/Unpacking.h"
#include "archive/tools/ArchiveExtractor.h"
#include "fixtures/FakeTools.h"
#include "fixtures/RealTools.h"
#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::noise;

const QByteArray contents = noise(300'000);

/// A real set of five volumes, tested with each tool that can.
class RealVolumesTest : public ::testing::TestWithParam<const char*>
{
protected:
    void makeSet(int recoveryVolumes = 0, const QString& name = u"set"_s)
    {
        fixtures::RarSet set;
        set.name = name;
        set.files = {{u"big.bin"_s, contents}};
        set.volumeBytes = 65'000;
        set.recoveryVolumes = recoveryVolumes;
        volumes = fixtures::makeRarSet(sandbox.path(u"my sets"_s), set);
        ASSERT_EQ(volumes.size(), 5 + recoveryVolumes);
    }

    QStringList verify() { return test().badVolumes; }
    VolumeTest test()
    {
        VolumeTest result{{}, {u"not over"_s}, {}};
        tools.addReal(QString::fromUtf8(GetParam()), u"/usr/bin/"_s + QString::fromUtf8(GetParam()));
        EXPECT_TRUE(runToEnd(keep(extractor.verify(volumes.front()), result)).isSuccess());
        return result;
    }
    [[nodiscard]] QStringList namesOf(std::initializer_list<int> numbers) const
    {
        QStringList names;
        for (const int number : numbers)
            names << QFileInfo(volumes[number - 1]).fileName();
        return names;
    }

    static QCoro::Task<> keep(QCoro::Task<VolumeTest> task, VolumeTest& result) { result = co_await task; }

    fixtures::Sandbox sandbox;
    fixtures::FakeTools tools;
    ToolRunner runner{tools.folders()};
    QStringList trace;
    ArchiveExtractor extractor{runner, [this](const QString& line) { trace << line; }};
    QStringList volumes;
};

#define VORMEL_NEEDS_VOLUME_TOOLS()                                                                                    \
    VORMEL_NEEDS_TOOL("rar");                                                                                          \
    VORMEL_NEEDS_TOOL("unrar")

TEST_P(RealVolumesTest, ASoundSetHasNoBadVolume)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet();
    EXPECT_EQ(verify(), QStringList());
}

TEST_P(RealVolumesTest, ADamagedVolumeIsNamed)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet();
    fixtures::damageFile(volumes[2], 30'000);
    EXPECT_EQ(verify(), namesOf({3})) << trace.join(u'\n').toStdString();
}

TEST_P(RealVolumesTest, TheDamagedLastVolumeIsNamed)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet();
    fixtures::damageFile(volumes[4], 10'000);
    EXPECT_EQ(verify(), namesOf({5})) << trace.join(u'\n').toStdString();
}

TEST_P(RealVolumesTest, TwoDamagedVolumesAreBothNamed)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet();
    fixtures::damageFile(volumes[0], 30'000);
    fixtures::damageFile(volumes[3], 30'000);
    EXPECT_EQ(verify(), namesOf({1, 4})) << trace.join(u'\n').toStdString();
}

TEST_P(RealVolumesTest, AMissingVolumeIsNamed)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet();
    ASSERT_TRUE(QFile::remove(volumes[2]));
    EXPECT_EQ(verify(), namesOf({3})) << trace.join(u'\n').toStdString();
}

TEST_P(RealVolumesTest, AVolumeThatIsCutShortIsNamed)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet();
    fixtures::truncateFile(volumes[2], 30'000);
    EXPECT_EQ(verify(), namesOf({3})) << trace.join(u'\n').toStdString();
}

TEST_P(RealVolumesTest, AWebPageInPlaceOfAVolumeIsNamed)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet();
    sandbox.write(u"my sets/set.part4.rar"_s, "<html>404</html>");
    EXPECT_EQ(verify(), namesOf({4})) << trace.join(u'\n').toStdString();
}

TEST_P(RealVolumesTest, AWebPageInPlaceOfTheFirstVolumeIsNamed)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet();
    sandbox.write(u"my sets/set.part1.rar"_s, "<html>404</html>");
    EXPECT_EQ(verify(), namesOf({1})) << trace.join(u'\n').toStdString();
}

TEST_P(RealVolumesTest, ACorruptHeaderBlamesItsVolumeAlone)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet();
    fixtures::damageFile(volumes[2], 14, 4);
    EXPECT_EQ(verify(), namesOf({3})) << trace.join(u'\n').toStdString();
}

TEST_P(RealVolumesTest, ASetWithBlanksInItsNameIsNamedWhole)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet(0, u"My ünï film"_s);
    fixtures::damageFile(volumes[1], 30'000);
    EXPECT_EQ(verify(), namesOf({2})) << trace.join(u'\n').toStdString();
}

TEST_P(RealVolumesTest, EachKindOfDamageBlamesItsOwnVolumeAlone)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    using Damage = void (*)(const QString& volume);
    const std::vector<std::pair<const char*, Damage>> damages{
        {"cut in half", [](const QString& volume) { fixtures::truncateFile(volume, QFileInfo(volume).size() / 2); }},
        {"cut in the header", [](const QString& volume) { fixtures::truncateFile(volume, 20); }},
        {"empty", [](const QString& volume) { fixtures::truncateFile(volume, 0); }},
        {"header", [](const QString& volume) { fixtures::damageFile(volume, 10, 24); }},
        {"signature", [](const QString& volume) { fixtures::damageFile(volume, 0, 4); }},
        {"body", [](const QString& volume) { fixtures::damageFile(volume, 10'000); }},
        {"missing", [](const QString& volume) { ASSERT_TRUE(QFile::remove(volume)); }},
    };
    for (const bool areManyFiles : {false, true}) {
        for (const bool isSolid : {false, true}) {
            fixtures::RarSet set;
            if (areManyFiles)
                for (int i = 0; i < 100; ++i)
                    set.files.insert(u"Damaged CRC %1.bin"_s.arg(i), noise(3000, 1U + unsigned(i)));
            else
                set.files = {{u"Failed.part1.rar"_s, contents}};
            set.volumeBytes = 65'000;
            set.isSolid = isSolid;
            volumes = fixtures::makeRarSet(sandbox.path(u"kind"_s), set);
            ASSERT_EQ(volumes.size(), 5);
            for (const auto& [how, damage] : damages) {
                for (const int which : {1, 2, 5}) {
                    if (which == 1 && how == QByteArray("missing"))
                        continue; // the tool has nothing to test
                    const QString spoilt = volumes[which - 1];
                    ASSERT_TRUE(QFile::copy(spoilt, spoilt + u".sound"_s));
                    damage(spoilt);
                    QStringList bad = verify();
                    // It cannot know that the spoilt last one was the last.
                    bad.removeAll(u"set.part6.rar"_s);
                    EXPECT_EQ(bad, namesOf({which})) << how << ' ' << which << trace.join(u'\n').toStdString();
                    QFile::remove(spoilt);
                    ASSERT_TRUE(QFile::rename(spoilt + u".sound"_s, spoilt));
                }
            }
        }
    }
}

TEST_P(RealVolumesTest, MembersWithNamesLikeComplaintsBlameNobody)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    fixtures::RarSet set;
    for (const char* name :
         {"Damaged film.bin", "Failed.bin", "CRC.bin", "set.part1.rar", "set.part2.rar - checksum error",
          "set.part4.rar is not RAR archive", "Cannot find volume set.part4.rar", "Unexpected end of archive",
          "Corrupt header is found", "header is corrupt", "one\nUnexpected end of archive\ntwo",
          "one\nCannot find volume set.part4.rar\ntwo", "one\rCorrupt header", "bs\b\b\b\bUnexpected end of archive",
          "checksum error in volume set.part4.rar", "Enter password (will not be echoed)", "ünï 日本"})
        set.files.insert(QString::fromUtf8(name), noise(15'000, 7));
    set.volumeBytes = 65'000;
    volumes = fixtures::makeRarSet(sandbox.path(u"hostile"_s), set);
    ASSERT_EQ(volumes.size(), 4);
    EXPECT_EQ(test().outcome, VolumeTest::Outcome::sound) << trace.join(u'\n').toStdString();
    ASSERT_TRUE(QFile::remove(volumes[2]));
    EXPECT_EQ(verify(), namesOf({3})) << trace.join(u'\n').toStdString();
}

TEST_P(RealVolumesTest, AnArchiveCommentBlamesNobody)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet();
    const QString comment =
        sandbox.write(u"comment.txt"_s, "Cannot find volume " + volumes[3].toUtf8() + "\nTesting archive " +
                                            volumes[3].toUtf8() + "\nCorrupt header is found\n");
    for (const QString& volume : volumes)
        ASSERT_TRUE(QFile::remove(volume));
    const QString file = sandbox.write(u"in/big.bin"_s, contents);
    const fixtures::ToolResult packed = fixtures::runRealTool(
        u"/usr/bin/rar"_s,
        {u"a"_s, u"-ep"_s, u"-v65000b"_s, u"-z"_s + comment, sandbox.path(u"my sets/set.rar"_s), file}, sandbox.root());
    ASSERT_EQ(packed.status, 0) << packed.output.constData();
    ASSERT_TRUE(QFile::remove(volumes[1]));
    EXPECT_EQ(verify(), namesOf({2})) << trace.join(u'\n').toStdString();
}

TEST_P(RealVolumesTest, APasswordInTheWayIsToldAndBlamesNobody)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    for (const bool areHeadersEncrypted : {false, true}) {
        fixtures::RarSet set;
        set.name = areHeadersEncrypted ? u"hidden"_s : u"set"_s;
        set.files = {{u"big.bin"_s, contents}};
        set.volumeBytes = 65'000;
        set.password = u"X"_s;
        set.areHeadersEncrypted = areHeadersEncrypted;
        volumes = fixtures::makeRarSet(sandbox.path(u"guarded"_s), set);
        const VolumeTest result = test();
        EXPECT_EQ(result.outcome, VolumeTest::Outcome::passwordNeeded);
        EXPECT_EQ(result.badVolumes, QStringList());
    }
}

TEST_P(RealVolumesTest, ABadRecoveryVolumeLeavesTheSetSound)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet(2);
    fixtures::truncateFile(volumes[5], 1000);
    EXPECT_EQ(test().outcome, VolumeTest::Outcome::sound) << trace.join(u'\n').toStdString();
}

TEST_P(RealVolumesTest, ATestRebuildsNothingBesideRecoveryVolumes)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet(2);
    ASSERT_TRUE(QFile::remove(volumes[1]));
    fixtures::damageFile(volumes[3], 30'000);
    const QStringList before = sandbox.files(u"my sets"_s);
    EXPECT_EQ(verify(), namesOf({2})) << trace.join(u'\n').toStdString();
    EXPECT_EQ(sandbox.files(u"my sets"_s), before);
}

TEST_P(RealVolumesTest, ASetWhoseNameLooksLikeAPatternIsTestedItselfAndNamedByItsName)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet(0, u"sets"_s);
    makeSet(0, u"se?s"_s);
    EXPECT_EQ(test().outcome, VolumeTest::Outcome::sound) << trace.join(u'\n').toStdString();
    ASSERT_TRUE(QFile::remove(volumes[2]));
    EXPECT_EQ(verify(), namesOf({3})) << trace.join(u'\n').toStdString();
}

TEST_P(RealVolumesTest, RepairBringsMissingAndDamagedVolumesBack)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet(2);
    ASSERT_TRUE(QFile::remove(volumes[1]));
    fixtures::damageFile(volumes[3], 30'000);
    tools.addReal(u"rar"_s, u"/usr/bin/rar"_s);
    const TaskEnd repaired = runToEnd(extractor.repair(volumes.front()));
    EXPECT_TRUE(repaired.isSuccess()) << repaired.output.toStdString();
    tools.addReal(QString::fromUtf8(GetParam()), u"/usr/bin/"_s + QString::fromUtf8(GetParam()));
    const QString out = sandbox.path(u"out"_s);
    EXPECT_TRUE(runToEnd(unpackInto(extractor, volumes.front(), out)).isSuccess());
    EXPECT_EQ(sandbox.read(u"out/big.bin"_s), contents);
}

// The tool calls it a success; only the next extraction tells.
TEST_P(RealVolumesTest, RepairWithTooFewRecoveryVolumesLeavesTheSetBroken)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet(1);
    ASSERT_TRUE(QFile::remove(volumes[1]));
    ASSERT_TRUE(QFile::remove(volumes[2]));
    tools.addReal(u"rar"_s, u"/usr/bin/rar"_s);
    static_cast<void>(runToEnd(extractor.repair(volumes.front())));
    const QString out = sandbox.path(u"out"_s);
    EXPECT_EQ(runToEnd(unpackInto(extractor, volumes.front(), out)).kind, ExtractionError::Kind::extractionFailed);
}

INSTANTIATE_TEST_SUITE_P(WithEachTool, RealVolumesTest, ::testing::Values("unrar", "rar"),
                         [](const ::testing::TestParamInfo<const char*>& tool) { return std::string(tool.param); });

} // namespace
} // namespace vormel
