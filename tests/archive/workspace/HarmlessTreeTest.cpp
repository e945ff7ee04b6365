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

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class HarmlessTreeTest : public ::testing::Test
{
protected:
    HarmlessTreeTest()
    {
        QDir().mkpath(root() + u"/sub/deep"_s);
        top = folderAt(root());
    }
    ~HarmlessTreeTest() override { static_cast<void>(removeTree(folderAt(sandbox.root()).get(), "root")); }

    [[nodiscard]] QString root() const { return sandbox.path(u"root"_s); }
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
    EXPECT_TRUE(survives(u"a"_s, "sub/file"));
    EXPECT_TRUE(survives(u"sub/deep/b"_s, "../../c"));
    EXPECT_TRUE(survives(u"c"_s, "."));
    EXPECT_TRUE(survives(u"d"_s, "./sub/./deep"));
    EXPECT_TRUE(survives(u"e"_s, "sub//deep/"));
}

TEST_F(HarmlessTreeTest, LinksThatGoUpTooFarAreRemoved)
{
    EXPECT_FALSE(survives(u"a"_s, ".."));
    EXPECT_FALSE(survives(u"b"_s, "../root-of-another"));
    EXPECT_FALSE(survives(u"sub/deep/c"_s, "../../../x"));
    EXPECT_FALSE(survives(u"sub/d"_s, "../../not/there/yet"));
    EXPECT_FALSE(survives(u"e"_s, "./.."));
}

TEST_F(HarmlessTreeTest, AbsoluteLinksAreRemoved)
{
    EXPECT_FALSE(survives(u"a"_s, "/etc/passwd"));
    EXPECT_FALSE(survives(u"b"_s, bytesOf(u"sub"_s)));
}

TEST_F(HarmlessTreeTest, LinksThatGoUpBehindANameAreRemovedAsThatMayBecomeALink)
{
    EXPECT_FALSE(survives(u"a"_s, "later/.."));
    EXPECT_FALSE(survives(u"b"_s, "sub/deep/../../../x"));
    EXPECT_FALSE(survives(u"c"_s, "sub/.."));
    EXPECT_FALSE(survives(u"sub/d"_s, "../sub/deep/../x"));
}

TEST_F(HarmlessTreeTest, LinksAreJudgedTogetherAsOneMayLeadThroughAnother)
{
    link(u"out"_s, "../elsewhere");
    link(u"sub/in"_s, "deep");
    link(u"good"_s, "sub/in/x");
    EXPECT_FALSE(survives(u"a"_s, "out/x"));
    EXPECT_FALSE(isThere(u"out"_s));
    EXPECT_TRUE(isThere(u"sub/in"_s));
    EXPECT_TRUE(isThere(u"good"_s));
}

TEST_F(HarmlessTreeTest, ALinkThatLeadsThroughOneIntoAnotherFolderIsFollowedFromThere)
{
    // "sub/out" leads out; seen from the top, "through/out" is that link.
    link(u"through"_s, "sub");
    link(u"sub/out"_s, "../../x");
    EXPECT_FALSE(survives(u"a"_s, "through/out"));
    EXPECT_TRUE(isThere(u"through"_s));
}

TEST_F(HarmlessTreeTest, LinksThatGoRoundInCirclesAreRemoved)
{
    EXPECT_FALSE(survives(u"loop"_s, "loop"));
    link(u"a"_s, "b");
    EXPECT_FALSE(survives(u"b"_s, "a"));
    EXPECT_FALSE(isThere(u"a"_s));
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
    const QString kept = sandbox.write(u"outside/file"_s, "x");
    ASSERT_EQ(::symlink("..", sandbox.path(u"outside/up"_s).toUtf8().constData()), 0);
    EXPECT_FALSE(survives(u"a"_s, "../outside"));
    EXPECT_TRUE(QFileInfo::exists(kept));
    EXPECT_TRUE(QFileInfo(sandbox.path(u"outside/up"_s)).isSymLink());
}

TEST_F(HarmlessTreeTest, FilesThatAreAlsoOutsideAreRemovedAndUntouchedThere)
{
    const QString secret = sandbox.write(u"secret"_s, "mine");
    const QByteArray bytes = QFile::encodeName(secret);
    ASSERT_EQ(::chmod(bytes.constData(), 04040), 0);
    ASSERT_EQ(::link(bytes.constData(), bytesOf(u"a"_s).constData()), 0);
    ASSERT_EQ(::link(bytes.constData(), bytesOf(u"sub/b"_s).constData()), 0);
    lookOver();
    EXPECT_FALSE(isThere(u"a"_s));
    EXPECT_FALSE(isThere(u"sub/b"_s));
    struct stat facts = {};
    ASSERT_EQ(::stat(bytes.constData(), &facts), 0);
    EXPECT_EQ(facts.st_mode & ALLPERMS, 04040U);
    EXPECT_EQ(facts.st_nlink, 1U);
}

TEST_F(HarmlessTreeTest, FilesWithSeveralNamesInsideStay)
{
    sandbox.write(u"root/a"_s, "x");
    ASSERT_EQ(::link(bytesOf(u"a"_s).constData(), bytesOf(u"sub/b"_s).constData()), 0);
    ASSERT_EQ(::link(bytesOf(u"a"_s).constData(), bytesOf(u"sub/deep/c"_s).constData()), 0);
    lookOver();
    EXPECT_EQ(sandbox.files(u"root"_s), (QStringList{u"a"_s, u"sub/b"_s, u"sub/deep/c"_s}));
}

