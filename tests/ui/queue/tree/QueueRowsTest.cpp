#include "ui/queue/tree/QueueRows.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

ItemPtr itemNamed(const QString& name, const DownloadStatus& status = DownloadStatus::queued)
{
    auto item = std::make_shared<DownloadItem>(*Link::parse(u"http://h/x"_s), ItemId::make());
    item->setFilename(name);
    item->setStatus(status);
    return item;
}

class QueueRowsTest : public ::testing::Test
{
protected:
    [[nodiscard]] DownloadGroup plain(const ItemPtr& item) const { return {item->filename(), {item}}; }
    /// Where the item is, as "row.member"; "-" for one without a row.
    [[nodiscard]] QString placeOf(const ItemPtr& item) const
    {
        const QueueRows::Place place = rows.find(item->id());
        return place.entry ? u"%1.%2"_s.arg(place.entry->row).arg(place.member) : u"-"_s;
    }
    [[nodiscard]] QStringList places() const
    {
        QStringList all;
        for (const ItemPtr& item : {x, m1, m2, n1})
            all << placeOf(item);
        return all;
    }
    /// Each row knows its own number.
    void expectNumbered() const
    {
        for (int row = 0; row < rows.count(); ++row)
            EXPECT_EQ(rows.at(row).row, row);
    }
    static QStringList list(const char* places) { return QString::fromLatin1(places).split(u' '); }

    const ItemPtr x = itemNamed(u"x.zip"_s);
    const ItemPtr m1 = itemNamed(u"m.part1.rar"_s);
    const ItemPtr m2 = itemNamed(u"m.part2.rar"_s);
    const ItemPtr n1 = itemNamed(u"n.part1.rar"_s);
    const DownloadGroup m{u"m"_s, {m1, m2}};
    const DownloadGroup n{u"n"_s, {n1}};
    QueueRows rows;
};

TEST(SetKey, IsTheBaseNameOfMembersAlone)
{
    struct Row
    {
        const char16_t* name;
        const char16_t* key;
    };
    const Row keys[] = {
        {u"m.part1.rar", u"m"},
        {u"m.PART02.REV", u"m"},
        {u"M.part1.rar", u"M"},
        {u"m.n.part1.rar", u"m.n"},
        {u"m.rar", u""},
        {u"m.rev", u""},
        {u"m", u""},
        {u"m.part1.zip", u""},
        {u"m.part.rar", u""},
        {u"m.part1.rar.zip", u""},
        {u"m.part1.part2.rar", u"m.part1"},
    };
    for (const Row& row : keys)
        EXPECT_EQ(setKey(*itemNamed(QString::fromUtf16(row.name))), QString::fromUtf16(row.key));
}

TEST_F(QueueRowsTest, KnowThePlaceOfEachItem)
{
    rows.assign({plain(x), m, n});
    EXPECT_EQ(rows.count(), 3);
    EXPECT_EQ(places(), list("0.0 1.0 1.1 2.0"));
    EXPECT_EQ(placeOf(itemNamed(u"x.zip"_s)), u"-");
    expectNumbered();
}

TEST_F(QueueRowsTest, KnowTheRowOfASetAndNoneOfAPlainFile)
{
    rows.assign({plain(x), m, n});
    EXPECT_EQ(rows.findSet(u"m"_s), &rows.at(1));
    EXPECT_EQ(rows.findSet(u"n"_s), &rows.at(2));
    EXPECT_EQ(rows.at(2).set, u"n") << "also of a single member";
    EXPECT_EQ(rows.findSet(u"x.zip"_s), nullptr);
    EXPECT_EQ(rows.at(0).set, u"");
    EXPECT_EQ(rows.findSet(QString()), nullptr);
    EXPECT_EQ(rows.findSet(u"M"_s), nullptr);
}

TEST_F(QueueRowsTest, TellAPlainFileFromASetOfItsName)
{
    const ItemPtr called = itemNamed(u"m"_s);
    rows.assign({plain(called), m});
    EXPECT_EQ(rows.at(0).set, u"");
    EXPECT_EQ(rows.findSet(u"m"_s), &rows.at(1));
    EXPECT_EQ(placeOf(called), u"0.0");
}

TEST_F(QueueRowsTest, HaveAHeaderForTwoItemsOrMore)
{
    rows.assign({plain(x), m, n, {u"o"_s, {itemNamed(u"o.1"_s), itemNamed(u"o.2"_s), itemNamed(u"o.3"_s)}}});
    struct Row
    {
        int row;
        bool isHeader;
        int members;
    };
    for (const Row& row : {Row{0, false, 0}, Row{1, true, 2}, Row{2, false, 0}, Row{3, true, 3}}) {
        EXPECT_EQ(rows.at(row.row).isHeader(), row.isHeader) << row.row;
        EXPECT_EQ(rows.at(row.row).memberCount(), row.members) << row.row;
    }
    EXPECT_EQ(rows.at(1).item(1), m2);
}

