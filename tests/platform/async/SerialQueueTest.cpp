#include "platform/async/SerialQueue.h"

#include "fixtures/EventLoop.h"
#include "platform/async/Spawn.h"

#include <QCoroTask>
#include <QStringList>

#include <gtest/gtest.h>

#include <map>

namespace vormel {
namespace {

using fixtures::turnEventLoop;

class SerialQueueTest : public ::testing::Test
{
protected:
    QCoro::Task<> job(QString name)
    {
        Turn turn = co_await queue->take();
        log << name + (turn.isGiven() ? u'+' : u'-');
        turns.emplace(name, std::move(turn));
    }
    void come(const char* name) { spawn(job(QString::fromUtf8(name))); }
    void end(const char* name)
    {
        turns.erase(QString::fromUtf8(name));
        turnEventLoop();
    }

    std::map<QString, Turn> turns;
    QStringList log;
    /// Below the log, which whoever waits at its end still writes.
    std::unique_ptr<SerialQueue> queue = std::make_unique<SerialQueue>();
};

TEST_F(SerialQueueTest, OneWorksAtATimeInTheOrderOfTheirComing)
{
    for (const char* name : {"a", "b", "c"})
        come(name);
    EXPECT_EQ(log.join(u' '), u"a+");
    end("a");
    EXPECT_EQ(log.join(u' '), u"a+ b+");
    come("d");
    end("b");
    end("c");
    EXPECT_EQ(log.join(u' '), u"a+ b+ c+ d+");
}

TEST_F(SerialQueueTest, WhoComesWhenAllHaveWorkedGoesOnAtOnce)
{
    come("a");
    end("a");
    come("b");
    EXPECT_EQ(log.join(u' '), u"a+ b+");
}

TEST_F(SerialQueueTest, NobodyOvertakesWhoWaitsForATurnThatWasJustGivenBack)
{
    come("a");
    come("b");
    turns.clear();
    come("c");
    turnEventLoop();
    EXPECT_EQ(log.join(u' '), u"a+ b+");
}

TEST_F(SerialQueueTest, WhoStillWaitsAtTheEndOfTheQueueGetsNoTurn)
{
    come("a");
    come("b");
    queue.reset();
    EXPECT_EQ(log.join(u' '), u"a+ b-");
    end("a"); // after the queue
}

} // namespace
} // namespace vormel
