#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

class VisibleGroupsTest : public ::testing::Test
{
protected:
    std::vector<ItemPtr> add(const QStringList& names)
    {
        QStringList urls;
        for (const QString& name : names)
            urls << u"http://h/"_s + name;
        return engine.add(urls);
    }

    /// Each group as its id with its files behind it.
    [[nodiscard]] QStringList shown() const
    {
        QStringList lines;
        for (const DownloadGroup& group : engine.manager().visibleGroups()) {
            QStringList names;
            for (const ItemPtr& item : group.items)
                names << item->filename();
            lines << group.id + u": "_s + names.join(u' ');
        }
        return lines;
    }

    mutable EngineOnScript engine;
};

QStringList lines(std::initializer_list<const char*> texts)
{
    QStringList list;
    for (const char* text : texts)
        list << QString::fromLatin1(text);
    return list;
}

} // namespace

TEST_F(VisibleGroupsTest, GathersASetInTheOrderOfItsPartNumbers)
{
    add(lines({"Movie.part10.rar", "Movie.part1.rar", "Movie.PART2.RAR", "Movie.rar"}));
    EXPECT_EQ(shown(), lines({"Movie: Movie.part1.rar Movie.PART2.RAR Movie.part10.rar", "Movie.rar: Movie.rar"}));
}

TEST_F(VisibleGroupsTest, StandInTheOrderOfTheirFirstItems)
{
    add(lines({"b.part2.rar", "single.zip", "a.part1.rar", "b.part1.rar"}));
    EXPECT_EQ(shown(), lines({"b: b.part1.rar b.part2.rar", "single.zip: single.zip", "a: a.part1.rar"}));
}

TEST_F(VisibleGroupsTest, TellSetsApartByLetterCase)
{
    add(lines({"movie.part1.rar", "Movie.part2.rar"}));
    EXPECT_EQ(shown(), lines({"movie: movie.part1.rar", "Movie: Movie.part2.rar"}));
}

TEST_F(VisibleGroupsTest, NeverJoinPlainFilesOfOneName)
{
    add(lines({"x.zip", "y.zip"}))[1]->setFilename(u"x.zip"_s);
    EXPECT_EQ(shown(), lines({"x.zip: x.zip", "x.zip: x.zip"}));
}

TEST_F(VisibleGroupsTest, CountNumbersBeyondSixtyFourBitsAsNone)
{
    add(lines({"x.part1.rar", "x.part99999999999999999999.rar"}));
    EXPECT_EQ(shown(), lines({"x: x.part99999999999999999999.rar x.part1.rar"}));
}

TEST_F(VisibleGroupsTest, KeepTheOrderOfTheQueueAmongEqualNumbers)
{
    const auto items = add(lines({"movie.part1.rev", "movie.part01.rar"}));
    items[0]->setStatus(DownloadStatus::completed);
    EXPECT_EQ(shown(), lines({"movie: movie.part1.rev movie.part01.rar"}));
}

TEST_F(VisibleGroupsTest, HideARecoveryVolumeUntilItIsFetched)
{
    const auto items = add(lines({"m.part1.rar", "m.part1.rev"}));
    EXPECT_EQ(shown(), lines({"m: m.part1.rar"}));
    for (const auto status : {DownloadStatus::downloading, DownloadStatus::completed}) {
        items[1]->setStatus(status);
        EXPECT_EQ(shown(), lines({"m: m.part1.rar m.part1.rev"}));
    }
    items[1]->setStatus(DownloadStatus::paused);
    EXPECT_EQ(shown(), lines({"m: m.part1.rar"}));
}

TEST_F(VisibleGroupsTest, ShowARecoveryVolumeThatIsToBeFetched)
{
    engine.settings().downloadRevFiles.set(true);
    const auto items = add(lines({"m.part1.rar", "m.part1.rev"}));
    EXPECT_EQ(shown(), lines({"m: m.part1.rar m.part1.rev"}));
    items[0]->setStatus(DownloadStatus::completed);
    EXPECT_EQ(shown(), lines({"m: m.part1.rar"}));
}

TEST_F(VisibleGroupsTest, HideRecoveryVolumesThatHaveNoParts)
{
    engine.settings().downloadRevFiles.set(true);
    add(lines({"m.part1.rev", "m.part2.rev"}));
    EXPECT_EQ(shown(), QStringList());
}

TEST_F(VisibleGroupsTest, HideRecoveryVolumesOfAnExtractedSet)
{
    engine.settings().downloadRevFiles.set(true);
    const auto items = add(lines({"m.part1.rar", "m.part2.rar", "m.part1.rev"}));
    items[0]->setExtractionStatus(ExtractionStatus::done);
    EXPECT_EQ(shown(), lines({"m: m.part1.rar m.part2.rar"}));
}

TEST_F(VisibleGroupsTest, FollowAFileThatGetsAnotherName)
{
    const auto items = add(lines({"get", "m.part1.rar"}));
    items[0]->setFilename(u"m.part2.rar"_s);
    EXPECT_EQ(shown(), lines({"m: m.part1.rar m.part2.rar"}));
    items[1]->setFilename(u"other.zip"_s);
    EXPECT_EQ(shown(), lines({"m: m.part2.rar", "other.zip: other.zip"}));
}

TEST_F(VisibleGroupsTest, TellTheGroupOfOneItemAsTheWholeListDoes)
{
    const auto items = add(lines({"b.part2.rar", "x.zip", "b.part1.rar", "b.part1.rev"}));
    EXPECT_EQ(engine.manager().visibleGroupOf(*items[0]), engine.manager().visibleGroups()[0]);
    EXPECT_EQ(engine.manager().visibleGroupOf(*items[1]), engine.manager().visibleGroups()[1]);
    engine.manager().commands().removeItems({items[0]->id(), items[2]->id()});
    EXPECT_EQ(engine.manager().visibleGroupOf(*items[3]), std::nullopt);
}

TEST_F(VisibleGroupsTest, CallAGroupByTheNameThatTheUserGaveIt)
{
    const GroupNames& names = engine.manager().groupNames();
    EXPECT_EQ(names.displayName(u"m"_s), u"m");
    engine.manager().renameGroup(u"m"_s, u" \n My Movie\t"_s);
    EXPECT_EQ(names.displayName(u"m"_s), u"My Movie");
    engine.restart();
    EXPECT_EQ(engine.manager().groupNames().customName(u"m"_s), u"My Movie");
}

TEST_F(VisibleGroupsTest, LoseTheGivenNameByAnEmptyOneOrTheirOwn)
{
    for (const QString& name : {u"  \n"_s, u"m"_s, QString()}) {
        engine.manager().renameGroup(u"m"_s, u"Other"_s);
        engine.manager().renameGroup(u"m"_s, name);
        EXPECT_TRUE(engine.manager().groupNames().customName(u"m"_s).isEmpty());
    }
}

TEST_F(VisibleGroupsTest, KeepTheirGivenNameThroughTheRemovalOfTheirItems)
{
    add(lines({"m.part1.rar"}));
    engine.manager().renameGroup(u"m"_s, u"Mine"_s);
    engine.manager().commands().removeGroup(u"m"_s);
    EXPECT_EQ(engine.manager().groupNames().customName(u"m"_s), u"Mine");
}
