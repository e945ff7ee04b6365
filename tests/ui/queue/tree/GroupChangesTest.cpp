#include "ui/queue/tree/GroupChanges.h"

#include "ui/queue/tree/QuietQueue.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

enum class Event
{
    added,     ///< an item of this name
    renamed,   ///< to this name
    begun,     ///< it comes down
    halted,    ///< it is stopped
    untouched, ///< told of though nothing has changed
    removed,
    unheard, ///< renamed, but nobody has told of it yet
};

/// Items are called a, b, c and so on, in the order in which they came into the queue.
struct Step
{
    char item;
    Event event;
    const char16_t* name = nullptr;
};

struct Row
{
    const char* name;
    const char16_t* queue; ///< the names; those behind a "+" come down already
    std::vector<Step> steps;
    /// Each as "items of the row before>id of the group:its items", with nothing before for a row that is missing, and
    /// nothing behind for one that goes.
    const char16_t* changes;
};

constexpr auto added = Event::added;
constexpr auto renamed = Event::renamed;
constexpr auto begun = Event::begun;
constexpr auto halted = Event::halted;
constexpr auto untouched = Event::untouched;
constexpr auto removed = Event::removed;
constexpr auto unheard = Event::unheard;

const Row table[] = {
    {"aPlainFileThatStaysAsItIs", u"x.zip", {{'a', untouched}}, u"a>x.zip:a"},
    {"aSetThatStaysAsItIsIsToldOnce", u"m.part1.rar m.part2.rar", {{'a', untouched}, {'b', untouched}}, u"ab>m:ab"},
    {"aPlainFileGetsAnotherName", u"x.zip", {{'a', renamed, u"y.zip"}}, u"a>y.zip:a"},
    {"aPlainFileGetsTheNameOfAnother", u"x.zip y.zip", {{'b', renamed, u"x.zip"}}, u"b>x.zip:b"},
    {"aPlainFileGetsTheNameOfASet", u"m.part1.rar x", {{'b', renamed, u"m"}}, u"b>m:b"},

    {"aNewPlainFile", u"x.zip", {{'b', added, u"y.zip"}}, u">y.zip:b"},
    {"twoNewPlainFiles", u"", {{'a', added, u"x.zip"}, {'b', added, u"y.zip"}}, u">x.zip:a, >y.zip:b"},
    {"twoNewPlainFilesOfOneName", u"", {{'a', added, u"x.zip"}, {'b', added, u"x.zip"}}, u">x.zip:a, >x.zip:b"},
    {"aNewMember", u"m.part1.rar x.zip", {{'c', added, u"m.part2.rar"}}, u"a>m:ac"},
    {"aNewMemberInFront", u"m.part2.rar x.zip", {{'c', added, u"m.part1.rar"}}, u"a>m:ca"},
    {"aNewSet", u"x.zip", {{'b', added, u"m.part1.rar"}, {'c', added, u"m.part2.rar"}}, u">m:bc"},
    {"twoNewSets", u"", {{'a', added, u"m.part1.rar"}, {'b', added, u"n.part1.rar"}}, u">m:a, >n:b"},
    {"aNewVolumeThatIsHidden", u"m.part1.rar", {{'b', added, u"m.part1.rev"}}, u"a>m:a"},
    {"aNewVolumeWithoutASet", u"x.zip", {{'b', added, u"m.part1.rev"}}, u""},
    {"aNewSingleVolume", u"", {{'a', added, u"m.rev"}}, u""},

    {"aPlainFileTurnsOutAMember", u"m.part1.rar x.zip", {{'b', renamed, u"m.part2.rar"}}, u"a>m:ab, b>"},
    {"aPlainFileTurnsOutTheFirstMember", u"x.zip y.zip", {{'a', renamed, u"m.part1.rar"}}, u"a>m:a"},
    {"twoPlainFilesTurnOutOneSet",
     u"x.zip y.zip",
     {{'a', renamed, u"m.part1.rar"}, {'b', renamed, u"m.part2.rar"}},
     u"a>m:ab, b>"},
    {"twoPlainFilesTurnOutOneSetTheOtherWayRound",
     u"x.zip y.zip",
     {{'b', renamed, u"m.part1.rar"}, {'a', renamed, u"m.part2.rar"}},
     u"b>m:ba, a>"},
    {"aPlainFileTurnsOutAMemberBesideANewOne",
     u"x.zip",
     {{'a', renamed, u"m.part1.rar"}, {'b', added, u"m.part2.rar"}},
     u"a>m:ab"},
    {"aNewMemberIsToldBeforeThePlainFileThatTurnsOutOne",
     u"x.zip",
     {{'b', added, u"m.part2.rar"}, {'a', renamed, u"m.part1.rar"}},
     u">m:ab, a>"},
    {"aPlainFileTurnsOutARecoveryVolume", u"m.part1.rar x", {{'b', renamed, u"m.part1.rev"}}, u"a>m:a, b>"},
    {"aPlainFileTurnsOutARecoveryVolumeAlone", u"x", {{'a', renamed, u"m.part1.rev"}}, u"a>"},

    {"aMemberTurnsOutAPlainFile", u"m.part1.rar m.part2.rar", {{'b', renamed, u"x.zip"}}, u">x.zip:b, ab>m:a"},
    {"theOnlyMemberTurnsOutAPlainFile", u"m.part1.rar", {{'a', renamed, u"x.zip"}}, u"a>x.zip:a"},
    {"bothMembersTurnOutPlainFiles",
     u"m.part1.rar m.part2.rar",
     {{'a', renamed, u"x.zip"}, {'b', renamed, u"y.zip"}},
     u">x.zip:a, ab>, >y.zip:b"},
    {"theOnlyMemberGoesToANewSet", u"m.part1.rar", {{'a', renamed, u"n.part1.rar"}}, u"a>n:a"},
    {"theOnlyMemberGoesToAnotherSet", u"m.part1.rar n.part1.rar", {{'a', renamed, u"n.part2.rar"}}, u"b>n:ba, a>"},
    {"aMemberGoesToAnotherSet",
     u"m.part1.rar m.part2.rar n.part1.rar",
     {{'b', renamed, u"n.part2.rar"}},
     u"c>n:cb, ab>m:a"},
    {"aMemberGoesToANewSet", u"m.part1.rar m.part2.rar", {{'b', renamed, u"n.part1.rar"}}, u">n:b, ab>m:a"},
    {"twoSetsChangeTheirMembers",
     u"m.part1.rar n.part1.rar",
     {{'a', renamed, u"n.part1.rar"}, {'b', renamed, u"m.part1.rar"}},
     u"b>n:a, a>m:b"},
    {"aSetIsCalledOtherwiseAllAtOnce",
     u"m.part1.rar m.part2.rar",
     {{'a', renamed, u"n.part1.rar"}, {'b', renamed, u"n.part2.rar"}},
     u">n:ab, ab>"},
    {"aMemberGetsAnotherNumber", u"m.part1.rar m.part2.rar", {{'a', renamed, u"m.part3.rar"}}, u"ab>m:ba"},
    {"aNewMemberOfTheSetThatARowHasJustLeft",
     u"m.part1.rar",
     {{'a', renamed, u"x.zip"}, {'b', added, u"m.part2.rar"}},
     u"a>x.zip:a, >m:b"},
    {"aRowThatANewMemberHasTakenIsNotKept",
     u"m.part1.rar",
     {{'b', added, u"m.part2.rar"}, {'a', renamed, u"x.zip"}},
     u"a>m:b, >x.zip:a"},

    {"aRecoveryVolumeComesToSight", u"m.part1.rar m.part1.rev", {{'b', begun}}, u"a>m:ab"},
    {"aSingleRecoveryVolumeComesToSight", u"x.zip m.rev", {{'b', begun}}, u">m.rev:b"},
    {"aHiddenVolumeStaysHidden", u"m.part1.rar m.part1.rev", {{'b', halted}}, u"a>m:a"},
    {"aHiddenVolumeAloneStaysHidden", u"m.part1.rev", {{'a', halted}}, u""},
    {"aRecoveryVolumeGoesOutOfSight", u"m.part1.rar +m.part1.rev", {{'b', halted}}, u"ab>m:a"},
    {"aSingleRecoveryVolumeGoesOutOfSight", u"+m.rev", {{'a', halted}}, u"a>"},
    {"theOnlyMemberInSightGoesOutOfIt", u"m.part2.rev +m.part1.rev", {{'b', halted}}, u"b>"},

    {"aPlainFileIsRemoved", u"x.zip y.zip", {{'a', removed}}, u"a>"},
    {"aMemberIsRemoved", u"m.part1.rar m.part2.rar", {{'a', removed}}, u"ab>m:b"},
    {"allMembersAreRemoved", u"m.part1.rar m.part2.rar x.zip", {{'a', removed}, {'b', removed}}, u"ab>"},
    {"aHiddenVolumeIsRemoved", u"m.part1.rar m.part1.rev", {{'b', removed}}, u""},
    {"onlyAVolumeInSightIsLeft", u"m.part1.rar +m.part1.rev", {{'a', removed}}, u"ab>m:b"},
    {"onlyAHiddenVolumeIsLeft", u"m.part1.rar m.part1.rev", {{'a', removed}}, u"a>"},
    {"oneMemberIsRemovedAndTheOtherTurnsOutPlain",
     u"m.part1.rar m.part2.rar",
     {{'b', renamed, u"x.zip"}, {'a', removed}},
     u">x.zip:b, ab>"},
    {"theRestOfASetIsNotTakenForItWhenNobodyHasToldOfItsName",
     u"m.part1.rar m.part2.rar m.part3.rar",
     {{'b', unheard, u"x.zip"}, {'a', removed}},
     u"abc>m:c"},
    {"theRestOfASetHasLeftItUnheard",
     u"m.part1.rar m.part2.rar",
     {{'b', unheard, u"n.part1.rar"}, {'a', removed}},
     u"ab>"},
    {"aMemberIsRemovedAndAnotherAdded",
     u"m.part1.rar m.part2.rar",
     {{'c', added, u"m.part3.rar"}, {'a', removed}},
     u"ab>m:bc"},
};

