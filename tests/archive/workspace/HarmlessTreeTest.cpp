#include "archive/workspace/HarmlessTree.h"

#include "archive/workspace/OrdinaryUser.h"
#include "archive/workspace/TreeRemoval.h"
#include "archive/workspace/Trees.h"
#include "archive/workspace/WorkMark.h"
#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace vormel {
namespace {

class HarmlessTreeTest : public ::testing::Test
{
protected:
    HarmlessTreeTest()
    {
        QDir().mkpath(root() + QStringLiteral("/sub/deep"));
        top = folderAt(root());
    }
    ~HarmlessTreeTest() override { static_cast<void>(removeTree(folderAt(sandbox.root()).get(), "root")); }

    [[nodiscard]] QString root() const { return sandbox.path(QStringLiteral("root")); }
    [[nodiscard]] QString inside(const QString& name) const { return root() + u'/' + name; }
    [[nodiscard]] QByteArray bytesOf(const QString& name) const { return QFile::encodeName(inside(name)); }

    void lookOver() const { EXPECT_EQ(makeHarmless(root(), ArchiveFormat::tar), 0); }

    void link(const QString& name, const QByteArray& target) const
    {
        ASSERT_EQ(::symlink(target.constData(), bytesOf(name).constData()), 0);
    }
    [[nodiscard]] bool isThere(const QString& name) const
    {
        struct stat facts = {};
        return ::lstat(bytesOf(name).constData(), &facts) == 0;
    }
    [[nodiscard]] bool survives(const QString& name, const QByteArray& target) const
    {
        link(name, target);
        lookOver();
        return isThere(name);
    }
    [[nodiscard]] mode_t modeOf(const QString& name) const
    {
        struct stat facts = {};
        EXPECT_EQ(::lstat(bytesOf(name).constData(), &facts), 0);
        return facts.st_mode & ALLPERMS;
    }
    void setMode(const QString& name, mode_t mode) const { ASSERT_EQ(::chmod(bytesOf(name).constData(), mode), 0); }

