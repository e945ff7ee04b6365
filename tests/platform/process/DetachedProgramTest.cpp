#include "platform/process/DetachedProgram.h"

#include "fixtures/EventLoop.h"
#include "fixtures/Sandbox.h"

#include <gtest/gtest.h>

#include <csignal>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

/// As the program has them while it runs.
class BlockedSignals
{
public:
    BlockedSignals()
    {
        sigset_t blocked;
        sigemptyset(&blocked);
        sigaddset(&blocked, SIGINT);
        ::pthread_sigmask(SIG_BLOCK, &blocked, &m_before);
    }
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;
    ~BlockedSignals() { ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }

private:
    sigset_t m_before = {};
};

TEST(DetachedProgram, GetsItsArgumentsAndNoneOfOurBlockedSignals)
{
    const fixtures::Sandbox sandbox;
    const BlockedSignals blocked;
    const QString out = sandbox.path(u"out"_s);
    startDetached(u"/bin/sh"_s,
                  {u"-c"_s, u"grep SigBlk /proc/self/status > \"$1.new\"; mv \"$1.new\" \"$1\""_s, u"sh"_s, out});
    ASSERT_TRUE(fixtures::waitUntil([&sandbox] { return sandbox.exists(u"out"_s); }));
    EXPECT_EQ(sandbox.read(u"out"_s).simplified(), "SigBlk: 0000000000000000");
}

} // namespace
} // namespace vormel
