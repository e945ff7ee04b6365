#include "archive/tools/ToolWatch.h"

#include "fixtures/EventLoop.h"
#include "fixtures/FakeTools.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class ToolWatchTest : public ::testing::Test
{
protected:
    ToolWatchTest() { tools.add(u"cat"_s); }

    fixtures::FakeTools tools;
    ToolRunner runner{tools.folders()};
};

TEST_F(ToolWatchTest, FindsNothingInAFolderOfOtherTools)
{
    EXPECT_EQ(findTools(runner), FoundTools());
}

TEST_F(ToolWatchTest, TellsTheToolsApart)
{
    tools.add(u"unrar"_s);
    EXPECT_EQ(findTools(runner), (FoundTools{true, false, false}));
    tools.add(u"rar"_s);
    EXPECT_EQ(findTools(runner), (FoundTools{true, true, false}));
}

TEST_F(ToolWatchTest, AnyNameOfSevenZipWillDo)
{
    for (const QString& name : {u"7z"_s, u"7za"_s, u"7zz"_s}) {
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
    tools.add(u"unrar"_s);
    EXPECT_TRUE(fixtures::waitUntil([&watch] { return watch.tools().unrar; }));
    tools.remove(u"unrar"_s);
    EXPECT_TRUE(fixtures::waitUntil([&watch] { return !watch.tools().unrar; }));
}

TEST_F(ToolWatchTest, SaysNothingOfOtherPrograms)
{
    ToolWatch watch(runner);
    int told = 0;
    QObject::connect(&watch, &ToolWatch::toolsChanged, [&told] { ++told; });
    tools.add(u"dog"_s);
    watch.look();
    EXPECT_EQ(told, 0);
    tools.add(u"rar"_s);
    watch.look();
    EXPECT_EQ(told, 1);
}

} // namespace
} // namespace vormel
