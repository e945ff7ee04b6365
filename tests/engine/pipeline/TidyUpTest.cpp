#include "fixtures/ArchiveStep.h"
#include "fixtures/EventLoop.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// What happens to names, sources and the queue once an archive is unpacked.
class TidyUpTest : public ::testing::Test, protected ArchiveStep
{
protected:
    void SetUp() override { unpackerMakes("x.mkv"); }

    /// Runs the item's archive to its end, with everything that follows.
    void finish(const ItemPtr& item)
    {
        run(item);
        ASSERT_TRUE(reaches(item, ExtractionStatus::done));
    }
    [[nodiscard]] bool becomes(const QString& folder, const QStringList& files)
    {
        return waitUntil([&] { return engine.sandbox.files(folder) == files; }, std::chrono::seconds(5));
    }
    [[nodiscard]] static QStringList list(const char* names) { return QString::fromLatin1(names).split(u' '); }
};

} // namespace

TEST_F(TidyUpTest, KeepsTheArchiveUnlessToldOtherwise)
{
    finish(onDisk(u"x.rar"_s));
    EXPECT_TRUE(becomes(u"Downloads"_s, list("x.mkv x.rar")));
}

TEST_F(TidyUpTest, MovesASingleArchiveToTheTrash)
{
    engine.settings().deleteArchiveAfterExtract.set(true);
    engine.settings().trashSourceFolderAfterExtract.set(true);
    finish(onDisk(u"x.rar"_s));
    EXPECT_TRUE(becomes(u"Downloads"_s, list("x.mkv")));
    EXPECT_TRUE(becomes(u"Trash"_s, list("x.rar")));
}

TEST_F(TidyUpTest, MovesTheVolumesOfASetToTheTrashAndKeepsTheirFolder)
{
    engine.settings().deleteArchiveAfterExtract.set(true);
    onDisk(u"m.part2.rar"_s);
    onDisk(u"m.part1.rev"_s);
    finish(onDisk(u"m.part1.rar"_s));
    EXPECT_TRUE(becomes(u"Downloads/m"_s, list("x.mkv")));
    EXPECT_TRUE(becomes(u"Trash"_s, list("m.part1.rar m.part1.rev m.part2.rar")));
}

TEST_F(TidyUpTest, LeavesTheVolumesOfOtherSetsInTheFolderAlone)
{
    engine.settings().deleteArchiveAfterExtract.set(true);
    for (const char* name : {"mm.part1.rar", "M.part1.rar", "m.rar"})
        engine.sandbox.write(u"Downloads/m/"_s + QString::fromLatin1(name), "another archive");
    finish(onDisk(u"m.part1.rar"_s));
    EXPECT_TRUE(becomes(u"Trash"_s, list("m.part1.rar")));
    EXPECT_TRUE(becomes(u"Downloads/m"_s, list("M.part1.rar m.rar mm.part1.rar x.mkv")));
}

TEST_F(TidyUpTest, MovesTheWholeFolderOfASetToTheTrash)
{
    engine.settings().deleteArchiveAfterExtract.set(true);
    engine.settings().trashSourceFolderAfterExtract.set(true);
    engine.settings().useCustomExtractionFolder.set(true);
    engine.settings().extractionFolderPath.set(engine.sandbox.path(u"Extracted"_s));
    engine.sandbox.write(u"Downloads/m/notes.txt"_s, "came along");
    finish(onDisk(u"m.part1.rar"_s));
    EXPECT_TRUE(becomes(u"Downloads"_s, {}));
    EXPECT_TRUE(becomes(u"Trash"_s, list("m/m.part1.rar m/notes.txt")));
    EXPECT_TRUE(becomes(u"Extracted"_s, list("x.mkv")));
}

