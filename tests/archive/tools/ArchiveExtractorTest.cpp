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

using namespace Qt::StringLiterals;

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
    [[nodiscard]] QString destination() const { return sandbox.path(u"out/deep"_s); }
    /// With the destination for the work folder in it.
    [[nodiscard]] QList<QStringList> calls(const char* tool) const
    {
        static const QRegularExpression workFolder(u"/\\.vormel-unpack-[^/]+/files"_s);
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
        const TaskEnd end = runToEnd(
            keep(extractor.verify(archive(name), [this](double fraction) { fractions.push_back(fraction); }), result));
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
    EXPECT_EQ(extract(u"a.gz"_s).kind, Kind::unsupportedFormat);
    EXPECT_FALSE(QFileInfo::exists(destination()));
}

TEST_F(ArchiveExtractorTest, TheDestinationIsMadeWithItsParents)
{
    add("unrar", "touch \"$6/inside\"");
    EXPECT_TRUE(extract(u"a.rar"_s).isSuccess());
    EXPECT_TRUE(QFileInfo::exists(destination() + u"/inside"_s));
}

TEST_F(ArchiveExtractorTest, ADestinationThatCannotBeMadeIsToldAsItIs)
{
    add("unrar");
    sandbox.write(u"out"_s, "a file");
    const TaskEnd end = extract(u"a.rar"_s);
    EXPECT_EQ(end.kind, std::nullopt);
    EXPECT_EQ(end.description, u"Not a directory"_s);
    EXPECT_TRUE(calls("unrar").isEmpty());
}

TEST_F(ArchiveExtractorTest, RarIsUnpackedWithUnrarAndNeverAsks)
{
    add("unrar", "echo 42%");
    add("rar");
    EXPECT_TRUE(extract(u"a.rar"_s).isSuccess());
    EXPECT_EQ(calls("unrar"),
              (QList<QStringList>{{u"x"_s, u"-o+"_s, u"-y"_s, u"-p-"_s, archive(u"a.rar"_s), destination() + u'/'}}));
    EXPECT_TRUE(calls("rar").isEmpty());
    EXPECT_EQ(fractions, std::vector<double>{0.42});
}

TEST_F(ArchiveExtractorTest, RarStandsInForUnrarAndGetsThePassword)
{
    add("rar");
    EXPECT_TRUE(extract(u"a.rar"_s, u"pass word"_s).isSuccess());
    ASSERT_EQ(calls("rar").size(), 1);
    EXPECT_EQ(calls("rar")[0][3], u"-ppass word");
}

TEST_F(ArchiveExtractorTest, AnEmptyPasswordCountsAsGivenAndIsNotPassedOn)
{
    add("unrar", "exit 11");
    EXPECT_EQ(extract(u"a.rar"_s, QString()).kind, Kind::wrongPassword);
    EXPECT_EQ(extract(u"a.rar"_s, u""_s).kind, Kind::wrongPassword);
    EXPECT_EQ(extract(u"a.rar"_s).kind, Kind::passwordRequired);
    ASSERT_EQ(calls("unrar").size(), 3);
    for (const QStringList& call : calls("unrar"))
        EXPECT_EQ(call[3], u"-p-");
}

TEST_F(ArchiveExtractorTest, RecoveryVolumesAreKeptFromUnrarWhereOurRepairCanUseThem)
{
    for (const char* name : {"a.part1.rar", "a.part1.rev"})
        sandbox.write(QString::fromLatin1(name), "x");
    const QByteArray seen = sandbox.path(u"seen"_s).toUtf8();
    add("unrar", "ls \"${5%/*}\" >'" + seen + "'; exit 3");
    static_cast<void>(extract(u"a.part1.rar"_s));
    EXPECT_TRUE(sandbox.read(u"seen"_s).contains("a.part1.rev\n"));
    add("rar");
    static_cast<void>(extract(u"a.part1.rar"_s));
    EXPECT_EQ(sandbox.read(u"seen"_s), "a.part1.rar\n");
}

TEST_F(ArchiveExtractorTest, WithoutAToolForRarUnrarIsAskedFor)
{
    const TaskEnd end = extract(u"a.rar"_s);
    EXPECT_EQ(end.kind, Kind::toolNotFound);
    EXPECT_EQ(end.description, toolNotFoundText(u"unrar"_s));
}

TEST_F(ArchiveExtractorTest, ACrashOfTheToolIsNoPasswordFailure)
{
    add("unrar", "kill -SEGV $$");
    EXPECT_EQ(extract(u"a.rar"_s).kind, Kind::extractionFailed);
}

