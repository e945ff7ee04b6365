#include "archive/pipeline/ReadyArchive.h"

#include "fixtures/Statuses.h"
#include "model/SetName.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using namespace fixtures::statuses;

/// One item of the queue. Without a path its file is not on the disk.
struct Member
{
    const char16_t* name;
    const char16_t* path = nullptr;
    DownloadStatus::Kind status = completed;
};

ItemPtr itemOf(const Member& member)
{
    auto item = std::make_shared<DownloadItem>(*Link::parse(u"http://h/x"_s), ItemId::make());
    item->setFilename(QString::fromUtf16(member.name));
    item->setStatus(member.status == failed ? DownloadStatus::failure(u"gone"_s) : DownloadStatus(member.status));
    if (member.path)
        item->setLocalPath(QString::fromUtf16(member.path));
    return item;
}

/// A queue of which the first item has just finished.
struct Scene
{
    explicit Scene(const std::vector<Member>& members, bool areRevsComing = false)
        : isComing([areRevsComing](const DownloadItem& item) {
            EXPECT_TRUE(isRevName(item.filename())) << "only recovery volumes are asked about";
            return areRevsComing;
        })
    {
        for (const Member& member : members)
            items.push_back(itemOf(member));
        const QString base = setBaseName(items.front()->filename());
        for (const ItemPtr& item : items) {
            if (setBaseName(item->filename()) == base)
                set.push_back(item);
        }
    }
    [[nodiscard]] std::optional<ReadyArchive> archive() const { return readyArchive(items.front(), {set, isComing}); }

    std::vector<ItemPtr> items;
    std::vector<ItemPtr> set;
    std::function<bool(const DownloadItem&)> isComing;
};

struct SingleRow
{
    const char* name;
    Member item;
    bool isReady;
};

class SingleArchive : public ::testing::TestWithParam<SingleRow>
{};

const SingleRow singleRows[] = {
    {"zip", {u"x.zip", u"/d/x.zip"}, true},
    {"rar", {u"x.rar", u"/d/x.rar"}, true},
    {"sevenZip", {u"x.7z", u"/d/x.7z"}, true},
    {"tar", {u"x.tar", u"/d/x.tar"}, true},
    {"packedTar", {u"x.tar.gz", u"/d/x.tar.gz"}, true},
    {"anyLetterCase", {u"X.ZIP", u"/d/X.ZIP"}, true},
    {"noArchive", {u"x.mkv", u"/d/x.mkv"}, false},
    {"packedFile", {u"x.gz", u"/d/x.gz"}, false},
    {"noFile", {u"x.zip"}, false},
    {"singleRecoveryVolume", {u"x.rev", u"/d/x.rev"}, false},
    {"whatTheFileIsCalledOnTheDiskDecides", {u"x", u"/d/x.zip"}, true},
    {"notWhatItWasCalledInTheQueue", {u"x.zip", u"/d/x.zip.html"}, false},
    {"aPartThatHadToGetAnotherName", {u"m.part1.rar", u"/d/m.part1 (1).rar"}, true},
    {"theOldWayToNumberVolumes", {u"x.r01", u"/d/x.r01"}, false},
};

struct SetRow
{
    const char* name;
    std::vector<Member> queue;
    /// Of the archive; null while there is none.
    const char16_t* path;
};

class SetArchive : public ::testing::TestWithParam<SetRow>
{};

