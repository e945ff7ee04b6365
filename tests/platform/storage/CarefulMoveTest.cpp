#include "platform/storage/CarefulMove.h"

#include "fixtures/PlainRenames.h"
#include "fixtures/Sandbox.h"

#include <QDir>

#include <gtest/gtest.h>

#include <cerrno>
#include <optional>

using namespace Qt::StringLiterals;

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
    QString from = sandbox.write(u"from"_s, "mine");
    QString to = sandbox.path(u"to"_s);
};

TEST_P(CarefulMoveTest, AFileGetsItsNewName)
{
    EXPECT_EQ(moveWithoutReplacing(from, to), 0);
    EXPECT_EQ(sandbox.read(u"to"_s), "mine");
    EXPECT_FALSE(sandbox.exists(u"from"_s));
}

TEST_P(CarefulMoveTest, NothingIsReplaced)
{
    sandbox.write(u"to"_s, "theirs");
    EXPECT_EQ(moveWithoutReplacing(from, to), EEXIST);
    EXPECT_EQ(sandbox.read(u"to"_s), "theirs");
    EXPECT_EQ(sandbox.read(u"from"_s), "mine");
}

TEST_P(CarefulMoveTest, AFolderMovesAndReplacesNoEmptyOne)
{
    const QString folder = sandbox.path(u"folder"_s);
    ASSERT_TRUE(QDir().mkpath(folder));
    ASSERT_TRUE(QDir().mkpath(to));
    EXPECT_EQ(moveWithoutReplacing(folder, to), EEXIST);
    EXPECT_TRUE(sandbox.exists(u"folder"_s));
    ASSERT_TRUE(QDir().rmdir(to));
    EXPECT_EQ(moveWithoutReplacing(folder, to), 0);
    EXPECT_FALSE(sandbox.exists(u"folder"_s));
    EXPECT_TRUE(sandbox.exists(u"to"_s));
}

TEST_P(CarefulMoveTest, WhatIsNotThereCannotBeMoved)
{
    EXPECT_EQ(moveWithoutReplacing(sandbox.path(u"nothing"_s), to), ENOENT);
}

TEST_P(CarefulMoveTest, TwoFilesAreExchangedOrStayAsTheyAre)
{
    sandbox.write(u"to"_s, "theirs");
    const bool isExchanged = exchangeFiles(from, to) == 0;
    EXPECT_EQ(isExchanged, GetParam());
    EXPECT_EQ(sandbox.read(u"to"_s), isExchanged ? "mine" : "theirs");
    EXPECT_EQ(sandbox.read(u"from"_s), isExchanged ? "theirs" : "mine");
}

INSTANTIATE_TEST_SUITE_P(WithFlagsOfRenameOrNot, CarefulMoveTest, ::testing::Bool());

} // namespace
} // namespace vormel
