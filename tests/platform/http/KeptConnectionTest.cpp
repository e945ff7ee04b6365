#include "platform/http/LoopbackTest.h"

namespace vormel {
namespace {

using namespace std::chrono_literals;
using sites::Answer;

/// Connections after a sleep of the machine.
using KeptConnectionTest = LoopbackTest;

TEST_F(KeptConnectionTest, IsUsedNoMoreOnceConnectionsAreToBeMadeAnew)
{
    server.serve("/f", {.content = "file"});
    EXPECT_EQ(get("/f").body, "file");
    EXPECT_EQ(get("/f").body, "file");
    ASSERT_EQ(server.connectionsAccepted(), 1);
    client.connectAnew();
    EXPECT_EQ(get("/f").body, "file");
    EXPECT_EQ(server.connectionsAccepted(), 2);
    // The new one is as good as any.
    EXPECT_EQ(get("/f").body, "file");
    EXPECT_EQ(server.connectionsAccepted(), 2);
}

TEST_F(KeptConnectionTest, WhatIsRunningGoesOn)
{
    server.serve("/f", {.content = "file", .answers = {Answer::file().stallAfter(2)}});
    Recorder recorder;
    const auto task = client.makeTask(request("/f"), recorder);
    task->resume();
    ASSERT_TRUE(server.waitForStalled(1, 5s));
    client.connectAnew();
    server.release();
    ASSERT_TRUE(recorder.waitForEnd());
    EXPECT_FALSE(recorder.heard().error);
    EXPECT_EQ(recorder.heard().body, "file");
    EXPECT_EQ(server.connectionsAccepted(), 1);
}

} // namespace
} // namespace vormel
