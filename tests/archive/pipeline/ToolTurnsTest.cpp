#include "archive/pipeline/ToolTurns.h"

#include "fixtures/EventLoop.h"
#include "platform/async/Spawn.h"

#include <gtest/gtest.h>

#include <map>

namespace vormel {
namespace {

class ToolTurnsTest : public ::testing::Test
{
protected:
    /// The archive at that place of the queue wants to be worked on.
    void ask(std::size_t place)
    {
        const ItemId id = ItemId::make();
        places[id] = place;
        ids[place] = id;
        spawn(wait(id, place));
    }
    QCoro::Task<> wait(ItemId id, std::size_t place)
    {
        Turn turn = co_await turns->take(id);
        answers.emplace_back(place, turn.isGiven());
        if (turn.isGiven())
            held[place] = std::move(turn);
    }
    void finish(std::size_t place)
    {
        held.erase(place);
        fixtures::turnEventLoop();
    }

    using Answers = std::vector<std::pair<std::size_t, bool>>;

    std::map<ItemId, std::size_t> places;
    std::map<std::size_t, ItemId> ids;
    std::map<std::size_t, Turn> held;
    Answers answers;
    /// Ends first, as those who wait then go on.
    std::unique_ptr<ToolTurns> turns = std::make_unique<ToolTurns>([this](const ItemId& id) { return places.at(id); });
};

} // namespace

TEST_F(ToolTurnsTest, TwoAreGivenAtOnceAndNoThird)
{
    for (const std::size_t place : std::initializer_list<std::size_t>{7, 5, 3})
        ask(place);
    EXPECT_EQ(answers, (Answers{{7, true}, {5, true}}));
    EXPECT_FALSE(turns->isAnyFree());
}

TEST_F(ToolTurnsTest, TheNextIsTheOneThatStandsFirstByThen)
{
    for (const std::size_t place : std::initializer_list<std::size_t>{1, 2, 9, 5, 7})
        ask(place);
    places[ids[7]] = 0; // moved to the top meanwhile
    finish(2);
    EXPECT_EQ(answers.back(), (Answers::value_type{7, true}));
    finish(1);
    EXPECT_EQ(answers.back(), (Answers::value_type{5, true}));
}

TEST_F(ToolTurnsTest, OneThatComesWhenATurnIsGivenBackOvertakesNobody)
{
    for (const std::size_t place : std::initializer_list<std::size_t>{1, 2, 3})
        ask(place);
    held.erase(1);
    EXPECT_FALSE(turns->isAnyFree());
    ask(9);
    fixtures::turnEventLoop();
    EXPECT_EQ(answers.back(), (Answers::value_type{3, true}));
    EXPECT_EQ(answers.size(), 3U);
}

TEST_F(ToolTurnsTest, OneThatIsWithdrawnGoesOnWithoutATurn)
{
    for (const std::size_t place : std::initializer_list<std::size_t>{1, 2, 3, 4})
        ask(place);
    turns->withdraw(ids[3]);
    EXPECT_EQ(answers.back(), (Answers::value_type{3, false}));
    turns->withdraw(ids[1]); // works already
    finish(1);
    EXPECT_EQ(answers.back(), (Answers::value_type{4, true}));
    EXPECT_EQ(answers.size(), 4U);
}

TEST_F(ToolTurnsTest, TheEndLetsAllThatWaitGoOnAndTurnsMayOutliveIt)
{
    for (const std::size_t place : std::initializer_list<std::size_t>{1, 2, 3})
        ask(place);
    turns.reset();
    EXPECT_EQ(answers.back(), (Answers::value_type{3, false}));
    finish(1);
    EXPECT_EQ(answers.size(), 3U);
}

} // namespace vormel
