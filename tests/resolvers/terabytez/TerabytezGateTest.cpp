#include "resolvers/terabytez/TerabytezGate.h"

#include "fixtures/EventLoop.h"
#include "platform/async/SharedEventual.h"
#include "platform/async/Spawn.h"
#include "resolvers/ResolverError.h"
#include "resolvers/terabytez/WalkStopped.h"

#include <gtest/gtest.h>

namespace vormel {
namespace {

/// One caller whose work ends when the test says so.
struct Caller
{
    std::stop_source stop;
    SharedEventual<bool> end; ///< true: the work succeeds
    bool hasBegun = false;
    bool isOver = false;
    bool isResolved = false;
    bool isFailed = false;
};
using CallerPtr = std::shared_ptr<Caller>;

QCoro::Task<TerabytezResolveResult> workOf(CallerPtr caller)
{
    caller->hasBegun = true;
    const SharedEventual<bool> end = caller->end;
    const bool succeeds = co_await end;
    if (!succeeds)
        throw ResolverError::linkNotFound();
    co_return TerabytezResolveResult{TerabytezResolveResult::Kind::resolved, {}};
}

QCoro::Task<> passing(TerabytezGate* gate, CallerPtr caller)
{
    const TerabytezGate::Work work = [caller] { return workOf(caller); };
    try {
        const TerabytezResolveResult result = co_await gate->runSerial(work, caller->stop.get_token());
        caller->isResolved = result.kind == TerabytezResolveResult::Kind::resolved;
    } catch (const ResolverError&) {
        caller->isFailed = true;
    } catch (const WalkStopped&) {
        EXPECT_FALSE(caller->hasBegun);
    }
    caller->isOver = true;
}

class TerabytezGateTest : public testing::Test
{
protected:
    ~TerabytezGateTest() override
    {
        gate.reset();
        for (const CallerPtr& caller : callers)
            caller->end.deliver(true);
    }
    CallerPtr call(const CallerPtr& caller = std::make_shared<Caller>())
    {
        callers.push_back(caller);
        spawn(passing(gate.get(), caller));
        return caller;
    }
    static void end(const CallerPtr& caller, bool succeeds = true)
    {
        caller->end.deliver(succeeds);
        fixtures::turnEventLoop();
    }

    std::unique_ptr<TerabytezGate> gate = std::make_unique<TerabytezGate>();
    std::vector<CallerPtr> callers;
};

TEST_F(TerabytezGateTest, OneWorksAtATimeInTheOrderOfTheCalls)
{
    const CallerPtr first = call();
    const CallerPtr second = call();
    const CallerPtr third = call();
    EXPECT_TRUE(first->hasBegun);
    EXPECT_FALSE(second->hasBegun || third->hasBegun);
    end(first);
    EXPECT_TRUE(first->isResolved && second->hasBegun);
    EXPECT_FALSE(third->hasBegun);
    end(second);
    EXPECT_TRUE(second->isResolved && third->hasBegun);
    end(third);
    EXPECT_TRUE(third->isResolved);
}

TEST_F(TerabytezGateTest, WhoComesLaterGoesOnWhenAllBeforeHaveEnded)
{
    const CallerPtr first = call();
    end(first);
    const CallerPtr second = call();
    EXPECT_TRUE(second->hasBegun);
    const CallerPtr third = call();
    EXPECT_FALSE(third->hasBegun);
    end(second);
    EXPECT_TRUE(third->hasBegun);
}

TEST_F(TerabytezGateTest, AFailureReachesItsCallerAloneAndTheNextGoesOn)
{
    const CallerPtr first = call();
    const CallerPtr second = call();
    end(first, false);
    EXPECT_TRUE(first->isFailed && second->hasBegun);
    end(second);
    EXPECT_TRUE(second->isResolved);
}

TEST_F(TerabytezGateTest, WhoIsStoppedWhileItWaitsLeavesAtOnceAndKeepsNobodyWaiting)
{
    const CallerPtr first = call();
    const CallerPtr second = call();
    const CallerPtr third = call();
    second->stop.request_stop();
    EXPECT_TRUE(second->isOver);
    EXPECT_FALSE(third->hasBegun) << "the first is still at work";
    end(first);
    EXPECT_FALSE(second->hasBegun);
    EXPECT_TRUE(third->hasBegun);
}

TEST_F(TerabytezGateTest, AStopOfWhoIsAtWorkIsTheWorksToHear)
{
    const CallerPtr first = call();
    const CallerPtr second = call();
    first->stop.request_stop();
    EXPECT_FALSE(first->isOver || second->hasBegun);
    end(first);
    EXPECT_TRUE(first->isResolved && second->hasBegun);
}

TEST_F(TerabytezGateTest, WhoIsStoppedInTheMomentOfItsTurnPassesItOn)
{
    const CallerPtr first = call();
    const CallerPtr second = call();
    const CallerPtr third = call();
    first->end.deliver(true);
    second->stop.request_stop(); // its turn is on its way
    fixtures::turnEventLoop();
    EXPECT_FALSE(second->hasBegun);
    EXPECT_TRUE(third->hasBegun);
}

TEST_F(TerabytezGateTest, WhoIsStoppedBeforehandNeverBegins)
{
    const auto stopped = std::make_shared<Caller>();
    stopped->stop.request_stop();
    call(stopped);
    EXPECT_TRUE(stopped->isOver);
    EXPECT_FALSE(stopped->hasBegun);
    EXPECT_TRUE(call()->hasBegun);
}

TEST_F(TerabytezGateTest, AllWhoWaitLeaveWhenTheGateGoes)
{
    const CallerPtr first = call();
    const CallerPtr second = call();
    gate.reset();
    EXPECT_TRUE(second->isOver);
    EXPECT_FALSE(second->hasBegun);
    end(first);
    EXPECT_TRUE(first->isResolved);
}

} // namespace
} // namespace vormel