TEST_F(ArchiveExtractorTest, SevenZipTakesTheFirstToolThatIsThere)
{
    add("7zz");
    EXPECT_TRUE(extract(u"a.7z"_s).isSuccess());
    EXPECT_EQ(calls("7zz"), (QList<QStringList>{{u"x"_s, archive(u"a.7z"_s), u"-o"_s + destination(), u"-y"_s}}));
    add("7za");
    EXPECT_TRUE(extract(u"a.7z"_s, u""_s).isSuccess());
    EXPECT_EQ(calls("7za")[0].size(), 4);
    add("7z", "echo 7%");
    EXPECT_TRUE(extract(u"a.7z"_s, u"secret"_s).isSuccess());
    EXPECT_EQ(calls("7z")[0].last(), u"-psecret");
    EXPECT_EQ(calls("7zz").size() + calls("7za").size(), 2);
    EXPECT_EQ(fractions, std::vector<double>{0.07});
}

TEST_F(ArchiveExtractorTest, WithoutAToolForSevenZipItIsAskedFor)
{
    EXPECT_EQ(extract(u"a.7z"_s).description, toolNotFoundText(u"7z"_s));
}

TEST_F(ArchiveExtractorTest, TarIsToldItsCompression)
{
    add("tar", "echo 50%");
    for (const auto& [name, letters] :
         {std::pair(u"a.tar"_s, u"-xf"_s), std::pair(u"a.tgz"_s, u"-xzf"_s), std::pair(u"a.tar.gz"_s, u"-xzf"_s),
          std::pair(u"a.tar.bz2"_s, u"-xjf"_s), std::pair(u"a.tar.xz"_s, u"-xJf"_s)}) {
        EXPECT_TRUE(extract(name).isSuccess());
        EXPECT_EQ(calls("tar").last(), (QStringList{letters, archive(name), u"-C"_s, destination()}));
    }
    EXPECT_TRUE(fractions.empty());
}

TEST_F(ArchiveExtractorTest, AFailureOfTarIsNotTakenForAPasswordFailure)
{
    add("tar", "echo wrong password; exit 11");
    EXPECT_EQ(extract(u"a.tar"_s).kind, Kind::extractionFailed);
}

TEST_F(ArchiveExtractorTest, ZipGoesToDittoFirst)
{
    add("ditto", "echo 50%");
    add("unzip");
    EXPECT_TRUE(extract(u"a.zip"_s).isSuccess());
    EXPECT_EQ(calls("ditto"), (QList<QStringList>{{u"-x"_s, u"-k"_s, archive(u"a.zip"_s), destination()}}));
    EXPECT_TRUE(calls("unzip").isEmpty());
    EXPECT_TRUE(fractions.empty());
}

TEST_F(ArchiveExtractorTest, ZipGoesOnToUnzipWhenDittoIsMissingOrFails)
{
    add("unzip");
    EXPECT_TRUE(extract(u"a.zip"_s).isSuccess());
    add("ditto", "exit 1");
    EXPECT_TRUE(extract(u"a.zip"_s).isSuccess());
    EXPECT_EQ(calls("ditto").size(), 1);
    const QStringList expected{u"-o"_s, archive(u"a.zip"_s), u"-d"_s, destination()};
    EXPECT_EQ(calls("unzip"), (QList<QStringList>{expected, expected}));
}

TEST_F(ArchiveExtractorTest, AZipWithAPasswordNeverGoesToDitto)
{
    add("ditto");
    add("unzip");
    EXPECT_TRUE(extract(u"a.zip"_s, u"secret"_s).isSuccess());
    EXPECT_TRUE(extract(u"a.zip"_s, u""_s).isSuccess());
    EXPECT_TRUE(calls("ditto").isEmpty());
    ASSERT_EQ(calls("unzip").size(), 2);
    EXPECT_EQ(calls("unzip")[0].mid(0, 3), (QStringList{u"-P"_s, u"secret"_s, u"-o"_s}));
    EXPECT_EQ(calls("unzip")[1].front(), u"-o");
}

