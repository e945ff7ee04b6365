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
        return waitUntil([&] { return shop.sandbox.files(folder) == files; }, std::chrono::seconds(5));
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
    shop.settings().deleteArchiveAfterExtract.set(true);
    shop.settings().trashSourceFolderAfterExtract.set(true);
    finish(onDisk(QStringLiteral("x.rar")));
    EXPECT_TRUE(becomes(QStringLiteral("Downloads"), list("x.mkv")));
    EXPECT_TRUE(becomes(QStringLiteral("Trash"), list("x.rar")));
}

TEST_F(TidyUpTest, MovesTheVolumesOfASetToTheTrashAndKeepsTheirFolder)
{
    shop.settings().deleteArchiveAfterExtract.set(true);
    onDisk(QStringLiteral("m.part2.rar"));
    onDisk(QStringLiteral("m.part1.rev"));
    finish(onDisk(QStringLiteral("m.part1.rar")));
    EXPECT_TRUE(becomes(QStringLiteral("Downloads/m"), list("x.mkv")));
    EXPECT_TRUE(becomes(QStringLiteral("Trash"), list("m.part1.rar m.part1.rev m.part2.rar")));
}

TEST_F(TidyUpTest, LeavesTheVolumesOfOtherSetsInTheFolderAlone)
{
    shop.settings().deleteArchiveAfterExtract.set(true);
    for (const char* name : {"mm.part1.rar", "M.part1.rar", "m.rar"})
        shop.sandbox.write(QStringLiteral("Downloads/m/") + QString::fromLatin1(name), "another archive");
    finish(onDisk(QStringLiteral("m.part1.rar")));
    EXPECT_TRUE(becomes(QStringLiteral("Trash"), list("m.part1.rar")));
    EXPECT_TRUE(becomes(QStringLiteral("Downloads/m"), list("M.part1.rar m.rar mm.part1.rar x.mkv")));
}

TEST_F(TidyUpTest, MovesTheWholeFolderOfASetToTheTrash)
{
    shop.settings().deleteArchiveAfterExtract.set(true);
    shop.settings().trashSourceFolderAfterExtract.set(true);
    shop.settings().useCustomExtractionFolder.set(true);
    shop.settings().extractionFolderPath.set(shop.sandbox.path(QStringLiteral("Extracted")));
    shop.sandbox.write(QStringLiteral("Downloads/m/notes.txt"), "came along");
    finish(onDisk(QStringLiteral("m.part1.rar")));
    EXPECT_TRUE(becomes(QStringLiteral("Downloads"), {}));
    EXPECT_TRUE(becomes(QStringLiteral("Trash"), list("m/m.part1.rar m/notes.txt")));
    EXPECT_TRUE(becomes(QStringLiteral("Extracted"), list("x.mkv")));
}

TEST_F(TidyUpTest, NeverThrowsAwayWhatItHasJustUnpacked)
{
    shop.settings().deleteArchiveAfterExtract.set(true);
    shop.settings().trashSourceFolderAfterExtract.set(true);
    finish(onDisk(QStringLiteral("m.part1.rar")));
    EXPECT_TRUE(becomes(QStringLiteral("Trash"), list("m.part1.rar")));
    EXPECT_TRUE(becomes(QStringLiteral("Downloads/m"), list("x.mkv")));
}

TEST_F(TidyUpTest, NeverThrowsAwayTheDownloadFolder)
{
    shop.settings().deleteArchiveAfterExtract.set(true);
    shop.settings().trashSourceFolderAfterExtract.set(true);
    shop.settings().useCustomExtractionFolder.set(true);
    shop.settings().extractionFolderPath.set(shop.sandbox.path(QStringLiteral("Extracted")));
    shop.sandbox.write(QStringLiteral("Downloads/other.zip"), "the user's own");
    finish(onDisk(QStringLiteral(".part1.rar")));
    EXPECT_TRUE(becomes(QStringLiteral("Trash"), list(".part1.rar")));
    EXPECT_TRUE(shop.sandbox.exists(QStringLiteral("Downloads/other.zip")));
}

TEST_F(TidyUpTest, TakesRecoveryVolumesOutOfTheQueueAndOffTheDisk)
{
    const ItemPtr waiting = shop.add(QStringLiteral("http://h/m.part2.rev"));
    onDisk(QStringLiteral("m.part1.rev"));
    const ItemPtr other = onDisk(QStringLiteral("n.part1.rev"));
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    finish(first);
    EXPECT_EQ(shop.manager().items(), (std::vector{other, first}));
    EXPECT_TRUE(becomes(QStringLiteral("Downloads/m"), list("m.part1.rar x.mkv")));
    EXPECT_TRUE(becomes(QStringLiteral("Trash"), list("m.part1.rev")));
}

