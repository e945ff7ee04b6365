#include "engine/queue/ItemTable.h"

#include "engine/QuietTable.h"

#include <gtest/gtest.h>

using namespace vormel;
using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

/// A rank for each of the items a, b, c and so on; `none` for those that get no number.
struct TableRow
{
    const char* name;
    std::vector<std::size_t> ranks;
    const char16_t* order;
};

class TableOrder : public ::testing::TestWithParam<TableRow>, protected fixtures::QuietTable
{};

const TableRow tableRows[] = {
    {"asItStands", {0, 1, 2, 3}, u"abcd"},
    {"reversed", {3, 2, 1, 0}, u"dcba"},
    {"ranksNeedNotFollowEachOther", {70, 5, 900, 6}, u"bdac"},
    {"withoutRanksNothingMoves", {none, none, none, none}, u"abcd"},
    {"theUnnumberedGoToTheEndInTheirOrder", {none, 1, none, 0}, u"dbac"},
    {"theNumberedStandInFront", {none, none, none, 7}, u"dabc"},
    {"equalRanksKeepTheirOrder", {1, 0, 1, 0}, u"bdac"},
    {"oneRankForAll", {4, 4, 4, 4}, u"abcd"},
};

class ItemTableTest : public ::testing::Test, protected fixtures::QuietTable
{
protected:
    [[nodiscard]] std::vector<ItemPtr> set(const QString& base) const
    {
        const std::span<const ItemPtr> found = table.itemsOfSet(base);
        return {found.begin(), found.end()};
    }
};

} // namespace

TEST_P(TableOrder, FollowsTheRanks)
{
    QHash<ItemId, std::size_t> ranks;
    for (std::size_t i = 0; i < GetParam().ranks.size(); ++i) {
        const ItemPtr item = add(QString(QChar(static_cast<char16_t>(u'a' + i))));
        if (GetParam().ranks[i] != none)
            ranks.insert(item->id(), GetParam().ranks[i]);
    }
    ranks.insert(ItemId::make(), 0);
    table.reorder(ranks);
    QString order;
    for (const ItemPtr& item : table.items()) {
        EXPECT_EQ(table.position(item->id()), static_cast<std::size_t>(order.size()));
        order += item->filename();
    }
    EXPECT_EQ(order, QString::fromUtf16(GetParam().order));
}