TEST_F(TidyUpTest, NeverThrowsAwayWhatItHasJustUnpacked)
{
    engine.settings().deleteArchiveAfterExtract.set(true);
    engine.settings().trashSourceFolderAfterExtract.set(true);
    finish(onDisk(u"m.part1.rar"_s));
    EXPECT_TRUE(becomes(u"Trash"_s, list("m.part1.rar")));
    EXPECT_TRUE(becomes(u"Downloads/m"_s, list("x.mkv")));
}

TEST_F(TidyUpTest, NeverThrowsAwayTheDownloadFolder)
{
    engine.settings().deleteArchiveAfterExtract.set(true);
    engine.settings().trashSourceFolderAfterExtract.set(true);
    engine.settings().useCustomExtractionFolder.set(true);
    engine.settings().extractionFolderPath.set(engine.sandbox.path(u"Extracted"_s));
    engine.sandbox.write(u"Downloads/other.zip"_s, "the user's own");
    finish(onDisk(u".part1.rar"_s));
    EXPECT_TRUE(becomes(u"Trash"_s, list(".part1.rar")));
    EXPECT_TRUE(engine.sandbox.exists(u"Downloads/other.zip"_s));
}

TEST_F(TidyUpTest, TakesRecoveryVolumesOutOfTheQueueAndOffTheDisk)
{
    const ItemPtr waiting = engine.add(u"http://h/m.part2.rev"_s);
    onDisk(u"m.part1.rev"_s);
    const ItemPtr other = onDisk(u"n.part1.rev"_s);
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    finish(first);
    EXPECT_EQ(engine.manager().items(), (std::vector{other, first}));
    EXPECT_TRUE(becomes(u"Downloads/m"_s, list("m.part1.rar x.mkv")));
    EXPECT_TRUE(becomes(u"Trash"_s, list("m.part1.rev")));
}

TEST_F(TidyUpTest, TakesAnExtractedSetOutOfTheQueueIfAsked)
{
    engine.settings().removeGroupAfterExtract.set(true);
    onDisk(u"m.part2.rar"_s);
    const ItemPtr other = onDisk(u"other.mkv"_s);
    finish(onDisk(u"m.part1.rar"_s));
    EXPECT_TRUE(waitUntil([&] { return engine.manager().items() == std::vector{other}; }));
    EXPECT_TRUE(engine.sandbox.exists(u"Downloads/m/m.part2.rar"_s));
}

TEST_F(TidyUpTest, StaysDoneWhenARecoveryVolumeArrivesLate)
{
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    finish(first);
    arrive(onDisk(u"m.part1.rev"_s));
    arrive(first);
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::done);
    EXPECT_EQ(engine.tools.calls(u"unrar"_s).size(), 1);
}

TEST_F(TidyUpTest, CleansTheNamesOfWhatItUnpacked)
{
    unpackerMakes("Some.Movie.2021.1080p.WEB-DL.x264-GROUP.mkv .hidden.1080p.txt");
    engine.settings().cleanExtractedNames.set(true);
    engine.settings().extractedNamesDotsToSpaces.set(true);
    engine.sandbox.write(u"Downloads/m/My.Own.1080p.File.txt"_s, "was there before");
    finish(onDisk(u"m.part1.rar"_s));
    EXPECT_EQ(engine.sandbox.files(u"Downloads/m"_s), (QStringList{u".hidden.1080p.txt"_s, u"My.Own.1080p.File.txt"_s,
                                                                   u"Some Movie 2021.mkv"_s, u"m.part1.rar"_s}));
}

TEST_F(TidyUpTest, LeavesNothingOfAFailedRun)
{
    engine.tools.add(u"unrar"_s, "for destination; do :; done; echo half > \"${destination}Movie.1080p.mkv\"; exit 3");
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    run(first);
    ASSERT_TRUE(reaches(first, ExtractionStatus::failed));
    EXPECT_EQ(engine.sandbox.files(u"Downloads"_s), list("m/m.part1.rar"));
}