TEST_F(QueueRowsTest, ForgetAllBeforeWhenAssignedAnew)
{
    rows.assign({plain(x), m});
    rows.assign({n});
    EXPECT_EQ(rows.count(), 1);
    EXPECT_EQ(places(), list("- - - 0.0"));
    EXPECT_EQ(rows.findSet(u"m"_s), nullptr);
    rows.assign({});
    EXPECT_EQ(rows.count(), 0);
    EXPECT_EQ(places(), list("- - - -"));
}

TEST_F(QueueRowsTest, MakeRoomWhereGroupsAreInserted)
{
    struct Row
    {
        int at;
        const char* places;
    };
    for (const Row& row : {Row{0, "2.0 0.0 0.1 1.0"}, Row{1, "0.0 1.0 1.1 2.0"}}) {
        rows.assign({plain(x)});
        rows.insert(row.at, {m, n});
        EXPECT_EQ(places(), list(row.places));
        expectNumbered();
    }
    rows.assign({plain(x), n});
    rows.insert(1, {m});
    EXPECT_EQ(places(), list("0.0 1.0 1.1 2.0"));
    EXPECT_EQ(rows.findSet(u"m"_s), &rows.at(1));
    rows.insert(0, {});
    EXPECT_EQ(rows.count(), 3);
}

TEST_F(QueueRowsTest, CloseUpWhereRowsAreRemoved)
{
    struct Row
    {
        int first;
        int count;
        const char* places;
    };
    const Row removals[] = {
        {0, 1, "- 0.0 0.1 1.0"}, {1, 1, "0.0 - - 1.0"}, {2, 1, "0.0 1.0 1.1 -"},   {0, 2, "- - - 0.0"},
        {1, 2, "0.0 - - -"},     {0, 3, "- - - -"},     {1, 0, "0.0 1.0 1.1 2.0"},
    };
    for (const Row& removal : removals) {
        rows.assign({plain(x), m, n});
        rows.remove(removal.first, removal.count);
        EXPECT_EQ(places(), list(removal.places)) << removal.first << '+' << removal.count;
        EXPECT_EQ(rows.findSet(u"m"_s) != nullptr, placeOf(m1) != u"-");
        EXPECT_EQ(rows.findSet(u"n"_s) != nullptr, placeOf(n1) != u"-");
        expectNumbered();
    }
}

TEST_F(QueueRowsTest, StayWhereTheyAreInMemory)
{
    rows.assign({plain(x), m});
    QueueEntry* const entry = &rows.at(1);
    rows.insert(0, {n});
    rows.remove(1, 1);
    EXPECT_EQ(&rows.at(1), entry);
    EXPECT_EQ(rows.find(m1->id()).entry, entry);
    rows.setGroup(*entry, {u"m"_s, {m2}});
    EXPECT_EQ(&rows.at(1), entry);
}

TEST_F(QueueRowsTest, TakeOthersIntoTheirGroup)
{
    rows.assign({plain(x), {u"m"_s, {m1}}});
    rows.setGroup(rows.at(1), m);
    EXPECT_EQ(places(), list("0.0 1.0 1.1 -"));
    EXPECT_TRUE(rows.at(1).isHeader());
    rows.setGroup(rows.at(1), {u"m"_s, {m2}});
    EXPECT_EQ(places(), list("0.0 - 1.0 -"));
    EXPECT_EQ(rows.findSet(u"m"_s), &rows.at(1));
    rows.setGroup(rows.at(1), n);
    EXPECT_EQ(places(), list("0.0 - - 1.0"));
    EXPECT_EQ(rows.findSet(u"m"_s), nullptr);
    EXPECT_EQ(rows.findSet(u"n"_s), &rows.at(1));
}

TEST_F(QueueRowsTest, KeepWhatTheyTookFromARowThatGoes)
{
    rows.assign({n, m});
    rows.setGroup(rows.at(0), {u"m"_s, {m1, n1}});
    EXPECT_EQ(placeOf(m1), u"0.0");
    EXPECT_EQ(rows.findSet(u"m"_s), &rows.at(0));
    rows.remove(1, 1);
    EXPECT_EQ(places(), list("- 0.0 - 0.1"));
    EXPECT_EQ(rows.findSet(u"m"_s), &rows.at(0));
}