INSTANTIATE_TEST_SUITE_P(Rows, TableOrder, ::testing::ValuesIn(tableRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(ItemTableTest, KeepsItsRowsBesideItsItems)
{
    const ItemPtr part = add(u"m.part1.rar"_s, DownloadStatus::completed);
    const ItemPtr rev = add(u"m.part1.REV"_s, DownloadStatus::stopped);
    const ItemPtr plain = add(u"x.zip"_s, DownloadStatus::paused);
    table.reorder({{plain->id(), 0}, {rev->id(), 1}});
    ASSERT_EQ(table.rows().size(), 3U);
    EXPECT_EQ(table.rows()[0].status, DownloadStatus::paused);
    EXPECT_EQ(table.rows()[1].status, DownloadStatus::stopped);
    EXPECT_TRUE(table.rows()[1].isRev);
    EXPECT_FALSE(table.rows()[2].isRev);
    table.remove({plain->id()});
    rev->setFilename(u"y.zip"_s);
    part->setStatus(DownloadStatus::queued);
    ASSERT_EQ(table.rows().size(), 2U);
    EXPECT_FALSE(table.rows()[0].isRev);
    EXPECT_EQ(table.rows()[1].status, DownloadStatus::queued);
}

TEST_F(ItemTableTest, FindsWhatIsInIt)
{
    const ItemPtr first = add(u"a"_s);
    const ItemPtr second = add(u"b"_s);
    const ItemPtr third = add(u"c"_s);
    table.remove({first->id(), ItemId::make()});
    EXPECT_EQ(table.find(first->id()), nullptr);
    EXPECT_EQ(table.find(second->id()), second);
    EXPECT_EQ(table.position(second->id()), 0U);
    EXPECT_EQ(table.position(third->id()), 1U);
    EXPECT_EQ(table.items(), (std::vector{second, third}));
}

TEST_F(ItemTableTest, CountsTheItemsThatHoldASlot)
{
    struct Share
    {
        DownloadStatus::Kind status;
        qint64 held;
    };
    const Share shares[] = {
        {DownloadStatus::queued, 0},      {DownloadStatus::resolving, 1}, {DownloadStatus::expanding, 0},
        {DownloadStatus::downloading, 1}, {DownloadStatus::paused, 0},    {DownloadStatus::stopped, 0},
        {DownloadStatus::completed, 0},   {DownloadStatus::failed, 0},
    };
    add(u"other"_s, DownloadStatus::downloading);
    for (const Share& from : shares) {
        for (const Share& to : shares) {
            const ItemPtr item = add(u"x"_s, from.status);
            EXPECT_EQ(table.activeCount(), 1 + from.held) << from.status;
            item->setStatus(to.status);
            EXPECT_EQ(table.activeCount(), 1 + to.held) << from.status << " to " << to.status;
            table.remove({item->id()});
            EXPECT_EQ(table.activeCount(), 1) << to.status;
        }
    }
}

TEST_F(ItemTableTest, KeepsSetsInTheOrderOfTheQueue)
{
    const ItemPtr second = add(u"m.part2.rar"_s);
    const ItemPtr other = add(u"n.part1.rar"_s);
    const ItemPtr first = add(u"m.part1.rar"_s);
    EXPECT_EQ(set(u"m"_s), (std::vector{second, first}));
    table.reorder({{first->id(), 0}, {other->id(), 1}, {second->id(), 2}});
    EXPECT_EQ(set(u"m"_s), (std::vector{first, second}));
    other->setFilename(u"m.part3.rar"_s);
    EXPECT_EQ(set(u"m"_s), (std::vector{first, other, second}));
    EXPECT_TRUE(set(u"n"_s).empty());
    table.remove({first->id(), second->id()});
    EXPECT_EQ(set(u"m"_s), std::vector{other});
    EXPECT_EQ(table.tallyOf(*other).rarParts, 1);
}

TEST_F(ItemTableTest, TalliesASetAnewWithEachStatus)
{
    const ItemPtr part = add(u"m.part1.rar"_s);
    const ItemPtr rev = add(u"m.part1.rev"_s);
    EXPECT_EQ(table.tallyOf(*rev).rarPartsMissing, 1);
    part->setStatus(DownloadStatus::completed);
    EXPECT_EQ(table.tallyOf(*rev).rarPartsMissing, 0);
    part->setExtractionStatus(ExtractionStatus::done);
    EXPECT_EQ(table.tallyOf(*rev).extracted, 1);
}

TEST_F(ItemTableTest, PutsManyItemsToTheirPlacesAtOnce)
{
    const auto make = [](const QString& name) {
        auto item = std::make_shared<DownloadItem>(*Link::parse(u"http://h/"_s + name), ItemId::make());
        item->setFilename(name);
        return item;
    };
    const ItemPtr b = add(u"m.part2.rar"_s);
    const ItemPtr d = add(u"m.part4.rar"_s);
    const ItemPtr a = make(u"m.part1.rar"_s);
    const ItemPtr c = make(u"m.part3.rar"_s);
    const ItemPtr e = make(u"m.part5.rar"_s);
    c->setStatus(DownloadStatus::downloading);
    c->setLocalPath(u"/d/m.part3.rar"_s);
    table.insert({{0, a}, {2, c}, {99, e}});
    EXPECT_EQ(table.items(), (std::vector{a, b, c, d, e}));
    EXPECT_EQ(set(u"m"_s), table.items());
    for (std::size_t place = 0; place < table.items().size(); ++place)
        EXPECT_EQ(table.position(table.items()[place]->id()), place);
    EXPECT_EQ(table.rows()[2].status, DownloadStatus::downloading);
    EXPECT_EQ(table.rows()[4].status, DownloadStatus::queued);
    EXPECT_EQ(table.activeCount(), 1);
    EXPECT_EQ(table.holdersOf(u"m.part3.rar"_s).size(), 1U);
    c->setStatus(DownloadStatus::stopped); // it is watched
    EXPECT_EQ(table.rows()[2].status, DownloadStatus::stopped);
    table.insert({});
    EXPECT_EQ(table.items().size(), 5U);
}
