#include "platform/desktop/SystemBus.h"

#include "fixtures/DesktopBus.h"
#include "fixtures/EventLoop.h"
#include "platform/async/Spawn.h"
#include "platform/storage/FileDescriptor.h"

#include <QFile>

#include <sys/socket.h>
#include <sys/un.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

/// What came of an attempt to open the bus.
struct Opening
{
    bool isOver = false;
    std::optional<QDBusConnection> bus;
};

QCoro::Task<> open(SystemBus& system, std::shared_ptr<Opening> opening)
{
    opening->bus = co_await system.open();
    opening->isOver = true;
}

std::shared_ptr<Opening> opened(SystemBus& system)
{
    auto opening = std::make_shared<Opening>();
    spawn(open(system, opening));
    return opening;
}

TEST(SystemBusTest, IsOpenedOnceForAllWhoAsk)
{
    const fixtures::DesktopBus bus;
    requireBus(bus);
    if (testing::Test::IsSkipped())
        return;
    SystemBus system(bus.address());
    const std::shared_ptr<Opening> first = opened(system);
    const std::shared_ptr<Opening> second = opened(system);
    ASSERT_TRUE(fixtures::waitUntil([&] { return first->isOver && second->isOver; }));
    const std::shared_ptr<Opening> third = opened(system);
    ASSERT_TRUE(third->isOver);
    EXPECT_TRUE(first->bus->isConnected());
    EXPECT_EQ(first->bus->baseService(), second->bus->baseService());
    EXPECT_EQ(first->bus->baseService(), third->bus->baseService());
}

TEST(SystemBusTest, OneThatAcceptsAndIsSilentKeepsNobodyWaiting)
{
    const fixtures::Sandbox sandbox;
    const QString path = sandbox.path(u"bus"_s);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, QFile::encodeName(path).constData(), sizeof(address.sun_path));
    FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    ASSERT_EQ(::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    ASSERT_EQ(::listen(socket.get(), 5), 0);
    SystemBus system(u"unix:path="_s + path);
    const std::shared_ptr<Opening> opening = opened(system);
    EXPECT_FALSE(fixtures::waitUntil([&] { return opening->isOver; }, std::chrono::milliseconds(100)));
    socket.close(); // which ends it
    ASSERT_TRUE(fixtures::waitUntil([&] { return opening->isOver; }));
    EXPECT_FALSE(opening->bus->isConnected());
}

TEST(SystemBusTest, WhereThereIsNoneNothingIsConnected)
{
    SystemBus system(u"unix:path=/nowhere/bus"_s);
    const std::shared_ptr<Opening> opening = opened(system);
    ASSERT_TRUE(fixtures::waitUntil([&] { return opening->isOver; }));
    EXPECT_FALSE(opening->bus->isConnected());
}

} // namespace
} // namespace vormel
