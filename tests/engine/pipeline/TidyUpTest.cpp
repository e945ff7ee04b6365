#include "fixtures/ArchiveStep.h"
#include "fixtures/EventLoop.h"

#include <gtest/gtest.h>

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
    finish(onDisk(QStringLiteral("x.rar")));
    EXPECT_TRUE(becomes(QStringLiteral("Downloads"), list("x.mkv x.rar")));
}

TEST_F(TidyUpTest, MovesASingleArchiveToTheTrash)
{
    engine.settings().deleteArchiveAfterExtract.set(true);
    engine.settings().trashSourceFolderAfterExtract.set(true);
    finish(onDisk(QStringLiteral("x.rar")));
    EXPECT_TRUE(becomes(QStringLiteral("Downloads"), list("x.mkv")));
    EXPECT_TRUE(becomes(QStringLiteral("Trash"), list("x.rar")));
}

TEST_F(TidyUpTest, MovesTheVolumesOfASetToTheTrashAndKeepsTheirFolder)
{
    engine.settings().deleteArchiveAfterExtract.set(true);
    onDisk(QStringLiteral("m.part2.rar"));
    onDisk(QStringLiteral("m.part1.rev"));
    finish(onDisk(QStringLiteral("m.part1.rar")));
    EXPECT_TRUE(becomes(QStringLiteral("Downloads/m"), list("x.mkv")));
    EXPECT_TRUE(becomes(QStringLiteral("Trash"), list("m.part1.rar m.part1.rev m.part2.rar")));
}

TEST_F(TidyUpTest, LeavesTheVolumesOfOtherSetsInTheFolderAlone)
{
    engine.settings().deleteArchiveAfterExtract.set(true);
    for (const char* name : {"mm.part1.rar", "M.part1.rar", "m.rar"})
        engine.sandbox.write(QStringLiteral("Downloads/m/") + QString::fromLatin1(name), "another archive");
    finish(onDisk(QStringLiteral("m.part1.rar")));
    EXPECT_TRUE(becomes(QStringLiteral("Trash"), list("m.part1.rar")));
    EXPECT_TRUE(becomes(QStringLiteral("Downloads/m"), list("M.part1.rar m.rar mm.part1.rar x.mkv")));
}

TEST_F(TidyUpTest, MovesTheWholeFolderOfASetToTheTrash)
{
    engine.settings().deleteArchiveAfterExtract.set(true);
    engine.settings().trashSourceFolderAfterExtract.set(true);
    engine.settings().useCustomExtractionFolder.set(true);
    engine.settings().extractionFolderPath.set(engine.sandbox.path(QStringLiteral("Extracted")));
    engine.sandbox.write(QStringLiteral("Downloads/m/notes.txt"), "came along");
    finish(onDisk(QStringLiteral("m.part1.rar")));
    EXPECT_TRUE(becomes(QStringLiteral("Downloads"), {}));
    EXPECT_TRUE(becomes(QStringLiteral("Trash"), list("m/m.part1.rar m/notes.txt")));
    EXPECT_TRUE(becomes(QStringLiteral("Extracted"), list("x.mkv")));
}

TEST_F(TidyUpTest, NeverThrowsAwayWhatItHasJustUnpacked)
{
    engine.settings().deleteArchiveAfterExtract.set(true);
    engine.settings().trashSourceFolderAfterExtract.set(true);
    finish(onDisk(QStringLiteral("m.part1.rar")));
    EXPECT_TRUE(becomes(QStringLiteral("Trash"), list("m.part1.rar")));
    EXPECT_TRUE(becomes(QStringLiteral("Downloads/m"), list("x.mkv")));
}

