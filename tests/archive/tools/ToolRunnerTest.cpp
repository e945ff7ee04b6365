#include "archive/tools/ToolRunner.h"

#include "archive/TaskEnd.h"
#include "fixtures/FakeTools.h"

#include <QDir>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using Kind = ExtractionError::Kind;

class ToolRunnerTest : public ::testing::Test
{
protected:
    TaskEnd run(const QByteArray& script, const QStringList& args = {}, std::function<void(double)> onProgress = {})
    {
        tools.add(u"tool"_s, script);
        return runToEnd(runner.run(tools.folder() + u"tool"_s, args, std::move(onProgress)));
    }

    fixtures::FakeTools tools;
    ToolRunner runner{tools.folders()};
};

TEST_F(ToolRunnerTest, SearchesTheSystemsFoldersInOrder)
{
    const ToolRunner::Folders folders;
    EXPECT_EQ(folders.searched, (QStringList{u"/usr/bin/"_s, u"/usr/local/bin/"_s, u"/opt/homebrew/bin/"_s}));
    EXPECT_EQ(ToolRunner().fixedTool(u"ditto"_s), u"/usr/bin/ditto");
}

TEST_F(ToolRunnerTest, TheFirstFolderThatHasAToolWins)
{
    const fixtures::FakeTools others;
    const ToolRunner both({{tools.folder(), others.folder()}, others.folder()});
    EXPECT_EQ(both.findTool(u"unrar"_s), std::nullopt);
    others.add(u"unrar"_s);
    EXPECT_EQ(both.findTool(u"unrar"_s), others.folder() + u"unrar"_s);
    tools.add(u"unrar"_s);
    EXPECT_EQ(both.findTool(u"unrar"_s), tools.folder() + u"unrar"_s);
    tools.remove(u"unrar"_s);
    EXPECT_EQ(both.findTool(u"unrar"_s), others.folder() + u"unrar"_s);
}

TEST_F(ToolRunnerTest, ArgumentsArriveAsTheyAre)
{
    const QStringList args{u"a b"_s, u"$(x)"_s, QString(), u"é'\""_s};
    EXPECT_TRUE(run("exit 0", args).isSuccess());
    EXPECT_EQ(tools.calls(u"tool"_s), QList<QStringList>{args});
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
    EXPECT_EQ(end.output, u"a\uFFFDb"_s);
}

TEST_F(ToolRunnerTest, AToolThatAsksFailsAtOnce)
{
    EXPECT_EQ(run("read answer || exit 7").exitCode, 7);
}

TEST_F(ToolRunnerTest, AToolThatCannotBeStartedIsNoExtractionError)
{
    const TaskEnd end = runToEnd(runner.run(u"/no/such/tool"_s, {}, {}));
    EXPECT_TRUE(end.isLaunchError);
    EXPECT_EQ(end.kind, std::nullopt);
    EXPECT_EQ(end.description, u"No such file or directory"_s);
}

TEST_F(ToolRunnerTest, PercentagesBecomeFractionsInOrder)
{
    std::vector<double> fractions;
    // Each line waits until the one before was seen.
    const QByteArray seen = (tools.folder() + u"seen"_s).toUtf8();
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
    tools.add(u"tool"_s, "exec sleep 600");
    auto owned = std::make_unique<ToolRunner>(tools.folders());
    TaskEnd end;
    spawn(keepTaskEnd(owned->run(tools.folder() + u"tool"_s, {}, {}), end));
    fixtures::turnEventLoop();
    ASSERT_FALSE(end.isOver);
    owned.reset();
    EXPECT_TRUE(end.isOver);
    EXPECT_TRUE(end.isLaunchError);
}

} // namespace
} // namespace vormel
