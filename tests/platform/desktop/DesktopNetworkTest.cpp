#include "platform/desktop/DesktopNetwork.h"

#include "fixtures/DesktopBus.h"
#include "fixtures/EventLoop.h"
#include "fixtures/ManualClock.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using namespace std::chrono_literals;
using fixtures::waitUntil;

/// Plays the network manager, whose answer is a sign of life, whatever it is.
class NetworkManager final : public QDBusVirtualObject
{
public:
    enum class Manner
    {
        answers,
        refuses,
        isTooLate, ///< as the bus says it where an answer did not come in time
        isSilent,
    };

    explicit NetworkManager(QDBusConnection bus)
        : m_bus(std::move(bus))
    {
        if (!m_bus.registerVirtualObject(u"/org/freedesktop/NetworkManager"_s, this) || !appear())
            qFatal("The stand-in could not take its name");
    }
    ~NetworkManager() override
    {
        vanish();
        m_bus.unregisterObject(u"/org/freedesktop/NetworkManager"_s);
    }
    bool appear() { return m_bus.registerService(u"org.freedesktop.NetworkManager"_s); }
    void vanish() { m_bus.unregisterService(u"org.freedesktop.NetworkManager"_s); }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        ++timesAsked;
        if (manner == Manner::answers)
            connection.send(message.createReply());
        else if (manner == Manner::refuses)
            connection.send(message.createErrorReply(QDBusError::AccessDenied, u"no"_s));
        else if (manner == Manner::isTooLate)
            connection.send(message.createErrorReply(QDBusError::NoReply, u"late"_s));
        return true;
    }

    Manner manner = Manner::answers;
    int timesAsked = 0;

private:
    QDBusConnection m_bus;
};

using Manner = NetworkManager::Manner;

class DesktopNetworkTest : public ::testing::Test
{
protected:
    void SetUp() override { requireBus(bus); }
    [[nodiscard]] bool loadsWithin(std::chrono::milliseconds time)
    {
        return waitUntil([this] { return timesLoaded > 0; }, time);
    }

    fixtures::DesktopBus bus;
    fixtures::ManualClock clock;
    int timesLoaded = 0;
    DesktopNetwork::Loader load = [this] {
        ++timesLoaded;
        return false;
    };
    DesktopNetwork network{clock, 20s, load};
};

TEST_F(DesktopNetworkTest, WithoutABusABackendIsLoadedAtOnce)
{
    network.begin(QDBusConnection(u"a bus that nobody made"_s));
    EXPECT_EQ(timesLoaded, 1);
    EXPECT_TRUE(network.isOnline());
}

TEST_F(DesktopNetworkTest, WhereNobodyHasTheNameABackendIsLoaded)
{
    network.begin(bus.program());
    EXPECT_EQ(timesLoaded, 0); // nothing waits here
    EXPECT_TRUE(loadsWithin(20s));
}

TEST_F(DesktopNetworkTest, AManagerThatAnswersOrRefusesIsThere)
{
    NetworkManager manager(bus.services());
    for (const Manner manner : {Manner::answers, Manner::refuses}) {
        timesLoaded = 0;
        manager.manner = manner;
        network.begin(bus.program());
        EXPECT_TRUE(loadsWithin(20s));
    }
    EXPECT_EQ(manager.timesAsked, 2);
    clock.advance(1h);
    EXPECT_EQ(manager.timesAsked, 2);
}

TEST_F(DesktopNetworkTest, ASilentManagerIsAskedAFewTimesAndLeftAlone)
{
    NetworkManager manager(bus.services());
    manager.manner = Manner::isSilent;
    DesktopNetwork impatient{clock, 100ms, load};
    impatient.begin(bus.program());
    for (const int times : {1, 2, 3}) {
        ASSERT_TRUE(waitUntil([&] { return manager.timesAsked == times && clock.pendingTimers() == 1; }));
        clock.advance(29s);
        EXPECT_EQ(manager.timesAsked, times);
        clock.advance(1s);
    }
    EXPECT_FALSE(loadsWithin(200ms));
    clock.advance(1h);
    EXPECT_FALSE(loadsWithin(50ms));
    EXPECT_EQ(manager.timesAsked, 4);
    EXPECT_TRUE(impatient.isOnline());
}

TEST_F(DesktopNetworkTest, OneThatBeginsAnewWhileItIsAskedIsAskedAgain)
{
    NetworkManager manager(bus.services());
    manager.manner = Manner::isTooLate;
    network.begin(bus.program());
    ASSERT_TRUE(waitUntil([this] { return clock.pendingTimers() == 1; }));
    EXPECT_EQ(timesLoaded, 0);
    manager.manner = Manner::answers;
    clock.advance(30s);
    EXPECT_TRUE(loadsWithin(20s));
    clock.advance(1h);
    EXPECT_EQ(manager.timesAsked, 2);
}

TEST_F(DesktopNetworkTest, ItsEndWhileItAsksIsNoHarm)
{
    NetworkManager manager(bus.services());
    manager.manner = Manner::isSilent;
    {
        DesktopNetwork gone(clock, 100ms, [this] { return ++timesLoaded > 0; });
        gone.begin(bus.program());
        ASSERT_TRUE(waitUntil([&manager] { return manager.timesAsked == 1; }));
    }
    EXPECT_FALSE(loadsWithin(200ms));
}

} // namespace
} // namespace vormel
