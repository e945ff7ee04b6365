#include "archive/tools/ArchiveExtractor.h"

#include "archive/TaskEnd.h"
#include "archive/Unpacking.h"
#include "archive/tools/InstallAdvice.h"
#include "fixtures/FakeTools.h"
#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <vector>

namespace vormel {
namespace {

using Kind = ExtractionError::Kind;

QCoro::Task<> keep(QCoro::Task<VolumeTest> task, VolumeTest& result)
{
    result = co_await task;
}

/// The extractor with tools that do nothing but remember.
class ArchiveExtractorTest : public ::testing::Test
{
protected:
    TaskEnd extract(const QString& name, const std::optional<QString>& password = {})
    {
        return runToEnd(unpackInto(extractor, archive(name), destination(), password,
                                   [this](double fraction) { fractions.push_back(fraction); }));
    }

    [[nodiscard]] QString archive(const QString& name) const { return sandbox.path(name); }
    [[nodiscard]] QString destination() const { return sandbox.path(QStringLiteral("out/deep")); }
    /// With the destination for the work folder in it.
    [[nodiscard]] QList<QStringList> calls(const char* tool) const
    {
        static const QRegularExpression workFolder(QStringLiteral("/\\.vormel-unpack-[^/]+/files"));
        QList<QStringList> calls = tools.calls(QString::fromUtf8(tool));
        for (QStringList& call : calls)
            call.replaceInStrings(workFolder, QString());
        return calls;
    }
    void add(const char* tool, const QByteArray& body = "exit 0") { tools.add(QString::fromUtf8(tool), body); }

    /// The result of a verification, and how it ended.
    std::pair<VolumeTest, TaskEnd> verify(const QString& name)
    {
        VolumeTest result;
        const TaskEnd end = runToEnd(keep(extractor.verify(archive(name)), result));
        return {result, end};
    }

