#include "platform/storage/UniqueDestination.h"

#include "fixtures/Sandbox.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

TEST(UniqueDestination, CountsUpAndKeepsAFullStopWithoutAnExtension)
{
    const Sandbox sandbox;
    EXPECT_EQ(uniqueDestination(sandbox.path(u"x"_s)), sandbox.path(u"x"_s));
    sandbox.write(u"x"_s, "");
    EXPECT_EQ(uniqueDestination(sandbox.path(u"x"_s)), sandbox.path(u"x (1)."_s));
    sandbox.write(u"a.b.c"_s, "");
    sandbox.write(u"a.b (1).c"_s, "");
    EXPECT_EQ(uniqueDestination(sandbox.path(u"a.b.c"_s)), sandbox.path(u"a.b (2).c"_s));
}

TEST(UniqueDestination, TakesALinkToNowhereForATakenName)
{
    const Sandbox sandbox;
    ASSERT_TRUE(QFile::link(sandbox.path(u"nowhere"_s), sandbox.path(u"x.rar"_s)));
    EXPECT_EQ(uniqueDestination(sandbox.path(u"x.rar"_s)), sandbox.path(u"x (1).rar"_s));
}

TEST(UniqueDestination, SurvivesPercentSignsAndPlaceholdersInNames)
{
    const Sandbox sandbox;
    sandbox.write(u"%1 %2.%3"_s, "");
    EXPECT_EQ(uniqueDestination(sandbox.path(u"%1 %2.%3"_s)), sandbox.path(u"%1 %2 (1).%3"_s));
}
