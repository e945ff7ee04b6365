#include "engine/transfer/PartFile.h"

#include "fixtures/Sandbox.h"

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

} // namespace

TEST(PartFile, IsCreatedEmptyAndGoesOnBehindWhatIsThere)
{
    const Sandbox sandbox;
    {
        PartFile file(sandbox.path(name));
        ASSERT_TRUE(file.isOpen());
        EXPECT_EQ(file.size(), 0);
        EXPECT_TRUE(file.append("abc"));
    }
    PartFile again(sandbox.path(name));
    EXPECT_EQ(again.size(), 3);
    EXPECT_TRUE(again.append("def"));
    EXPECT_EQ(sandbox.read(name), "abcdef");
}

TEST(PartFile, StartsOver)
{
    const Sandbox sandbox;
    sandbox.write(name, "old bytes");
    PartFile file(sandbox.path(name));
    EXPECT_TRUE(file.restart());
    EXPECT_TRUE(file.append("new"));
    EXPECT_EQ(sandbox.read(name), "new");
}

TEST(PartFile, RefusesSymbolicLinksAndFolders)
{
    const Sandbox sandbox;
    const QString target = sandbox.write(QStringLiteral("precious"), "keep");
    ASSERT_TRUE(QFile::link(target, sandbox.path(name)));
    const PartFile link(sandbox.path(name));
    EXPECT_FALSE(link.isOpen());
    EXPECT_EQ(link.error(), ELOOP);
    EXPECT_EQ(sandbox.read(QStringLiteral("precious")), "keep");
    EXPECT_FALSE(PartFile(sandbox.root()).isOpen());
}

TEST(PartFile, DoesNotWaitForAReaderOfAPipe)
{
    const Sandbox sandbox;
    ASSERT_EQ(::mkfifo(QFile::encodeName(sandbox.path(name)).constData(), 0600), 0);
    const PartFile file(sandbox.path(name));
    EXPECT_FALSE(file.isOpen());
}

TEST(PartFile, TellsWhyItCannotBeOpened)
{
    const Sandbox sandbox;
    EXPECT_EQ(PartFile(sandbox.path(QStringLiteral("gone/x"))).error(), ENOENT);
}

TEST(PartFile, TakesNothingMoreOnceItWasShortenedFromOutside)
{
    const Sandbox sandbox;
    PartFile file(sandbox.path(name));
    ASSERT_TRUE(file.append("0123456789"));
    ASSERT_EQ(::truncate(QFile::encodeName(sandbox.path(name)).constData(), 4), 0);
    EXPECT_FALSE(file.append("abc"));
    EXPECT_FALSE(file.append("abc"));
    EXPECT_EQ(sandbox.read(name), "0123");
    EXPECT_FALSE(file.isStillAt(sandbox.path(name)));
}

TEST(PartFile, CutsOffWhatSomebodyElseAdded)
{
    const Sandbox sandbox;
    PartFile file(sandbox.path(name));
    ASSERT_TRUE(file.append("abc"));
    sandbox.write(name, "abcXYZ");
    EXPECT_TRUE(file.append("def"));
    EXPECT_EQ(sandbox.read(name), "abcdef");
}

TEST(PartFile, NoticesThatItWasRemovedOrReplaced)
{
    const Sandbox sandbox;
    PartFile file(sandbox.path(name));
    ASSERT_TRUE(file.append("abc"));
    EXPECT_TRUE(file.isStillAt(sandbox.path(name)));
    ASSERT_TRUE(QFile::remove(sandbox.path(name)));
    EXPECT_FALSE(file.isStillAt(sandbox.path(name)));
    EXPECT_FALSE(file.append("def"));
    sandbox.write(name, "abc");
    EXPECT_FALSE(file.isStillAt(sandbox.path(name)));
}

TEST(PartFile, KeepsAPrefixWhenTheDiskTakesOnlyAPart)
{
    const Sandbox sandbox;
    struct rlimit old = {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
    std::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit small = {6, old.rlim_max};
    PartFile file(sandbox.path(name));
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    EXPECT_FALSE(file.append("0123456789"));
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &old), 0);
    EXPECT_FALSE(file.append("more"));
    EXPECT_EQ(file.error(), EFBIG);
    EXPECT_EQ(sandbox.read(name), "012345");
}

TEST(PartFile, RemembersItsSourceAcrossRuns)
{
    const Sandbox sandbox;
    {
        PartFile file(sandbox.path(name));
        file.setSource(QStringLiteral("host\n\"tag\""));
        if (file.source().isEmpty())
            GTEST_SKIP() << "this file system keeps no extended attributes";
    }
    PartFile again(sandbox.path(name));
    EXPECT_EQ(again.source(), QStringLiteral("host\n\"tag\""));
    again.setSource({});
    EXPECT_EQ(again.source(), QString());
}