/// The rows as they were before the steps, and what is told after all of them.
class GroupChangesTest : public ::testing::TestWithParam<Row>
{
protected:
    GroupChangesTest()
    {
        for (const QString& name : QString::fromUtf16(GetParam().queue).split(u' ', Qt::SkipEmptyParts)) {
            items.push_back(queue.add(QString(name).remove(u'+')));
            if (name.startsWith(u'+'))
                items.back()->setStatus(DownloadStatus::downloading);
        }
        rows.assign(queue.manager().visibleGroups());
    }
    void take(const Step& step)
    {
        if (step.event == added)
            items.push_back(queue.add(QString::fromUtf16(step.name)));
        const ItemPtr& item = itemOf(step);
        if (step.event == renamed || step.event == unheard)
            item->setFilename(QString::fromUtf16(step.name));
        else if (step.event == begun)
            item->setStatus(DownloadStatus::downloading);
        else if (step.event == halted)
            item->setStatus(DownloadStatus::stopped);
        else if (step.event == removed)
            queue.manager().commands().removeItems({item->id()});
    }
    void note(GroupChanges& changes, const Step& step) const
    {
        if (step.event == removed)
            changes.noteRemoval(itemOf(step)->id());
        else if (step.event != unheard)
            changes.noteItem(itemOf(step));
    }
    [[nodiscard]] const ItemPtr& itemOf(const Step& step) const
    {
        return items.at(static_cast<std::size_t>(step.item - 'a'));
    }
    [[nodiscard]] QString lettersOf(const DownloadGroup& group) const
    {
        QString letters;
        for (const ItemPtr& item : group.items) {
            const auto place = std::find(items.begin(), items.end(), item) - items.begin();
            letters += QChar(static_cast<char16_t>(u'a' + place));
        }
        return letters;
    }
    [[nodiscard]] QString textOf(const GroupChanges::Change& change) const
    {
        return (change.entry ? lettersOf(change.entry->group) : QString()) + u'>' +
               (change.group ? change.group->id + u':' + lettersOf(*change.group) : QString());
    }

    QuietQueue queue;
    std::vector<ItemPtr> items;
    QueueRows rows;
};

TEST_P(GroupChangesTest, TellWhichRowsHaveOtherGroups)
{
    for (const Step& step : GetParam().steps)
        take(step);
    GroupChanges changes(queue.manager(), rows);
    for (const Step& step : GetParam().steps)
        note(changes, step);
    QStringList texts;
    for (const GroupChanges::Change& change : changes.changes())
        texts << textOf(change);
    EXPECT_EQ(texts.join(u", "), QString::fromUtf16(GetParam().changes));
}

INSTANTIATE_TEST_SUITE_P(Rows, GroupChangesTest, ::testing::ValuesIn(table),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
} // namespace vormel
