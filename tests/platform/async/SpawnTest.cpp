#include "platform/async/Spawn.h"

#include "platform/async/Eventual.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

/// Collects what is written to the log while it lives.
class LogCatcher
{
public:
    LogCatcher()
        : m_previous(qInstallMessageHandler(&LogCatcher::take))
    {
        caught().clear();
    }
    LogCatcher(const LogCatcher&) = delete;
    LogCatcher& operator=(const LogCatcher&) = delete;
    ~LogCatcher() { qInstallMessageHandler(m_previous); }

    [[nodiscard]] static QStringList lines() { return caught(); }

private:
    static QStringList& caught()
    {
        static QStringList all;
        return all;
    }
    static void take(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text)
    {
        caught().append(type == QtCriticalMsg ? text : u"not critical: "_s + text);
    }

    QtMessageHandler m_previous;
};

QCoro::Task<> throwAfter(Eventual<int> eventual)
{
    co_await eventual;
    throw std::runtime_error("the reason");
}

QCoro::Task<> throwNumber()
{
    throw 5;
    co_return;
}

QCoro::Task<> endQuietly(Eventual<int> eventual, bool& isOver)
{
    co_await eventual;
    isOver = true;
}

TEST(Spawn, AnExceptionThatLeavesTheTaskIsLogged)
{
    const LogCatcher log;
    EventualSource<int> source(0);
    source.deliver(1);
    spawn(throwAfter(source.eventual()));
    EXPECT_EQ(LogCatcher::lines(), QStringList(u"A background task ended with: the reason"_s));
}

TEST(Spawn, AnExceptionAfterASuspensionIsLoggedAndDoesNotReachTheOneWhoWokeTheTask)
{
    const LogCatcher log;
    EventualSource<int> source(0);
    spawn(throwAfter(source.eventual()));
    EXPECT_TRUE(LogCatcher::lines().isEmpty());
    EXPECT_NO_THROW(source.deliver(1));
    EXPECT_EQ(LogCatcher::lines().size(), 1);
}

TEST(Spawn, WhateverElseIsThrownIsLoggedToo)
{
    const LogCatcher log;
    EXPECT_NO_THROW(spawn(throwNumber()));
    EXPECT_EQ(LogCatcher::lines(), QStringList(u"A background task ended with an unknown exception"_s));
}

TEST(Spawn, TheTaskRunsToItsEndWithoutAnOwner)
{
    const LogCatcher log;
    EventualSource<int> source(0);
    bool isOver = false;
    spawn(endQuietly(source.eventual(), isOver));
    EXPECT_FALSE(isOver);
    source.deliver(1);
    EXPECT_TRUE(isOver);
    EXPECT_TRUE(LogCatcher::lines().isEmpty());
}

} // namespace
} // namespace vormel
