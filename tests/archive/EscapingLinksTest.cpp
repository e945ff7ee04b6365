#include "archive/EscapingLinks.h"

#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <tuple>

namespace vormel {
namespace {

class EscapingLinksTest : public ::testing::Test
{
protected:
    EscapingLinksTest() { QDir().mkpath(root() + QStringLiteral("/sub/deep")); }

    [[nodiscard]] QString root() const { return sandbox.path(QStringLiteral("root")); }

    void link(const QString& name, const QString& target)
    {
        const QString path = root() + u'/' + name;
        ASSERT_EQ(::symlink(target.toUtf8().constData(), path.toUtf8().constData()), 0);
    }
    [[nodiscard]] bool isThere(const QString& name) const { return QFileInfo(root() + u'/' + name).isSymLink(); }
    [[nodiscard]] bool survives(const QString& name, const QString& target)
    {
        link(name, target);
        removeEscapingLinks(root(), {});
        return isThere(name);
    }

    fixtures::Sandbox sandbox;
};

TEST_F(EscapingLinksTest, linksThatStayInsideSurvive)
{
    EXPECT_TRUE(survives(QStringLiteral("a"), QStringLiteral("sub/file")));
    EXPECT_TRUE(survives(QStringLiteral("sub/deep/b"), QStringLiteral("../../c")));
    EXPECT_TRUE(survives(QStringLiteral("c"), QStringLiteral(".")));
    EXPECT_TRUE(survives(QStringLiteral("d"), QStringLiteral("./sub/./deep")));
}

TEST_F(EscapingLinksTest, linksThatGoUpTooFarAreRemoved)
{
    EXPECT_FALSE(survives(QStringLiteral("a"), QStringLiteral("..")));
    EXPECT_FALSE(survives(QStringLiteral("b"), QStringLiteral("../root-of-another")));
    EXPECT_FALSE(survives(QStringLiteral("sub/deep/c"), QStringLiteral("../../../x")));
    EXPECT_FALSE(survives(QStringLiteral("sub/d"), QStringLiteral("../../not/there/yet")));
}

TEST_F(EscapingLinksTest, absoluteLinksAreRemoved)
{
    EXPECT_FALSE(survives(QStringLiteral("a"), QStringLiteral("/etc/passwd")));
    EXPECT_FALSE(survives(QStringLiteral("b"), root() + QStringLiteral("/sub")));
}

TEST_F(EscapingLinksTest, linksThatGoUpBehindANameAreRemovedAsThatMayBecomeALink)
{
    EXPECT_FALSE(survives(QStringLiteral("a"), QStringLiteral("later/..")));
    EXPECT_FALSE(survives(QStringLiteral("b"), QStringLiteral("sub/deep/../../../x")));
}

TEST_F(EscapingLinksTest, linksThatLeadOutThroughOthersAreRemovedAndLoopsToo)
{
    QDir().mkpath(sandbox.path(QStringLiteral("elsewhere")));
    link(QStringLiteral("out"), QStringLiteral("../elsewhere"));
    EXPECT_FALSE(survives(QStringLiteral("a"), QStringLiteral("out/x")));
    EXPECT_FALSE(isThere(QStringLiteral("out")));
    EXPECT_FALSE(survives(QStringLiteral("loop"), QStringLiteral("loop")));
}

TEST_F(EscapingLinksTest, whatALinkLeadsToIsNeitherWalkedNorRemoved)
{
    const QString kept = sandbox.write(QStringLiteral("outside/file"), "x");
    ASSERT_EQ(::symlink("..", sandbox.path(QStringLiteral("outside/up")).toUtf8().constData()), 0);
    EXPECT_FALSE(survives(QStringLiteral("a"), QStringLiteral("../outside")));
    EXPECT_TRUE(QFileInfo::exists(kept));
    EXPECT_TRUE(QFileInfo(sandbox.path(QStringLiteral("outside/up"))).isSymLink());
}

TEST_F(EscapingLinksTest, linksFromBeforeTheMomentStay)
{
    link(QStringLiteral("old"), QStringLiteral("../elsewhere"));
    struct stat old = {};
    ASSERT_EQ(::lstat((root() + QStringLiteral("/old")).toUtf8().constData(), &old), 0);
    timespec since = {};
    // The stamps of a file system move in steps.
    do
        since = fileSystemMoment(root());
    while (std::tie(since.tv_sec, since.tv_nsec) == std::tie(old.st_ctim.tv_sec, old.st_ctim.tv_nsec));
    link(QStringLiteral("new"), QStringLiteral("../elsewhere"));
    removeEscapingLinks(root(), since);
    EXPECT_TRUE(isThere(QStringLiteral("old")));
    EXPECT_FALSE(isThere(QStringLiteral("new")));
}

TEST_F(EscapingLinksTest, askingForTheMomentLeavesNothingBehind)
{
    static_cast<void>(fileSystemMoment(root()));
    EXPECT_EQ(QDir(root()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{QStringLiteral("sub")});
}

TEST_F(EscapingLinksTest, aFolderThatIsItselfReachedByALinkIsJudgedByItsPlace)
{
    link(QStringLiteral("in"), QStringLiteral("sub"));
    link(QStringLiteral("out"), QStringLiteral("../x"));
    ASSERT_EQ(::symlink("root", sandbox.path(QStringLiteral("alias")).toUtf8().constData()), 0);
    removeEscapingLinks(sandbox.path(QStringLiteral("alias")), {});
    EXPECT_TRUE(isThere(QStringLiteral("in")));
    EXPECT_FALSE(isThere(QStringLiteral("out")));
}

} // namespace
} // namespace vormel
