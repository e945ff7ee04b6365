#include "platform/desktop/SleepWatch.h"

#include "fixtures/EventLoop.h"
#include "fixtures/PrivateBus.h"

#include <QDBusMessage>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// A bus on which the test plays the login manager.
class SleepWatchTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (!bus.address().isEmpty())
            return;
        if (qEnvironmentVariableIsSet("VORMEL_REQUIRE_TOOLS"))
            FAIL() << "dbus-daemon is not there";
        GTEST_SKIP() << "dbus-daemon is not there";
    }
    void TearDown() override { QDBusConnection::disconnectFromBus(ours); }

    void follow()
    {
        QObject::connect(&watch, &SleepWatch::wokeUp, [this] { ++timesAwake; });
        watch.follow(QDBusConnection::connectToBus(bus.address(), ours));
    }
    void tellFrom(QDBusConnection manager, bool isGoingToSleep)
    {
        QDBusMessage signal = QDBusMessage::createSignal(u"/org/freedesktop/login1"_s,
                                                         u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s);
        signal << isGoingToSleep;
        manager.send(signal);
    }

    const QString ours = u"watching"_s;
    Sandbox sandbox;
    PrivateBus bus{sandbox};
    SleepWatch watch;
    int timesAwake = 0;
};

} // namespace

TEST_F(SleepWatchTest, HearsOfTheEndOfASleepAlone)
{
    QDBusConnection manager = bus.connection();
    ASSERT_TRUE(manager.registerService(u"org.freedesktop.login1"_s));
    follow();
    tellFrom(manager, true);
    tellFrom(manager, false);
    EXPECT_TRUE(waitUntil([this] { return timesAwake == 1; }));
    tellFrom(manager, true);
    tellFrom(manager, false);
    EXPECT_TRUE(waitUntil([this] { return timesAwake == 2; }));
}

TEST_F(SleepWatchTest, HearsNothingFromAnybodyElse)
{
    QDBusConnection manager = bus.connection();
    ASSERT_TRUE(manager.registerService(u"org.freedesktop.login1"_s));
    const QString stranger = u"stranger"_s;
    follow();
    tellFrom(QDBusConnection::connectToBus(bus.address(), stranger), false);
    tellFrom(manager, false);
    EXPECT_TRUE(waitUntil([this] { return timesAwake > 0; }));
    (void)waitUntil([] { return false; }, std::chrono::milliseconds(50));
    EXPECT_EQ(timesAwake, 1);
    QDBusConnection::disconnectFromBus(stranger);
}

TEST_F(SleepWatchTest, HearsOfALoginManagerThatComesLater)
{
    follow();
    QDBusConnection manager = bus.connection();
    ASSERT_TRUE(manager.registerService(u"org.freedesktop.login1"_s));
    EXPECT_TRUE(waitUntil([&] {
        tellFrom(manager, false);
        return timesAwake > 0;
    }));
}

TEST(SleepWatchWithoutABusTest, HearsNothingAndSaysNothing)
{
    ::testing::internal::CaptureStderr();
    SleepWatch watch;
    watch.follow(QDBusConnection(u"a bus that nobody made"_s));
    turnEventLoop();
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}