TEST_F(TidyUpTest, NeverThrowsAwayTheDownloadFolder)
{
    engine.settings().deleteArchiveAfterExtract.set(true);
    engine.settings().trashSourceFolderAfterExtract.set(true);
    engine.settings().useCustomExtractionFolder.set(true);
    engine.settings().extractionFolderPath.set(engine.sandbox.path(QStringLiteral("Extracted")));
    engine.sandbox.write(QStringLiteral("Downloads/other.zip"), "the user's own");
    finish(onDisk(QStringLiteral(".part1.rar")));
    EXPECT_TRUE(becomes(QStringLiteral("Trash"), list(".part1.rar")));
    EXPECT_TRUE(engine.sandbox.exists(QStringLiteral("Downloads/other.zip")));
}

TEST_F(TidyUpTest, TakesRecoveryVolumesOutOfTheQueueAndOffTheDisk)
{
    const ItemPtr waiting = engine.add(QStringLiteral("http://h/m.part2.rev"));
    onDisk(QStringLiteral("m.part1.rev"));
    const ItemPtr other = onDisk(QStringLiteral("n.part1.rev"));
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    finish(first);
    EXPECT_EQ(engine.manager().items(), (std::vector{other, first}));
    EXPECT_TRUE(becomes(QStringLiteral("Downloads/m"), list("m.part1.rar x.mkv")));
    EXPECT_TRUE(becomes(QStringLiteral("Trash"), list("m.part1.rev")));
}

TEST_F(TidyUpTest, TakesAnExtractedSetOutOfTheQueueIfAsked)
{
    engine.settings().removeGroupAfterExtract.set(true);
    onDisk(QStringLiteral("m.part2.rar"));
    const ItemPtr other = onDisk(QStringLiteral("other.mkv"));
    finish(onDisk(QStringLiteral("m.part1.rar")));
    EXPECT_TRUE(waitUntil([&] { return engine.manager().items() == std::vector{other}; }));
    EXPECT_TRUE(engine.sandbox.exists(QStringLiteral("Downloads/m/m.part2.rar")));
}

TEST_F(TidyUpTest, StaysDoneWhenARecoveryVolumeArrivesLate)
{
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    finish(first);
    arrive(onDisk(QStringLiteral("m.part1.rev")));
    arrive(first);
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::done);
    EXPECT_EQ(engine.tools.calls(QStringLiteral("unrar")).size(), 1);
}

TEST_F(TidyUpTest, CleansTheNamesOfWhatItUnpacked)
{
    unpackerMakes("Some.Movie.2021.1080p.WEB-DL.x264-GROUP.mkv .hidden.1080p.txt");
    engine.settings().cleanExtractedNames.set(true);
    engine.settings().extractedNamesDotsToSpaces.set(true);
    engine.sandbox.write(QStringLiteral("Downloads/m/My.Own.1080p.File.txt"), "was there before");
    finish(onDisk(QStringLiteral("m.part1.rar")));
    EXPECT_EQ(engine.sandbox.files(QStringLiteral("Downloads/m")),
              (QStringList{QStringLiteral(".hidden.1080p.txt"), QStringLiteral("My.Own.1080p.File.txt"),
                           QStringLiteral("Some Movie 2021.mkv"), QStringLiteral("m.part1.rar")}));
}

TEST_F(TidyUpTest, LeavesNothingOfAFailedRun)
{
    engine.tools.add(QStringLiteral("unrar"),
                   "for destination; do :; done; echo half > \"${destination}Movie.1080p.mkv\"; exit 3");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    run(first);
    ASSERT_TRUE(reaches(first, ExtractionStatus::failed));
    EXPECT_EQ(engine.sandbox.files(QStringLiteral("Downloads")), list("m/m.part1.rar"));
}

