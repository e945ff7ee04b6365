#include "engine/queue/SetIndex.h"

#include "fixtures/Statuses.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace vormel;
using namespace Qt::StringLiterals;

namespace {

/// An index over a queue whose order the test sets.
class SetIndexTest : public ::testing::Test
{
protected:
    ItemPtr make(const QString& name, const DownloadStatus& status = DownloadStatus::queued)
    {
        auto item = std::make_shared<DownloadItem>(*Link::parse(u"http://h/x"_s), ItemId::make());
        item->setFilename(name);
        item->setStatus(status);
        queue.push_back(item);
        return item;
    }
    ItemPtr add(const QString& name, const DownloadStatus& status = DownloadStatus::queued)
    {
        ItemPtr item = make(name, status);
        index.insert(item);
        return item;
    }
    void rename(const ItemPtr& item, const QString& name)
    {
        item->setFilename(name);
        index.renamed(item);
    }
    [[nodiscard]] std::vector<ItemPtr> found(const QString& base) const
    {
        const std::span<const ItemPtr> set = index.find(base);
        return {set.begin(), set.end()};
    }
    void expectTally(const ItemPtr& item, const SetTally& expected) const
    {
        const SetTally tally = index.tallyOf(item->id());
        EXPECT_EQ(tally.rarParts, expected.rarParts);
        EXPECT_EQ(tally.rarPartsMissing, expected.rarPartsMissing);
        EXPECT_EQ(tally.extracted, expected.extracted);
    }

    std::vector<ItemPtr> queue;
    SetIndex index{[this](const ItemPtr& a, const ItemPtr& b) {
        return std::find(queue.begin(), queue.end(), a) < std::find(queue.begin(), queue.end(), b);
    }};
};

using namespace fixtures::statuses;

struct ShareRow
{
    const char* name;
    const char16_t* file;
    DownloadStatus::Kind status;
    ExtractionStatus::Kind extraction;
    SetTally share;
};

class SetShare : public SetIndexTest, public ::testing::WithParamInterface<ShareRow>
{};

const ShareRow shareRows[] = {
    {"waitingPart", u"m.part1.rar", queued, idle, {1, 1, 0}},
    {"resolvingPart", u"m.part1.rar", DownloadStatus::resolving, idle, {1, 1, 0}},
    {"expandingPart", u"m.part1.rar", DownloadStatus::expanding, idle, {1, 1, 0}},
    {"comingPart", u"m.part1.rar", DownloadStatus::downloading, idle, {1, 1, 0}},
    {"pausedPart", u"m.part1.rar", DownloadStatus::paused, idle, {1, 1, 0}},
    {"stoppedPart", u"m.part1.rar", DownloadStatus::stopped, idle, {1, 1, 0}},
    {"failedPart", u"m.part1.rar", DownloadStatus::failed, idle, {1, 1, 0}},
    {"finishedPart", u"m.part1.rar", completed, idle, {1, 0, 0}},
    {"partInCapitals", u"m.PART1.RAR", queued, idle, {1, 1, 0}},
    {"partBeingExtracted", u"m.part1.rar", completed, ExtractionStatus::extracting, {1, 0, 0}},
    {"partBeingRepaired", u"m.part1.rar", completed, ExtractionStatus::repairing, {1, 0, 0}},
    {"partOfADamagedSet", u"m.part1.rar", completed, ExtractionStatus::failed, {1, 0, 0}},
    {"extractedPart", u"m.part1.rar", completed, done, {1, 0, 1}},
    {"extractedPartThatIsFetchedAgain", u"m.part1.rar", queued, done, {1, 1, 1}},
    {"waitingVolume", u"m.part1.rev", queued, idle, {0, 0, 0}},
    {"finishedVolume", u"m.part1.rev", completed, idle, {0, 0, 0}},
    {"singleArchive", u"m.rar", queued, idle, {1, 1, 0}},
    {"extractedSingleArchive", u"m.rar", completed, done, {1, 0, 1}},
    {"plainFile", u"m.zip", queued, idle, {0, 0, 0}},
    {"extractedPlainFile", u"m.zip", completed, done, {0, 0, 1}},
    {"endingWithoutADot", u"mrar", queued, idle, {0, 0, 0}},
};

} // namespace

TEST_P(SetShare, OfOneItemIsWhatItIs)
{
    const ItemPtr item = make(QString::fromUtf16(GetParam().file), GetParam().status);
    item->setExtractionStatus(GetParam().extraction);
    index.insert(item);
    expectTally(item, GetParam().share);
}

