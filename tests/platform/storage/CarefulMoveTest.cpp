#include "platform/storage/CarefulMove.h"

#include "fixtures/PlainRenames.h"
#include "fixtures/Sandbox.h"

#include <QDir>

#include <gtest/gtest.h>

#include <cerrno>
#include <optional>

namespace vormel {
namespace {

/// On a file system that knows flags of rename, and on one that does not.
class CarefulMoveTest : public ::testing::TestWithParam<bool>
{
protected:
    CarefulMoveTest()
    {
        if (!GetParam())
            plain.emplace();
    }

    std::optional<fixtures::PlainRenames> plain;
    fixtures::Sandbox sandbox;
    QString from = sandbox.write(QStringLiteral("from"), "mine");
    QString to = sandbox.path(QStringLiteral("to"));
};

TEST_P(CarefulMoveTest, AFileGetsItsNewName)
{
    EXPECT_EQ(moveWithoutReplacing(from, to), 0);
    EXPECT_EQ(sandbox.read(QStringLiteral("to")), "mine");
    EXPECT_FALSE(sandbox.exists(QStringLiteral("from")));
}

TEST_P(CarefulMoveTest, NothingIsReplaced)
{
    sandbox.write(QStringLiteral("to"), "theirs");
    EXPECT_EQ(moveWithoutReplacing(from, to), EEXIST);
    EXPECT_EQ(sandbox.read(QStringLiteral("to")), "theirs");
    EXPECT_EQ(sandbox.read(QStringLiteral("from")), "mine");
}

TEST_P(CarefulMoveTest, AFolderMovesAndReplacesNoEmptyOne)
{
    const QString folder = sandbox.path(QStringLiteral("folder"));
    ASSERT_TRUE(QDir().mkpath(folder));
    ASSERT_TRUE(QDir().mkpath(to));
    EXPECT_EQ(moveWithoutReplacing(folder, to), EEXIST);
    EXPECT_TRUE(sandbox.exists(QStringLiteral("folder")));
    ASSERT_TRUE(QDir().rmdir(to));
    EXPECT_EQ(moveWithoutReplacing(folder, to), 0);
    EXPECT_FALSE(sandbox.exists(QStringLiteral("folder")));
    EXPECT_TRUE(sandbox.exists(QStringLiteral("to")));
}

TEST_P(CarefulMoveTest, WhatIsNotThereCannotBeMoved)
{
    EXPECT_EQ(moveWithoutReplacing(sandbox.path(QStringLiteral("nothing")), to), ENOENT);
}

TEST_P(CarefulMoveTest, TwoFilesAreExchangedOrStayAsTheyAre)
{
    sandbox.write(QStringLiteral("to"), "theirs");
    const bool isExchanged = exchangeFiles(from, to) == 0;
    EXPECT_EQ(isExchanged, GetParam());
    EXPECT_EQ(sandbox.read(QStringLiteral("to")), isExchanged ? "mine" : "theirs");
    EXPECT_EQ(sandbox.read(QStringLiteral("from")), isExchanged ? "theirs" : "mine");
}

INSTANTIATE_TEST_SUITE_P(WithFlagsOfRenameOrNot, CarefulMoveTest, ::testing::Bool());

} // namespace
} // namespace vormel
