#include "engine/transfer/PartFile.h"

#include "fixtures/Sandbox.h"
#include "fixtures/EngineOnScript.h"

#include <QFile>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

using namespace vormel;
using vormel::fixtures::Sandbox;

namespace {

const QString name = QStringLiteral("x.rar.download");
constexpr auto New = PartFile::Opening::fresh;
constexpr auto Existing = PartFile::Opening::existing;

} // namespace

TEST(PartFile, IsCreatedEmptyAndGoesOnBehindWhatIsThere)
{
    const Sandbox sandbox;
    {
        PartFile file(sandbox.path(name), New);
        ASSERT_TRUE(file.isOpen());
        EXPECT_EQ(file.size(), 0);
        EXPECT_TRUE(file.append("abc"));
    }
    PartFile again(sandbox.path(name), Existing);
    EXPECT_EQ(again.size(), 3);
    EXPECT_TRUE(again.append("def"));
    EXPECT_EQ(sandbox.read(name), "abcdef");
}

TEST(PartFile, StartsOver)
{
    const Sandbox sandbox;
    sandbox.write(name, "old bytes");
    PartFile file(sandbox.path(name), Existing);
    EXPECT_TRUE(file.restart());
    EXPECT_TRUE(file.append("new"));
    EXPECT_EQ(sandbox.read(name), "new");
}

TEST(PartFile, IsNeitherMadeWhereSomethingStandsNorOpenedWhereNothingDoes)
{
    const Sandbox sandbox;
    EXPECT_EQ(PartFile(sandbox.path(name), Existing).error(), ENOENT);
    EXPECT_FALSE(sandbox.exists(name));
    sandbox.write(name, "somebody's");
    EXPECT_EQ(PartFile(sandbox.path(name), New).error(), EEXIST);
    EXPECT_EQ(PartFile(sandbox.path(QStringLiteral("gone/x")), New).error(), ENOENT);
}