TEST_F(TidyUpTest, LeavesWhatComesDownMeanwhileItsName)
{
    engine.settings().cleanExtractedNames.set(true);
    engine.tools.add(u"unrar"_s,
                     waitForGo() + "; for destination; do :; done; echo new > \"${destination}Movie.1080p.mkv\"");
    const ItemPtr archive = onDisk(u"x.rar"_s);
    run(archive);
    const ItemPtr other = engine.start(u"http://h/Film.2021.1080p.mkv"_s);
    engine.http.last().head(200, {{"Content-Length", "4"}});
    engine.http.last().data("ab");
    engine.sandbox.write(u"Downloads/Notes.1080p.txt"_s, "saved by the user meanwhile");
    go();
    ASSERT_TRUE(reaches(archive, ExtractionStatus::done));
    engine.http.last().data("cd");
    engine.http.last().finish();
    EXPECT_TRUE(waitUntil([&] { return other->status() == DownloadStatus::completed; }));
    EXPECT_EQ(engine.sandbox.read(u"Downloads/Film.2021.1080p.mkv"_s), "abcd");
    EXPECT_EQ(engine.sandbox.files(u"Downloads"_s), list("Film.2021.1080p.mkv Movie.mkv Notes.1080p.txt x.rar"));
}

TEST_F(TidyUpTest, MovesWhatStandsInTheWayToTheTrash)
{
    engine.sandbox.write(u"Downloads/x.mkv"_s, "the user's own");
    finish(onDisk(u"x.rar"_s));
    EXPECT_EQ(engine.sandbox.read(u"Downloads/x.mkv"_s), "new\n");
    EXPECT_EQ(engine.sandbox.read(u"Trash/x.mkv"_s), "the user's own");
}

TEST_F(TidyUpTest, GivesWayToTheFilesOfOtherItemsAndToItsOwnVolumes)
{
    unpackerMakes("other.mkv coming.bin.download m.part1.rar m.part2.rar");
    const ItemPtr coming = engine.start(u"http://h/coming.bin"_s);
    engine.http.last().head(200, {{"Content-Length", "4"}});
    engine.http.last().data("ab");
    onDisk(u"other.mkv"_s);
    onDisk(u"m.part2.rar"_s);
    engine.settings().useCustomExtractionFolder.set(true);
    for (const char* folder : {"Downloads", "Downloads/m"}) {
        engine.settings().extractionFolderPath.set(engine.sandbox.path(QString::fromLatin1(folder)));
        const ItemPtr archive = onDisk(u"m.part1.rar"_s);
        finish(archive);
        engine.manager().commands().removeItems({archive->id()});
    }
    EXPECT_EQ(engine.sandbox.files(u"Trash"_s), QStringList());
    EXPECT_EQ(engine.sandbox.read(u"Downloads/other.mkv"_s), "volume");
    EXPECT_EQ(engine.sandbox.read(u"Downloads/other (1).mkv"_s), "new\n");
    EXPECT_EQ(engine.sandbox.read(u"Downloads/coming.bin.download"_s), "ab");
    EXPECT_EQ(engine.sandbox.read(u"Downloads/m/m.part1.rar"_s), "volume");
    EXPECT_EQ(engine.sandbox.read(u"Downloads/m/m.part1 (1).rar"_s), "new\n");
    EXPECT_EQ(engine.sandbox.read(u"Downloads/m/m.part2.rar"_s), "volume");
    EXPECT_EQ(coming->status(), DownloadStatus::downloading);
}

TEST_F(TidyUpTest, LeavesTheNamesOfDownloadsFree)
{
    unpackerMakes("later.bin here.bin.download");
    const ItemPtr later = engine.add(u"http://h/later.bin"_s);
    const ItemPtr here = onDisk(u"here.bin"_s);
    finish(onDisk(u"x.rar"_s));
    const auto comesDown = [this] {
        turnEventLoop();
        engine.http.last().head(200, {{"Content-Length", "2"}});
        engine.http.last().data("ab");
        engine.http.last().finish();
        turnEventLoop();
    };
    engine.manager().commands().startItems({later});
    comesDown();
    engine.manager().commands().redownloadItem(*here);
    comesDown();
    EXPECT_EQ(engine.sandbox.read(u"Downloads/later.bin"_s), "ab");
    EXPECT_EQ(engine.sandbox.read(u"Downloads/here.bin"_s), "ab");
    EXPECT_TRUE(engine.sandbox.exists(u"Downloads/later (1).bin"_s));
    EXPECT_TRUE(engine.sandbox.exists(u"Downloads/here (1).bin"_s));
}

