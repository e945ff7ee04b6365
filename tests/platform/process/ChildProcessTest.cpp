#include "platform/process/ChildProcess.h"

#include "fixtures/EventLoop.h"
#include "fixtures/RealTools.h"
#include "fixtures/Sandbox.h"
#include "platform/async/Spawn.h"

#include <QElapsedTimer>
#include <QFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>

namespace vormel {
namespace {

using fixtures::waitUntil;

QCoro::Task<> keepEnd(ChildProcesses& processes, QString path, QStringList args, std::optional<ChildEnd>& end)
{
    end = co_await processes.run(path, args, {});
}

class ChildProcessTest : public ::testing::Test
{
protected:
    ChildEnd shell(const QString& script) { return run(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), script}); }

    ChildEnd run(const QString& path, const QStringList& args)
    {
        std::optional<ChildEnd> end;
        spawn(keepEnd(processes, path, args, end));
        EXPECT_TRUE(waitUntil([&] { return end.has_value(); }));
        return end.value_or(ChildEnd());
    }

    /// Starts a shell that writes its number to a file, and gives that number.
    pid_t startWritingNumber(const QString& script, std::optional<ChildEnd>& end)
    {
        const QString path = sandbox.path(QStringLiteral("pid"));
        const QString line = QStringLiteral("%1 echo $! $$ >'%2.new'; mv '%2.new' '%2'; sleep 600").arg(script, path);
        spawn(keepEnd(*owned, QStringLiteral("/bin/sh"), {QStringLiteral("-c"), line}, end));
        EXPECT_TRUE(waitUntil([&] { return QFile::exists(path); }));
        return sandbox.read(QStringLiteral("pid")).trimmed().split(' ').front().toInt();
    }

    fixtures::Sandbox sandbox;
    ChildProcesses processes;
    std::unique_ptr<ChildProcesses> owned = std::make_unique<ChildProcesses>();
};

TEST_F(ChildProcessTest, OutputAndErrorsStayInTheOrderInWhichTheyWereWritten)
{
    const ChildEnd end = shell(QStringLiteral("echo one; echo two >&2; echo three"));
    EXPECT_EQ(end.launchError, std::nullopt);
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.output, "one\ntwo\nthree\n");
}

TEST_F(ChildProcessTest, ArgumentsReachTheProgramAsTheyAre)
{
    const ChildEnd end = run(QStringLiteral("/usr/bin/printf"),
                             {QStringLiteral("[%s]"), QStringLiteral("a b\"'$x"), QString(), QStringLiteral("-o;ls")});
    EXPECT_EQ(end.output, "[a b\"'$x][][-o;ls]");
}

TEST_F(ChildProcessTest, TheExitCodeIsTheStatus)
{
    EXPECT_EQ(shell(QStringLiteral("exit 11")).status, 11);
}

TEST_F(ChildProcessTest, ASignalIsNotTakenForAnExitCode)
{
    EXPECT_EQ(shell(QStringLiteral("kill -SEGV $$")).status, 128 + SIGSEGV);
    EXPECT_EQ(shell(QStringLiteral("kill -TERM $$")).status, 128 + SIGTERM);
}

TEST_F(ChildProcessTest, AMissingProgramIsToldInTheSystemsWords)
{
    EXPECT_EQ(run(QStringLiteral("/no/such/tool"), {}).launchError, QStringLiteral("No such file or directory"));
}

TEST_F(ChildProcessTest, AFileThatMayNotBeExecutedIsToldInTheSystemsWords)
{
    EXPECT_EQ(run(sandbox.write(QStringLiteral("tool"), "x"), {}).launchError, QStringLiteral("Permission denied"));
}

TEST_F(ChildProcessTest, AProgramThatAsksReadsTheEndAtOnce)
{
    EXPECT_EQ(shell(QStringLiteral("read answer || echo nothing")).output, "nothing\n");
}

TEST_F(ChildProcessTest, AProgramHasNoTerminalAndASessionOfItsOwn)
{
    const ChildEnd end =
        shell(QStringLiteral("(: </dev/tty) 2>/dev/null || echo none; cut -d' ' -f1,5,6 /proc/$$/stat"));
    const QList<QByteArray> lines = end.output.split('\n');
    ASSERT_GE(lines.size(), 2);
    EXPECT_EQ(lines[0], "none");
    const QList<QByteArray> numbers = lines[1].split(' ');
    ASSERT_EQ(numbers.size(), 3);
    EXPECT_EQ(numbers[0], numbers[1]);
    EXPECT_EQ(numbers[0], numbers[2]);
}