TEST_F(TidyUpTest, TakesAnExtractedSetOutOfTheQueueIfAsked)
{
    shop.settings().removeGroupAfterExtract.set(true);
    onDisk(QStringLiteral("m.part2.rar"));
    const ItemPtr other = onDisk(QStringLiteral("other.mkv"));
    finish(onDisk(QStringLiteral("m.part1.rar")));
    EXPECT_EQ(shop.manager().items(), std::vector{other});
    EXPECT_TRUE(shop.sandbox.exists(QStringLiteral("Downloads/m/m.part2.rar")));
}

TEST_F(TidyUpTest, StaysDoneWhenARecoveryVolumeArrivesLate)
{
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    finish(first);
    arrive(onDisk(QStringLiteral("m.part1.rev")));
    arrive(first);
    EXPECT_EQ(first->extractionStatus(), ExtractionStatus::done);
    EXPECT_EQ(shop.tools.calls(QStringLiteral("unrar")).size(), 1);
}

TEST_F(TidyUpTest, CleansTheNamesOfWhatItUnpacked)
{
    unpackerMakes("Some.Movie.2021.1080p.WEB-DL.x264-GROUP.mkv .hidden.1080p.txt");
    shop.settings().cleanExtractedNames.set(true);
    shop.settings().extractedNamesDotsToSpaces.set(true);
    shop.sandbox.write(QStringLiteral("Downloads/m/My.Own.1080p.File.txt"), "was there before");
    finish(onDisk(QStringLiteral("m.part1.rar")));
    EXPECT_EQ(shop.sandbox.files(QStringLiteral("Downloads/m")),
              (QStringList{QStringLiteral(".hidden.1080p.txt"), QStringLiteral("My.Own.1080p.File.txt"),
                           QStringLiteral("Some Movie 2021.mkv"), QStringLiteral("m.part1.rar")}));
}

TEST_F(TidyUpTest, CleansAlsoWhatAFailedRunOfTheArchiveLeft)
{
    shop.settings().cleanExtractedNames.set(true);
    shop.tools.add(QStringLiteral("unrar"),
                   "for destination; do :; done; echo half > \"${destination}Movie.1080p.mkv\"; exit 3");
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    run(first);
    ASSERT_TRUE(reaches(first, ExtractionStatus::failed));
    unpackerMakes("Movie.1080p.mkv");
    finish(first);
    EXPECT_TRUE(shop.sandbox.exists(QStringLiteral("Downloads/m/Movie.mkv")));
}

TEST_F(TidyUpTest, GivesTheFolderAndTheOneFileTheUsersName)
{
    shop.settings().cleanExtractedNames.set(true);
    shop.manager().renameGroup(QStringLiteral("m"), QStringLiteral("a/b:c"));
    finish(onDisk(QStringLiteral("m.part1.rar")));
    EXPECT_TRUE(shop.sandbox.exists(QStringLiteral("Downloads/a-b-c/a-b-c.mkv")));
}

TEST_F(TidyUpTest, GivesSeveralFilesOnlyTheFoldersName)
{
    unpackerMakes("x.mkv y.srt");
    shop.settings().useCustomExtractionFolder.set(true);
    shop.settings().extractionFolderPath.set(shop.sandbox.path(QStringLiteral("Extracted")));
    shop.manager().renameGroup(QStringLiteral("m"), QStringLiteral("Mine"));
    finish(onDisk(QStringLiteral("m.part1.rar")));
    EXPECT_EQ(shop.sandbox.files(QStringLiteral("Extracted")), list("Mine/x.mkv Mine/y.srt"));
}

TEST_F(TidyUpTest, NeverLeavesTheFolderByANameOfTheUsers)
{
    shop.manager().renameGroup(QStringLiteral("m"), QStringLiteral(".."));
    finish(onDisk(QStringLiteral("m.part1.rar")));
    const QStringList unpacked = shop.sandbox.files().filter(QStringLiteral(".mkv"));
    EXPECT_EQ(unpacked.filter(QStringLiteral("Downloads/")), unpacked);
    EXPECT_EQ(unpacked.size(), 1);
}

TEST_F(TidyUpTest, GivesAPlainFileNoNameOfTheUsers)
{
    shop.manager().renameGroup(QStringLiteral("x.rar"), QStringLiteral("Mine"));
    finish(onDisk(QStringLiteral("x.rar")));
    EXPECT_TRUE(shop.sandbox.exists(QStringLiteral("Downloads/x.mkv")));
}

TEST_F(TidyUpTest, TakesTheNameThatTheGroupHasAtTheEnd)
{
    shop.tools.add(QStringLiteral("unrar"),
                   waitForGo() + "; for destination; do :; done; echo new > \"${destination}x.mkv\"");
    shop.manager().renameGroup(QStringLiteral("m"), QStringLiteral("Early"));
    const ItemPtr first = onDisk(QStringLiteral("m.part1.rar"));
    run(first);
    shop.manager().renameGroup(QStringLiteral("m"), QStringLiteral("Late"));
    go();
    ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    EXPECT_TRUE(shop.sandbox.exists(QStringLiteral("Downloads/Early/Late.mkv")));
}
