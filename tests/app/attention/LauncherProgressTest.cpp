#include "app/attention/LauncherProgress.h"

#include "app/attention/QueueActivity.h"
#include "fixtures/EngineOnScript.h"
#include "fixtures/Statuses.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;
using namespace vormel::fixtures::statuses;
using namespace std::chrono_literals;

namespace {

class FakeLauncher final : public Launcher
{
public:
    void show(const LauncherState& state) override { states.push_back(state); }

    std::vector<LauncherState> states;
};

class LauncherProgressTest : public ::testing::Test
{
protected:
    LauncherProgressTest()
    {
        item->setStatus(paused);
        item->setTotalBytes(1000);
    }
    void receive(qint64 bytes) const { item->setBytesReceived(bytes); }

    EngineOnScript engine;
    ItemPtr item = engine.add(u"http://h/a"_s);
    QueueActivity activity{engine.manager()};
    FakeLauncher launcher;
    std::optional<LauncherProgress> progress{
        std::in_place, LauncherProgress::Ports{activity, engine.settings(), engine.clock, launcher}};
};

TEST_F(LauncherProgressTest, NothingIsShownBeforeBytesMove)
{
    item->setStatus(queued);
    engine.clock.advance(1s);
    EXPECT_TRUE(launcher.states.empty());
}

TEST_F(LauncherProgressTest, ItSpeaksUpAtMostTwiceASecondAndTellsTheNewest)
{
    item->setStatus(downloading);
    receive(100);
    receive(200);
    ASSERT_EQ(launcher.states.size(), 1);
    engine.clock.advance(499ms);
    EXPECT_EQ(launcher.states.size(), 1);
    engine.clock.advance(1ms);
    ASSERT_EQ(launcher.states.size(), 2);
    EXPECT_EQ(launcher.states.back(), (LauncherState{1, 0.2}));
}

TEST_F(LauncherProgressTest, WhatCannotBeSeenIsNotSaid)
{
    item->setStatus(downloading);
    engine.clock.advance(1s);
    receive(9); // less than a hundredth
    engine.clock.advance(1s);
    EXPECT_EQ(launcher.states.size(), 1);
    EXPECT_EQ(engine.clock.pendingTimers(), 0);
    receive(10);
    EXPECT_EQ(launcher.states.size(), 2);
}

TEST_F(LauncherProgressTest, WhatDoesNotMoveIsNotShown)
{
    item->setStatus(downloading);
    engine.clock.advance(1s);
    item->setStatus(queued);
    ASSERT_EQ(launcher.states.size(), 2);
    EXPECT_EQ(launcher.states.back(), LauncherState());
}

TEST_F(LauncherProgressTest, TheSettingActsAtOnce)
{
    item->setStatus(downloading);
    engine.settings().showLauncherProgress.set(false);
    ASSERT_EQ(launcher.states.size(), 2);
    EXPECT_EQ(launcher.states.back(), LauncherState());
    receive(500);
    engine.clock.advance(1s);
    EXPECT_EQ(launcher.states.size(), 2);
    engine.settings().showLauncherProgress.set(true);
    EXPECT_EQ(launcher.states.back(), (LauncherState{1, 0.5}));
}

TEST_F(LauncherProgressTest, TheEndOfTheProgramLeavesNothing)
{
    item->setStatus(downloading);
    progress.reset();
    ASSERT_EQ(launcher.states.size(), 2);
    EXPECT_EQ(launcher.states.back(), LauncherState());
}

TEST_F(LauncherProgressTest, WhereNothingWasShownTheEndSaysNothing)
{
    progress.reset();
    EXPECT_TRUE(launcher.states.empty());
}

} // namespace