TEST_F(ChildProcessTest, SignalsThatThisProgramHoldsBackReachTheOther)
{
    sigset_t held;
    sigset_t before;
    sigemptyset(&held);
    sigaddset(&held, SIGTERM);
    ASSERT_EQ(::pthread_sigmask(SIG_BLOCK, &held, &before), 0);
    // Asked without a shell, as that would undo it too.
    const auto oldPipe = ::signal(SIGPIPE, SIG_IGN);
    const ChildEnd end = run(QStringLiteral("/usr/bin/grep"), {QStringLiteral("-E"), QStringLiteral("Sig(Blk|Ign)"),
                                                               QStringLiteral("/proc/self/status")});
    ::signal(SIGPIPE, oldPipe);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(end.output, "SigBlk:\t0000000000000000\nSigIgn:\t0000000000000000\n");
}

TEST_F(ChildProcessTest, TheProgramIsKilledWhenThisOneDies)
{
    VORMEL_NEEDS_TOOL("python3");
    const QString askForSignal = QStringLiteral("import ctypes; told = ctypes.c_int(); "
                                                "ctypes.CDLL(None).prctl(2, ctypes.byref(told)); print(told.value)");
    const ChildEnd end = run(QStringLiteral("/usr/bin/python3"), {QStringLiteral("-c"), askForSignal});
    EXPECT_EQ(end.output.trimmed().toInt(), SIGKILL);
}

TEST_F(ChildProcessTest, AllOutputIsThereBeforeTheResult)
{
    QByteArray pieces;
    std::optional<ChildEnd> end;
    const Eventual<ChildEnd> eventual =
        processes.run(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), QStringLiteral("seq 100000; exit 3")},
                      [&](const QByteArray& piece) { pieces += piece; });
    spawn([](Eventual<ChildEnd> awaited, std::optional<ChildEnd>& result) -> QCoro::Task<> {
        result = co_await awaited;
    }(eventual, end));
    ASSERT_TRUE(waitUntil([&] { return end.has_value(); }));
    EXPECT_EQ(end->status, 3);
    EXPECT_TRUE(pieces.endsWith("\n100000\n"));
    EXPECT_EQ(end->output, pieces);
}

TEST_F(ChildProcessTest, AHundredMegabytesOfOutputCostNeitherMemoryNorALongTurn)
{
    std::optional<ChildEnd> end;
    qsizetype largestPiece = 0;
    const Eventual<ChildEnd> eventual =
        processes.run(QStringLiteral("/usr/bin/head"),
                      {QStringLiteral("-c"), QStringLiteral("100000000"), QStringLiteral("/dev/zero")},
                      [&](const QByteArray& piece) { largestPiece = std::max(largestPiece, piece.size()); });
    spawn([](Eventual<ChildEnd> awaited, std::optional<ChildEnd>& result) -> QCoro::Task<> {
        result = co_await awaited;
    }(eventual, end));
    ASSERT_TRUE(waitUntil([&] { return end.has_value(); }));
    EXPECT_LE(largestPiece, 1024 * 1024);
    EXPECT_LT(end->output.size(), 3 * 1024 * 1024);
    EXPECT_TRUE(end->output.contains(" bytes left out]"));
}

