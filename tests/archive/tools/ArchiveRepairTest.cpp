#include "archive/TaskEnd.h"
#include "archive/Unpacking.h"
#include "archive/tools/ArchiveExtractor.h"
#include "fixtures/FakeTools.h"
#include "fixtures/RealTools.h"
#include "fixtures/Sandbox.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

QCoro::Task<> keepList(QCoro::Task<QStringList> task, QStringList& list)
{
    list = co_await task;
}

/// A set of volumes and a repair tool that a test makes up.
class ArchiveRepairTest : public ::testing::Test
{
protected:
    ArchiveRepairTest()
    {
        for (const char* name : {"part1.rar", "part2.rar", "part1.rev"})
            sandbox.write(u"set/s?t."_s + QString::fromLatin1(name), "Rar!\x1a\x07 as it came");
    }
    [[nodiscard]] QString volume(const char* name) const
    {
        return sandbox.path(u"set/s?t."_s + QString::fromLatin1(name));
    }
    [[nodiscard]] QByteArray contents(const char* name) const
    {
        return sandbox.read(u"set/s?t."_s + QString::fromLatin1(name));
    }
    TaskEnd repair() { return runToEnd(keepList(extractor.repair(volume("part1.rar")), changed)); }
    void toolDoes(const QByteArray& script) { tools.add(u"rar"_s, "cd \"${3%/*}\"; " + script); }

    static constexpr const char* original = "Rar!\x1a\x07 as it came";
    fixtures::Sandbox sandbox;
    fixtures::FakeTools tools;
    ToolRunner runner{tools.folders()};
    ArchiveExtractor extractor{runner, [](const QString& /*line*/) {}};
    QStringList changed;
};

TEST_F(ArchiveRepairTest, TheToolWorksOnLinksUnderPlainNames)
{
    toolDoes("ls -A | tr '\\n' ' ' >'" + sandbox.path(u"seen"_s).toUtf8() + "'; find . -type l -name 'v*' | wc -l >>'" +
             sandbox.path(u"seen"_s).toUtf8() + '\'');
    EXPECT_TRUE(repair().isSuccess());
    EXPECT_EQ(sandbox.read(u"seen"_s), "volume.part1.rar volume.part1.rev volume.part2.rar 3\n");
    EXPECT_TRUE(tools.calls(u"rar"_s)[0][2].endsWith(u"/volume.part1.rar"_s));
    EXPECT_EQ(changed, QStringList());
    EXPECT_EQ(sandbox.files(u"set"_s).size(), 3);
}

TEST_F(ArchiveRepairTest, WhatItRebuiltTakesThePlaceOfTheVolumeWhateverItsStatus)
{
    for (const char* status : {"0", "1", "3"}) {
        sandbox.write(u"set/s?t.part2.rar"_s, original);
        QFile::remove(volume("part2.rar.bad"));
        toolDoes("mv volume.part2.rar volume.part2.rar.bad; echo rebuilt >volume.part2.rar; exit " +
                 QByteArray(status));
        EXPECT_TRUE(repair().isSuccess());
        EXPECT_EQ(contents("part2.rar"), "rebuilt\n");
        EXPECT_EQ(contents("part2.rar.bad"), original);
        EXPECT_EQ(changed, (QStringList{volume("part2.rar.bad"), volume("part2.rar")}));
    }
}

TEST_F(ArchiveRepairTest, AMissingVolumeIsPutInItsPlace)
{
    QFile::remove(volume("part2.rar"));
    toolDoes("echo rebuilt >volume.part2.rar");
    EXPECT_TRUE(repair().isSuccess());
    EXPECT_EQ(contents("part2.rar"), "rebuilt\n");
    EXPECT_EQ(changed, QStringList{volume("part2.rar")});
}

TEST_F(ArchiveRepairTest, AFileThatIsCalledLikeAReplacedVolumeStays)
{
    sandbox.write(u"set/s?t.part2.rar.bad"_s, "the user's own");
    toolDoes("rm volume.part2.rar; echo rebuilt >volume.part2.rar");
    EXPECT_TRUE(repair().isSuccess());
    EXPECT_EQ(contents("part2.rar.bad"), "the user's own");
    EXPECT_EQ(contents("part2.rar (1).bad"), original);
}

TEST_F(ArchiveRepairTest, AVolumeThatIsNoRarAtAllIsNotWhatTheToolIsGiven)
{
    sandbox.write(u"set/s?t.part1.rar"_s, "<html>404</html>");
    toolDoes("exit 0");
    EXPECT_TRUE(repair().isSuccess());
    EXPECT_TRUE(tools.calls(u"rar"_s)[0][2].endsWith(u"/volume.part2.rar"_s));
}

