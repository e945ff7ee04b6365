#include "fixtures/EventLoop.h"
#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

#include <signal.h> // NOLINT(modernize-deprecated-headers): kill() is POSIX

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// The real program, without a screen, in a home of its own.
class ProgramTest : public ::testing::TestWithParam<int>
{
protected:
    [[nodiscard]] QProcessEnvironment environment() const
    {
        QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
        variables.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        variables.insert(u"HOME"_s, sandbox.root());
        variables.insert(u"XDG_DATA_HOME"_s, sandbox.path(u"data"_s));
        variables.insert(u"XDG_CONFIG_HOME"_s, sandbox.path(u"config"_s));
        variables.insert(u"XDG_RUNTIME_DIR"_s, sandbox.path(u"run"_s));
        return variables;
    }
    void start(QProcess& program) const
    {
        program.setProcessEnvironment(environment());
        program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        program.start(QStringLiteral(VORMEL_PROGRAM), QStringList());
        ASSERT_TRUE(program.waitForStarted());
    }
    /// The program listens when its socket is there.
    [[nodiscard]] bool isUp() const
    {
        return waitUntil([this] { return QFile::exists(sandbox.path(u"run/Vormel/vormel.socket"_s)); });
    }

    Sandbox sandbox;
};

} // namespace

TEST_P(ProgramTest, EndsInOrderOnASignalAndSavesItsQueue)
{
    ASSERT_TRUE(QDir().mkpath(sandbox.path(u"run"_s)));
    QFile::setPermissions(sandbox.path(u"run"_s), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QProcess program;
    start(program);
    ASSERT_TRUE(isUp());
    const QString queueFile = u"data/Vormel/download_queue.json"_s;
    EXPECT_FALSE(sandbox.exists(queueFile));
    ASSERT_EQ(::kill(static_cast<pid_t>(program.processId()), GetParam()), 0);
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0);
    EXPECT_EQ(sandbox.read(queueFile), "[]");
    EXPECT_FALSE(sandbox.exists(u"run/Vormel/vormel.socket"_s));
}

INSTANTIATE_TEST_SUITE_P(Signals, ProgramTest, ::testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST_F(ProgramTest, RunsOncePerUserAlsoAfterAKill)
{
    ASSERT_TRUE(QDir().mkpath(sandbox.path(u"run"_s)));
    QFile::setPermissions(sandbox.path(u"run"_s), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QProcess first;
    start(first);
    ASSERT_TRUE(isUp());
    QProcess second;
    start(second);
    ASSERT_TRUE(second.waitForFinished());
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_EQ(first.state(), QProcess::Running);
    first.kill();
    ASSERT_TRUE(first.waitForFinished());
    // The lock went with the process; the socket that was left behind is nobody's.
    QProcess third;
    start(third);
    EXPECT_FALSE(third.waitForFinished(1000));
    EXPECT_EQ(::kill(static_cast<pid_t>(third.processId()), SIGTERM), 0);
    EXPECT_TRUE(third.waitForFinished());
}