TEST_P(SetShare, OfOneItemFollowsItsChange)
{
    const ItemPtr item = add(QString::fromUtf16(GetParam().file));
    for (const auto other : {DownloadStatus::queued, DownloadStatus::completed}) {
        item->setStatus(other);
        item->setExtractionStatus(idle);
        index.recount(*item);
        item->setStatus(GetParam().status);
        item->setExtractionStatus(GetParam().extraction);
        index.recount(*item);
        expectTally(item, GetParam().share);
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, SetShare, ::testing::ValuesIn(shareRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(SetIndexTest, AddsUpASetAndNoOther)
{
    const ItemPtr first = add(u"m.part1.rar"_s, completed);
    const ItemPtr second = add(u"m.part2.rar"_s);
    const ItemPtr rev = add(u"m.part1.rev"_s);
    const ItemPtr stranger = add(u"M.part1.rar"_s);
    const ItemPtr single = add(u"m.rar"_s, completed);
    first->setExtractionStatus(done);
    index.recount(*first);
    for (const ItemPtr& member : {first, second, rev})
        expectTally(member, {2, 1, 1});
    expectTally(stranger, {1, 1, 0});
    expectTally(single, {1, 0, 0});
}

TEST_F(SetIndexTest, KnowsNothingOfStrangers)
{
    const ItemPtr stranger = make(u"m.part1.rar"_s);
    expectTally(stranger, {});
    EXPECT_TRUE(index.find(u"m"_s).empty());
    EXPECT_TRUE(index.find(QString()).empty());
}

TEST_F(SetIndexTest, KeepsTheOrderOfTheQueueHoweverItemsCome)
{
    const std::vector items{make(u"m.part3.rar"_s), make(u"m.part1.rev"_s), make(u"m.part1.rar"_s),
                            make(u"m.part2.rar"_s)};
    for (const std::size_t next : {2U, 0U, 3U, 1U})
        index.insert(items[next]);
    EXPECT_EQ(found(u"m"_s), items);
}

TEST_F(SetIndexTest, FindsMembersByTheirBaseNameAloneAndPlainFilesByTheirName)
{
    const ItemPtr part = add(u"m.part1.rar"_s);
    const ItemPtr single = add(u"m.rar"_s);
    const ItemPtr upper = add(u"M.part1.rar"_s);
    const ItemPtr plain = add(u"m"_s);
    EXPECT_EQ(found(u"m"_s), (std::vector{part, plain}));
    EXPECT_EQ(found(u"m.rar"_s), std::vector{single});
    EXPECT_EQ(found(u"M"_s), std::vector{upper});
    EXPECT_TRUE(found(u"m.part1.rar"_s).empty());
}

TEST_F(SetIndexTest, ForgetsWhatIsRemoved)
{
    const ItemPtr first = add(u"m.part1.rar"_s);
    const ItemPtr second = add(u"m.part2.rar"_s, completed);
    const ItemPtr third = add(u"m.part3.rar"_s);
    index.remove(second);
    EXPECT_EQ(found(u"m"_s), (std::vector{first, third}));
    expectTally(first, {2, 2, 0});
    expectTally(second, {});
    index.remove(first);
    EXPECT_EQ(found(u"m"_s), std::vector{third});
    index.remove(third);
    EXPECT_TRUE(found(u"m"_s).empty());
    index.insert(second);
    EXPECT_EQ(found(u"m"_s), std::vector{second});
    expectTally(second, {1, 0, 0});
}

TEST_F(SetIndexTest, TakesARenamedItemToItsNewSet)
{
    const ItemPtr first = add(u"m.part1.rar"_s);
    const ItemPtr moving = add(u"m.part2.rar"_s, completed);
    const ItemPtr other = add(u"n.part1.rar"_s);
    rename(moving, u"n.part2.rar"_s);
    EXPECT_EQ(found(u"m"_s), std::vector{first});
    EXPECT_EQ(found(u"n"_s), (std::vector{moving, other}));
    expectTally(first, {1, 1, 0});
    expectTally(moving, {2, 1, 0});
    rename(moving, u"alone.zip"_s);
    EXPECT_EQ(found(u"n"_s), std::vector{other});
    EXPECT_EQ(found(u"alone.zip"_s), std::vector{moving});
    expectTally(other, {1, 1, 0});
    expectTally(moving, {0, 0, 0});
}

TEST_F(SetIndexTest, CountsAnItemAnewThatIsRenamedWithinItsSet)
{
    const ItemPtr first = add(u"m.part1.rar"_s);
    const ItemPtr second = add(u"m.part2.rar"_s);
    rename(first, u"m.part1.rev"_s);
    EXPECT_EQ(found(u"m"_s), (std::vector{first, second}));
    expectTally(first, {1, 1, 0});
    rename(first, u"m.part3.RAR"_s);
    expectTally(first, {2, 2, 0});
}

TEST_F(SetIndexTest, FollowsTheQueueIntoAnotherOrder)
{
    const std::vector m{add(u"m.part1.rar"_s), add(u"m.part2.rar"_s), add(u"m.part3.rar"_s)};
    const std::vector n{add(u"n.part1.rar"_s), add(u"n.part2.rar"_s)};
    std::reverse(queue.begin(), queue.end());
    index.reorder();
    EXPECT_EQ(found(u"m"_s), (std::vector{m[2], m[1], m[0]}));
    EXPECT_EQ(found(u"n"_s), (std::vector{n[1], n[0]}));
    index.remove(m[1]);
    EXPECT_EQ(found(u"m"_s), (std::vector{m[2], m[0]}));
    expectTally(m[0], {2, 2, 0});
}
