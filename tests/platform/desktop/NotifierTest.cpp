#include "platform/desktop/Notifier.h"

#include "fixtures/DesktopBus.h"
#include "fixtures/DesktopServices.h"
#include "fixtures/EventLoop.h"

#include <QDBusPendingCall>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::Manner;
using fixtures::waitUntil;

class NotifierTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        requireBus(bus);
        if (!IsSkipped())
            server = std::make_unique<fixtures::NotificationServer>(bus.services());
    }
    [[nodiscard]] Notifier::Chosen writeDown()
    {
        return [this](const QString& action, const QString& token) { chosen << action + u' ' + token; };
    }
    /// Shown, and known to be shown.
    void show(const Notification& notification)
    {
        const std::size_t before = server->told.size();
        notifier.show(notification, writeDown());
        ASSERT_TRUE(waitUntil([&] { return server->told.size() > before; }));
        fixtures::turnEventLoop();
        bus.settle();
    }

    const Notification finished{u"Download finished"_s,
                                u"Tom & <b>Jerry</b>.mkv"_s,
                                u"transfer.complete"_s,
                                {{Notification::clicked, u"Show"_s}, {u"open"_s, u"Open"_s}}};
    fixtures::DesktopBus bus;
    std::unique_ptr<fixtures::NotificationServer> server;
    DesktopNotifier notifier{bus.program()};
    QStringList chosen;
};

TEST_F(NotifierTest, TheServerGetsTextsActionsAndWhoseTheyAre)
{
    show(finished);
    const fixtures::NotificationServer::Told& told = server->told.front();
    EXPECT_EQ(told.program, u"Vormel");
    EXPECT_EQ(told.title, u"Download finished");
    EXPECT_EQ(told.actions, (QStringList{u"default"_s, u"Show"_s, u"open"_s, u"Open"_s}));
    EXPECT_EQ(told.hints.value(u"desktop-entry"_s), u"org.vormel.Vormel"_s);
    EXPECT_EQ(told.hints.value(u"category"_s), u"transfer.complete"_s);
}

TEST_F(NotifierTest, MarkupIsEscapedOnlyWhereTheServerReadsIt)
{
    show(finished);
    EXPECT_EQ(server->told.back().text, u"Tom &amp; &lt;b&gt;Jerry&lt;/b&gt;.mkv");
    server->capabilities = QStringList{u"body"_s};
    show(finished);
    EXPECT_EQ(server->told.back().text, u"Tom & <b>Jerry</b>.mkv");
}

TEST_F(NotifierTest, AServerWithoutActionsGetsNone)
{
    server->capabilities = QStringList{u"body"_s};
    show(finished);
    EXPECT_EQ(server->told.front().actions, QStringList());
}

TEST_F(NotifierTest, WhatIsChosenComesOnceWithItsToken)
{
    show(finished);
    show(finished);
    server->choose(2, u"open"_s, u"token-7"_s);
    server->choose(2, u"open"_s);
    ASSERT_TRUE(waitUntil([this] { return !chosen.isEmpty(); }));
    bus.settle();
    EXPECT_EQ(chosen, QStringList{u"open token-7"_s});
}

TEST_F(NotifierTest, AClosedNotificationIsOver)
{
    show(finished);
    server->close(1);
    server->choose(1, u"open"_s);
    bus.settle();
    EXPECT_EQ(chosen, QStringList());
}

TEST_F(NotifierTest, NobodyElseSpeaksForTheServer)
{
    show(finished);
    const QString name = u"somebody else"_s;
    {
        QDBusConnection other = QDBusConnection::connectToBus(bus.address(), name);
        QDBusMessage forged = QDBusMessage::createSignal(u"/org/freedesktop/Notifications"_s,
                                                         u"org.freedesktop.Notifications"_s, u"ActionInvoked"_s);
        forged << 1U << u"open"_s;
        other.send(forged);
        // The bus answers in order.
        (void)other.call(QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                                        u"org.freedesktop.DBus"_s, u"GetId"_s));
    }
    QDBusConnection::disconnectFromBus(name);
    bus.settle();
    EXPECT_EQ(chosen, QStringList());
    server->choose(1, u"open"_s);
    EXPECT_TRUE(waitUntil([this] { return !chosen.isEmpty(); }));
}

TEST_F(NotifierTest, AServerThatRefusesIsLeftInPeace)
{
    server->manner = Manner::refuses;
    notifier.show(finished, writeDown());
    ASSERT_TRUE(waitUntil([this] { return server->callsMet == 1; }));
    bus.settle();
    EXPECT_TRUE(server->told.empty());
    server->manner = Manner::answers;
    show(finished);
}

TEST_F(NotifierTest, WhatNeverGetsAnAnswerEndsWithTheNotifier)
{
    server->manner = Manner::isSilent;
    auto other = std::make_unique<DesktopNotifier>(bus.program());
    other->show(finished, writeDown());
    ASSERT_TRUE(waitUntil([this] { return server->callsMet == 1; }));
    other.reset();
    bus.settle();
    EXPECT_EQ(chosen, QStringList());
}

TEST_F(NotifierTest, AServerThatComesLaterIsFound)
{
    server.reset();
    notifier.show(finished, writeDown());
    bus.settle();
    server = std::make_unique<fixtures::NotificationServer>(bus.services());
    show(finished);
    EXPECT_EQ(server->told.size(), 1);
}

TEST_F(NotifierTest, TheEndOfTheBusIsNotTheEndOfTheProgram)
{
    show(finished);
    server.reset();
    bus.end();
    notifier.show(finished, writeDown());
    fixtures::turnEventLoop();
    EXPECT_EQ(chosen, QStringList());
}

TEST(NotifierWithoutABusTest, NothingHappens)
{
    DesktopNotifier notifier(QDBusConnection(u"a bus that nobody made"_s));
    bool isChosen = false;
    notifier.show({u"x"_s, u"y"_s, {}, {}}, [&isChosen](const QString&, const QString&) { isChosen = true; });
    fixtures::turnEventLoop();
    EXPECT_FALSE(isChosen);
}

} // namespace
} // namespace vormel
