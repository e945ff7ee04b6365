#include "platform/desktop/Launcher.h"

#include "fixtures/DesktopBus.h"
#include "fixtures/DesktopServices.h"
#include "fixtures/EventLoop.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class LauncherTest : public ::testing::Test
{
protected:
    void SetUp() override { requireBus(bus); }
    [[nodiscard]] QVariantMap shown(const LauncherState& state)
    {
        const qsizetype before = dock.states.size();
        launcher.show(state);
        EXPECT_TRUE(fixtures::waitUntil([&] { return dock.states.size() > before; }));
        return dock.states.value(before);
    }

    fixtures::DesktopBus bus;
    fixtures::Dock dock{bus.services()};
    DesktopLauncher launcher{bus.program()};
};

TEST_F(LauncherTest, ADockIsToldHowFarItIsAndHowManyAreLeft)
{
    EXPECT_EQ(
        shown({3, 0.25}),
        (QVariantMap{
            {u"progress"_s, 0.25}, {u"progress-visible"_s, true}, {u"count"_s, 3LL}, {u"count-visible"_s, true}}));
    EXPECT_EQ(dock.programs, QStringList{u"application://org.vormel.Vormel.desktop"_s});
}

TEST_F(LauncherTest, WhatIsNotKnownIsNotShown)
{
    const QVariantMap state = shown({2, std::nullopt});
    EXPECT_EQ(state.value(u"progress-visible"_s), false);
    EXPECT_EQ(state.value(u"count-visible"_s), true);
}

TEST_F(LauncherTest, NothingLeftMeansNothingShown)
{
    const QVariantMap state = shown({});
    EXPECT_EQ(state.value(u"progress-visible"_s), false);
    EXPECT_EQ(state.value(u"count-visible"_s), false);
}

TEST(LauncherWithoutABusTest, NothingHappens)
{
    DesktopLauncher launcher(QDBusConnection(u"a bus that nobody made"_s));
    launcher.show({1, 0.5});
}

} // namespace
} // namespace vormel
