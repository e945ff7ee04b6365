#include "platform/process/ChildProcess.h"

#include "fixtures/EventLoop.h"
#include "fixtures/ProcessEnd.h"
#include "fixtures/RealTools.h"
#include "fixtures/Sandbox.h"
#include "platform/async/Spawn.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>

using namespace Qt::StringLiterals;

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
    ChildEnd shell(const QString& script) { return run(u"/bin/sh"_s, {u"-c"_s, script}); }

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
        const QString path = sandbox.path(u"pid"_s);
        const QString line = u"%1 echo $! $$ >'%2.new'; mv '%2.new' '%2'; sleep 600"_s.arg(script, path);
        spawn(keepEnd(*owned, u"/bin/sh"_s, {u"-c"_s, line}, end));
        EXPECT_TRUE(waitUntil([&] { return QFile::exists(path); }));
        return sandbox.read(u"pid"_s).trimmed().split(' ').front().toInt();
    }

    fixtures::Sandbox sandbox;
    ChildProcesses processes;
    std::unique_ptr<ChildProcesses> owned = std::make_unique<ChildProcesses>();
};

TEST_F(ChildProcessTest, OutputAndErrorsStayInTheOrderInWhichTheyWereWritten)
{
    const ChildEnd end = shell(u"echo one; echo two >&2; echo three"_s);
    EXPECT_EQ(end.launchError, std::nullopt);
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.output, "one\ntwo\nthree\n");
}

TEST_F(ChildProcessTest, ArgumentsReachTheProgramAsTheyAre)
{
    const ChildEnd end = run(u"/usr/bin/printf"_s, {u"[%s]"_s, u"a b\"'$x"_s, QString(), u"-o;ls"_s});
    EXPECT_EQ(end.output, "[a b\"'$x][][-o;ls]");
}

TEST_F(ChildProcessTest, TheExitCodeIsTheStatus)
{
    EXPECT_EQ(shell(u"exit 11"_s).status, 11);
}

TEST_F(ChildProcessTest, ASignalIsNotTakenForAnExitCode)
{
    EXPECT_EQ(shell(u"kill -SEGV $$"_s).status, 128 + SIGSEGV);
    EXPECT_EQ(shell(u"kill -TERM $$"_s).status, 128 + SIGTERM);
}

TEST_F(ChildProcessTest, AMissingProgramIsToldInTheSystemsWords)
{
    EXPECT_EQ(run(u"/no/such/tool"_s, {}).launchError, u"No such file or directory"_s);
}

TEST_F(ChildProcessTest, AFileThatMayNotBeExecutedIsToldInTheSystemsWords)
{
    EXPECT_EQ(run(sandbox.write(u"tool"_s, "x"), {}).launchError, u"Permission denied"_s);
}

TEST_F(ChildProcessTest, AMissingProgramLeavesNoDescriptorOpen)
{
    const auto openOnes = [] { return QDir(u"/proc/self/fd"_s).entryList(QDir::AllEntries | QDir::System).size(); };
    run(u"/no/such/tool"_s, {});
    const qsizetype before = openOnes();
    for (int i = 0; i < 10; ++i)
        run(u"/no/such/tool"_s, {});
    EXPECT_EQ(openOnes(), before);
}

TEST_F(ChildProcessTest, AMissingProgramIsToldOfLaterAndToNobodyWhoHasGone)
{
    std::optional<ChildEnd> end;
    auto own = std::make_unique<ChildProcesses>();
    spawn(keepEnd(*own, u"/no/such/tool"_s, {}, end));
    EXPECT_FALSE(end);
    own.reset();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->launchError, u"The program was ended"_s);
    fixtures::turnEventLoop();
    EXPECT_EQ(end->launchError, u"The program was ended"_s);
}

TEST_F(ChildProcessTest, AProgramThatAsksReadsTheEndAtOnce)
{
    EXPECT_EQ(shell(u"read answer || echo nothing"_s).output, "nothing\n");
}

TEST_F(ChildProcessTest, AProgramHasNoTerminalAndASessionOfItsOwn)
{
    const ChildEnd end = shell(u"(: </dev/tty) 2>/dev/null || echo none; cut -d' ' -f1,5,6 /proc/$$/stat"_s);
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
    const ChildEnd end = run(u"/usr/bin/grep"_s, {u"-E"_s, u"Sig(Blk|Ign)"_s, u"/proc/self/status"_s});
    ::signal(SIGPIPE, oldPipe);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(end.output, "SigBlk:\t0000000000000000\nSigIgn:\t0000000000000000\n");
}

TEST_F(ChildProcessTest, TheProgramIsKilledWhenThisOneDies)
{
    VORMEL_NEEDS_TOOL("python3");
    const QString askForSignal = u"import ctypes; told = ctypes.c_int(); "
                                 u"ctypes.CDLL(None).prctl(2, ctypes.byref(told)); print(told.value)"_s;
    const ChildEnd end = run(u"/usr/bin/python3"_s, {u"-c"_s, askForSignal});
    EXPECT_EQ(end.output.trimmed().toInt(), SIGKILL);
}

