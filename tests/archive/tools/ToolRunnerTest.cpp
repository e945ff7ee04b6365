#include "archive/tools/ToolRunner.h"

#include "archive/TaskEnd.h"
#include "fixtures/FakeTools.h"

#include <QDir>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace vormel {
namespace {

using Kind = ExtractionError::Kind;

class ToolRunnerTest : public ::testing::Test
{
protected:
    TaskEnd run(const QByteArray& script, const QStringList& args = {}, std::function<void(double)> onProgress = {})
    {
        tools.add(QStringLiteral("tool"), script);
        return runToEnd(runner.run(tools.folder() + QStringLiteral("tool"), args, std::move(onProgress)));
    }

    fixtures::FakeTools tools;
    ToolRunner runner{tools.folders()};
};

TEST_F(ToolRunnerTest, SearchesTheSystemsFoldersInOrder)
{
    const ToolRunner::Folders folders;
    EXPECT_EQ(folders.searched, (QStringList{QStringLiteral("/usr/bin/"), QStringLiteral("/usr/local/bin/"),
                                             QStringLiteral("/opt/homebrew/bin/")}));
    EXPECT_EQ(ToolRunner().fixedTool(QStringLiteral("ditto")), u"/usr/bin/ditto");
}

TEST_F(ToolRunnerTest, TheFirstFolderThatHasAToolWins)
{
    const fixtures::FakeTools others;
    const ToolRunner both({{tools.folder(), others.folder()}, others.folder()});
    EXPECT_EQ(both.findTool(QStringLiteral("unrar")), std::nullopt);
    others.add(QStringLiteral("unrar"));
    EXPECT_EQ(both.findTool(QStringLiteral("unrar")), others.folder() + QStringLiteral("unrar"));
    tools.add(QStringLiteral("unrar"));
    EXPECT_EQ(both.findTool(QStringLiteral("unrar")), tools.folder() + QStringLiteral("unrar"));
    tools.remove(QStringLiteral("unrar"));
    EXPECT_EQ(both.findTool(QStringLiteral("unrar")), others.folder() + QStringLiteral("unrar"));
}

TEST_F(ToolRunnerTest, ArgumentsArriveAsTheyAre)
{
    const QStringList args{QStringLiteral("a b"), QStringLiteral("$(x)"), QString(), QStringLiteral("é'\"")};
    EXPECT_TRUE(run("exit 0", args).isSuccess());
    EXPECT_EQ(tools.calls(QStringLiteral("tool")), QList<QStringList>{args});
}

TEST_F(ToolRunnerTest, AStatusOtherThanZeroIsAFailureWithTheOutput)
{
    const TaskEnd end = run("echo one; echo two >&2; exit 5");
    EXPECT_EQ(end.kind, Kind::extractionFailed);
    EXPECT_EQ(end.exitCode, 5);
    EXPECT_EQ(end.output, u"one\ntwo\n");
}

TEST_F(ToolRunnerTest, OutputThatIsNoUtf8ReachesTheErrorRepaired)
{
    const TaskEnd end = run("printf 'a\\377b'; exit 1");
    EXPECT_EQ(end.output, QStringLiteral("a\uFFFDb"));
}

TEST_F(ToolRunnerTest, AToolThatAsksFailsAtOnce)
{
    EXPECT_EQ(run("read answer || exit 7").exitCode, 7);
}

TEST_F(ToolRunnerTest, AToolThatCannotBeStartedIsNoExtractionError)
{
    const TaskEnd end = runToEnd(runner.run(QStringLiteral("/no/such/tool"), {}, {}));
    EXPECT_TRUE(end.isLaunchError);
    EXPECT_EQ(end.kind, std::nullopt);
    EXPECT_EQ(end.description, QStringLiteral("No such file or directory"));
}

TEST_F(ToolRunnerTest, PercentagesBecomeFractionsInOrder)
{
    std::vector<double> fractions;
    // Each line waits until the one before was seen.
    const QByteArray seen = (tools.folder() + QStringLiteral("seen")).toUtf8();
    const QByteArray script = "for i in 5 50 100; do printf '\\b\\b\\b\\b%3d%%' $i; "
                              "while ! [ -e '" +
                              seen + "'$i ]; do sleep 0.01; done; done";
    const TaskEnd end = run(script, {}, [&](double fraction) {
        fractions.push_back(fraction);
        QFile mark(QString::fromUtf8(seen) + QString::number(qRound(fraction * 100)));
        EXPECT_TRUE(mark.open(QFile::WriteOnly));
    });
    EXPECT_TRUE(end.isSuccess());
    EXPECT_EQ(fractions, (std::vector<double>{0.05, 0.5, 1.0}));
}

TEST_F(ToolRunnerTest, TheEndOfTheRunnerEndsTheRun)
{
    tools.add(QStringLiteral("tool"), "exec sleep 600");
    auto owned = std::make_unique<ToolRunner>(tools.folders());
    TaskEnd end;
    spawn(keepTaskEnd(owned->run(tools.folder() + QStringLiteral("tool"), {}, {}), end));
    fixtures::turnEventLoop();
    ASSERT_FALSE(end.isOver);
    owned.reset();
    EXPECT_TRUE(end.isOver);
    EXPECT_TRUE(end.isLaunchError);
}

} // namespace
} // namespace vormel