TEST_F(ChildProcessTest, AGrandchildThatKeepsThePipeHoldsNobodyUp)
{
    QElapsedTimer watch;
    watch.start();
    const ChildEnd end = shell(QStringLiteral("sleep 60 & echo $!"));
    EXPECT_LT(watch.elapsed(), 15'000);
    const int sleeper = end.output.trimmed().toInt();
    ASSERT_GT(sleeper, 0);
    ::kill(sleeper, SIGKILL);
}

TEST_F(ChildProcessTest, TheEndOfTheOwnerKillsTheWholeGroupAndLetsTheWaiterGoOn)
{
    std::optional<ChildEnd> end;
    const pid_t grandchild = startWritingNumber(QStringLiteral("sleep 600 &"), end);
    ASSERT_GT(grandchild, 0);
    ASSERT_EQ(::kill(grandchild, 0), 0);
    owned.reset();
    ASSERT_TRUE(end);
    EXPECT_TRUE(end->launchError);
    const QString stat = QStringLiteral("/proc/%1/stat").arg(grandchild);
    const auto isGone = [&] {
        QFile file(stat);
        return !file.open(QFile::ReadOnly) || file.readAll().contains(") Z ");
    };
    EXPECT_TRUE(waitUntil(isGone));
}

QCoro::Task<> keepStoppedEnd(ChildProcesses& processes, QString script, std::stop_token stop,
                             std::optional<ChildEnd>& end)
{
    const QStringList args{QStringLiteral("-c"), script};
    end = co_await processes.run(QStringLiteral("/bin/sh"), args, {}, stop);
}

TEST_F(ChildProcessTest, AStopKillsTheWholeGroup)
{
    const QString path = sandbox.path(QStringLiteral("pid"));
    std::optional<ChildEnd> end;
    std::stop_source stop;
    const QString script = QStringLiteral("sleep 600 & echo $! >'%1.new'; mv '%1.new' '%1'; sleep 600").arg(path);
    spawn(keepStoppedEnd(processes, script, stop.get_token(), end));
    ASSERT_TRUE(waitUntil([&] { return QFile::exists(path); }));
    const pid_t grandchild = sandbox.read(QStringLiteral("pid")).trimmed().toInt();
    stop.request_stop();
    ASSERT_TRUE(waitUntil([&] { return end.has_value(); }));
    EXPECT_EQ(end->status, 128 + SIGKILL);
    EXPECT_TRUE(waitUntil([&] { return ::kill(grandchild, 0) != 0; }));
}

TEST_F(ChildProcessTest, AStopBeforeTheStartStartsNothing)
{
    std::optional<ChildEnd> end;
    std::stop_source stop;
    stop.request_stop();
    spawn(keepStoppedEnd(processes, QStringLiteral("touch '%1'").arg(sandbox.path(QStringLiteral("ran"))),
                         stop.get_token(), end));
    ASSERT_TRUE(end.has_value());
    EXPECT_TRUE(end->launchError.has_value());
    EXPECT_FALSE(sandbox.exists(QStringLiteral("ran")));
}

TEST_F(ChildProcessTest, TheOwnerMayGoWhileOutputIsHandedOn)
{
    std::optional<ChildEnd> end;
    const Eventual<ChildEnd> eventual =
        owned->run(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), QStringLiteral("echo x; sleep 600")},
                   [&](const QByteArray&) { owned.reset(); });
    spawn([](Eventual<ChildEnd> awaited, std::optional<ChildEnd>& result) -> QCoro::Task<> {
        result = co_await awaited;
    }(eventual, end));
    ASSERT_TRUE(waitUntil([&] { return end.has_value(); }));
    EXPECT_TRUE(end->launchError);
    fixtures::turnEventLoop();
}

TEST_F(ChildProcessTest, TwoProgramsRunSideBySide)
{
    std::optional<ChildEnd> first;
    std::optional<ChildEnd> second;
    const QString fifo = sandbox.path(QStringLiteral("fifo"));
    ASSERT_EQ(shell(QStringLiteral("mkfifo '%1'").arg(fifo)).status, 0);
    spawn(keepEnd(processes, QStringLiteral("/bin/cat"), {fifo}, first));
    spawn(keepEnd(processes, QStringLiteral("/bin/sh"),
                  {QStringLiteral("-c"), QStringLiteral("echo hi >'%1'").arg(fifo)}, second));
    ASSERT_TRUE(waitUntil([&] { return first && second; }));
    EXPECT_EQ(first->output, "hi\n");
}

TEST_F(ChildProcessTest, ProgramsGetTheEnvironmentThatIsGivenForThem)
{
    const auto answer = [this](ChildProcesses& of) {
        std::optional<ChildEnd> end;
        spawn(keepEnd(of, QStringLiteral("/bin/sh"), {QStringLiteral("-c"), QStringLiteral("echo $ONE-$TWO")}, end));
        EXPECT_TRUE(waitUntil([&] { return end.has_value(); }));
        return end.value_or(ChildEnd()).output.trimmed();
    };
    qputenv("ONE", "ours");
    QProcessEnvironment given;
    given.insert(QStringLiteral("TWO"), QStringLiteral("theirs"));
    ChildProcesses inOther(given);
    EXPECT_EQ(answer(processes), "ours-");
    EXPECT_EQ(answer(inOther), "-theirs");
    qunsetenv("ONE");
}

} // namespace
} // namespace vormel