const SetRow setRows[] = {
    {"theOnlyPart", {{u"m.part1.rar", u"/d/m.part1.rar"}}, u"/d/m.part1.rar"},
    {"theFirstPartCameLast",
     {{u"m.part1.rar", u"/d/m.part1.rar"}, {u"m.part2.rar", u"/d/m.part2.rar"}},
     u"/d/m.part1.rar"},
    {"anotherPartCameLast",
     {{u"m.part2.rar", u"/d/m.part2.rar"}, {u"m.part1.rar", u"/d/m.part1.rar"}},
     u"/d/m.part1.rar"},

    {"aPartWaits", {{u"m.part1.rar", u"/d/m.part1.rar"}, {u"m.part2.rar", nullptr, queued}}, nullptr},
    {"aPartIsResolved", {{u"m.part1.rar", u"/d/m.part1.rar"}, {u"m.part2.rar", nullptr, resolving}}, nullptr},
    {"aPartIsExpanded", {{u"m.part1.rar", u"/d/m.part1.rar"}, {u"m.part2.rar", nullptr, expanding}}, nullptr},
    {"aPartComesDown", {{u"m.part1.rar", u"/d/m.part1.rar"}, {u"m.part2.rar", nullptr, downloading}}, nullptr},
    {"aPartIsPaused", {{u"m.part1.rar", u"/d/m.part1.rar"}, {u"m.part2.rar", nullptr, paused}}, nullptr},
    {"aPartIsStopped", {{u"m.part1.rar", u"/d/m.part1.rar"}, {u"m.part2.rar", nullptr, stopped}}, nullptr},
    {"aFinishedPartHasNoFile", {{u"m.part1.rar", u"/d/m.part1.rar"}, {u"m.part2.rar", nullptr, completed}}, nullptr},
    {"aPartHasFailedForGood",
     {{u"m.part1.rar", u"/d/m.part1.rar"}, {u"m.part2.rar", nullptr, failed}},
     u"/d/m.part1.rar"},
    {"onePartHasFailedAndAnotherWaits",
     {{u"m.part1.rar", u"/d/m.part1.rar"}, {u"m.part2.rar", nullptr, failed}, {u"m.part3.rar", nullptr, queued}},
     nullptr},
    {"aPartOnTheDiskIsFetchedAgain",
     {{u"m.part1.rar", u"/d/m.part1.rar"}, {u"m.part2.rar", u"/d/m.part2.rar", queued}},
     nullptr},
    {"aPartOnTheDiskHasFailed",
     {{u"m.part1.rar", u"/d/m.part1.rar"}, {u"m.part2.rar", u"/d/m.part2.rar", failed}},
     nullptr},
    {"theAskedPartItselfIsNotComplete",
     {{u"m.part1.rar", u"/d/m.part1.rar", stopped}, {u"m.part2.rar", u"/d/m.part2.rar"}},
     nullptr},
    {"anotherSetWaits", {{u"m.part1.rar", u"/d/m.part1.rar"}, {u"M.part2.rar", nullptr, queued}}, u"/d/m.part1.rar"},
    {"aPlainFileOfTheSetsNameWaits", {{u"m.part1.rar", u"/d/m.part1.rar"}, {u"m", nullptr, queued}}, u"/d/m.part1.rar"},

    {"theFirstPartHasFailed", {{u"m.part2.rar", u"/d/m.part2.rar"}, {u"m.part1.rar", nullptr, failed}}, nullptr},
    {"theFirstPartIsNotInTheQueue", {{u"m.part2.rar", u"/d/m.part2.rar"}}, nullptr},
    {"theTenthIsNotTheFirst", {{u"m.part10.rar", u"/d/m.part10.rar"}}, nullptr},
    {"theEleventhIsNotTheFirst", {{u"m.part11.rar", u"/d/m.part11.rar"}}, nullptr},
    {"norIsOneThatEndsInOne", {{u"m.part21.rar", u"/d/m.part21.rar"}}, nullptr},
    {"norIsTheZeroth", {{u"m.part0.rar", u"/d/m.part0.rar"}}, nullptr},
    {"norIsARecoveryVolume", {{u"m.part2.rar", u"/d/m.part2.rar"}, {u"m.part1.rev", u"/d/m.part1.rev"}}, nullptr},
    {"numbersWithZeros",
     {{u"m.part002.rar", u"/d/m.part002.rar"}, {u"m.part001.rar", u"/d/m.part001.rar"}},
     u"/d/m.part001.rar"},
    {"anyLetterCase", {{u"m.Part2.Rar", u"/d/m.Part2.Rar"}, {u"m.PART1.RAR", u"/d/m.PART1.RAR"}}, u"/d/m.PART1.RAR"},
    {"ofTwoFirstPartsTheFirstInTheQueue",
     {{u"m.part2.rar", u"/d/m.part2.rar"}, {u"m.part1.rar", u"/b/m.part1.rar"}, {u"m.part01.rar", u"/a/m.part01.rar"}},
     u"/b/m.part1.rar"},

    {"namesThatHadToChangeOnTheDisk",
     {{u"a\nb.part2.rar", u"/d/a b.part2.rar"}, {u"a\nb.part1.rar", u"/d/a b.part1.rar"}},
     u"/d/a b.part1.rar"},
    {"theFirstPartByItsNameOnTheDisk",
     {{u"m.part2.rar", u"/d/m.part2.rar"}, {u"m.part1.rar", u"/d/m.part1 (1).rar"}},
     nullptr},
    {"partsInOtherFolders",
     {{u"m.part2.rar", u"/e/m.part2.rar"}, {u"m.part1.rar", u"/d/m.part1.rar"}},
     u"/d/m.part1.rar"},

    {"aRecoveryVolumeStartsNothingByItself",
     {{u"m.part1.rev", u"/d/m.part1.rev"}, {u"m.part1.rar", u"/d/m.part1.rar"}},
     nullptr},
    {"recoveryVolumesThatAreThere",
     {{u"m.part1.rar", u"/d/m.part1.rar"}, {u"m.part1.rev", u"/d/m.part1.rev"}},
     u"/d/m.part1.rar"},
};

struct RevRow
{
    const char* name;
    Member rev;
    bool isComing;
    bool isReady;
};

class SetWithRecoveryVolume : public ::testing::TestWithParam<RevRow>
{};