    fixtures::Sandbox sandbox;
    FileDescriptor top;
};

TEST_F(HarmlessTreeTest, LinksThatStayInsideSurvive)
{
    EXPECT_TRUE(survives(QStringLiteral("a"), "sub/file"));
    EXPECT_TRUE(survives(QStringLiteral("sub/deep/b"), "../../c"));
    EXPECT_TRUE(survives(QStringLiteral("c"), "."));
    EXPECT_TRUE(survives(QStringLiteral("d"), "./sub/./deep"));
    EXPECT_TRUE(survives(QStringLiteral("e"), "sub//deep/"));
}

TEST_F(HarmlessTreeTest, LinksThatGoUpTooFarAreRemoved)
{
    EXPECT_FALSE(survives(QStringLiteral("a"), ".."));
    EXPECT_FALSE(survives(QStringLiteral("b"), "../root-of-another"));
    EXPECT_FALSE(survives(QStringLiteral("sub/deep/c"), "../../../x"));
    EXPECT_FALSE(survives(QStringLiteral("sub/d"), "../../not/there/yet"));
    EXPECT_FALSE(survives(QStringLiteral("e"), "./.."));
}

TEST_F(HarmlessTreeTest, AbsoluteLinksAreRemoved)
{
    EXPECT_FALSE(survives(QStringLiteral("a"), "/etc/passwd"));
    EXPECT_FALSE(survives(QStringLiteral("b"), bytesOf(QStringLiteral("sub"))));
}

TEST_F(HarmlessTreeTest, LinksThatGoUpBehindANameAreRemovedAsThatMayBecomeALink)
{
    EXPECT_FALSE(survives(QStringLiteral("a"), "later/.."));
    EXPECT_FALSE(survives(QStringLiteral("b"), "sub/deep/../../../x"));
    EXPECT_FALSE(survives(QStringLiteral("c"), "sub/.."));
    EXPECT_FALSE(survives(QStringLiteral("sub/d"), "../sub/deep/../x"));
}

TEST_F(HarmlessTreeTest, LinksAreJudgedTogetherAsOneMayLeadThroughAnother)
{
    link(QStringLiteral("out"), "../elsewhere");
    link(QStringLiteral("sub/in"), "deep");
    link(QStringLiteral("good"), "sub/in/x");
    EXPECT_FALSE(survives(QStringLiteral("a"), "out/x"));
    EXPECT_FALSE(isThere(QStringLiteral("out")));
    EXPECT_TRUE(isThere(QStringLiteral("sub/in")));
    EXPECT_TRUE(isThere(QStringLiteral("good")));
}

TEST_F(HarmlessTreeTest, ALinkThatLeadsThroughOneIntoAnotherFolderIsFollowedFromThere)
{
    // "sub/out" leads out; seen from the top, "through/out" is that link.
    link(QStringLiteral("through"), "sub");
    link(QStringLiteral("sub/out"), "../../x");
    EXPECT_FALSE(survives(QStringLiteral("a"), "through/out"));
    EXPECT_TRUE(isThere(QStringLiteral("through")));
}

TEST_F(HarmlessTreeTest, LinksThatGoRoundInCirclesAreRemoved)
{
    EXPECT_FALSE(survives(QStringLiteral("loop"), "loop"));
    link(QStringLiteral("a"), "b");
    EXPECT_FALSE(survives(QStringLiteral("b"), "a"));
    EXPECT_FALSE(isThere(QStringLiteral("a")));
}

TEST_F(HarmlessTreeTest, AChainOfLinksThatNoSystemFollowsIsJudgedAllTheSame)
{
    constexpr int length = 20'000;
    for (int i = 0; i < length; ++i)
        link(QString::number(i), QByteArray::number(i + 1));
    runInNarrowPlace([this] { lookOver(); });
    EXPECT_TRUE(isThere(QString::number(length - 1)));
}

TEST_F(HarmlessTreeTest, WhatALinkLeadsToIsNeitherWalkedNorRemoved)
{
    const QString kept = sandbox.write(QStringLiteral("outside/file"), "x");
    ASSERT_EQ(::symlink("..", sandbox.path(QStringLiteral("outside/up")).toUtf8().constData()), 0);
    EXPECT_FALSE(survives(QStringLiteral("a"), "../outside"));
    EXPECT_TRUE(QFileInfo::exists(kept));
    EXPECT_TRUE(QFileInfo(sandbox.path(QStringLiteral("outside/up"))).isSymLink());
}

TEST_F(HarmlessTreeTest, FilesThatAreAlsoOutsideAreRemovedAndUntouchedThere)
{
    const QString secret = sandbox.write(QStringLiteral("secret"), "mine");
    const QByteArray bytes = QFile::encodeName(secret);
    ASSERT_EQ(::chmod(bytes.constData(), 04040), 0);
    ASSERT_EQ(::link(bytes.constData(), bytesOf(QStringLiteral("a")).constData()), 0);
    ASSERT_EQ(::link(bytes.constData(), bytesOf(QStringLiteral("sub/b")).constData()), 0);
    lookOver();
    EXPECT_FALSE(isThere(QStringLiteral("a")));
    EXPECT_FALSE(isThere(QStringLiteral("sub/b")));
    struct stat facts = {};
    ASSERT_EQ(::stat(bytes.constData(), &facts), 0);
    EXPECT_EQ(facts.st_mode & ALLPERMS, 04040U);
    EXPECT_EQ(facts.st_nlink, 1U);
}

TEST_F(HarmlessTreeTest, FilesWithSeveralNamesInsideStay)
{
    sandbox.write(QStringLiteral("root/a"), "x");
    ASSERT_EQ(::link(bytesOf(QStringLiteral("a")).constData(), bytesOf(QStringLiteral("sub/b")).constData()), 0);
    ASSERT_EQ(::link(bytesOf(QStringLiteral("a")).constData(), bytesOf(QStringLiteral("sub/deep/c")).constData()), 0);
    lookOver();
    EXPECT_EQ(sandbox.files(QStringLiteral("root")),
              (QStringList{QStringLiteral("a"), QStringLiteral("sub/b"), QStringLiteral("sub/deep/c")}));
}

TEST_F(HarmlessTreeTest, PipesAndSocketsAreRemovedWithoutBeingOpened)
{
    ASSERT_EQ(::mkfifo(bytesOf(QStringLiteral("sub/pipe")).constData(), 0600), 0);
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray path = bytesOf(QStringLiteral("socket"));
    ASSERT_LT(path.size(), static_cast<qsizetype>(sizeof address.sun_path));
    std::copy(path.begin(), path.end(), static_cast<char*>(address.sun_path));
    // The interface of sockets wants it so.
    ASSERT_EQ(::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    lookOver();
    EXPECT_FALSE(isThere(QStringLiteral("sub/pipe")));
    EXPECT_FALSE(isThere(QStringLiteral("socket")));
}

TEST_F(HarmlessTreeTest, DevicesAreRemoved)
{
    if (::mknod(bytesOf(QStringLiteral("sub/null")).constData(), S_IFCHR | 0600, ::makedev(1, 3)) != 0)
        GTEST_SKIP() << "only root makes devices";
    lookOver();
    EXPECT_FALSE(isThere(QStringLiteral("sub/null")));
}

TEST_F(HarmlessTreeTest, BitsThatLendRightsAreCleared)
{
    sandbox.write(QStringLiteral("root/sub/tool"), "x");
    setMode(QStringLiteral("sub/tool"), 07755);
    setMode(QStringLiteral("sub/deep"), 07755);
    setMode(QStringLiteral("sub"), 05775);
    lookOver();
    EXPECT_EQ(modeOf(QStringLiteral("sub/tool")), 0755U);
    EXPECT_EQ(modeOf(QStringLiteral("sub/deep")), 0755U);
    EXPECT_EQ(modeOf(QStringLiteral("sub")), 0775U);
}

TEST_F(HarmlessTreeTest, WhatTheDestinationHandsDownToItsFoldersIsKept)
{
    ASSERT_EQ(::chmod(QFile::encodeName(root()).constData(), 02755), 0);
    setMode(QStringLiteral("sub"), 02755);
    lookOver();
    EXPECT_EQ(modeOf(QStringLiteral("sub")), 02755U);
}

TEST_F(HarmlessTreeTest, OtherPermissionsStayAsTheyWerePacked)
{
    sandbox.write(QStringLiteral("root/a"), "x");
    sandbox.write(QStringLiteral("root/b"), "x");
    setMode(QStringLiteral("a"), 0444);
    setMode(QStringLiteral("b"), 0077);
    setMode(QStringLiteral("sub"), 0750);
    lookOver();
    EXPECT_EQ(modeOf(QStringLiteral("a")), 0444U);
    EXPECT_EQ(modeOf(QStringLiteral("b")), 0477U);
    EXPECT_EQ(modeOf(QStringLiteral("sub")), 0750U);
}

TEST_F(HarmlessTreeTest, FoldersThatCanNeitherBeListedNorEnteredNorChangedAreLookedOverToo)
{
    const OrdinaryUser user;
    for (const mode_t mode : {0555U, 0311U, 0111U, 0000U}) {
        link(QStringLiteral("sub/deep/out"), "/etc");
        setMode(QStringLiteral("sub/deep"), mode);
        setMode(QStringLiteral("sub"), mode);
        // A member "." of an archive sets the permissions of the folder that it is unpacked in.
        ASSERT_EQ(::chmod(QFile::encodeName(root()).constData(), mode), 0);
        lookOver();
        EXPECT_FALSE(isThere(QStringLiteral("sub/deep/out"))) << mode;
        EXPECT_EQ(modeOf(QStringLiteral("sub/deep")), mode | 0700U);
    }
}

TEST_F(HarmlessTreeTest, ALinkThatNoPathReachesIsRemoved)
{
    const FileDescriptor deep = makeDeepFolders(top.get());
    ASSERT_EQ(::symlinkat("/etc", deep.get(), "out"), 0);
    ASSERT_EQ(::symlinkat("../in", deep.get(), "in"), 0);
    ASSERT_EQ(::mkfifoat(deep.get(), "pipe", 0600), 0);
    ASSERT_EQ(::symlinkat("/etc", folderAt(inside(QStringLiteral("sub"))).get(), "after"), 0);
    runInNarrowPlace([this] { lookOver(); });
    EXPECT_EQ(namesIn(deep.get()), QList<QByteArray>{"in"});
    EXPECT_FALSE(isThere(QStringLiteral("sub/after")));
}

TEST_F(HarmlessTreeTest, NothingPassesForAWorkFolderOfOurs)
{
    const QString mark = QStringLiteral(".vormel-unpack-abcdef/") + QLatin1StringView(workMarkName);
    sandbox.write(QStringLiteral("root/") + mark, "x");
    lookOver();
    EXPECT_FALSE(isThere(mark));
    EXPECT_TRUE(isThere(mark + QStringLiteral(" (1)")));
}

TEST_F(HarmlessTreeTest, ATreeThatCannotBeLookedOverIsTold)
{
    EXPECT_EQ(makeHarmless(QStringLiteral("/no/such/folder"), ArchiveFormat::tar), ENOENT);
    ASSERT_EQ(::symlink("root", sandbox.path(QStringLiteral("alias")).toUtf8().constData()), 0);
    EXPECT_EQ(makeHarmless(sandbox.path(QStringLiteral("alias")), ArchiveFormat::tar), ENOTDIR);
}

TEST_F(HarmlessTreeTest, AFolderThatIsNotOursToOpenIsTold)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can give a folder away";
    constexpr uid_t somebody = 12345;
    setMode(QStringLiteral("sub/deep"), 0700);
    ASSERT_EQ(::chown(bytesOf(QStringLiteral("sub/deep")).constData(), somebody, somebody), 0);
    const OrdinaryUser user;
    EXPECT_EQ(makeHarmless(root(), ArchiveFormat::tar), EACCES);
}

} // namespace
} // namespace vormel
