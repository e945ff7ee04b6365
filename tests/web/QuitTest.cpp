#include "ProgramOnWeb.h"
#include "fixtures/ProcessEnd.h"

#include <QDir>
#include <QProcess>

#include <signal.h> // NOLINT(modernize-deprecated-headers): kill() is POSIX

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// All processes below this one, and those below them.
QList<qint64> descendants(qint64 process)
{
    QList<qint64> found;
    for (const QString& thread : QDir(u"/proc/%1/task"_s.arg(process)).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile children(u"/proc/%1/task/%2/children"_s.arg(process).arg(thread));
        if (!children.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray& child : children.readAll().simplified().split(' ')) {
            if (!child.isEmpty())
                found << child.toLongLong() << descendants(child.toLongLong());
        }
    }
    return found;
}

class QuitOnWeb : public ProgramOnWeb, public ::testing::WithParamInterface<int>
{};

} // namespace

TEST_P(QuitOnWeb, LeavesNoProcessBehindThatEndsInTheMiddleOfAWalk)
{
    addTerabytezAccount();
    const ItemPtr first = add(services.newFile());
    signIn();
    expectWhole(first, 1);
    services.terabytez.setCountdown(std::chrono::minutes(5));
    const Link slow = services.newFile(sites::TerabytezSite::Shape::countdown);
    const auto walks = [&] { return services.terabytez.formsSentTo(slow.absoluteString().toStdString()); };
    static_cast<void>(add(slow));
    ASSERT_TRUE(waitUntil([&] { return walks() == 1; }));
    quit();

    QProcess program;
    program.start(QStringLiteral(VORMEL_WALK_PROCESS), {sandbox.root()});
    ASSERT_TRUE(program.waitForStarted());
    ASSERT_TRUE(waitUntil([&] { return walks() == 2; }));
    const QList<qint64> processes = descendants(program.processId());
    EXPECT_FALSE(processes.isEmpty());
    ASSERT_EQ(::kill(static_cast<pid_t>(program.processId()), GetParam()), 0);
    ASSERT_TRUE(program.waitForFinished());
    for (const qint64 process : processes)
        EXPECT_TRUE(waitUntil([process] { return hasEnded(process); }));
    start();
}

INSTANTIATE_TEST_SUITE_P(Signals, QuitOnWeb, ::testing::Values(SIGTERM, SIGKILL));