TEST_F(ChildProcessTest, AllOutputIsThereBeforeTheResult)
{
    QByteArray pieces;
    std::optional<ChildEnd> end;
    const Eventual<ChildEnd> eventual = processes.run(u"/bin/sh"_s, {u"-c"_s, u"seq 100000; exit 3"_s},
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
        processes.run(u"/usr/bin/head"_s, {u"-c"_s, u"100000000"_s, u"/dev/zero"_s},
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
    const ChildEnd end = shell(u"sleep 60 & echo $!"_s);
    EXPECT_LT(watch.elapsed(), 15'000);
    const int sleeper = end.output.trimmed().toInt();
    ASSERT_GT(sleeper, 0);
    ::kill(sleeper, SIGKILL);
}

TEST_F(ChildProcessTest, TheEndOfTheOwnerKillsTheWholeGroupAndLetsTheWaiterGoOn)
{
    std::optional<ChildEnd> end;
    const pid_t grandchild = startWritingNumber(u"sleep 600 &"_s, end);
    ASSERT_GT(grandchild, 0);
    ASSERT_EQ(::kill(grandchild, 0), 0);
    owned.reset();
    ASSERT_TRUE(end);
    EXPECT_TRUE(end->launchError);
    EXPECT_TRUE(waitUntil([&] { return fixtures::hasEnded(grandchild); }));
}

QCoro::Task<> keepStoppedEnd(ChildProcesses& processes, QString script, std::stop_token stop,
                             std::optional<ChildEnd>& end)
{
    const QStringList args{u"-c"_s, script};
    end = co_await processes.run(u"/bin/sh"_s, args, {}, stop);
}

TEST_F(ChildProcessTest, AStopKillsTheWholeGroup)
{
    const QString path = sandbox.path(u"pid"_s);
    std::optional<ChildEnd> end;
    std::stop_source stop;
    const QString script = u"sleep 600 & echo $! >'%1.new'; mv '%1.new' '%1'; sleep 600"_s.arg(path);
    spawn(keepStoppedEnd(processes, script, stop.get_token(), end));
    ASSERT_TRUE(waitUntil([&] { return QFile::exists(path); }));
    const pid_t grandchild = sandbox.read(u"pid"_s).trimmed().toInt();
    stop.request_stop();
    ASSERT_TRUE(waitUntil([&] { return end.has_value(); }));
    EXPECT_EQ(end->status, 128 + SIGKILL);
    EXPECT_TRUE(waitUntil([&] { return fixtures::hasEnded(grandchild); }));
}

TEST_F(ChildProcessTest, AStopBeforeTheStartStartsNothing)
{
    std::optional<ChildEnd> end;
    std::stop_source stop;
    stop.request_stop();
    spawn(keepStoppedEnd(processes, u"touch '%1'"_s.arg(sandbox.path(u"ran"_s)), stop.get_token(), end));
    ASSERT_TRUE(end.has_value());
    EXPECT_TRUE(end->launchError.has_value());
    EXPECT_FALSE(sandbox.exists(u"ran"_s));
}

TEST_F(ChildProcessTest, TheOwnerMayGoWhileOutputIsHandedOn)
{
    std::optional<ChildEnd> end;
    const Eventual<ChildEnd> eventual =
        owned->run(u"/bin/sh"_s, {u"-c"_s, u"echo x; sleep 600"_s}, [&](const QByteArray&) { owned.reset(); });
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
    const QString fifo = sandbox.path(u"fifo"_s);
    ASSERT_EQ(shell(u"mkfifo '%1'"_s.arg(fifo)).status, 0);
    spawn(keepEnd(processes, u"/bin/cat"_s, {fifo}, first));
    spawn(keepEnd(processes, u"/bin/sh"_s, {u"-c"_s, u"echo hi >'%1'"_s.arg(fifo)}, second));
    ASSERT_TRUE(waitUntil([&] { return first && second; }));
    EXPECT_EQ(first->output, "hi\n");
}

TEST_F(ChildProcessTest, ProgramsGetTheEnvironmentThatIsGivenForThem)
{
    const auto answer = [this](ChildProcesses& of) {
        std::optional<ChildEnd> end;
        spawn(keepEnd(of, u"/bin/sh"_s, {u"-c"_s, u"echo $ONE-$TWO"_s}, end));
        EXPECT_TRUE(waitUntil([&] { return end.has_value(); }));
        return end.value_or(ChildEnd()).output.trimmed();
    };
    qputenv("ONE", "ours");
    QProcessEnvironment given;
    given.insert(u"TWO"_s, u"theirs"_s);
    ChildProcesses inOther(given);
    EXPECT_EQ(answer(processes), "ours-");
    EXPECT_EQ(answer(inOther), "-theirs");
    qunsetenv("ONE");
}

} // namespace
} // namespace vormel