TEST_F(ArchiveRepairTest, AFailureThatRebuiltNothingIsTold)
{
    toolDoes("echo no volumes; : >volume.part9.rar; exit 10");
    EXPECT_EQ(repair().exitCode, 10);
    EXPECT_EQ(sandbox.files(u"set"_s).size(), 3);
}

TEST_F(ArchiveRepairTest, WhatAToolWasKilledOverIsNotTaken)
{
    toolDoes("rm volume.part2.rar; echo half >volume.part2.rar; echo half >volume.part3.rar; kill -9 $$");
    EXPECT_EQ(repair().exitCode, 137);
    EXPECT_EQ(contents("part2.rar"), original);
    EXPECT_EQ(sandbox.files(u"set"_s).size(), 3);
}

TEST_F(ArchiveRepairTest, AVolumeThatCameMeanwhileStays)
{
    const QByteArray folder = '\'' + sandbox.path(u"set"_s).toUtf8() + '\'';
    toolDoes("cd " + folder +
             "; rm 's?t.part2.rar'; echo anew >'s?t.part2.rar'; echo anew >'s?t.part3.rar'; cd -; "
             "rm volume.part2.rar; echo rebuilt >volume.part2.rar; echo rebuilt >volume.part3.rar");
    EXPECT_TRUE(repair().isSuccess());
    EXPECT_EQ(contents("part2.rar"), "anew\n");
    EXPECT_EQ(contents("part3.rar"), "anew\n");
    EXPECT_TRUE(changed.isEmpty());
}

TEST_F(ArchiveRepairTest, AStopLeavesTheSetAsItWas)
{
    toolDoes("rm volume.part2.rar; echo half >volume.part2.rar; exec sleep 600");
    std::stop_source stop;
    TaskEnd end;
    spawn(keepTaskEnd(dropped(extractor.repair(volume("part1.rar"), stop.get_token())), end));
    ASSERT_TRUE(fixtures::waitUntil([&] { return !tools.calls(u"rar"_s).isEmpty(); }));
    stop.request_stop();
    ASSERT_TRUE(fixtures::waitUntil([&] { return end.isOver; }));
    EXPECT_EQ(end.description, u"Stopped");
    EXPECT_EQ(contents("part2.rar"), original);
    EXPECT_EQ(sandbox.files(u"set"_s).size(), 3);
}

TEST_F(ArchiveRepairTest, SetsThatTheToolCallsFailedAreWholeAgain)
{
    VORMEL_NEEDS_TOOL("rar");
    VORMEL_NEEDS_TOOL("unrar");
    fixtures::RarSet set;
    set.name = u"wh?le [1]"_s;
    set.files = {{u"big.bin"_s, fixtures::noise(300'000)}};
    set.volumeBytes = 65'000;
    set.recoveryVolumes = 2;
    ToolRunner realTools;
    ArchiveExtractor real(realTools, [](const QString& /*line*/) {});
    using Damage = std::function<void(const QStringList&)>;
    const std::vector<Damage> damages{
        [](const QStringList& volumes) { fixtures::truncateFile(volumes[4], 20'000); }, // its last volume
        [](const QStringList& volumes) { fixtures::truncateFile(volumes[2], 20'000); },
        [](const QStringList& volumes) { fixtures::damageFile(volumes[1], 14, 4); }, // a header
        [](const QStringList& volumes) { fixtures::damageFile(volumes[0], 14, 4); },
        [](const QStringList& volumes) { EXPECT_TRUE(QFile::remove(volumes[3])); },
        [](const QStringList& volumes) { // a page in place of a volume, of which the tool changes the mode
            QFile page(volumes[2]);
            EXPECT_TRUE(page.open(QFile::WriteOnly) && page.write("<html>Not found</html>") > 0);
        },
    };
    for (std::size_t i = 0; i < damages.size(); ++i) {
        const QString folder = sandbox.path(u"real%1"_s.arg(i));
        const QStringList volumes = fixtures::makeRarSet(folder, set);
        ASSERT_EQ(volumes.size(), 7);
        damages[i](volumes);
        EXPECT_TRUE(runToEnd(real.repair(volumes.front())).isSuccess()) << i;
        EXPECT_TRUE(runToEnd(unpackInto(real, volumes.front(), folder + u"/out"_s)).isSuccess()) << i;
        EXPECT_EQ(sandbox.read(u"real%1/out/big.bin"_s.arg(i)), set.files.first()) << i;
    }
}

} // namespace
} // namespace vormel