    fixtures::Sandbox sandbox;
    fixtures::FakeTools tools;
    ToolRunner runner{tools.folders()};
    QStringList trace;
    ArchiveExtractor extractor{runner, [this](const QString& line) { trace << line; }};
    std::vector<double> fractions;
};

TEST_F(ArchiveExtractorTest, AFileWithoutAFormatIsRefused)
{
    EXPECT_EQ(extract(QStringLiteral("a.gz")).kind, Kind::unsupportedFormat);
    EXPECT_FALSE(QFileInfo::exists(destination()));
}

TEST_F(ArchiveExtractorTest, TheDestinationIsMadeWithItsParents)
{
    add("unrar", "touch \"$6/inside\"");
    EXPECT_TRUE(extract(QStringLiteral("a.rar")).isSuccess());
    EXPECT_TRUE(QFileInfo::exists(destination() + QStringLiteral("/inside")));
}

TEST_F(ArchiveExtractorTest, ADestinationThatCannotBeMadeIsToldAsItIs)
{
    add("unrar");
    sandbox.write(QStringLiteral("out"), "a file");
    const TaskEnd end = extract(QStringLiteral("a.rar"));
    EXPECT_EQ(end.kind, std::nullopt);
    EXPECT_EQ(end.description, QStringLiteral("Not a directory"));
    EXPECT_TRUE(calls("unrar").isEmpty());
}

TEST_F(ArchiveExtractorTest, RarIsUnpackedWithUnrarAndNeverAsks)
{
    add("unrar", "echo 42%");
    add("rar");
    EXPECT_TRUE(extract(QStringLiteral("a.rar")).isSuccess());
    EXPECT_EQ(calls("unrar"),
              (QList<QStringList>{{QStringLiteral("x"), QStringLiteral("-o+"), QStringLiteral("-y"),
                                   QStringLiteral("-p-"), archive(QStringLiteral("a.rar")), destination() + u'/'}}));
    EXPECT_TRUE(calls("rar").isEmpty());
    EXPECT_EQ(fractions, std::vector<double>{0.42});
}

TEST_F(ArchiveExtractorTest, RarStandsInForUnrarAndGetsThePassword)
{
    add("rar");
    EXPECT_TRUE(extract(QStringLiteral("a.rar"), QStringLiteral("pass word")).isSuccess());
    ASSERT_EQ(calls("rar").size(), 1);
    EXPECT_EQ(calls("rar")[0][3], u"-ppass word");
}

TEST_F(ArchiveExtractorTest, AnEmptyPasswordCountsAsGivenAndIsNotPassedOn)
{
    add("unrar", "exit 11");
    EXPECT_EQ(extract(QStringLiteral("a.rar"), QString()).kind, Kind::wrongPassword);
    EXPECT_EQ(extract(QStringLiteral("a.rar"), QStringLiteral("")).kind, Kind::wrongPassword);
    EXPECT_EQ(extract(QStringLiteral("a.rar")).kind, Kind::passwordRequired);
    ASSERT_EQ(calls("unrar").size(), 3);
    for (const QStringList& call : calls("unrar"))
        EXPECT_EQ(call[3], u"-p-");
}

TEST_F(ArchiveExtractorTest, RecoveryVolumesAreKeptFromUnrarWhereOurRepairCanUseThem)
{
    for (const char* name : {"a.part1.rar", "a.part1.rev"})
        sandbox.write(QString::fromLatin1(name), "x");
    const QByteArray seen = sandbox.path(QStringLiteral("seen")).toUtf8();
    add("unrar", "ls \"${5%/*}\" >'" + seen + "'; exit 3");
    static_cast<void>(extract(QStringLiteral("a.part1.rar")));
    EXPECT_TRUE(sandbox.read(QStringLiteral("seen")).contains("a.part1.rev\n"));
    add("rar");
    static_cast<void>(extract(QStringLiteral("a.part1.rar")));
    EXPECT_EQ(sandbox.read(QStringLiteral("seen")), "a.part1.rar\n");
}

TEST_F(ArchiveExtractorTest, WithoutAToolForRarUnrarIsAskedFor)
{
    const TaskEnd end = extract(QStringLiteral("a.rar"));
    EXPECT_EQ(end.kind, Kind::toolNotFound);
    EXPECT_EQ(end.description, toolNotFoundText(QStringLiteral("unrar")));
}

TEST_F(ArchiveExtractorTest, ACrashOfTheToolIsNoPasswordFailure)
{
    add("unrar", "kill -SEGV $$");
    EXPECT_EQ(extract(QStringLiteral("a.rar")).kind, Kind::extractionFailed);
}

TEST_F(ArchiveExtractorTest, SevenZipTakesTheFirstToolThatIsThere)
{
    add("7zz");
    EXPECT_TRUE(extract(QStringLiteral("a.7z")).isSuccess());
    EXPECT_EQ(calls("7zz"), (QList<QStringList>{{QStringLiteral("x"), archive(QStringLiteral("a.7z")),
                                                 QStringLiteral("-o") + destination(), QStringLiteral("-y")}}));
    add("7za");
    EXPECT_TRUE(extract(QStringLiteral("a.7z"), QStringLiteral("")).isSuccess());
    EXPECT_EQ(calls("7za")[0].size(), 4);
    add("7z", "echo 7%");
    EXPECT_TRUE(extract(QStringLiteral("a.7z"), QStringLiteral("secret")).isSuccess());
    EXPECT_EQ(calls("7z")[0].last(), u"-psecret");
    EXPECT_EQ(calls("7zz").size() + calls("7za").size(), 2);
    EXPECT_EQ(fractions, std::vector<double>{0.07});
}

TEST_F(ArchiveExtractorTest, WithoutAToolForSevenZipItIsAskedFor)
{
    EXPECT_EQ(extract(QStringLiteral("a.7z")).description, toolNotFoundText(QStringLiteral("7z")));
}

TEST_F(ArchiveExtractorTest, TarIsToldItsCompression)
{
    add("tar", "echo 50%");
    for (const auto& [name, letters] : {std::pair(QStringLiteral("a.tar"), QStringLiteral("-xf")),
                                        std::pair(QStringLiteral("a.tgz"), QStringLiteral("-xzf")),
                                        std::pair(QStringLiteral("a.tar.gz"), QStringLiteral("-xzf")),
                                        std::pair(QStringLiteral("a.tar.bz2"), QStringLiteral("-xjf")),
                                        std::pair(QStringLiteral("a.tar.xz"), QStringLiteral("-xJf"))}) {
        EXPECT_TRUE(extract(name).isSuccess());
        EXPECT_EQ(calls("tar").last(), (QStringList{letters, archive(name), QStringLiteral("-C"), destination()}));
    }
    EXPECT_TRUE(fractions.empty());
}

TEST_F(ArchiveExtractorTest, AFailureOfTarIsNotTakenForAPasswordFailure)
{
    add("tar", "echo wrong password; exit 11");
    EXPECT_EQ(extract(QStringLiteral("a.tar")).kind, Kind::extractionFailed);
}

TEST_F(ArchiveExtractorTest, ZipGoesToDittoFirst)
{
    add("ditto", "echo 50%");
    add("unzip");
    EXPECT_TRUE(extract(QStringLiteral("a.zip")).isSuccess());
    EXPECT_EQ(calls("ditto"), (QList<QStringList>{{QStringLiteral("-x"), QStringLiteral("-k"),
                                                   archive(QStringLiteral("a.zip")), destination()}}));
    EXPECT_TRUE(calls("unzip").isEmpty());
    EXPECT_TRUE(fractions.empty());
}

TEST_F(ArchiveExtractorTest, ZipGoesOnToUnzipWhenDittoIsMissingOrFails)
{
    add("unzip");
    EXPECT_TRUE(extract(QStringLiteral("a.zip")).isSuccess());
    add("ditto", "exit 1");
    EXPECT_TRUE(extract(QStringLiteral("a.zip")).isSuccess());
    EXPECT_EQ(calls("ditto").size(), 1);
    const QStringList expected{QStringLiteral("-o"), archive(QStringLiteral("a.zip")), QStringLiteral("-d"),
                               destination()};
    EXPECT_EQ(calls("unzip"), (QList<QStringList>{expected, expected}));
}

TEST_F(ArchiveExtractorTest, AZipWithAPasswordNeverGoesToDitto)
{
    add("ditto");
    add("unzip");
    EXPECT_TRUE(extract(QStringLiteral("a.zip"), QStringLiteral("secret")).isSuccess());
    EXPECT_TRUE(extract(QStringLiteral("a.zip"), QStringLiteral("")).isSuccess());
    EXPECT_TRUE(calls("ditto").isEmpty());
    ASSERT_EQ(calls("unzip").size(), 2);
    EXPECT_EQ(calls("unzip")[0].mid(0, 3),
              (QStringList{QStringLiteral("-P"), QStringLiteral("secret"), QStringLiteral("-o")}));
    EXPECT_EQ(calls("unzip")[1].front(), u"-o");
}

TEST_F(ArchiveExtractorTest, ZipEndsWithSevenZipWhoseErrorCounts)
{
    add("unzip", "exit 9");
    add("7za", "echo Wrong password; echo 50%; exit 2");
    EXPECT_EQ(extract(QStringLiteral("a.zip"), QStringLiteral("p")).kind, Kind::wrongPassword);
    EXPECT_EQ(calls("7za")[0].last(), u"-pp");
    add("7z", "exit 0");
    EXPECT_TRUE(extract(QStringLiteral("a.zip")).isSuccess());
    EXPECT_EQ(calls("7za").size(), 1);
    EXPECT_TRUE(fractions.empty());
}

TEST_F(ArchiveExtractorTest, WithoutSevenZipTheFailureOfUnzipIsTold)
{
    add("ditto", "exit 1");
    add("unzip", "echo broken; exit 9");
    const TaskEnd end = extract(QStringLiteral("a.zip"));
    EXPECT_EQ(end.kind, Kind::extractionFailed);
    EXPECT_EQ(end.exitCode, 9);
    add("unzip", "echo 'skipping: f  unable to get password'; exit 5");
    EXPECT_EQ(extract(QStringLiteral("a.zip")).kind, Kind::passwordRequired);
    tools.remove(QStringLiteral("unzip"));
    EXPECT_TRUE(extract(QStringLiteral("a.zip")).isLaunchError);
}

TEST_F(ArchiveExtractorTest, ALinkThatLeadsOutIsRemovedBeforeAnythingIsPlaced)
{
    add("unrar", "cd \"$6\"; ln -s ../.. out; ln -s inside in; touch inside");
    EXPECT_TRUE(extract(QStringLiteral("a.rar")).isSuccess());
    EXPECT_FALSE(QFileInfo(destination() + QStringLiteral("/out")).isSymLink());
    EXPECT_TRUE(QFileInfo(destination() + QStringLiteral("/in")).isSymLink());
}

TEST_F(ArchiveExtractorTest, AFailureLeavesNothingBehind)
{
    QDir().mkpath(destination());
    add("unrar", "cd \"$6\"; echo half >half; exit 3");
    EXPECT_EQ(extract(QStringLiteral("a.rar")).kind, Kind::extractionFailed);
    EXPECT_TRUE(QDir(destination()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

TEST_F(ArchiveExtractorTest, EachToolStartsInAFolderThatNoOtherHasUsed)
{
    add("unzip", "touch \"$4/half\"; exit 9");
    add("7zz", "ls -A \"${3#-o}\" | grep . && exit 1; touch \"${3#-o}/whole\"");
    EXPECT_TRUE(extract(QStringLiteral("a.zip")).isSuccess());
    EXPECT_EQ(QDir(destination()).entryList(QDir::Files), QStringList{QStringLiteral("whole")});
}

TEST_F(ArchiveExtractorTest, AToolThatIsStoppedIsKilledAndLeavesNothingBehind)
{
    add("unrar", "cd \"$6\"; echo half >half; exec sleep 600");
    std::stop_source stop;
    TaskEnd end;
    QDir().mkpath(destination());
    spawn(keepTaskEnd(
        dropped(extractor.extract(archive(QStringLiteral("a.rar")), destination(), {}, {}, stop.get_token())), end));
    ASSERT_TRUE(fixtures::waitUntil([&] { return !calls("unrar").isEmpty(); }));
    stop.request_stop();
    ASSERT_TRUE(fixtures::waitUntil([&] { return end.isOver; }));
    EXPECT_EQ(end.description, u"Stopped");
    EXPECT_TRUE(QDir(destination()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

TEST_F(ArchiveExtractorTest, TheEndOfTheProgramStartsNoFurtherTool)
{
    add("ditto", "exec sleep 600");
    add("unzip");
    auto ownRunner = std::make_unique<ToolRunner>(tools.folders());
    auto ownExtractor = std::make_unique<ArchiveExtractor>(*ownRunner, [](const QString&) {});
    TaskEnd end;
    spawn(keepTaskEnd(unpackInto(*ownExtractor, archive(QStringLiteral("a.zip")), destination()), end));
    ASSERT_TRUE(fixtures::waitUntil([&] { return !calls("ditto").isEmpty(); }));
    ownExtractor.reset();
    ownRunner.reset();
    EXPECT_TRUE(fixtures::waitUntil([&] { return end.isOver; }));
    EXPECT_TRUE(end.isLaunchError);
    EXPECT_TRUE(calls("unzip").isEmpty());
}

TEST_F(ArchiveExtractorTest, ASoundSetHasNoBadVolumes)
{
    add("unrar");
    add("rar");
    const auto [test, end] = verify(QStringLiteral("a.part1.rar"));
    EXPECT_TRUE(end.isSuccess());
    EXPECT_EQ(test.outcome, VolumeTest::Outcome::sound);
    EXPECT_EQ(test.badVolumes, QStringList());
    EXPECT_EQ(calls("unrar"), (QList<QStringList>{{QStringLiteral("t"), archive(QStringLiteral("a.part1.rar"))}}));
    EXPECT_EQ(trace, QStringList{QStringLiteral("[Verify] a.part1.rar OK")});
}

TEST_F(ArchiveExtractorTest, AFailedTestNamesTheBadVolumes)
{
    add("rar", "echo 'Cannot find volume /x/a.part3.rar'; echo 'Corrupt header'; exit 3");
    const auto [test, end] = verify(QStringLiteral("a.part1.rar"));
    EXPECT_TRUE(end.isSuccess());
    EXPECT_EQ(test.outcome, VolumeTest::Outcome::damaged);
    EXPECT_EQ(test.badVolumes, (QStringList{QStringLiteral("a.part1.rar"), QStringLiteral("a.part3.rar")}));
    EXPECT_EQ(trace, (QStringList{QStringLiteral("[Verify] a.part1.rar FAILED (code 3):\nCannot find volume "
                                                 "/x/a.part3.rar\nCorrupt header\n"),
                                  QStringLiteral("[Verify] bad volumes: a.part1.rar, a.part3.rar")}));
}

TEST_F(ArchiveExtractorTest, TheMiddleOfALongTestIsReadAsWell)
{
    // Far more than is kept of an output.
    add("unrar", "echo 'Testing archive /x/a.part1.rar'; "
                 "members() { yes 'Testing     a file of many       \b\b\b\b  5%  OK ' | head -n 50000; }; "
                 "members; echo 'f : packed data checksum error in volume /x/a.part2.rar'; "
                 "echo 'Testing archive /x/a.part3.rar'; members; echo 'f   - checksum error'; exit 3");
    const auto [test, end] = verify(QStringLiteral("a.part1.rar"));
    EXPECT_TRUE(end.isSuccess());
    EXPECT_EQ(test.badVolumes, QStringList{QStringLiteral("a.part2.rar")});
}

TEST_F(ArchiveExtractorTest, ATestThatFailsWithoutBlameTellsTheToolsReason)
{
    add("unrar",
        "echo 'UNRAR 6.21 freeware'; echo 'Read error in the file /x/a.part2.rar'; echo 'Total errors: 1'; exit 2");
    const auto [test, end] = verify(QStringLiteral("a.part1.rar"));
    EXPECT_TRUE(end.isSuccess());
    EXPECT_EQ(test.outcome, VolumeTest::Outcome::failed);
    EXPECT_EQ(test.reason, u"Read error in the file /x/a.part2.rar");
    add("unrar", "exit 9");
    EXPECT_EQ(verify(QStringLiteral("a.part1.rar")).first.reason, u"code 9");
}

TEST_F(ArchiveExtractorTest, VerificationWithoutAToolOrOneThatDoesNotStartThrows)
{
    EXPECT_EQ(verify(QStringLiteral("a.rar")).second.description, toolNotFoundText(QStringLiteral("unrar/rar")));
    QDir().mkpath(tools.folder() + QStringLiteral("unrar"));
    EXPECT_TRUE(verify(QStringLiteral("a.rar")).second.isLaunchError);
}

TEST_F(ArchiveExtractorTest, RepairRunsRarEvenWithoutRecoveryVolumes)
{
    add("unrar");
    EXPECT_FALSE(extractor.canRepair());
    EXPECT_EQ(runToEnd(extractor.repair(archive(QStringLiteral("set/a.part1.rar")))).description,
              repairToolNotFoundText());
    add("rar");
    EXPECT_TRUE(extractor.canRepair());
    EXPECT_TRUE(runToEnd(extractor.repair(archive(QStringLiteral("set/a.part1.rar")))).isSuccess());
    EXPECT_EQ(calls("rar"), (QList<QStringList>{{QStringLiteral("rc"), QStringLiteral("-y"),
                                                 archive(QStringLiteral("set/a.part1.rar"))}}));
    EXPECT_EQ(trace, (QStringList{QStringLiteral("[Repair] dir=set rar=0 rev=0"), QStringLiteral("[Repair] revs="),
                                  QStringLiteral("[Repair] rar rc succeeded")}));
}

TEST_F(ArchiveExtractorTest, TheRepairTraceCountsAllVolumesOfTheFolderInAnyLetterCase)
{
    for (const char* name : {"b.part2.REV", "a.part1.rev", "a.part1.rar", "B.PART1.RAR", "c.rar", "x.txt"})
        sandbox.write(QStringLiteral("set/") + QString::fromUtf8(name), "x");
    add("rar", "echo no; exit 9");
    const TaskEnd end = runToEnd(extractor.repair(archive(QStringLiteral("set/a.part1.rar"))));
    EXPECT_EQ(end.kind, Kind::extractionFailed);
    EXPECT_EQ(trace, (QStringList{QStringLiteral("[Repair] dir=set rar=3 rev=2"),
                                  QStringLiteral("[Repair] revs=a.part1.rev, b.part2.REV"),
                                  QStringLiteral("[Repair] rar rc FAILED (code 9):\nno\n")}));
}

TEST_F(ArchiveExtractorTest, ARepairToolThatDoesNotStartIsTracedAndThrown)
{
    QDir().mkpath(tools.folder() + QStringLiteral("rar"));
    EXPECT_TRUE(runToEnd(extractor.repair(archive(QStringLiteral("a.part1.rar")))).isLaunchError);
    EXPECT_EQ(trace.last(), u"[Repair] rar rc FAILED: Permission denied");
}

} // namespace
} // namespace vormel
