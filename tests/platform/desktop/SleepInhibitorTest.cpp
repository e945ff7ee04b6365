#include "platform/desktop/SleepInhibitor.h"

#include "fixtures/DesktopBus.h"
#include "fixtures/DesktopServices.h"
#include "fixtures/EventLoop.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::Manner;
using fixtures::waitUntil;

class SleepInhibitorTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        requireBus(session);
        if (!IsSkipped())
            login = std::make_unique<fixtures::LoginManager>(system.services());
    }
    void hold()
    {
        inhibitor->hold(u"why"_s);
        ASSERT_TRUE(waitUntil([this] { return login->isInhibited(); }));
        settle(); // given is not yet received
    }
    void settle()
    {
        session.settle();
        // The inhibitor's own way to the other bus is not to be asked.
        (void)waitUntil([] { return false; }, std::chrono::milliseconds(20));
    }

    fixtures::DesktopBus session;
    fixtures::DesktopBus system;
    std::unique_ptr<fixtures::LoginManager> login;
    std::unique_ptr<DesktopSleepInhibitor> inhibitor =
        std::make_unique<DesktopSleepInhibitor>(system.address(), session.program());
};

TEST_F(SleepInhibitorTest, SleepAloneIsHeldOffAndGivenBack)
{
    hold();
    EXPECT_EQ(login->asked, QList<QStringList>({{u"sleep"_s, u"Vormel"_s, u"why"_s, u"block"_s}}));
    inhibitor->release();
    EXPECT_TRUE(waitUntil([this] { return !login->isInhibited(); }));
}

TEST_F(SleepInhibitorTest, ItIsAskedForOnceWhileItIsHeldAndAnewAfterwards)
{
    hold();
    inhibitor->hold(u"why"_s);
    settle();
    EXPECT_EQ(login->asked.size(), 1);
    inhibitor->release();
    ASSERT_TRUE(waitUntil([this] { return !login->isInhibited(); }));
    hold();
    EXPECT_EQ(login->asked.size(), 2);
}

TEST_F(SleepInhibitorTest, TheEndGivesItBack)
{
    hold();
    inhibitor.reset();
    EXPECT_TRUE(waitUntil([this] { return !login->isInhibited(); }));
}

TEST_F(SleepInhibitorTest, WhatIsNotWantedAnyMoreWhenItComesGoesBack)
{
    login->manner = Manner::isSilent;
    inhibitor->hold(u"why"_s);
    ASSERT_TRUE(waitUntil([this] { return login->asked.size() == 1; }));
    inhibitor->release();
    login->answerLate();
    EXPECT_TRUE(login->isInhibited());
    EXPECT_TRUE(waitUntil([this] { return !login->isInhibited(); }));
}

TEST_F(SleepInhibitorTest, WhatIsWantedAgainBeforeItComesIsKept)
{
    login->manner = Manner::isSilent;
    inhibitor->hold(u"why"_s);
    ASSERT_TRUE(waitUntil([this] { return login->asked.size() == 1; }));
    inhibitor->release();
    inhibitor->hold(u"why"_s);
    login->answerLate();
    settle();
    EXPECT_TRUE(login->isInhibited());
    EXPECT_EQ(login->asked.size(), 1);
}

TEST_F(SleepInhibitorTest, AnAnswerAfterTheEndGoesBack)
{
    login->manner = Manner::isSilent;
    inhibitor->hold(u"why"_s);
    ASSERT_TRUE(waitUntil([this] { return login->asked.size() == 1; }));
    inhibitor.reset();
    login->answerLate();
    EXPECT_TRUE(waitUntil([this] { return !login->isInhibited(); }));
}

TEST_F(SleepInhibitorTest, AllAreAskedAndAllGivenBack)
{
    fixtures::PowerManager power(session.services());
    fixtures::SessionManager manager(session.services());
    hold();
    ASSERT_TRUE(waitUntil([&] { return power.held.size() + manager.held.size() == 2; }));
    EXPECT_EQ(power.reasons, QStringList{u"why"_s});
    EXPECT_EQ(manager.asked, QList<QVariantList>({{u"org.vormel.Vormel"_s, 0U, u"why"_s, 4U}}));
    settle();
    inhibitor->release();
    EXPECT_TRUE(waitUntil([&] { return !login->isInhibited() && power.held.isEmpty() && manager.held.isEmpty(); }));
}