TEST_F(TidyUpTest, ThrowsAwayNoVolumesThatCameOutOfTheArchive)
{
    unpackerMakes("m.part7.rar");
    engine.settings().deleteArchiveAfterExtract.set(true);
    finish(onDisk(u"m.part1.rar"_s));
    EXPECT_TRUE(becomes(u"Trash"_s, list("m.part1.rar")));
    EXPECT_EQ(engine.sandbox.files(u"Downloads/m"_s), list("m.part7.rar"));
}

TEST_F(TidyUpTest, ThrowsAwayNoFolderThatTheArchiveUnpackedInto)
{
    engine.tools.add(u"unrar"_s, "for to; do :; done; mkdir \"${to}m\"; echo new > \"${to}m/film.mkv\"");
    engine.settings().deleteArchiveAfterExtract.set(true);
    engine.settings().trashSourceFolderAfterExtract.set(true);
    engine.settings().useCustomExtractionFolder.set(true);
    engine.settings().extractionFolderPath.set(engine.sandbox.folders().downloads);
    finish(onDisk(u"m.part1.rar"_s));
    EXPECT_TRUE(becomes(u"Trash"_s, list("m.part1.rar")));
    EXPECT_EQ(engine.sandbox.files(u"Downloads/m"_s), list("film.mkv"));
}

TEST_F(TidyUpTest, ThrowsAwayNoFolderInWhichFilesOfOtherItemsLie)
{
    engine.settings().deleteArchiveAfterExtract.set(true);
    engine.settings().trashSourceFolderAfterExtract.set(true);
    engine.settings().useCustomExtractionFolder.set(true);
    engine.settings().extractionFolderPath.set(engine.sandbox.path(u"Extracted"_s));
    const ItemPtr other = onDisk(u"other.mkv"_s);
    other->setLocalPath(engine.sandbox.write(u"Downloads/m/other.mkv"_s, "theirs"));
    finish(onDisk(u"m.part1.rar"_s));
    EXPECT_TRUE(becomes(u"Trash"_s, list("m.part1.rar")));
    EXPECT_TRUE(engine.sandbox.exists(u"Downloads/m/other.mkv"_s));
}

TEST_F(TidyUpTest, ThrowsAwayWhatARepairReplacedWithTheVolumes)
{
    engine.settings().deleteArchiveAfterExtract.set(true);
    engine.sandbox.write(u"Downloads/m/m.part2.rar.bad"_s, "spoilt");
    engine.sandbox.write(u"Downloads/m/n.part2.rar.bad"_s, "another set's");
    finish(onDisk(u"m.part1.rar"_s));
    EXPECT_TRUE(becomes(u"Trash"_s, list("m.part1.rar m.part2.rar.bad")));
    EXPECT_EQ(engine.sandbox.files(u"Downloads/m"_s), list("n.part2.rar.bad x.mkv"));
}

TEST_F(TidyUpTest, ThrowsAwayWhatItsOwnRepairMadeToo)
{
    engine.settings().deleteArchiveAfterExtract.set(true);
    engine.tools.add(u"unrar"_s, "test -e '" + engine.sandbox.path(u"Downloads/m/m.part2.rar"_s).toUtf8() +
                                     "' || exit 3; for destination; do :; done; echo new > \"${destination}x.mkv\"");
    engine.tools.add(u"rar"_s, "echo rebuilt > \"${3%/*}/volume.part2.rar\"");
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    engine.sandbox.write(u"Downloads/m/m.part1.rar"_s, "Rar!\x1a\x07 volume");
    finish(first);
    EXPECT_TRUE(becomes(u"Trash"_s, list("m.part1.rar m.part2.rar")));
    EXPECT_EQ(engine.sandbox.files(u"Downloads/m"_s), list("x.mkv"));
}