TEST_F(TidyUpTest, LeavesWhatComesDownMeanwhileItsName)
{
    engine.settings().cleanExtractedNames.set(true);
    engine.tools.add(QStringLiteral("unrar"),
                   waitForGo() + "; for destination; do :; done; echo new > \"${destination}Movie.1080p.mkv\"");
    const ItemPtr archive = onDisk(QStringLiteral("x.rar"));
    run(archive);
    const ItemPtr other = engine.start(QStringLiteral("http://h/Film.2021.1080p.mkv"));
    engine.http.last().head(200, {{"Content-Length", "4"}});
    engine.http.last().data("ab");
    engine.sandbox.write(QStringLiteral("Downloads/Notes.1080p.txt"), "saved by the user meanwhile");
    go();
    ASSERT_TRUE(reaches(archive, ExtractionStatus::done));
    engine.http.last().data("cd");
    engine.http.last().finish();
    EXPECT_TRUE(waitUntil([&] { return other->status() == DownloadStatus::completed; }));
    EXPECT_EQ(engine.sandbox.read(QStringLiteral("Downloads/Film.2021.1080p.mkv")), "abcd");
    EXPECT_EQ(engine.sandbox.files(QStringLiteral("Downloads")),
              list("Film.2021.1080p.mkv Movie.mkv Notes.1080p.txt x.rar"));
}

TEST_F(TidyUpTest, MovesWhatStandsInTheWayToTheTrash)
{
    engine.sandbox.write(QStringLiteral("Downloads/x.mkv"), "the user's own");
    finish(onDisk(QStringLiteral("x.rar")));
    EXPECT_EQ(engine.sandbox.read(QStringLiteral("Downloads/x.mkv")), "new\n");
    EXPECT_EQ(engine.sandbox.read(QStringLiteral("Trash/x.mkv")), "the user's own");
}

TEST_F(TidyUpTest, GivesWayToTheFilesOfOtherItemsAndToItsOwnVolumes)
{
    unpackerMakes("other.mkv coming.bin.download m.part1.rar m.part2.rar");
    const ItemPtr coming = engine.start(QStringLiteral("http://h/coming.bin"));
    engine.http.last().head(200, {{"Content-Length", "4"}});
    engine.http.last().data("ab");
    onDisk(QStringLiteral("other.mkv"));
    onDisk(QStringLiteral("m.part2.rar"));
    engine.settings().useCustomExtractionFolder.set(true);
    for (const char* folder : {"Downloads", "Downloads/m"}) {
        engine.settings().extractionFolderPath.set(engine.sandbox.path(QString::fromLatin1(folder)));
        const ItemPtr archive = onDisk(QStringLiteral("m.part1.rar"));
        finish(archive);
        engine.manager().commands().removeItems({archive->id()});
    }
    EXPECT_EQ(engine.sandbox.files(QStringLiteral("Trash")), QStringList());
    EXPECT_EQ(engine.sandbox.read(QStringLiteral("Downloads/other.mkv")), "volume");
    EXPECT_EQ(engine.sandbox.read(QStringLiteral("Downloads/other (1).mkv")), "new\n");
    EXPECT_EQ(engine.sandbox.read(QStringLiteral("Downloads/coming.bin.download")), "ab");
    EXPECT_EQ(engine.sandbox.read(QStringLiteral("Downloads/m/m.part1.rar")), "volume");
    EXPECT_EQ(engine.sandbox.read(QStringLiteral("Downloads/m/m.part1 (1).rar")), "new\n");
    EXPECT_EQ(engine.sandbox.read(QStringLiteral("Downloads/m/m.part2.rar")), "volume");
    EXPECT_EQ(coming->status(), DownloadStatus::downloading);
}

TEST_F(TidyUpTest, LeavesTheNamesOfDownloadsFree)
{
    unpackerMakes("later.bin here.bin.download");
    const ItemPtr later = engine.add(QStringLiteral("http://h/later.bin"));
    const ItemPtr here = onDisk(QStringLiteral("here.bin"));
    finish(onDisk(QStringLiteral("x.rar")));
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
    EXPECT_EQ(engine.sandbox.read(QStringLiteral("Downloads/later.bin")), "ab");
    EXPECT_EQ(engine.sandbox.read(QStringLiteral("Downloads/here.bin")), "ab");
    EXPECT_TRUE(engine.sandbox.exists(QStringLiteral("Downloads/later (1).bin")));
    EXPECT_TRUE(engine.sandbox.exists(QStringLiteral("Downloads/here (1).bin")));
}

