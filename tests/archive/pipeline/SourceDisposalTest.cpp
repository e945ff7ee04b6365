#include "archive/pipeline/SourceDisposal.h"

#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

/// All paths are relative to the folder "m" beside which "m2" lies. "." is that folder itself.
struct Row
{
    const char* name;
    const char* archive;
    QStringList sources;
    QStringList foldersToKeep;
    QSet<QString> filesOfOthers;
    bool areSourcesSpent;
    bool isFolderSpent;
    QStringList gone;
};

class SourceDisposal : public ::testing::TestWithParam<Row>
{
protected:
    SourceDisposal()
    {
        sandbox.write(u"d/m/deep/deeper/x"_s, "x");
        sandbox.write(u"d/m2/x"_s, "x");
        QFile::link(sandbox.path(u"d/m/deep"_s), sandbox.path(u"d/way"_s));
        QFile::link(sandbox.path(u"d"_s), sandbox.path(u"top"_s));
    }
    [[nodiscard]] QString at(const QString& path) const { return QDir::cleanPath(sandbox.path(u"d/m/"_s + path)); }
    [[nodiscard]] QStringList all(const QStringList& paths) const
    {
        QStringList found;
        for (const QString& path : paths)
            found << at(path);
        return found;
    }

    fixtures::Sandbox sandbox;
};

const QStringList set{u"m.part1.rar"_s, u"m.part2.rar"_s, u"m.part1.rev"_s};
const QStringList itself{u"."_s};

const Row rows[] = {
    {"nothingUnlessSpent", "x.zip", {u"x.zip"_s}, {}, {}, false, false, {}},
    {"nothingOfASetUnlessSpent", "m.part1.rar", set, {}, {}, false, false, {}},
    {"theFolderAloneIsNeverSpent", "m.part1.rar", set, {}, {}, false, true, {}},

    {"aSingleArchive", "x.zip", {u"x.zip"_s}, {}, {}, true, false, {u"x.zip"_s}},
    {"aSingleArchiveTakesNoFolderAlong", "x.rar", {u"x.rar"_s}, {}, {}, true, true, {u"x.rar"_s}},
    {"aRecoveryVolumeTakesNoFolderAlong", "m.part1.rev", {u"m.part1.rev"_s}, {}, {}, true, true, {u"m.part1.rev"_s}},
    {"theVolumesOfASet", "m.part1.rar", set, {}, {}, true, false, set},
    {"theVolumesFromSeveralFolders",
     "m.part1.rar",
     {u"m.part1.rar"_s, u"../m2/m.part2.rar"_s},
     {},
     {},
     true,
     false,
     {u"m.part1.rar"_s, u"../m2/m.part2.rar"_s}},
    {"noneThatBelongsToOthers",
     "m.part1.rar",
     set,
     {},
     {u"m.part2.rar"_s, u"other.mkv"_s},
     true,
     false,
     {u"m.part1.rar"_s, u"m.part1.rev"_s}},
    {"notTheArchiveOfOthers", "x.zip", {u"x.zip"_s}, {}, {u"x.zip"_s}, true, false, {}},
    {"noSources", "x.zip", {}, {}, {}, true, false, {}},

    {"theWholeFolder", "m.part1.rar", set, {}, {}, true, true, itself},
    {"theWholeFolderByAnyVolume", "m.PART01.RAR", set, {}, {}, true, true, itself},
    {"theFolderWithinOneToKeep", "m.part1.rar", set, {u".."_s}, {}, true, true, itself},
    {"theFolderBesideOneToKeep", "m.part1.rar", set, {u"../m2"_s}, {}, true, true, itself},
    {"notTheFolderToKeep", "m.part1.rar", set, {u"."_s}, {}, true, true, set},
    {"notTheFolderThatHoldsOneToKeep", "m.part1.rar", set, {u"deep"_s}, {}, true, true, set},
    {"notTheFolderThatHoldsOneToKeepDeepDown", "m.part1.rar", set, {u"deep/deeper"_s}, {}, true, true, set},
    {"notForTheSecondFolderToKeep", "m.part1.rar", set, {u"../m2"_s, u"deep"_s}, {}, true, true, set},
    {"notTheFolderToKeepByALink", "m.part1.rar", set, {u"../../top/m"_s}, {}, true, true, set},
    {"notTheFolderThatHoldsOneToKeepByALink", "m.part1.rar", set, {u"../way/deeper"_s}, {}, true, true, set},

    {"notTheFolderOfOthersFiles", "m.part1.rar", set, {}, {u"other.mkv"_s}, true, true, set},
    {"notTheFolderOfOthersFilesDeepDown", "m.part1.rar", set, {}, {u"deep/other.mkv"_s}, true, true, set},
    {"notTheFolderThatWasUnpacked", "m.part1.rar", set, {}, {u"."_s}, true, true, set},
    {"theFolderBesideOthersFiles",
     "m.part1.rar",
     set,
     {},
     {u"../m2/other.mkv"_s, u"../other.mkv"_s},
     true,
     true,
     itself},
    {"theFolderBesideAFileThatBeginsAlike", "m.part1.rar", set, {}, {u"../m.mkv"_s}, true, true, itself},
    {"notTheFolderOfOthersFilesAndOnlyOwnVolumes",
     "m.part1.rar",
     set,
     {},
     {u"m.part2.rar"_s, u"other.mkv"_s},
     true,
     true,
     {u"m.part1.rar"_s, u"m.part1.rev"_s}},
};

TEST_P(SourceDisposal, ThrowsAwayWhatIsSpentAndNothingElse)
{
    const QStringList others = all(GetParam().filesOfOthers.values());
    SpentArchive spent{
        at(QString::fromUtf8(GetParam().archive)),   all(GetParam().sources),    all(GetParam().foldersToKeep),
        QSet<QString>(others.begin(), others.end()), GetParam().areSourcesSpent, GetParam().isFolderSpent};
    EXPECT_EQ(pathsToTrash(spent), all(GetParam().gone));
}

INSTANTIATE_TEST_SUITE_P(Rows, SourceDisposal, ::testing::ValuesIn(rows),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
} // namespace vormel