TEST_F(HarmlessTreeTest, PipesAndSocketsAreRemovedWithoutBeingOpened)
{
    ASSERT_EQ(::mkfifo(bytesOf(u"sub/pipe"_s).constData(), 0600), 0);
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray path = bytesOf(u"socket"_s);
    ASSERT_LT(path.size(), static_cast<qsizetype>(sizeof address.sun_path));
    std::copy(path.begin(), path.end(), static_cast<char*>(address.sun_path));
    // The interface of sockets wants it so.
    ASSERT_EQ(::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    lookOver();
    EXPECT_FALSE(isThere(u"sub/pipe"_s));
    EXPECT_FALSE(isThere(u"socket"_s));
}

TEST_F(HarmlessTreeTest, DevicesAreRemoved)
{
    if (::mknod(bytesOf(u"sub/null"_s).constData(), S_IFCHR | 0600, ::makedev(1, 3)) != 0)
        GTEST_SKIP() << "only root makes devices";
    lookOver();
    EXPECT_FALSE(isThere(u"sub/null"_s));
}

TEST_F(HarmlessTreeTest, BitsThatLendRightsAreCleared)
{
    sandbox.write(u"root/sub/tool"_s, "x");
    setMode(u"sub/tool"_s, 07755);
    setMode(u"sub/deep"_s, 07755);
    setMode(u"sub"_s, 05775);
    lookOver();
    EXPECT_EQ(modeOf(u"sub/tool"_s), 0755U);
    EXPECT_EQ(modeOf(u"sub/deep"_s), 0755U);
    EXPECT_EQ(modeOf(u"sub"_s), 0775U);
}

TEST_F(HarmlessTreeTest, WhatTheDestinationHandsDownToItsFoldersIsKept)
{
    ASSERT_EQ(::chmod(QFile::encodeName(root()).constData(), 02755), 0);
    setMode(u"sub"_s, 02755);
    lookOver();
    EXPECT_EQ(modeOf(u"sub"_s), 02755U);
}

TEST_F(HarmlessTreeTest, OtherPermissionsStayAsTheyWerePacked)
{
    sandbox.write(u"root/a"_s, "x");
    sandbox.write(u"root/b"_s, "x");
    setMode(u"a"_s, 0444);
    setMode(u"b"_s, 0077);
    setMode(u"sub"_s, 0750);
    lookOver();
    EXPECT_EQ(modeOf(u"a"_s), 0444U);
    EXPECT_EQ(modeOf(u"b"_s), 0477U);
    EXPECT_EQ(modeOf(u"sub"_s), 0750U);
}

TEST_F(HarmlessTreeTest, FoldersThatCanNeitherBeListedNorEnteredNorChangedAreLookedOverToo)
{
    const OrdinaryUser user;
    for (const mode_t mode : {0555U, 0311U, 0111U, 0000U}) {
        link(u"sub/deep/out"_s, "/etc");
        setMode(u"sub/deep"_s, mode);
        setMode(u"sub"_s, mode);
        // A member "." of an archive sets the permissions of the folder that it is unpacked in.
        ASSERT_EQ(::chmod(QFile::encodeName(root()).constData(), mode), 0);
        lookOver();
        EXPECT_FALSE(isThere(u"sub/deep/out"_s)) << mode;
        EXPECT_EQ(modeOf(u"sub/deep"_s), mode | 0700U);
    }
}

TEST_F(HarmlessTreeTest, ALinkThatNoPathReachesIsRemoved)
{
    const FileDescriptor deep = makeDeepFolders(top.get());
    ASSERT_EQ(::symlinkat("/etc", deep.get(), "out"), 0);
    ASSERT_EQ(::symlinkat("../in", deep.get(), "in"), 0);
    ASSERT_EQ(::mkfifoat(deep.get(), "pipe", 0600), 0);
    ASSERT_EQ(::symlinkat("/etc", folderAt(inside(u"sub"_s)).get(), "after"), 0);
    runInNarrowPlace([this] { lookOver(); });
    EXPECT_EQ(namesIn(deep.get()), QList<QByteArray>{"in"});
    EXPECT_FALSE(isThere(u"sub/after"_s));
}

TEST_F(HarmlessTreeTest, NothingPassesForAWorkFolderOfOurs)
{
    const QString mark = u".vormel-unpack-abcdef/"_s + QLatin1StringView(workMarkName);
    sandbox.write(u"root/"_s + mark, "x");
    lookOver();
    EXPECT_FALSE(isThere(mark));
    EXPECT_TRUE(isThere(mark + u" (1)"_s));
}

TEST_F(HarmlessTreeTest, ATreeThatCannotBeLookedOverIsTold)
{
    EXPECT_EQ(makeHarmless(u"/no/such/folder"_s, ArchiveFormat::tar), ENOENT);
    ASSERT_EQ(::symlink("root", sandbox.path(u"alias"_s).toUtf8().constData()), 0);
    EXPECT_EQ(makeHarmless(sandbox.path(u"alias"_s), ArchiveFormat::tar), ENOTDIR);
}

TEST_F(HarmlessTreeTest, AFolderThatIsNotOursToOpenIsTold)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can give a folder away";
    constexpr uid_t somebody = 12345;
    setMode(u"sub/deep"_s, 0700);
    ASSERT_EQ(::chown(bytesOf(u"sub/deep"_s).constData(), somebody, somebody), 0);
    const OrdinaryUser user;
    EXPECT_EQ(makeHarmless(root(), ArchiveFormat::tar), EACCES);
}

} // namespace
} // namespace vormel
