#include "platform/desktop/SingleInstance.h"

#include "fixtures/EventLoop.h"
#include "fixtures/Sandbox.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

TEST(SingleInstance, LetsTheSecondAskTheFirstToShow)
{
    const Sandbox sandbox;
    const SingleInstance first(sandbox.path(u"run"_s));
    ASSERT_TRUE(first.isFirst());
    int asked = 0;
    QObject::connect(&first, &SingleInstance::showRequested, &first, [&asked] { ++asked; });
    const SingleInstance second(sandbox.path(u"run"_s));
    EXPECT_FALSE(second.isFirst());
    EXPECT_TRUE(second.askFirstToShow());
    EXPECT_TRUE(waitUntil([&asked] { return asked == 1; }));
}

TEST(SingleInstance, GivesTheLockFreeWithItsEnd)
{
    const Sandbox sandbox;
    {
        const SingleInstance first(sandbox.root());
        EXPECT_TRUE(first.isFirst());
    }
    const SingleInstance next(sandbox.root());
    EXPECT_TRUE(next.isFirst());
}

TEST(SingleInstance, StartsWithoutAUsableFolder)
{
    const SingleInstance instance(u"/proc/nowhere"_s);
    EXPECT_TRUE(instance.isFirst());
    EXPECT_FALSE(instance.askFirstToShow());
}

TEST(SingleInstance, LivesWithAFolderTooDeepForASocket)
{
    const Sandbox sandbox;
    const QString deep = sandbox.path(QString(120, u'd'));
    const SingleInstance first(deep);
    EXPECT_TRUE(first.isFirst());
    const SingleInstance second(deep);
    EXPECT_FALSE(second.isFirst());
    EXPECT_FALSE(second.askFirstToShow());
}