TEST_F(TidyUpTest, ThrowsAwayNoVolumesThatCameOutOfTheArchive)
{
    unpackerMakes("m.part7.rar");
    engine.settings().deleteArchiveAfterExtract.set(true);
    finish(onDisk(QStringLiteral("m.part1.rar")));
    EXPECT_TRUE(becomes(QStringLiteral("Trash"), list("m.part1.rar")));
    EXPECT_EQ(engine.sandbox.files(QStringLiteral("Downloads/m")), list("m.part7.rar"));
}

TEST_F(TidyUpTest, ThrowsAwayNoFolderThatTheArchiveUnpackedInto)
{
    engine.tools.add(QStringLiteral("unrar"), "for to; do :; done; mkdir \"${to}m\"; echo new > \"${to}m/film.mkv\"");
    engine.settings().deleteArchiveAfterExtract.set(true);
    engine.settings().trashSourceFolderAfterExtract.set(true);
    engine.settings().useCustomExtractionFolder.set(true);
    engine.settings().extractionFolderPath.set(engine.sandbox.folders().downloads);
    finish(onDisk(QStringLiteral("m.part1.rar")));
    EXPECT_TRUE(becomes(QStringLiteral("Trash"), list("m.part1.rar")));
    EXPECT_EQ(engine.sandbox.files(QStringLiteral("Downloads/m")), list("film.mkv"));
}

TEST_F(TidyUpTest, ThrowsAwayNoFolderInWhichFilesOfOtherItemsLie)
{
    engine.settings().deleteArchiveAfterExtract.set(true);
    engine.settings().trashSourceFolderAfterExtract.set(true);
    engine.settings().useCustomExtractionFolder.set(true);
    engine.settings().extractionFolderPath.set(engine.sandbox.path(QStringLiteral("Extracted")));
    const ItemPtr other = onDisk(QStringLiteral("other.mkv"));
    other->setLocalPath(engine.sandbox.write(QStringLiteral("Downloads/m/other.mkv"), "theirs"));
    finish(onDisk(QStringLiteral("m.part1.rar")));
    EXPECT_TRUE(becomes(QStringLiteral("Trash"), list("m.part1.rar")));
    EXPECT_TRUE(engine.sandbox.exists(QStringLiteral("Downloads/m/other.mkv")));
}

TEST_F(TidyUpTest, ThrowsAwayWhatARepairReplacedWithTheVolumes)
{
    engine.settings().deleteArchiveAfterExtract.set(true);
    engine.sandbox.write(QStringLiteral("Downloads/m/m.part2.rar.bad"), "spoilt");
    engine.sandbox.write(QStringLiteral("Downloads/m/n.part2.rar.bad"), "another set's");
    finish(onDisk(QStringLiteral("m.part1.rar")));
    EXPECT_TRUE(becomes(QStringLiteral("Trash"), list("m.part1.rar m.part2.rar.bad")));
    EXPECT_EQ(engine.sandbox.files(QStringLiteral("Downloads/m")), list("n.part2.rar.bad x.mkv"));
}

TEST_F(TidyUpTest, ThrowsAwayWhatItsOwnRepairMadeToo)
{
    engine.settings().deleteArchiveAfterExtract.set(true);
    engine.tools.add(QStringLiteral("unrar"),
                   "test -e '" + engine.sandbox.path(QStringLiteral("Downloads/m/m.part2.rar")).toUtf8() +
                       "' || exit 3; for destination; do :; done; echo new > \"${destination}x.mkv\"");
    engine.tools.add(QStringLiteral("rar"), "echo rebuilt > \"${3%/*}/volume.part2.rar\"");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    engine.sandbox.write(QStringLiteral("Downloads/m/m.part1.rar"), "Rar!\x1a\x07 volume");
    finish(first);
    EXPECT_TRUE(becomes(QStringLiteral("Trash"), list("m.part1.rar m.part2.rar")));
    EXPECT_EQ(engine.sandbox.files(QStringLiteral("Downloads/m")), list("x.mkv"));
}

