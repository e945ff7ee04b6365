#include "engine/commands/GroupOrder.h"

#include <QMap>

#include <gtest/gtest.h>

using namespace vormel;
using namespace Qt::StringLiterals;

namespace {

ItemPtr itemNamed(const QString& name)
{
    auto item = std::make_shared<DownloadItem>(*Link::parse(u"http://h/x"_s), ItemId::make());
    item->setFilename(name);
    return item;
}

/// The groups of "a1 a2|b1|c1", each called by the first letter of its first item.
std::vector<DownloadGroup> groupsOf(const char16_t* text)
{
    std::vector<DownloadGroup> groups;
    for (const QString& names : QString::fromUtf16(text).split(u'|', Qt::SkipEmptyParts)) {
        groups.push_back({names.left(1), {}});
        for (const QString& name : names.split(u' '))
            groups.back().items.push_back(itemNamed(name));
    }
    return groups;
}

QString textOf(const std::vector<DownloadGroup>& groups)
{
    QStringList texts;
    for (const DownloadGroup& group : groups) {
        QStringList names;
        for (const ItemPtr& item : group.items)
            names << item->filename();
        texts << names.join(u' ');
    }
    return texts.join(u'|');
}

/// The items in the order of their ranks, which count from 0 without a gap.
QString inRankOrder(const std::vector<DownloadGroup>& groups, const QHash<ItemId, std::size_t>& ranks)
{
    QMap<std::size_t, QString> names;
    for (const DownloadGroup& group : groups) {
        for (const ItemPtr& item : group.items)
            names.insert(ranks.value(item->id()), item->filename());
    }
    for (qsizetype rank = 0; rank < ranks.size(); ++rank)
        EXPECT_TRUE(names.contains(static_cast<std::size_t>(rank))) << rank;
    return QStringList(names.values()).join(u' ');
}

template <typename Row>
std::string nameOf(const ::testing::TestParamInfo<Row>& info)
{
    return info.param.name;
}

struct DisplayRow
{
    const char* name;
    const char16_t* groups;
    const char16_t* ids;
    const char16_t* order;
};

class DisplayOrder : public ::testing::TestWithParam<DisplayRow>
{};

const DisplayRow displayRows[] = {
    {"asNamed", u"a1|b1|c1", u"c a b", u"c1|a1|b1"},
    {"asItStandsWhenNamedSo", u"a1|b1|c1", u"a b c", u"a1|b1|c1"},
    {"theUnnamedFollowInTheirOwnOrder", u"a1|b1|c1|d1", u"d b", u"d1|b1|a1|c1"},
    {"ownOrderWhereNoneIsNamed", u"b1|a1|c1", u"", u"b1|a1|c1"},
    {"strangeIdsNameNothing", u"a1|b1", u"z b y a", u"b1|a1"},
    {"onlyStrangeIds", u"b1|a1", u"z y", u"b1|a1"},
    {"idsAreToldApartByLetterCase", u"a1|A1", u"A a", u"A1|a1"},
    {"itemsKeepTheirOrderWithinTheGroup", u"a2 a1|b1 b3 b2", u"b a", u"b1 b3 b2|a2 a1"},
    {"theFirstTwinTakesTheFirstOfTwoPlaces", u"x1|a1|x2", u"x a x", u"x1|a1|x2"},
    {"twinsSideBySide", u"x1|a1|x2", u"a x x", u"a1|x1|x2"},
    {"aTwinTooManyIsUnnamed", u"x1|a1|x2", u"a x", u"a1|x1|x2"},
    {"aTwinTooManyFollowsTheNamed", u"x1|b1|x2|a1", u"x a", u"x1|a1|b1|x2"},
    {"aPlaceTooManyStaysFree", u"x1|a1", u"x x a", u"x1|a1"},
    {"threeTwins", u"x1|x2|x3|a1", u"x a x x", u"x1|a1|x2|x3"},
    {"noGroups", u"", u"a b", u""},
};

struct MoveRow
{
    const char* name;
    const char16_t* groups;
    std::set<qsizetype> sources;
    qsizetype destination;
    const char16_t* order;
};

class GroupMove : public ::testing::TestWithParam<MoveRow>
{};

const MoveRow moveRows[] = {
    {"nothingMoves", u"a|b|c", {}, 1, u"a b c"},
    {"toTheFront", u"a|b|c", {2}, 0, u"c a b"},
    {"toTheEnd", u"a|b|c", {0}, 3, u"b c a"},
    {"downByOne", u"a|b|c", {0}, 2, u"b a c"},
    {"upByOne", u"a|b|c", {2}, 1, u"a c b"},
    {"downByTwo", u"a|b|c|d", {0}, 3, u"b c a d"},
    {"inFrontOfItself", u"a|b|c", {1}, 1, u"a b c"},
    {"inFrontOfItsFollower", u"a|b|c", {1}, 2, u"a b c"},
    {"theFirstInFrontOfItself", u"a|b|c", {0}, 0, u"a b c"},
    {"theLastBehindItself", u"a|b|c", {2}, 3, u"a b c"},
    {"scatteredOnesKeepTheirOrderAtTheFront", u"a|b|c|d", {1, 3}, 0, u"b d a c"},
    {"scatteredOnesKeepTheirOrderAtTheEnd", u"a|b|c|d", {0, 2}, 4, u"b d a c"},
    {"scatteredOnesMeetInTheMiddle", u"a|b|c|d", {0, 3}, 2, u"b a d c"},
    {"inFrontOfAMovedOne", u"a|b|c|d", {0, 2}, 2, u"b a c d"},
    {"allOfThem", u"a|b|c", {0, 1, 2}, 1, u"a b c"},
    {"beyondTheEnd", u"a|b|c", {0}, 99, u"b c a"},
    {"beforeTheFront", u"a|b|c", {2}, -5, u"c a b"},
    {"offsetsThatDoNotExist", u"a|b|c", {-1, 2, 3, 99}, 0, u"c a b"},
    {"onlyOffsetsThatDoNotExist", u"a|b|c", {-1, 3}, 0, u"a b c"},
    {"wholeGroupsMove", u"a1 a2|b1|c1 c2", {2}, 0, u"c1 c2 a1 a2 b1"},
    {"itemsOfAGroupStayInItsOrder", u"a2 a1|b2 b1", {0}, 2, u"b2 b1 a2 a1"},
    {"theOnlyGroup", u"a", {0}, 1, u"a"},
    {"noGroups", u"", {0}, 0, u""},
};

} // namespace

TEST_P(DisplayOrder, FollowsTheIds)
{
    const QStringList ids = QString::fromUtf16(GetParam().ids).split(u' ', Qt::SkipEmptyParts);
    EXPECT_EQ(textOf(inDisplayOrder(groupsOf(GetParam().groups), ids)), QString::fromUtf16(GetParam().order));
}

INSTANTIATE_TEST_SUITE_P(Rows, DisplayOrder, ::testing::ValuesIn(displayRows), &nameOf<DisplayRow>);

TEST_P(GroupMove, NumbersTheItemsThroughAsAListMoveDoes)
{
    const std::vector<DownloadGroup> groups = groupsOf(GetParam().groups);
    const QHash<ItemId, std::size_t> ranks = ranksAfterMove(groups, GetParam().sources, GetParam().destination);
    EXPECT_EQ(inRankOrder(groups, ranks), QString::fromUtf16(GetParam().order));
}

INSTANTIATE_TEST_SUITE_P(Rows, GroupMove, ::testing::ValuesIn(moveRows), &nameOf<MoveRow>);
