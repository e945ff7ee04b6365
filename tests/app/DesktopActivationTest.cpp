#include "app/DesktopActivation.h"

#include "fixtures/EventLoop.h"

#include <QDBusMessage>
#include <QProcess>
#include <QThread>

#include <gtest/gtest.h>

using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// A bus of its own. The later start, which waits for its answer, is played by another thread.
class DesktopActivationTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        constexpr int patience = 20000;
        m_daemon.start(QStringLiteral("dbus-daemon"),
                       {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address")});
        if (m_daemon.waitForReadyRead(patience)) {
            m_address = QString::fromLatin1(m_daemon.readLine().trimmed());
            return;
        }
        if (qEnvironmentVariableIsSet("VORMEL_REQUIRE_TOOLS"))
            FAIL() << "dbus-daemon is not there";
        GTEST_SKIP() << "dbus-daemon is not there";
    }
    void TearDown() override
    {
        for (const QString& name : {QStringLiteral("first"), QStringLiteral("second")})
            QDBusConnection::disconnectFromBus(name);
        m_daemon.terminate();
        m_daemon.waitForFinished();
    }
    [[nodiscard]] QDBusConnection first() const { return bus(QStringLiteral("first")); }
    [[nodiscard]] QDBusConnection second() const { return bus(QStringLiteral("second")); }

    bool askFromSecond(const QString& token)
    {
        return onSecond([this, token] { return DesktopActivation::askRunningToShow(second(), token); });
    }
    /// Runs it on another thread while this one answers.
    bool onSecond(const std::function<bool()>& action)
    {
        bool result = false;
        const std::unique_ptr<QThread> thread(QThread::create([&] { result = action(); }));
        thread->start();
        EXPECT_TRUE(waitUntil([&thread] { return thread->isFinished(); }));
        thread->wait();
        return result;
    }

    /// Calls a method of the running program as the shell does; false for an error.
    bool call(const QString& method, const QVariantList& arguments)
    {
        return onSecond([this, method, arguments] {
            QDBusMessage message = QDBusMessage::createMethodCall(
                QStringLiteral("org.vormel.Vormel"), QStringLiteral("/org/vormel/Vormel"),
                QStringLiteral("org.freedesktop.Application"), method);
            message.setArguments(arguments);
            return second().call(message).type() == QDBusMessage::ReplyMessage;
        });
    }
    void writeDownRequests(const DesktopActivation& activation)
    {
        QObject::connect(&activation, &DesktopActivation::showRequested,
                         [this](const QString& token) { tokens << token; });
    }

    QStringList tokens;

private:
    [[nodiscard]] QDBusConnection bus(const QString& name) const
    {
        return QDBusConnection::connectToBus(m_address, name);
    }

    QProcess m_daemon;
    QString m_address;
};

TEST_F(DesktopActivationTest, ALaterStartHandsItsTokenToTheRunningProgram)
{
    const DesktopActivation running(first());
    writeDownRequests(running);
    EXPECT_TRUE(askFromSecond(QStringLiteral("token-7")));
    EXPECT_TRUE(askFromSecond({}));
    EXPECT_EQ(tokens, QStringList({QStringLiteral("token-7"), QString()}));
}

TEST_F(DesktopActivationTest, TheShellsOwnCallIsUnderstoodWithEitherToken)
{
    const DesktopActivation running(first());
    writeDownRequests(running);
    const QString activate = QStringLiteral("Activate");
    const QString wayland = QStringLiteral("activation-token");
    const QString x11 = QStringLiteral("desktop-startup-id");
    EXPECT_TRUE(call(activate, {QVariantMap{{x11, QStringLiteral("x_TIME1")}}}));
    EXPECT_TRUE(call(activate, {QVariantMap{{x11, QStringLiteral("x_TIME2")}, {wayland, QStringLiteral("w")}}}));
    EXPECT_EQ(tokens, QStringList({QStringLiteral("x_TIME1"), QStringLiteral("w")}));
}

TEST_F(DesktopActivationTest, FilesAndActionsAreAcceptedAndIgnored)
{
    const DesktopActivation running(first());
    writeDownRequests(running);
    const QVariantMap nothing;
    EXPECT_TRUE(call(QStringLiteral("Open"), {QStringList{QStringLiteral("file:///x")}, nothing}));
    EXPECT_TRUE(call(QStringLiteral("ActivateAction"), {QStringLiteral("new"), QVariantList(), nothing}));
    EXPECT_EQ(tokens, QStringList());
}

TEST_F(DesktopActivationTest, WhereNoProgramRunsNobodyIsReached)
{
    EXPECT_FALSE(askFromSecond(QStringLiteral("t")));
}

TEST_F(DesktopActivationTest, TheNameIsGivenBackAtTheEnd)
{
    {
        const DesktopActivation running(first());
        EXPECT_TRUE(askFromSecond({}));
    }
    EXPECT_FALSE(askFromSecond({}));
}

TEST_F(DesktopActivationTest, ASecondOwnerLeavesTheFirstOneItsName)
{
    const DesktopActivation running(first());
    writeDownRequests(running);
    {
        const DesktopActivation other(second());
    }
    EXPECT_TRUE(askFromSecond(QStringLiteral("t")));
    EXPECT_EQ(tokens, QStringList{QStringLiteral("t")});
}

TEST(DesktopActivationWithoutABusTest, NothingHappens)
{
    const QDBusConnection none(QStringLiteral("a bus that nobody made"));
    const DesktopActivation running(none);
    EXPECT_FALSE(DesktopActivation::askRunningToShow(none, QStringLiteral("t")));
}

} // namespace