TEST_F(TidyUpTest, LeavesTheArchiveOfARowThatWasRemovedMeanwhile)
{
    engine.tools.add(u"unrar"_s, waitForGo() + "; for destination; do :; done; echo new > \"${destination}x.mkv\"");
    engine.settings().deleteArchiveAfterExtract.set(true);
    const ItemPtr item = onDisk(u"x.rar"_s);
    run(item);
    engine.manager().commands().removeItems({item->id()});
    go();
    ASSERT_TRUE(reaches(item, ExtractionStatus::done));
    turnEventLoop();
    EXPECT_EQ(engine.sandbox.files(u"Downloads"_s), list("x.mkv x.rar"));
    EXPECT_EQ(engine.sandbox.files(u"Trash"_s), QStringList());
}

TEST_F(TidyUpTest, GivesTheFolderAndTheOneFileTheUsersName)
{
    engine.settings().cleanExtractedNames.set(true);
    engine.manager().renameGroup(u"m"_s, u"a/b:c"_s);
    finish(onDisk(u"m.part1.rar"_s));
    EXPECT_TRUE(engine.sandbox.exists(u"Downloads/a-b-c/a-b-c.mkv"_s));
}

TEST_F(TidyUpTest, GivesSeveralFilesOnlyTheFoldersName)
{
    unpackerMakes("x.mkv y.srt");
    engine.settings().useCustomExtractionFolder.set(true);
    engine.settings().extractionFolderPath.set(engine.sandbox.path(u"Extracted"_s));
    engine.manager().renameGroup(u"m"_s, u"Mine"_s);
    finish(onDisk(u"m.part1.rar"_s));
    EXPECT_EQ(engine.sandbox.files(u"Extracted"_s), list("Mine/x.mkv Mine/y.srt"));
}

TEST_F(TidyUpTest, NeverLeavesTheFolderByANameOfTheUsers)
{
    engine.manager().renameGroup(u"m"_s, u".."_s);
    finish(onDisk(u"m.part1.rar"_s));
    const QStringList unpacked = engine.sandbox.files().filter(u".mkv"_s);
    EXPECT_EQ(unpacked.filter(u"Downloads/"_s), unpacked);
    EXPECT_EQ(unpacked.size(), 1);
}

TEST_F(TidyUpTest, GivesAPlainFileNoNameOfTheUsers)
{
    engine.manager().renameGroup(u"x.rar"_s, u"Mine"_s);
    finish(onDisk(u"x.rar"_s));
    EXPECT_TRUE(engine.sandbox.exists(u"Downloads/x.mkv"_s));
}

TEST_F(TidyUpTest, LosesNothingWhenTwoSetsHaveOneNameOfTheUsers)
{
    for (const char* set : {"m", "n"}) {
        const QString name = QString::fromLatin1(set);
        engine.manager().renameGroup(name, u"Mine"_s);
        unpackerMakes("x.mkv");
        finish(onDisk(name + u".part1.rar"_s));
    }
    EXPECT_TRUE(engine.sandbox.exists(u"Downloads/Mine/Mine.mkv"_s));
    EXPECT_TRUE(engine.sandbox.exists(u"Trash/Mine.mkv"_s));
}

TEST_F(TidyUpTest, TakesOnlyANameThatTheGroupHasAtTheStart)
{
    engine.tools.add(u"unrar"_s, waitForGo() + "; for destination; do :; done; echo new > \"${destination}x.mkv\"");
    engine.manager().renameGroup(u"m"_s, u"Early"_s);
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    run(first);
    engine.manager().renameGroup(u"m"_s, u"Late"_s);
    go();
    ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    EXPECT_TRUE(engine.sandbox.exists(u"Downloads/Early/Early.mkv"_s));
}
