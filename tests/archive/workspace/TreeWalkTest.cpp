#include "archive/workspace/TreeWalk.h"

#include "archive/workspace/OrdinaryUser.h"
#include "archive/workspace/Trees.h"
#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class TreeWalkTest : public ::testing::Test
{
protected:
    TreeWalkTest() { QDir().mkpath(sandbox.path(u"a/b/c"_s)); }

    [[nodiscard]] TreeCursor cursor() const { return TreeCursor(folderAt(sandbox.root())); }

    fixtures::Sandbox sandbox;
};

TEST_F(TreeWalkTest, ACursorGoesDownAndBack)
{
    TreeCursor at = cursor();
    ASSERT_TRUE(at.enter("a") && at.enter("b"));
    EXPECT_EQ(namesIn(at.folder()), QList<QByteArray>{"c"});
    ASSERT_TRUE(at.leave());
    EXPECT_EQ(namesIn(at.folder()), QList<QByteArray>{"b"});
}

TEST_F(TreeWalkTest, ACursorStaysWhereThereIsNoFolderToEnter)
{
    sandbox.write(u"a/file"_s, "x");
    ASSERT_EQ(::symlink("b", QFile::encodeName(sandbox.path(u"a/link"_s)).constData()), 0);
    TreeCursor at = cursor();
    ASSERT_TRUE(at.enter("a"));
    for (const char* name : {"missing", "file", "link"})
        EXPECT_FALSE(at.enter(name)) << name;
    EXPECT_EQ(namesIn(at.folder()), (QList<QByteArray>{"b", "file", "link"}));
}

TEST_F(TreeWalkTest, ACursorDoesNotEnterAFolderThatItCouldNotLeave)
{
    const OrdinaryUser user;
    ASSERT_EQ(::chmod(QFile::encodeName(sandbox.path(u"a/b"_s)).constData(), 0600), 0);
    TreeCursor at = cursor();
    ASSERT_TRUE(at.enter("a"));
    EXPECT_FALSE(at.enter("b"));
    EXPECT_EQ(errno, EACCES);
    EXPECT_EQ(namesIn(at.folder()), QList<QByteArray>{"b"});
    ASSERT_EQ(::chmod(QFile::encodeName(sandbox.path(u"a/b"_s)).constData(), 0700), 0);
}

TEST_F(TreeWalkTest, ACursorDoesNotGoBackToAnotherPlaceThanItCameFrom)
{
    TreeCursor at = cursor();
    ASSERT_TRUE(at.enter("a") && at.enter("b"));
    QDir().mkpath(sandbox.path(u"elsewhere"_s));
    ASSERT_TRUE(QDir().rename(sandbox.path(u"a/b"_s), sandbox.path(u"elsewhere/b"_s)));
    EXPECT_FALSE(at.leave());
    EXPECT_EQ(errno, ESTALE);
}

} // namespace
} // namespace vormel