TEST_F(TidyUpTest, LeavesTheArchiveOfARowThatWasRemovedMeanwhile)
{
    engine.tools.add(QStringLiteral("unrar"),
                   waitForGo() + "; for destination; do :; done; echo new > \"${destination}x.mkv\"");
    engine.settings().deleteArchiveAfterExtract.set(true);
    const ItemPtr item = onDisk(QStringLiteral("x.rar"));
    run(item);
    engine.manager().commands().removeItems({item->id()});
    go();
    ASSERT_TRUE(reaches(item, ExtractionStatus::done));
    turnEventLoop();
    EXPECT_EQ(engine.sandbox.files(QStringLiteral("Downloads")), list("x.mkv x.rar"));
    EXPECT_EQ(engine.sandbox.files(QStringLiteral("Trash")), QStringList());
}

TEST_F(TidyUpTest, GivesTheFolderAndTheOneFileTheUsersName)
{
    engine.settings().cleanExtractedNames.set(true);
    engine.manager().renameGroup(QStringLiteral("m"), QStringLiteral("a/b:c"));
    finish(onDisk(QStringLiteral("m.part1.rar")));
    EXPECT_TRUE(engine.sandbox.exists(QStringLiteral("Downloads/a-b-c/a-b-c.mkv")));
}

TEST_F(TidyUpTest, GivesSeveralFilesOnlyTheFoldersName)
{
    unpackerMakes("x.mkv y.srt");
    engine.settings().useCustomExtractionFolder.set(true);
    engine.settings().extractionFolderPath.set(engine.sandbox.path(QStringLiteral("Extracted")));
    engine.manager().renameGroup(QStringLiteral("m"), QStringLiteral("Mine"));
    finish(onDisk(QStringLiteral("m.part1.rar")));
    EXPECT_EQ(engine.sandbox.files(QStringLiteral("Extracted")), list("Mine/x.mkv Mine/y.srt"));
}

TEST_F(TidyUpTest, NeverLeavesTheFolderByANameOfTheUsers)
{
    engine.manager().renameGroup(QStringLiteral("m"), QStringLiteral(".."));
    finish(onDisk(QStringLiteral("m.part1.rar")));
    const QStringList unpacked = engine.sandbox.files().filter(QStringLiteral(".mkv"));
    EXPECT_EQ(unpacked.filter(QStringLiteral("Downloads/")), unpacked);
    EXPECT_EQ(unpacked.size(), 1);
}

TEST_F(TidyUpTest, GivesAPlainFileNoNameOfTheUsers)
{
    engine.manager().renameGroup(QStringLiteral("x.rar"), QStringLiteral("Mine"));
    finish(onDisk(QStringLiteral("x.rar")));
    EXPECT_TRUE(engine.sandbox.exists(QStringLiteral("Downloads/x.mkv")));
}

TEST_F(TidyUpTest, LosesNothingWhenTwoSetsHaveOneNameOfTheUsers)
{
    for (const char* set : {"m", "n"}) {
        const QString name = QString::fromLatin1(set);
        engine.manager().renameGroup(name, QStringLiteral("Mine"));
        unpackerMakes("x.mkv");
        finish(onDisk(name + QStringLiteral(".part1.rar")));
    }
    EXPECT_TRUE(engine.sandbox.exists(QStringLiteral("Downloads/Mine/Mine.mkv")));
    EXPECT_TRUE(engine.sandbox.exists(QStringLiteral("Trash/Mine.mkv")));
}

TEST_F(TidyUpTest, TakesOnlyANameThatTheGroupHasAtTheStart)
{
    engine.tools.add(QStringLiteral("unrar"),
                   waitForGo() + "; for destination; do :; done; echo new > \"${destination}x.mkv\"");
    engine.manager().renameGroup(QStringLiteral("m"), QStringLiteral("Early"));
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    run(first);
    engine.manager().renameGroup(QStringLiteral("m"), QStringLiteral("Late"));
    go();
    ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    EXPECT_TRUE(engine.sandbox.exists(QStringLiteral("Downloads/Early/Early.mkv")));
}
