#include "engine/transfer/PartFile.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/Sandbox.h"

#include <QFile>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

using namespace Qt::StringLiterals;

using namespace vormel;
using vormel::fixtures::Sandbox;

namespace {

const QString name = u"x.rar.download"_s;
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
    EXPECT_EQ(PartFile(sandbox.path(u"gone/x"_s), New).error(), ENOENT);
}

TEST(PartFile, RefusesSymbolicLinksFoldersAndPipes)
{
    const Sandbox sandbox;
    const QString target = sandbox.write(u"precious"_s, "keep");
    ASSERT_TRUE(QFile::link(target, sandbox.path(name)));
    const PartFile link(sandbox.path(name), Existing);
    EXPECT_FALSE(link.isOpen());
    EXPECT_EQ(link.error(), ELOOP);
    EXPECT_FALSE(PartFile(sandbox.root(), Existing).isOpen());
    const QString pipe = sandbox.path(u"pipe"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_EQ(PartFile(pipe, Existing).error(), EINVAL) << "and it must not wait for a reader";
}

TEST(PartFile, IsNotWrittenThroughASecondName)
{
    const Sandbox sandbox;
    const QByteArray precious = QFile::encodeName(sandbox.write(u"precious"_s, "keep"));
    const QByteArray part = QFile::encodeName(sandbox.path(name));
    ASSERT_EQ(::link(precious.constData(), part.constData()), 0);
    EXPECT_EQ(PartFile(sandbox.path(name), Existing).error(), EMLINK);
    ASSERT_EQ(::unlink(part.constData()), 0);
    PartFile file(sandbox.path(name), New);
    ASSERT_TRUE(file.append("abc"));
    ASSERT_EQ(::link(part.constData(), QFile::encodeName(sandbox.path(u"kept"_s)).constData()), 0);
    EXPECT_FALSE(file.append("def"));
    EXPECT_EQ(file.error(), EMLINK);
    EXPECT_EQ(sandbox.read(u"kept"_s), "abc");
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
    const DownloadItem item(fixtures::link(u"http://h/x.rar"_s), ItemId::make());
    PartMarks marks;
    marks.setOwner(item);
    marks.total = 1000;
    marks.source = {u"host"_s, u"\"tag\""_s, u"Sat"_s, u"gzip"_s};
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
    const DownloadItem sameId(fixtures::link(u"http://other/x.rar"_s), item.id());
    const DownloadItem stranger(fixtures::link(u"http://other/x.rar"_s), ItemId::make());
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
    sandbox.write(u"taken"_s, "somebody's");
    PartFile file(sandbox.path(name), New);
    EXPECT_EQ(file.moveTo(sandbox.path(u"taken"_s)), EEXIST);
    EXPECT_EQ(file.path(), sandbox.path(name));
    ASSERT_EQ(file.moveTo(sandbox.path(u"moved"_s)), 0);
    ASSERT_TRUE(file.append("abc"));
    EXPECT_TRUE(file.isStillThere());
    file.removeIfEmpty();
    EXPECT_EQ(sandbox.read(u"moved"_s), "abc");
    ASSERT_TRUE(file.cutBackTo(1));
    EXPECT_EQ(sandbox.read(u"moved"_s), "a");
    ASSERT_TRUE(file.restart());
    file.removeIfEmpty();
    EXPECT_EQ(sandbox.files(), QStringList(u"taken"_s));
}
