#include "archive/tools/ToolWatch.h"

#include "fixtures/EventLoop.h"
#include "fixtures/FakeTools.h"

#include <gtest/gtest.h>

namespace vormel {
namespace {

class ToolWatchTest : public ::testing::Test
{
protected:
    ToolWatchTest() { tools.add(QStringLiteral("cat")); }

    fixtures::FakeTools tools;
    ToolRunner runner{tools.folders()};
};

TEST_F(ToolWatchTest, FindsNothingInAFolderOfOtherTools)
{
    EXPECT_EQ(findTools(runner), FoundTools());
}

TEST_F(ToolWatchTest, TellsTheToolsApart)
{
    tools.add(QStringLiteral("unrar"));
    EXPECT_EQ(findTools(runner), (FoundTools{true, false, false}));
    tools.add(QStringLiteral("rar"));
    EXPECT_EQ(findTools(runner), (FoundTools{true, true, false}));
}

TEST_F(ToolWatchTest, AnyNameOfSevenZipWillDo)
{
    for (const QString& name : {QStringLiteral("7z"), QStringLiteral("7za"), QStringLiteral("7zz")}) {
        tools.add(name);
        EXPECT_TRUE(findTools(runner).sevenZip) << name.toStdString();
        tools.remove(name);
        EXPECT_FALSE(findTools(runner).sevenZip) << name.toStdString();
    }
}

TEST_F(ToolWatchTest, SeesAToolThatIsInstalledAndOneThatIsRemoved)
{
    ToolWatch watch(runner);
    EXPECT_FALSE(watch.tools().unrar);
    tools.add(QStringLiteral("unrar"));
    EXPECT_TRUE(fixtures::waitUntil([&watch] { return watch.tools().unrar; }));
    tools.remove(QStringLiteral("unrar"));
    EXPECT_TRUE(fixtures::waitUntil([&watch] { return !watch.tools().unrar; }));
}

TEST_F(ToolWatchTest, SaysNothingOfOtherPrograms)
{
    ToolWatch watch(runner);
    int told = 0;
    QObject::connect(&watch, &ToolWatch::toolsChanged, [&told] { ++told; });
    tools.add(QStringLiteral("dog"));
    watch.look();
    EXPECT_EQ(told, 0);
    tools.add(QStringLiteral("rar"));
    watch.look();
    EXPECT_EQ(told, 1);
}

} // namespace
} // namespace vormel
