#include "app/DesktopActivation.h"
#include "config/Services.h"
#include "fixtures/EventLoop.h"
#include "fixtures/PrivateBus.h"
#include "fixtures/RealTools.h"
#include "fixtures/Sandbox.h"

#include <QDBusConnectionInterface>
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

/// How a start ended that did not stay.
struct End
{
    int status = -1;
    QString output;
    QString errors;
};

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
        variables.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus);
        return variables;
    }
    void start(QProcess& program) const
    {
        endWithTheTest(program);
        program.setProcessEnvironment(environment());
        program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        program.start(QStringLiteral(VORMEL_PROGRAM), QStringList());
        ASSERT_TRUE(program.waitForStarted());
    }
    void makeRunFolder() const
    {
        ASSERT_TRUE(QDir().mkpath(sandbox.path(u"run"_s)));
        QFile::setPermissions(sandbox.path(u"run"_s), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    /// Runs another start to its end, in the sandbox's folder.
    [[nodiscard]] End runToEnd(const QStringList& arguments, const QString& screen = u"offscreen"_s) const
    {
        QProcess program;
        endWithTheTest(program);
        QProcessEnvironment variables = environment();
        variables.insert(u"QT_QPA_PLATFORM"_s, screen);
        program.setProcessEnvironment(variables);
        program.setWorkingDirectory(sandbox.root());
        program.start(QStringLiteral(VORMEL_PROGRAM), arguments);
        EXPECT_TRUE(program.waitForFinished());
        if (program.exitStatus() != QProcess::NormalExit)
            return {-1, {}, {}};
        return {program.exitCode(), QString::fromUtf8(program.readAllStandardOutput()),
                QString::fromUtf8(program.readAllStandardError())};
    }
    /// Ends the program in order.
    void end(QProcess& program) const
    {
        EXPECT_EQ(::kill(static_cast<pid_t>(program.processId()), SIGTERM), 0);
        EXPECT_TRUE(program.waitForFinished());
        EXPECT_EQ(program.exitCode(), 0);
    }
    /// The program listens when its socket is there.
    [[nodiscard]] bool isUp() const
    {
        return waitUntil([this] { return QFile::exists(sandbox.path(u"run/Vormel/vormel.socket"_s)); });
    }

    Sandbox sandbox;
    QString bus = u"unix:path=/nowhere/bus"_s; ///< none, unless a test starts one
};

} // namespace

TEST_P(ProgramTest, EndsInOrderOnASignalAndSavesItsQueue)
{
    makeRunFolder();
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
    makeRunFolder();
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

TEST_F(ProgramTest, TellsOfItselfWithoutADisplay)
{
    const QString noScreen = u"no such screen"_s;
    const End help = runToEnd({u"--help"_s}, noScreen);
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.output.startsWith(u"Usage: vormel "));
    const End version = runToEnd({u"--version"_s}, noScreen);
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.output, u"vormel %1\n"_s.arg(programVersion));
    EXPECT_EQ(help.errors + version.errors, u"");
}

TEST_F(ProgramTest, AFileWithoutLinksIsToldOfAndNothingIsStarted)
{
    sandbox.write(u"words.txt"_s, "no link here\n");
    const End missing = runToEnd({u"gone.txt"_s, u"https://a.example/1"_s});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.errors, u"vormel: gone.txt: No such file\n");
    const End empty = runToEnd({u"words.txt"_s});
    EXPECT_EQ(empty.status, 1);
    EXPECT_EQ(empty.errors, u"vormel: words.txt: There is no link in the file\n");
    EXPECT_FALSE(sandbox.exists(u"run/Vormel/vormel.lock"_s));
}

TEST_F(ProgramTest, ArgumentsThatCannotBeUnderstoodAreToldWithTheUsage)
{
    for (const QString& argument : {u"--add"_s, u"mailto:a@a.example"_s}) {
        const End end = runToEnd({argument});
        EXPECT_EQ(end.status, 2);
        EXPECT_TRUE(end.errors.contains(argument));
        EXPECT_TRUE(end.errors.endsWith(u"Usage: vormel [OPTION]... [LINK | FILE]...\n"));
        EXPECT_EQ(end.output, u"");
    }
}

