#include "ui/queue/rows/GroupTally.h"

#include "fixtures/Statuses.h"

#include <gtest/gtest.h>

#include <limits>

using namespace Qt::StringLiterals;

using namespace vormel;

namespace {

using Kinds = std::vector<DownloadStatus::Kind>;

DownloadGroup groupOf(const Kinds& kinds)
{
    DownloadGroup group{u"m"_s, {}};
    for (const DownloadStatus::Kind kind : kinds) {
        group.items.push_back(std::make_shared<DownloadItem>(*Link::parse(u"http://h/x"_s), ItemId::make()));
        group.items.back()->setStatus(kind == DownloadStatus::failed ? DownloadStatus::failure(u"gone"_s)
                                                                     : DownloadStatus(kind));
    }
    return group;
}

struct Case
{
    const char* name;
    Kinds items;
    const char16_t* english;
    const char16_t* italian;
    bool isStopped;
};

using namespace fixtures::statuses;

class GroupSummary : public ::testing::TestWithParam<Case>
{};

const Case cases[] = {
    {"allComplete", {completed, completed}, u"Completed", u"Completato", false},
    {"aFailureBeatsATransfer", {failed, downloading}, u"Error", u"Errore", false},
    {"aFailureBesideFinishedOnes", {failed, completed}, u"Error", u"Errore", false},
    {"aFailureBesideStoppedOnes", {failed, stopped}, u"Error", u"Errore", true},
    {"transfers",
     {downloading, completed, queued, downloading, completed},
     u"Downloading (2/5)",
     u"Download (2/5)",
     false},
    {"transferBesideStopped", {downloading, stopped}, u"Downloading (1/2)", u"Download (1/2)", false},
    {"allStopped", {stopped, stopped}, u"Stopped", u"Fermato", true},
    {"stoppedBesideComplete", {completed, stopped}, u"Stopped", u"Fermato", true},
    {"stoppedBesidePaused", {paused, stopped}, u"Queued", u"In coda", false},
    {"allPaused", {paused, paused}, u"Paused", u"In pausa", false},
    {"pausedBesideComplete", {paused, completed}, u"Queued", u"In coda", false},
    {"resolving", {resolving, queued}, u"Resolving...", u"Risoluzione...", false},
    {"waiting", {queued, completed}, u"Queued", u"In coda", false},
    {"expanding", {expanding}, u"Queued", u"In coda", false},
};

} // namespace

TEST_P(GroupSummary, FollowsTheFirstRuleThatFits)
{
    const GroupTally tally(groupOf(GetParam().items));
    EXPECT_EQ(tally.text(AppLanguage::english), QString::fromUtf16(GetParam().english));
    EXPECT_EQ(tally.text(AppLanguage::italian), QString::fromUtf16(GetParam().italian));
    EXPECT_EQ(tally.isStopped(), GetParam().isStopped);
}

INSTANTIATE_TEST_SUITE_P(States, GroupSummary, ::testing::ValuesIn(cases),
                         [](const auto& param) { return std::string(param.param.name); });

TEST(GroupTally, MeasuresProgressInBytesWhereSizesAreKnown)
{
    const DownloadGroup group = groupOf({downloading, queued});
    group.items[0]->setTotalBytes(100);
    group.items[0]->setBytesReceived(50);
    group.items[1]->setTotalBytes(100);
    group.items[1]->setProgress(1);
    EXPECT_DOUBLE_EQ(GroupTally(group).progress(), 0.25);
}

TEST(GroupTally, AFinishedPartCountsWhole)
{
    const DownloadGroup group = groupOf({downloading, downloading});
    for (const ItemPtr& item : group.items) {
        item->setTotalBytes(100);
        item->setBytesReceived(90);
    }
    const double before = GroupTally(group).progress();
    group.items[0]->setStatus(completed); // its bytes are those of its last tick
    EXPECT_EQ(GroupTally(group).bytesReceived, 190);
    EXPECT_GT(GroupTally(group).progress(), before);
    group.items[1]->setStatus(completed);
    EXPECT_DOUBLE_EQ(GroupTally(group).progress(), 1);
}

TEST(GroupTally, AFinishedPartOfUnknownSizeCountsWithItsBytes)
{
    const DownloadGroup group = groupOf({completed, downloading});
    group.items[0]->setBytesReceived(90);
    EXPECT_EQ(GroupTally(group).bytesReceived, 90);
}

TEST(GroupTally, TakesTheMeanOfTheItemsWhereNoSizeIsKnown)
{
    const DownloadGroup group = groupOf({downloading, completed});
    group.items[1]->setProgress(1);
    EXPECT_DOUBLE_EQ(GroupTally(group).progress(), 0.5);
    EXPECT_DOUBLE_EQ(GroupTally(DownloadGroup{}).progress(), 0);
}

TEST(GroupTally, SurvivesSizesThatNoDiskHolds)
{
    const DownloadGroup group = groupOf({queued, queued, queued});
    group.items[0]->setTotalBytes(std::numeric_limits<qint64>::max());
    group.items[1]->setTotalBytes(std::numeric_limits<qint64>::max());
    group.items[2]->setTotalBytes(-5);
    EXPECT_EQ(GroupTally(group).totalBytes, std::numeric_limits<qint64>::max());
}

TEST(GroupTally, AddsUpSpeeds)
{
    const DownloadGroup group = groupOf({downloading, downloading});
    group.items[0]->setSpeedBytesPerSec(1.5);
    group.items[1]->setSpeedBytesPerSec(2);
    EXPECT_DOUBLE_EQ(GroupTally(group).speedBytesPerSec, 3.5);
}
