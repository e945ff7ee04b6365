#include "platform/process/DetachedProgram.h"

#include "fixtures/EventLoop.h"
#include "fixtures/Sandbox.h"

#include <gtest/gtest.h>

#include <csignal>

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
    const QString out = sandbox.path(QStringLiteral("out"));
    startDetached(QStringLiteral("/bin/sh"),
                  {QStringLiteral("-c"),
                   QStringLiteral("grep SigBlk /proc/self/status > \"$1.new\"; mv \"$1.new\" \"$1\""),
                   QStringLiteral("sh"), out});
    ASSERT_TRUE(fixtures::waitUntil([&sandbox] { return sandbox.exists(QStringLiteral("out")); }));
    EXPECT_EQ(sandbox.read(QStringLiteral("out")).simplified(), "SigBlk: 0000000000000000");
}

} // namespace
} // namespace vormel