const RevRow revRows[] = {
    {"waitsForNothing", {u"m.part1.rev", nullptr, queued}, false, true},
    {"isToCome", {u"m.part1.rev", nullptr, queued}, true, false},
    {"isToComeInCapitals", {u"m.PART1.REV", nullptr, queued}, true, false},
    {"isPausedForNothing", {u"m.part1.rev", nullptr, paused}, false, true},
    {"comesDown", {u"m.part1.rev", nullptr, downloading}, true, false},
    {"isStopped", {u"m.part1.rev", nullptr, stopped}, false, true},
    {"hasFailed", {u"m.part1.rev", nullptr, failed}, false, true},
    {"hasFailedWhateverElseIsSaid", {u"m.part1.rev", nullptr, failed}, true, true},
    {"isThere", {u"m.part1.rev", u"/d/m.part1.rev", completed}, false, true},
    {"isThereWhateverElseIsSaid", {u"m.part1.rev", u"/d/m.part1.rev", completed}, true, true},
    {"isThereAndComesOnceMore", {u"m.part1.rev", u"/d/m.part1.rev", downloading}, true, false},
    {"isThereAndWasToComeOnceMore", {u"m.part1.rev", u"/d/m.part1.rev", stopped}, false, true},
    {"isOfAnotherSet", {u"n.part1.rev", nullptr, queued}, true, true},
};

template <typename Row>
std::string nameOf(const ::testing::TestParamInfo<Row>& info)
{
    return info.param.name;
}

TEST_P(SingleArchive, IsReadyAsSoonAsItIsThere)
{
    const Scene scene({GetParam().item, {u"x.zip"}, {u"m.part2.rar", nullptr, queued}});
    const std::optional<ReadyArchive> archive = scene.archive();
    ASSERT_EQ(archive.has_value(), GetParam().isReady);
    if (!archive)
        return;
    EXPECT_EQ(archive->target, scene.items.front());
    EXPECT_EQ(archive->path, scene.items.front()->localPath());
    EXPECT_EQ(archive->base, QString());
    EXPECT_FALSE(archive->isSet);
    EXPECT_TRUE(archive->elsewhere.empty());
}

INSTANTIATE_TEST_SUITE_P(Rows, SingleArchive, ::testing::ValuesIn(singleRows), &nameOf<SingleRow>);

TEST_P(SetArchive, IsReadyWithTheLastOfItsParts)
{
    const Scene scene(GetParam().queue);
    const std::optional<ReadyArchive> archive = scene.archive();
    ASSERT_EQ(archive.has_value(), GetParam().path != nullptr);
    if (!archive)
        return;
    EXPECT_EQ(archive->path, QString::fromUtf16(GetParam().path));
    EXPECT_EQ(archive->target->localPath(), archive->path);
    EXPECT_EQ(archive->base, setBaseName(scene.items.front()->filename()));
    EXPECT_TRUE(archive->isSet);
}

INSTANTIATE_TEST_SUITE_P(Rows, SetArchive, ::testing::ValuesIn(setRows), &nameOf<SetRow>);

TEST_P(SetWithRecoveryVolume, WaitsForItOnlyIfItComes)
{
    const Scene scene({{u"m.part1.rar", u"/d/m.part1.rar"}, GetParam().rev}, GetParam().isComing);
    EXPECT_EQ(scene.archive().has_value(), GetParam().isReady);
}

INSTANTIATE_TEST_SUITE_P(Rows, SetWithRecoveryVolume, ::testing::ValuesIn(revRows), &nameOf<RevRow>);

TEST(ReadyArchive, KnowsTheVolumesThatLieElsewhere)
{
    const Scene scene({{u"m.part3.rar", u"/d/e/m.part3.rar"},
                       {u"m.part2.rar", u"/d/m.part2.rar"},
                       {u"m.part1.rar", u"/d/m.part1.rar"},
                       {u"m.part4.rar", nullptr, failed},
                       {u"m.part5.rar", u"/de/m.part5.rar"},
                       {u"m.part6.rar", u"/m.part6.rar"},
                       {u"m.part7.rar", u"/e/m.part7 (1).rar"},
                       {u"m", u"/e/m"},
                       {u"m.part1.rev", u"/d/m.part1.rev"},
                       {u"m.part2.rev", u"/e/m.part2.rev"}});
    const std::optional<ReadyArchive> archive = scene.archive();
    ASSERT_TRUE(archive);
    EXPECT_EQ(archive->target, scene.items[2]);
    EXPECT_EQ(archive->elsewhere, (std::vector{scene.items[0], scene.items[4], scene.items[5], scene.items[9]}));
}

TEST(ReadyArchive, HasNothingElsewhereWhereAllLieTogether)
{
    const Scene scene({{u"m.part1.rar", u"/m.part1.rar"}, {u"m.part2.rar", u"/m.part2.rar"}});
    const std::optional<ReadyArchive> archive = scene.archive();
    ASSERT_TRUE(archive);
    EXPECT_TRUE(archive->elsewhere.empty());
}

} // namespace
} // namespace vormel
