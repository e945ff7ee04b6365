#include "fixtures/ArchiveStep.h"
#include "fixtures/EventLoop.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// What the settings say, and what lies where once everything is over. Files that came down are volumes, a note of the
/// user's and a plain archive; x.mkv was in the archive.
struct Row
{
    const char* name;
    const char* archive;
    bool deletes;
    bool wholeFolder;
    bool elsewhere; ///< a folder of the user's choice for what was in archives
    const char* downloads;
    const char* extracted;
    const char* trash;
};

const Row rows[] = {
    {"ASetStays", "m.part1.rar", false, false, false, "m/m.part1.rar m/m.part2.rar m/note.txt m/x.mkv plain.rar", "",
     ""},
    {"ASetStaysThoughItsFolderWouldGo", "m.part1.rar", false, true, true,
     "m/m.part1.rar m/m.part2.rar m/note.txt plain.rar", "x.mkv", ""},
    {"TheVolumesGoAndTheFolderStays", "m.part1.rar", true, false, true, "m/note.txt plain.rar", "x.mkv",
     "m.part1.rar m.part2.rar"},
    {"TheFolderGoes", "m.part1.rar", true, true, true, "plain.rar", "x.mkv", "m/m.part1.rar m/m.part2.rar m/note.txt"},
    {"TheFolderStaysWithWhatCameOut", "m.part1.rar", true, true, false, "m/note.txt m/x.mkv plain.rar", "",
     "m.part1.rar m.part2.rar"},
    {"APlainArchiveStays", "plain.rar", false, true, true, "m/m.part1.rar m/m.part2.rar m/note.txt plain.rar", "x.mkv",
     ""},
    {"APlainArchiveGoesAlone", "plain.rar", true, true, true, "m/m.part1.rar m/m.part2.rar m/note.txt", "x.mkv",
     "plain.rar"},
};

class SpentArchive : public ::testing::TestWithParam<Row>, protected ArchiveStep
{
protected:
    [[nodiscard]] std::string filesIn(const char* folder) const
    {
        return engine.sandbox.files(QString::fromLatin1(folder)).join(u' ').toStdString();
    }
};

} // namespace

TEST_P(SpentArchive, GoesAsFarAsTheSettingsSay)
{
    unpackerMakes("x.mkv");
    engine.settings().deleteArchiveAfterExtract.set(GetParam().deletes);
    engine.settings().trashSourceFolderAfterExtract.set(GetParam().wholeFolder);
    engine.settings().useCustomExtractionFolder.set(GetParam().elsewhere);
    engine.settings().extractionFolderPath.set(engine.sandbox.path(u"Extracted"_s));
    engine.settings().removeGroupAfterExtract.set(true); // the last step of all, so that its end can be waited for
    engine.sandbox.write(u"Downloads/m/note.txt"_s, "the user's own");
    const std::vector<ItemPtr> items{onDisk(u"m.part1.rar"_s), onDisk(u"m.part2.rar"_s), onDisk(u"plain.rar"_s)};
    const std::size_t before = engine.manager().items().size();
    run(QLatin1StringView(GetParam().archive) == u"plain.rar" ? items[2] : items[0]);
    ASSERT_TRUE(waitUntil([&] { return engine.manager().items().size() < before; }));
    EXPECT_EQ(filesIn("Downloads"), GetParam().downloads);
    EXPECT_EQ(filesIn("Extracted"), GetParam().extracted);
    EXPECT_EQ(filesIn("Trash"), GetParam().trash);
}

INSTANTIATE_TEST_SUITE_P(All, SpentArchive, ::testing::ValuesIn(rows),
                         [](const auto& row) { return std::string(row.param.name); });