TEST_F(ArchiveExtractorTest, ZipEndsWithSevenZipWhoseErrorCounts)
{
    add("unzip", "exit 9");
    add("7za", "echo Wrong password; echo 50%; exit 2");
    EXPECT_EQ(extract(u"a.zip"_s, u"p"_s).kind, Kind::wrongPassword);
    EXPECT_EQ(calls("7za")[0].last(), u"-pp");
    add("7z", "exit 0");
    EXPECT_TRUE(extract(u"a.zip"_s).isSuccess());
    EXPECT_EQ(calls("7za").size(), 1);
    EXPECT_TRUE(fractions.empty());
}

TEST_F(ArchiveExtractorTest, WithoutSevenZipTheFailureOfUnzipIsTold)
{
    add("ditto", "exit 1");
    add("unzip", "echo broken; exit 9");
    const TaskEnd end = extract(u"a.zip"_s);
    EXPECT_EQ(end.kind, Kind::extractionFailed);
    EXPECT_EQ(end.exitCode, 9);
    add("unzip", "echo 'skipping: f  unable to get password'; exit 5");
    EXPECT_EQ(extract(u"a.zip"_s).kind, Kind::passwordRequired);
    tools.remove(u"unzip"_s);
    EXPECT_TRUE(extract(u"a.zip"_s).isLaunchError);
}

TEST_F(ArchiveExtractorTest, ALinkThatLeadsOutIsRemovedBeforeAnythingIsPlaced)
{
    add("unrar", "cd \"$6\"; ln -s ../.. out; ln -s inside in; touch inside");
    EXPECT_TRUE(extract(u"a.rar"_s).isSuccess());
    EXPECT_FALSE(QFileInfo(destination() + u"/out"_s).isSymLink());
    EXPECT_TRUE(QFileInfo(destination() + u"/in"_s).isSymLink());
}

