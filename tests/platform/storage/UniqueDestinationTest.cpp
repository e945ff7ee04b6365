#include "platform/storage/UniqueDestination.h"

#include "fixtures/Sandbox.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace vormel;
using namespace vormel::fixtures;

TEST(UniqueDestination, CountsUpAndKeepsAFullStopWithoutAnExtension)
{
    const Sandbox sandbox;
    EXPECT_EQ(uniqueDestination(sandbox.path(QStringLiteral("x"))), sandbox.path(QStringLiteral("x")));
    sandbox.write(QStringLiteral("x"), "");
    EXPECT_EQ(uniqueDestination(sandbox.path(QStringLiteral("x"))), sandbox.path(QStringLiteral("x (1).")));
    sandbox.write(QStringLiteral("a.b.c"), "");
    sandbox.write(QStringLiteral("a.b (1).c"), "");
    EXPECT_EQ(uniqueDestination(sandbox.path(QStringLiteral("a.b.c"))), sandbox.path(QStringLiteral("a.b (2).c")));
}

TEST(UniqueDestination, TakesALinkToNowhereForATakenName)
{
    const Sandbox sandbox;
    ASSERT_TRUE(QFile::link(sandbox.path(QStringLiteral("nowhere")), sandbox.path(QStringLiteral("x.rar"))));
    EXPECT_EQ(uniqueDestination(sandbox.path(QStringLiteral("x.rar"))), sandbox.path(QStringLiteral("x (1).rar")));
}

TEST(UniqueDestination, SurvivesPercentSignsAndPlaceholdersInNames)
{
    const Sandbox sandbox;
    sandbox.write(QStringLiteral("%1 %2.%3"), "");
    EXPECT_EQ(uniqueDestination(sandbox.path(QStringLiteral("%1 %2.%3"))),
              sandbox.path(QStringLiteral("%1 %2 (1).%3")));
}
