#include "app/DesktopActivation.h"

#include "fixtures/EventLoop.h"

#include <QDBusMessage>
#include <QProcess>
#include <QThread>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

using Answer = DesktopActivation::Answer;

/// A bus of its own. The later start, which waits for its answer, is played by another thread.
class DesktopActivationTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        constexpr int patience = 20000;
        m_daemon.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
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
        for (const QString& name : {u"first"_s, u"second"_s})
            QDBusConnection::disconnectFromBus(name);
        m_daemon.terminate();
        m_daemon.waitForFinished();
    }
    [[nodiscard]] QDBusConnection first() const { return bus(u"first"_s); }
    [[nodiscard]] QDBusConnection second() const { return bus(u"second"_s); }

    Answer askFromSecond(const QString& token, const QStringList& uris = {})
    {
        return onSecond<Answer>([this, token, uris] { return DesktopActivation::askRunning(second(), uris, token); });
    }
    /// Runs it on another thread while this one answers.
    template <typename Result>
    Result onSecond(const std::function<Result()>& action)
    {
        Result result{};
        const std::unique_ptr<QThread> thread(QThread::create([&] { result = action(); }));
        thread->start();
        EXPECT_TRUE(waitUntil([&thread] { return thread->isFinished(); }));
        thread->wait();
        return result;
    }

    /// Calls a method of the running program as the shell does; false for an error.
    bool call(const QString& method, const QVariantList& arguments)
    {
        return onSecond<bool>([this, method, arguments] {
            QDBusMessage message = QDBusMessage::createMethodCall(u"org.vormel.Vormel"_s, u"/org/vormel/Vormel"_s,
                                                                  u"org.freedesktop.Application"_s, method);
            message.setArguments(arguments);
            return second().call(message).type() == QDBusMessage::ReplyMessage;
        });
    }
    void writeDownRequests(const DesktopActivation& activation)
    {
        QObject::connect(&activation, &DesktopActivation::showRequested,
                         [this](const QString& token) { tokens << token; });
        QObject::connect(&activation, &DesktopActivation::openRequested,
                         [this](const QStringList& uris, const QString& token) { opened << uris.join(u' ') + token; });
    }

    QStringList tokens;
    QStringList opened; ///< the addresses, and the token behind them

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
    EXPECT_EQ(askFromSecond(u"token-7"_s), Answer::reached);
    EXPECT_EQ(askFromSecond({}), Answer::reached);
    EXPECT_EQ(tokens, QStringList({u"token-7"_s, QString()}));
    EXPECT_EQ(opened, QStringList());
}

TEST_F(DesktopActivationTest, TheShellsOwnCallIsUnderstoodWithEitherToken)
{
    const DesktopActivation running(first());
    writeDownRequests(running);
    const QString activate = u"Activate"_s;
    const QString wayland = u"activation-token"_s;
    const QString x11 = u"desktop-startup-id"_s;
    EXPECT_TRUE(call(activate, {QVariantMap{{x11, u"x_TIME1"_s}}}));
    EXPECT_TRUE(call(activate, {QVariantMap{{x11, u"x_TIME2"_s}, {wayland, u"w"_s}}}));
    EXPECT_EQ(tokens, QStringList({u"x_TIME1"_s, u"w"_s}));
}

TEST_F(DesktopActivationTest, ALaterStartHandsItsAddressesOver)
{
    const DesktopActivation running(first());
    writeDownRequests(running);
    EXPECT_EQ(askFromSecond(u"#t"_s, {u"https://a.example/1"_s, u"file:///x"_s}), Answer::reached);
    EXPECT_EQ(opened, QStringList{u"https://a.example/1 file:///x#t"_s});
    EXPECT_EQ(tokens, QStringList());
}

TEST_F(DesktopActivationTest, OneThatHasTheNameAndDoesNotAnswerIsSilent)
{
    const DesktopActivation running(first()); // on this thread, which waits below
    EXPECT_EQ(DesktopActivation::askRunning(second(), {u"https://a.example/1"_s}, {}), Answer::silent);
}

TEST_F(DesktopActivationTest, ActionsAreAcceptedAndIgnored)
{
    const DesktopActivation running(first());
    writeDownRequests(running);
    const QVariantMap nothing;
    EXPECT_TRUE(call(u"ActivateAction"_s, {u"new"_s, QVariantList(), nothing}));
    EXPECT_EQ(tokens, QStringList());
}

TEST_F(DesktopActivationTest, WhereNoProgramRunsNobodyIsReached)
{
    EXPECT_EQ(askFromSecond(u"t"_s), Answer::nobody);
}

TEST_F(DesktopActivationTest, TheNameIsGivenBackAtTheEnd)
{
    {
        const DesktopActivation running(first());
        EXPECT_EQ(askFromSecond({}), Answer::reached);
    }
    EXPECT_EQ(askFromSecond({}), Answer::nobody);
}

TEST_F(DesktopActivationTest, ASecondOwnerLeavesTheFirstOneItsName)
{
    const DesktopActivation running(first());
    writeDownRequests(running);
    {
        const DesktopActivation other(second());
    }
    EXPECT_EQ(askFromSecond(u"t"_s), Answer::reached);
    EXPECT_EQ(tokens, QStringList{u"t"_s});
}

TEST(DesktopActivationWithoutABusTest, NothingHappens)
{
    const QDBusConnection none(u"a bus that nobody made"_s);
    const DesktopActivation running(none);
    EXPECT_EQ(DesktopActivation::askRunning(none, {}, u"t"_s), Answer::nobody);
}

} // namespace