TEST_F(QueueRowsTest, KeepWhatTheyTookFromARowThatChanges)
{
    rows.assign({n, m});
    rows.setGroup(rows.at(0), {u"m"_s, {m1, n1}});
    m2->setFilename(u"y.zip"_s);
    rows.setGroup(rows.at(1), plain(m2));
    EXPECT_EQ(places(), list("- 0.0 1.0 0.1"));
    EXPECT_EQ(rows.findSet(u"m"_s), &rows.at(0));
}

TEST_F(QueueRowsTest, FollowTheNameOfTheirGroup)
{
    rows.assign({plain(x), n});
    x->setFilename(u"y.zip"_s);
    rows.setId(rows.at(0), u"y.zip"_s);
    EXPECT_EQ(rows.at(0).group.id, u"y.zip");
    EXPECT_EQ(rows.at(0).set, u"");
    x->setFilename(u"m.part1.rar"_s);
    rows.setId(rows.at(0), u"m"_s);
    EXPECT_EQ(rows.findSet(u"m"_s), &rows.at(0));
    EXPECT_EQ(rows.findSet(u"n"_s), &rows.at(1));
    x->setFilename(u"x.zip"_s);
    rows.setId(rows.at(0), u"x.zip"_s);
    EXPECT_EQ(rows.findSet(u"m"_s), nullptr);
    EXPECT_EQ(places(), list("0.0 - - 1.0"));
}

TEST_F(QueueRowsTest, ReadTheLinesOfEachRow)
{
    const RowLines none;
    const RowLines progress = RowLine::progress;
    x->setStatus(DownloadStatus::downloading);
    m2->setStatus(DownloadStatus::downloading);
    rows.assign({plain(x), m, n});
    EXPECT_EQ(rows.at(0).ownLines, progress);
    EXPECT_TRUE(rows.at(0).members.empty());
    EXPECT_EQ(rows.at(1).ownLines, progress);
    EXPECT_EQ(rows.at(1).members, (std::vector{none, progress}));
    EXPECT_EQ(rows.at(2).ownLines, none);
    rows.setGroup(rows.at(1), {u"m"_s, {m1}});
    EXPECT_EQ(rows.at(1).ownLines, none);
    EXPECT_TRUE(rows.at(1).members.empty());
}

TEST_F(QueueRowsTest, ReadTheLinesAnewOnlyWhenTold)
{
    rows.assign({m});
    m1->setStatus(DownloadStatus::downloading);
    EXPECT_EQ(rows.at(0).ownLines, RowLines());
    rows.at(0).readLines();
    EXPECT_EQ(rows.at(0).ownLines, RowLines(RowLine::progress));
    EXPECT_EQ(rows.at(0).members, (std::vector{RowLines(RowLine::progress), RowLines()}));
}

struct SurplusRow
{
    const char* name;
    const char16_t* longer;
    const char16_t* shorter;
    std::optional<std::vector<int>> surplus;
};

class Surplus : public ::testing::TestWithParam<SurplusRow>
{};

const SurplusRow surplusRows[] = {
    {"both", u"", u"", std::vector<int>()},
    {"theSame", u"abc", u"abc", std::vector<int>()},
    {"all", u"abc", u"", std::vector{0, 1, 2}},
    {"theFirst", u"abc", u"bc", std::vector{0}},
    {"theLast", u"abc", u"ab", std::vector{2}},
    {"oneInTheMiddle", u"abc", u"ac", std::vector{1}},
    {"everySecond", u"abcde", u"bd", std::vector{0, 2, 4}},
    {"nothingForAnotherOrder", u"abc", u"ba", std::nullopt},
    {"nothingForTheSameInAnotherOrder", u"abc", u"cba", std::nullopt},
    {"nothingForAStranger", u"abc", u"ax", std::nullopt},
    {"nothingForAnotherInItsPlace", u"abc", u"axc", std::nullopt},
    {"nothingForALongerOne", u"ab", u"abc", std::nullopt},
    {"nothingOutOfNothing", u"", u"a", std::nullopt},
};

TEST_P(Surplus, IsWhatTheShorterListLacks)
{
    QHash<QChar, ItemPtr> items;
    const auto itemsOf = [&items](const char16_t* letters) {
        std::vector<ItemPtr> all;
        for (const QChar letter : QString::fromUtf16(letters)) {
            if (!items.contains(letter))
                items.insert(letter, itemNamed(letter));
            all.push_back(items[letter]);
        }
        return all;
    };
    EXPECT_EQ(surplus(itemsOf(GetParam().longer), itemsOf(GetParam().shorter)), GetParam().surplus);
}

INSTANTIATE_TEST_SUITE_P(Rows, Surplus, ::testing::ValuesIn(surplusRows),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
} // namespace vormel
