#include "archive/ArchiveExtractor.h"
#include "archive/TaskEnd.h"
#include "archive/Unpacking.h"
#include "fixtures/FakeTools.h"
#include "fixtures/RealTools.h"
#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace vormel {
namespace {

using fixtures::noise;

const QByteArray contents = noise(300'000);

/// A real set of five volumes, tested with each tool that can.
class RealVolumesTest : public ::testing::TestWithParam<const char*>
{
protected:
    void makeSet(int recoveryVolumes = 0, const QString& name = QStringLiteral("set"))
    {
        fixtures::RarSet set;
        set.name = name;
        set.files = {{QStringLiteral("big.bin"), contents}};
        set.volumeBytes = 65'000;
        set.recoveryVolumes = recoveryVolumes;
        volumes = fixtures::makeRarSet(sandbox.path(QStringLiteral("my sets")), set);
        ASSERT_EQ(volumes.size(), 5 + recoveryVolumes);
    }

    QStringList verify()
    {
        QStringList bad{QStringLiteral("not over")};
        tools.addReal(QString::fromUtf8(GetParam()), QStringLiteral("/usr/bin/") + QString::fromUtf8(GetParam()));
        EXPECT_TRUE(runToEnd(keep(extractor.verify(volumes.front()), bad)).isSuccess());
        return bad;
    }
    [[nodiscard]] QStringList namesOf(std::initializer_list<int> numbers) const
    {
        QStringList names;
        for (const int number : numbers)
            names << QFileInfo(volumes[number - 1]).fileName();
        return names;
    }

    static QCoro::Task<> keep(QCoro::Task<QStringList> task, QStringList& list) { list = co_await task; }

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

TEST_P(RealVolumesTest, aSoundSetHasNoBadVolume)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet();
    EXPECT_EQ(verify(), QStringList());
}

TEST_P(RealVolumesTest, aDamagedVolumeIsNamed)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet();
    fixtures::damageFile(volumes[2], 30'000);
    EXPECT_EQ(verify(), namesOf({3})) << trace.join(u'\n').toStdString();
}

TEST_P(RealVolumesTest, theDamagedLastVolumeIsNamed)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet();
    fixtures::damageFile(volumes[4], 10'000);
    EXPECT_EQ(verify(), namesOf({5})) << trace.join(u'\n').toStdString();
}

TEST_P(RealVolumesTest, twoDamagedVolumesAreBothNamed)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet();
    fixtures::damageFile(volumes[0], 30'000);
    fixtures::damageFile(volumes[3], 30'000);
    EXPECT_EQ(verify(), namesOf({1, 4})) << trace.join(u'\n').toStdString();
}

TEST_P(RealVolumesTest, aMissingVolumeIsNamed)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet();
    ASSERT_TRUE(QFile::remove(volumes[2]));
    EXPECT_EQ(verify(), namesOf({3})) << trace.join(u'\n').toStdString();
}

TEST_P(RealVolumesTest, aVolumeThatIsCutShortIsNamed)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet();
    fixtures::truncateFile(volumes[2], 30'000);
    EXPECT_EQ(verify(), namesOf({3})) << trace.join(u'\n').toStdString();
}

TEST_P(RealVolumesTest, aWebPageInPlaceOfAVolumeIsNamed)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet();
    sandbox.write(QStringLiteral("my sets/set.part4.rar"), "<html>404</html>");
    EXPECT_EQ(verify(), namesOf({4})) << trace.join(u'\n').toStdString();
}

TEST_P(RealVolumesTest, aWebPageInPlaceOfTheFirstVolumeIsNamed)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet();
    sandbox.write(QStringLiteral("my sets/set.part1.rar"), "<html>404</html>");
    EXPECT_EQ(verify(), namesOf({1})) << trace.join(u'\n').toStdString();
}

TEST_P(RealVolumesTest, aCorruptHeaderBlamesItsVolumeAndTheTestedOne)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet();
    fixtures::damageFile(volumes[2], 14, 4);
    EXPECT_EQ(verify(), namesOf({1, 3})) << trace.join(u'\n').toStdString();
}

TEST_P(RealVolumesTest, aSetWithBlanksInItsNameIsNamedWhole)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet(0, QStringLiteral("My ünï film"));
    fixtures::damageFile(volumes[1], 30'000);
    EXPECT_EQ(verify(), namesOf({2})) << trace.join(u'\n').toStdString();
}

TEST_P(RealVolumesTest, repairBringsMissingAndDamagedVolumesBack)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet(2);
    ASSERT_TRUE(QFile::remove(volumes[1]));
    fixtures::damageFile(volumes[3], 30'000);
    tools.addReal(QStringLiteral("rar"), QStringLiteral("/usr/bin/rar"));
    const TaskEnd repaired = runToEnd(extractor.repair(volumes.front()));
    EXPECT_TRUE(repaired.isSuccess()) << repaired.output.toStdString();
    tools.addReal(QString::fromUtf8(GetParam()), QStringLiteral("/usr/bin/") + QString::fromUtf8(GetParam()));
    const QString out = sandbox.path(QStringLiteral("out"));
    EXPECT_TRUE(runToEnd(unpackInto(extractor, volumes.front(), out)).isSuccess());
    EXPECT_EQ(sandbox.read(QStringLiteral("out/big.bin")), contents);
}

// The tool calls it a success; only the next extraction tells.
TEST_P(RealVolumesTest, repairWithTooFewRecoveryVolumesLeavesTheSetBroken)
{
    VORMEL_NEEDS_VOLUME_TOOLS();
    makeSet(1);
    ASSERT_TRUE(QFile::remove(volumes[1]));
    ASSERT_TRUE(QFile::remove(volumes[2]));
    tools.addReal(QStringLiteral("rar"), QStringLiteral("/usr/bin/rar"));
    static_cast<void>(runToEnd(extractor.repair(volumes.front())));
    const QString out = sandbox.path(QStringLiteral("out"));
    EXPECT_EQ(runToEnd(unpackInto(extractor, volumes.front(), out)).kind, ExtractionError::Kind::extractionFailed);
}

INSTANTIATE_TEST_SUITE_P(WithEachTool, RealVolumesTest, ::testing::Values("unrar", "rar"),
                         [](const ::testing::TestParamInfo<const char*>& tool) { return std::string(tool.param); });

} // namespace
} // namespace vormel