TEST_F(SleepInhibitorTest, TheEndGivesAllBackWhileOneIsSilent)
{
    login->manner = Manner::isSilent;
    fixtures::PowerManager power(session.services());
    fixtures::SessionManager manager(session.services());
    inhibitor->hold(u"why"_s);
    ASSERT_TRUE(waitUntil([&] { return login->asked.size() + power.held.size() + manager.held.size() == 3; }));
    settle();
    inhibitor.reset();
    EXPECT_TRUE(waitUntil([&] { return power.held.isEmpty() && manager.held.isEmpty(); }));
}

TEST_F(SleepInhibitorTest, OneThatIsSilentKeepsTheOthersFromNothing)
{
    login->manner = Manner::isSilent;
    fixtures::PowerManager power(session.services());
    for (const qsizetype round : {1, 2}) {
        inhibitor->hold(u"why"_s);
        ASSERT_TRUE(waitUntil([&] { return power.reasons.size() == round && login->asked.size() == 1; }));
        settle();
        inhibitor->release();
        ASSERT_TRUE(waitUntil([&power] { return power.held.isEmpty(); }));
    }
    EXPECT_EQ(login->asked.size(), 1);
}

TEST_F(SleepInhibitorTest, WhereTheLoginManagerRefusesTheOthersHold)
{
    login->manner = Manner::refuses;
    fixtures::PowerManager power(session.services());
    inhibitor->hold(u"why"_s);
    ASSERT_TRUE(waitUntil([this, &power] { return login->asked.size() == 1 && power.held.size() == 1; }));
    settle();
    inhibitor->hold(u"why"_s); // which is held already
    settle();
    EXPECT_EQ(power.reasons.size(), 1);
    EXPECT_EQ(login->asked.size(), 1);
    inhibitor->release();
    EXPECT_TRUE(waitUntil([&power] { return power.held.isEmpty(); }));
}

TEST_F(SleepInhibitorTest, WhereThereIsNoLoginManagerTheOthersHold)
{
    login.reset();
    fixtures::SessionManager manager(session.services());
    inhibitor->hold(u"why"_s);
    ASSERT_TRUE(waitUntil([&manager] { return manager.held.size() == 1; }));
    settle();
    inhibitor.reset();
    EXPECT_TRUE(waitUntil([&manager] { return manager.held.isEmpty(); }));
}

TEST_F(SleepInhibitorTest, WhereThereIsNoSystemBusTheOthersHold)
{
    inhibitor = std::make_unique<DesktopSleepInhibitor>(u"unix:path=/nowhere/bus"_s, session.program());
    fixtures::PowerManager power(session.services());
    inhibitor->hold(u"why"_s);
    EXPECT_TRUE(waitUntil([&power] { return power.held.size() == 1; }));
}

TEST_F(SleepInhibitorTest, WhereNobodyIsItIsTriedAnewTheNextTime)
{
    login.reset();
    inhibitor->hold(u"why"_s);
    settle();
    inhibitor->release();
    login = std::make_unique<fixtures::LoginManager>(system.services());
    ASSERT_TRUE(waitUntil([this] {
        inhibitor->hold(u"why"_s);
        return login->isInhibited();
    }));
}

TEST_F(SleepInhibitorTest, ABusThatEndsMeanwhileTakesNobodyWithIt)
{
    hold();
    login.reset();
    system.end();
    settle();
    inhibitor->release();
    inhibitor->hold(u"why"_s);
    settle();
    inhibitor->release();
}

TEST(SleepInhibitorWithoutABusTest, NothingHappens)
{
    DesktopSleepInhibitor inhibitor(QString(), QDBusConnection(u"a bus that nobody made"_s));
    inhibitor.hold(u"why"_s);
    inhibitor.release();
    fixtures::turnEventLoop();
}

} // namespace
} // namespace vormel