TEST_F(ProgramTest, WithoutABusLinksAreHandedToTheRunningOneAndNotAdded)
{
    makeRunFolder();
    sandbox.write(u"links.txt"_s, "https://a.example/1\nhttps://a.example/2\n");
    QProcess first;
    start(first);
    ASSERT_TRUE(isUp());
    EXPECT_EQ(runToEnd({u"https://a.example/3"_s, u"links.txt"_s}).status, 0);
    EXPECT_EQ(first.state(), QProcess::Running);
    end(first);
    EXPECT_EQ(sandbox.read(u"data/Vormel/download_queue.json"_s), "[]");
}

class ProgramOnABusTest : public ProgramTest
{
protected:
    void SetUp() override
    {
        bus = daemon.address();
        makeRunFolder();
        if (bus.isEmpty() && !areToolsRequired())
            GTEST_SKIP() << "dbus-daemon is not there";
        ASSERT_FALSE(bus.isEmpty());
    }
    [[nodiscard]] bool hasName() const
    {
        return waitUntil(
            [this] { return daemon.connection().interface()->isServiceRegistered(u"org.vormel.Vormel"_s).value(); });
    }

    PrivateBus daemon{sandbox};
};

TEST_F(ProgramOnABusTest, LinksAreHandedToTheRunningOneAndNotAdded)
{
    QProcess first;
    start(first);
    ASSERT_TRUE(isUp());
    ASSERT_TRUE(hasName());
    EXPECT_EQ(runToEnd({u"https://a.example/3"_s}).status, 0);
    EXPECT_EQ(first.state(), QProcess::Running);
    end(first);
    EXPECT_EQ(sandbox.read(u"data/Vormel/download_queue.json"_s), "[]");
}

TEST_F(ProgramOnABusTest, TheRunningOneThatDoesNotAnswerIsToldOf)
{
    QProcess first;
    start(first);
    ASSERT_TRUE(isUp());
    ASSERT_TRUE(hasName());
    const auto id = static_cast<pid_t>(first.processId());
    ASSERT_EQ(::kill(id, SIGSTOP), 0);
    const End second = runToEnd({u"https://a.example/1"_s});
    EXPECT_EQ(second.status, 1);
    EXPECT_EQ(second.errors.toStdString(), "vormel: the running program does not answer\n");
    ASSERT_EQ(::kill(id, SIGCONT), 0);
    end(first);
}

TEST_F(ProgramOnABusTest, WhatAStartWasGivenComesToWhoeverHasTheName)
{
    QProcess first; // has the lock, and a bus of nobody's
    bus = u"unix:path=/nowhere/bus"_s;
    start(first);
    ASSERT_TRUE(isUp());
    bus = daemon.address();
    const DesktopActivation running(daemon.connection());
    QStringList opened;
    QObject::connect(&running, &DesktopActivation::openRequested,
                     [&opened](const QStringList& uris, const QString& token) { opened << uris << token; });
    sandbox.write(u"links.txt"_s, "https://a.example/1\nhttps://a.example/2\n");
    QProcess second;
    QProcessEnvironment variables = environment();
    variables.insert(u"XDG_ACTIVATION_TOKEN"_s, u"token-7"_s);
    second.setProcessEnvironment(variables);
    second.setWorkingDirectory(sandbox.root());
    second.start(QStringLiteral(VORMEL_PROGRAM), {u"links.txt"_s, u"file:///x%20y"_s});
    EXPECT_TRUE(waitUntil([&second] { return second.state() == QProcess::NotRunning; }));
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_EQ(opened,
              (QStringList{u"file:///x%20y"_s, u"https://a.example/1"_s, u"https://a.example/2"_s, u"token-7"_s}));
    end(first);
}
