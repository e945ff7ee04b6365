#include "platform/http/LoopbackTest.h"

#include <memory>
#include <thread>

namespace vormel {
namespace {

using sites::PatternContent;

class SuspensionTest : public LoopbackTest
{};

/// Counts blocks that come while the receiver has asked for none.
struct SuspensionCheck
{
    std::atomic<bool> isSuspended{false};
    std::atomic<int> broken{0};

    HttpReceiver::DataVerdict suspend()
    {
        if (isSuspended.exchange(true))
            ++broken;
        return HttpReceiver::DataVerdict::suspend;
    }
};

TEST_F(SuspensionTest, SuspendingAfterEveryBlockLosesNothingAndNoBlockComesMeanwhile)
{
    for (const qint64 blockSize : {qint64{300}, qint64{5000}, 256 * kib}) {
        const PatternContent content(6, blockSize * 100 + 7);
        server.serve("/f", {.content = content});
        client.setBlockSize(blockSize);
        Recorder recorder;
        SuspensionCheck check;
        recorder.onData = [&check](QByteArrayView) { return check.suspend(); };
        const auto task = client.makeTask(request("/f"), recorder);
        task->resume();
        qint64 seen = 0;
        while (seen < content.size()) {
            ASSERT_TRUE(recorder.waitForBytes(seen + 1));
            seen = recorder.heard().body.size();
            check.isSuspended = false;
            task->resume();
        }
        ASSERT_TRUE(recorder.waitForEnd());
        EXPECT_EQ(check.broken, 0) << "blocks of " << blockSize;
        expectWhole(recorder.heard(), content);
    }
}

TEST_F(SuspensionTest, ASuspendedTransferTakesNothingMoreFromTheServer)
{
    server.serve("/f", {.content = PatternContent(7, 1024 * mib)});
    server.serve("/small", {.content = "x"});
    Recorder recorder;
    recorder.onData = [](QByteArrayView) { return HttpReceiver::DataVerdict::suspend; };
    const auto task = client.makeTask(request("/f"), recorder);
    task->resume();
    ASSERT_TRUE(recorder.waitForBytes(1));
    // Each of these goes round the client's thread several times, which the suspended transfer could use.
    for (int i = 0; i < 50; ++i)
        EXPECT_FALSE(get("/small").error);
    EXPECT_EQ(recorder.heard().blocks.size(), 1U);
    // What the system buffers on both sides of the connection.
    EXPECT_LT(server.bodyBytesSent(), 32 * mib);
}

TEST_F(SuspensionTest, ATransferMayBeSuspendedFromOutsideAndGoesOnWhereItWas)
{
    const PatternContent content(8, 24 * mib);
    server.serve("/f", {.content = content});
    Recorder recorder;
    const auto task = client.makeTask(request("/f"), recorder);
    task->resume();
    for (int i = 1; i <= 20; ++i) {
        ASSERT_TRUE(recorder.waitForBytes(i * mib));
        task->suspend();
        task->resume();
    }
    ASSERT_TRUE(recorder.waitForEnd());
    expectWhole(recorder.heard(), content);
}

TEST_F(SuspensionTest, TheEndIsNotToldBeforeTheBytesThatASuspensionHeldBack)
{
    server.serve("/f", {.content = PatternContent(9, 5000)});
    server.serve("/small", {.content = "x"});
    client.setBlockSize(1000);
    Recorder recorder;
    recorder.onData = [](QByteArrayView) { return HttpReceiver::DataVerdict::suspend; };
    const auto task = client.makeTask(request("/f"), recorder);
    task->resume();
    for (int block = 1; block <= 5; ++block) {
        ASSERT_TRUE(recorder.waitForBytes(block * 1000));
        EXPECT_EQ(recorder.heard().body.size(), block * 1000);
        if (block == 1) {
            EXPECT_FALSE(get("/small").error);
            EXPECT_FALSE(recorder.heard().isOver);
        }
        task->resume();
    }
    ASSERT_TRUE(recorder.waitForEnd());
    EXPECT_FALSE(recorder.heard().error);
}

TEST_F(SuspensionTest, AResumeThatOvertakesTheVerdictToSuspendIsNotLost)
{
    const PatternContent content(10, mib);
    server.serve("/f", {.content = content});
    Recorder recorder;
    std::unique_ptr<HttpTask> task;
    recorder.onData = [&task](QByteArrayView) {
        std::thread([&task] { task->resume(); }).join();
        return HttpReceiver::DataVerdict::suspend;
    };
    task = client.makeTask(request("/f"), recorder);
    task->resume();
    ASSERT_TRUE(recorder.waitForEnd());
    expectWhole(recorder.heard(), content);
}

} // namespace
} // namespace vormel