TEST_F(ArchiveExtractorTest, AFailureLeavesNothingBehind)
{
    QDir().mkpath(destination());
    add("unrar", "cd \"$6\"; echo half >half; exit 3");
    EXPECT_EQ(extract(u"a.rar"_s).kind, Kind::extractionFailed);
    EXPECT_TRUE(QDir(destination()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

TEST_F(ArchiveExtractorTest, EachToolStartsInAFolderThatNoOtherHasUsed)
{
    add("unzip", "touch \"$4/half\"; exit 9");
    add("7zz", "ls -A \"${3#-o}\" | grep . && exit 1; touch \"${3#-o}/whole\"");
    EXPECT_TRUE(extract(u"a.zip"_s).isSuccess());
    EXPECT_EQ(QDir(destination()).entryList(QDir::Files), QStringList{u"whole"_s});
}

TEST_F(ArchiveExtractorTest, AToolThatIsStoppedIsKilledAndLeavesNothingBehind)
{
    add("unrar", "cd \"$6\"; echo half >half; exec sleep 600");
    std::stop_source stop;
    TaskEnd end;
    QDir().mkpath(destination());
    spawn(keepTaskEnd(dropped(extractor.extract(archive(u"a.rar"_s), destination(), {}, {}, stop.get_token())), end));
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
    spawn(keepTaskEnd(unpackInto(*ownExtractor, archive(u"a.zip"_s), destination()), end));
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
    const auto [test, end] = verify(u"a.part1.rar"_s);
    EXPECT_TRUE(end.isSuccess());
    EXPECT_EQ(test.outcome, VolumeTest::Outcome::sound);
    EXPECT_EQ(test.badVolumes, QStringList());
    EXPECT_EQ(calls("unrar"), (QList<QStringList>{{u"t"_s, archive(u"a.part1.rar"_s)}}));
    EXPECT_EQ(trace, QStringList{u"[Verify] a.part1.rar OK"_s});
}

TEST_F(ArchiveExtractorTest, ATestTellsHowFarItIs)
{
    add("unrar", "printf 'Testing     film.mkv      '; printf '\\b\\b\\b\\b 12%%'");
    EXPECT_TRUE(verify(u"a.part1.rar"_s).second.isSuccess());
    ASSERT_FALSE(fractions.empty());
    EXPECT_EQ(fractions.back(), 0.12);
}

TEST_F(ArchiveExtractorTest, AFailedTestNamesTheBadVolumes)
{
    add("rar", "echo 'Cannot find volume /x/a.part3.rar'; echo 'Corrupt header'; exit 3");
    const auto [test, end] = verify(u"a.part1.rar"_s);
    EXPECT_TRUE(end.isSuccess());
    EXPECT_EQ(test.outcome, VolumeTest::Outcome::damaged);
    EXPECT_EQ(test.badVolumes, (QStringList{u"a.part1.rar"_s, u"a.part3.rar"_s}));
    EXPECT_EQ(trace, (QStringList{u"[Verify] a.part1.rar FAILED (code 3):\nCannot find volume "
                                  u"/x/a.part3.rar\nCorrupt header\n"_s,
                                  u"[Verify] bad volumes: a.part1.rar, a.part3.rar"_s}));
}

TEST_F(ArchiveExtractorTest, TheMiddleOfALongTestIsReadAsWell)
{
    // Far more than is kept of an output.
    add("unrar", "echo 'Testing archive /x/a.part1.rar'; "
                 "members() { yes 'Testing     a file of many       \b\b\b\b  5%  OK ' | head -n 50000; }; "
                 "members; echo 'f : packed data checksum error in volume /x/a.part2.rar'; "
                 "echo 'Testing archive /x/a.part3.rar'; members; echo 'f   - checksum error'; exit 3");
    const auto [test, end] = verify(u"a.part1.rar"_s);
    EXPECT_TRUE(end.isSuccess());
    EXPECT_EQ(test.badVolumes, QStringList{u"a.part2.rar"_s});
}

TEST_F(ArchiveExtractorTest, ATestThatFailsWithoutBlameTellsTheToolsReason)
{
    add("unrar",
        "echo 'UNRAR 6.21 freeware'; echo 'Read error in the file /x/a.part2.rar'; echo 'Total errors: 1'; exit 2");
    const auto [test, end] = verify(u"a.part1.rar"_s);
    EXPECT_TRUE(end.isSuccess());
    EXPECT_EQ(test.outcome, VolumeTest::Outcome::failed);
    EXPECT_EQ(test.reason, u"Read error in the file /x/a.part2.rar");
    add("unrar", "exit 9");
    EXPECT_EQ(verify(u"a.part1.rar"_s).first.reason, u"code 9");
}

TEST_F(ArchiveExtractorTest, VerificationWithoutAToolOrOneThatDoesNotStartThrows)
{
    EXPECT_EQ(verify(u"a.rar"_s).second.description, toolNotFoundText(u"unrar/rar"_s));
    QDir().mkpath(tools.folder() + u"unrar"_s);
    EXPECT_TRUE(verify(u"a.rar"_s).second.isLaunchError);
}

TEST_F(ArchiveExtractorTest, RepairRunsRarEvenWithoutRecoveryVolumes)
{
    add("unrar");
    EXPECT_FALSE(extractor.canRepair());
    EXPECT_EQ(runToEnd(extractor.repair(archive(u"set/a.part1.rar"_s))).description, repairToolNotFoundText());
    add("rar");
    EXPECT_TRUE(extractor.canRepair());
    EXPECT_TRUE(runToEnd(extractor.repair(archive(u"set/a.part1.rar"_s))).isSuccess());
    EXPECT_EQ(calls("rar"), (QList<QStringList>{{u"rc"_s, u"-y"_s, archive(u"set/a.part1.rar"_s)}}));
    EXPECT_EQ(trace,
              (QStringList{u"[Repair] dir=set rar=0 rev=0"_s, u"[Repair] revs="_s, u"[Repair] rar rc succeeded"_s}));
}

TEST_F(ArchiveExtractorTest, TheRepairTraceCountsAllVolumesOfTheFolderInAnyLetterCase)
{
    for (const char* name : {"b.part2.REV", "a.part1.rev", "a.part1.rar", "B.PART1.RAR", "c.rar", "x.txt"})
        sandbox.write(u"set/"_s + QString::fromUtf8(name), "x");
    add("rar", "echo no; exit 9");
    const TaskEnd end = runToEnd(extractor.repair(archive(u"set/a.part1.rar"_s)));
    EXPECT_EQ(end.kind, Kind::extractionFailed);
    EXPECT_EQ(trace, (QStringList{u"[Repair] dir=set rar=3 rev=2"_s, u"[Repair] revs=a.part1.rev, b.part2.REV"_s,
                                  u"[Repair] rar rc FAILED (code 9):\nno\n"_s}));
}

TEST_F(ArchiveExtractorTest, ARepairToolThatDoesNotStartIsTracedAndThrown)
{
    QDir().mkpath(tools.folder() + u"rar"_s);
    EXPECT_TRUE(runToEnd(extractor.repair(archive(u"a.part1.rar"_s))).isLaunchError);
    EXPECT_EQ(trace.last(), u"[Repair] rar rc FAILED: Permission denied");
}

} // namespace
} // namespace vormel