TEST(PartFile, RefusesSymbolicLinksFoldersAndPipes)
{
    const Sandbox sandbox;
    const QString target = sandbox.write(QStringLiteral("precious"), "keep");
    ASSERT_TRUE(QFile::link(target, sandbox.path(name)));
    const PartFile link(sandbox.path(name), Existing);
    EXPECT_FALSE(link.isOpen());
    EXPECT_EQ(link.error(), ELOOP);
    EXPECT_FALSE(PartFile(sandbox.root(), Existing).isOpen());
    const QString pipe = sandbox.path(QStringLiteral("pipe"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_EQ(PartFile(pipe, Existing).error(), EINVAL) << "and it must not wait for a reader";
}

TEST(PartFile, IsNotWrittenThroughASecondName)
{
    const Sandbox sandbox;
    const QByteArray precious = QFile::encodeName(sandbox.write(QStringLiteral("precious"), "keep"));
    const QByteArray part = QFile::encodeName(sandbox.path(name));
    ASSERT_EQ(::link(precious.constData(), part.constData()), 0);
    EXPECT_EQ(PartFile(sandbox.path(name), Existing).error(), EMLINK);
    ASSERT_EQ(::unlink(part.constData()), 0);
    PartFile file(sandbox.path(name), New);
    ASSERT_TRUE(file.append("abc"));
    ASSERT_EQ(::link(part.constData(), QFile::encodeName(sandbox.path(QStringLiteral("kept"))).constData()), 0);
    EXPECT_FALSE(file.append("def"));
    EXPECT_EQ(file.error(), EMLINK);
    EXPECT_EQ(sandbox.read(QStringLiteral("kept")), "abc");
}

TEST(PartFile, TakesNothingMoreOnceItWasShortenedFromOutside)
{
    const Sandbox sandbox;
    PartFile file(sandbox.path(name), New);
    ASSERT_TRUE(file.append("0123456789"));
    ASSERT_EQ(::truncate(QFile::encodeName(sandbox.path(name)).constData(), 4), 0);
    EXPECT_FALSE(file.append("abc"));
    EXPECT_FALSE(file.append("abc"));
    EXPECT_EQ(sandbox.read(name), "0123");
    EXPECT_FALSE(file.isStillThere());
}

TEST(PartFile, CutsOffWhatSomebodyElseAdded)
{
    const Sandbox sandbox;
    PartFile file(sandbox.path(name), New);
    ASSERT_TRUE(file.append("abc"));
    sandbox.write(name, "abcXYZ");
    EXPECT_TRUE(file.append("def"));
    EXPECT_EQ(sandbox.read(name), "abcdef");
}

TEST(PartFile, NoticesThatItWasRemovedOrReplaced)
{
    const Sandbox sandbox;
    PartFile file(sandbox.path(name), New);
    ASSERT_TRUE(file.append("abc"));
    EXPECT_TRUE(file.isStillThere());
    ASSERT_TRUE(QFile::remove(sandbox.path(name)));
    EXPECT_FALSE(file.isStillThere());
    EXPECT_FALSE(file.append("def"));
    sandbox.write(name, "abc");
    EXPECT_FALSE(file.isStillThere());
}

TEST(PartFile, KeepsAPrefixWhenTheDiskTakesOnlyAPart)
{
    const Sandbox sandbox;
    struct rlimit old = {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
    std::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit small = {6, old.rlim_max};
    PartFile file(sandbox.path(name), New);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    EXPECT_FALSE(file.append("0123456789"));
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &old), 0);
    EXPECT_FALSE(file.append("more"));
    EXPECT_EQ(file.error(), EFBIG);
    EXPECT_EQ(sandbox.read(name), "012345");
}

TEST(PartFile, RemembersWhoseItIsAndWhatOf)
{
    const Sandbox sandbox;
    const DownloadItem item(fixtures::link(QStringLiteral("http://h/x.rar")), ItemId::make());
    PartMarks marks;
    marks.setOwner(item);
    marks.total = 1000;
    marks.source = {QStringLiteral("host"), QStringLiteral("\"tag\""), QStringLiteral("Sat"), QStringLiteral("gzip")};
    {
        PartFile file(sandbox.path(name), New);
        file.setMarks(marks);
        if (!file.isMarked())
            GTEST_SKIP() << "this file system keeps no extended attributes";
        ASSERT_TRUE(file.append("abc"));
    }
    PartFile again(sandbox.path(name), Existing);
    EXPECT_EQ(again.marks(), marks);
    EXPECT_EQ(readMarks(sandbox.path(name)), marks);
    EXPECT_TRUE(again.marks().nameOwner(item));
    const DownloadItem sameLink(item.originalURL(), ItemId::make());
    const DownloadItem sameId(fixtures::link(QStringLiteral("http://other/x.rar")), item.id());
    const DownloadItem stranger(fixtures::link(QStringLiteral("http://other/x.rar")), ItemId::make());
    EXPECT_TRUE(marks.nameOwner(sameLink));
    EXPECT_TRUE(marks.nameOwner(sameId));
    EXPECT_FALSE(marks.nameOwner(stranger));
    EXPECT_FALSE(PartMarks().nameOwner(stranger));
    ASSERT_TRUE(again.restart());
    EXPECT_EQ(again.marks().total, 0) << "what an empty file is the beginning of, nobody knows";
    EXPECT_EQ(again.marks().source, SourceMark());
    EXPECT_TRUE(again.marks().nameOwner(item));
    removeMarks(sandbox.path(name));
    EXPECT_FALSE(readMarks(sandbox.path(name)).areThere());
}

TEST(PartFile, GoesWhereItIsMovedAndLeavesNothingEmptyBehind)
{
    const Sandbox sandbox;
    sandbox.write(QStringLiteral("taken"), "somebody's");
    PartFile file(sandbox.path(name), New);
    EXPECT_EQ(file.moveTo(sandbox.path(QStringLiteral("taken"))), EEXIST);
    EXPECT_EQ(file.path(), sandbox.path(name));
    ASSERT_EQ(file.moveTo(sandbox.path(QStringLiteral("moved"))), 0);
    ASSERT_TRUE(file.append("abc"));
    EXPECT_TRUE(file.isStillThere());
    file.removeIfEmpty();
    EXPECT_EQ(sandbox.read(QStringLiteral("moved")), "abc");
    ASSERT_TRUE(file.cutBackTo(1));
    EXPECT_EQ(sandbox.read(QStringLiteral("moved")), "a");
    ASSERT_TRUE(file.restart());
    file.removeIfEmpty();
    EXPECT_EQ(sandbox.files(), QStringList(QStringLiteral("taken")));
}
