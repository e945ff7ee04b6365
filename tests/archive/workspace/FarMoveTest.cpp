#include "archive/workspace/FarMove.h"

#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>

using namespace vormel;

namespace {

/// Two folders, which lie on two file systems where the machine has them.
class FarMoveTest : public ::testing::Test
{
protected:
    [[nodiscard]] bool areApart() const
    {
        struct stat one = {};
        struct stat other = {};
        return ::stat(QFile::encodeName(near.root()).constData(), &one) == 0 &&
               ::stat(QFile::encodeName(far.path()).constData(), &other) == 0 && one.st_dev != other.st_dev;
    }
    [[nodiscard]] QByteArray readFar(const QString& name) const
    {
        QFile file(far.filePath(name));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

    fixtures::Sandbox near;
    QTemporaryDir far{QStringLiteral("/dev/shm/vormel-far-XXXXXX")};
};

} // namespace

#define VORMEL_NEEDS_TWO_FILE_SYSTEMS()                                                                                \
    if (!areApart())                                                                                                   \
    GTEST_SKIP() << "there is only one file system to write to"

TEST_F(FarMoveTest, MovesWithinOneFileSystem)
{
    const QString from = near.write(QStringLiteral("a"), "x");
    EXPECT_EQ(moveFar(from, near.path(QStringLiteral("b"))), 0);
    EXPECT_EQ(near.files(), QStringList{QStringLiteral("b")});
}

TEST_F(FarMoveTest, CopiesToAnotherFileSystemAndRemovesTheFileOnlyThen)
{
    VORMEL_NEEDS_TWO_FILE_SYSTEMS();
    const QByteArray contents(3'000'000, 'x');
    const QString from = near.write(QStringLiteral("a"), contents);
    EXPECT_EQ(moveFar(from, far.filePath(QStringLiteral("b"))), 0);
    EXPECT_EQ(readFar(QStringLiteral("b")), contents);
    EXPECT_TRUE(near.files().isEmpty());
    EXPECT_EQ(QDir(far.path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("b")});
}

TEST_F(FarMoveTest, ReplacesNothingAndKeepsTheFile)
{
    const QString from = near.write(QStringLiteral("a"), "new");
    const QString taken = near.write(QStringLiteral("b"), "old");
    EXPECT_EQ(moveFar(from, taken), EEXIST);
    EXPECT_EQ(near.read(QStringLiteral("b")), "old");
    VORMEL_NEEDS_TWO_FILE_SYSTEMS();
    QFile other(far.filePath(QStringLiteral("b")));
    ASSERT_TRUE(other.open(QFile::WriteOnly) && other.write("old") == 3);
    other.close();
    EXPECT_EQ(moveFar(from, other.fileName()), EEXIST);
    EXPECT_EQ(readFar(QStringLiteral("b")), "old");
    EXPECT_EQ(near.read(QStringLiteral("a")), "new");
    EXPECT_EQ(QDir(far.path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("b")});
}

TEST_F(FarMoveTest, LeavesNothingOfACopyThatIsStopped)
{
    VORMEL_NEEDS_TWO_FILE_SYSTEMS();
    const QString from = near.write(QStringLiteral("a"), "x");
    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(moveFar(from, far.filePath(QStringLiteral("b")), stop.get_token()), ECANCELED);
    EXPECT_EQ(near.read(QStringLiteral("a")), "x");
    EXPECT_TRUE(QDir(far.path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

TEST_F(FarMoveTest, TellsWhatStandsInItsWay)
{
    EXPECT_EQ(moveFar(near.path(QStringLiteral("nothing")), near.path(QStringLiteral("b"))), ENOENT);
    const QString from = near.write(QStringLiteral("a"), "x");
    EXPECT_EQ(moveFar(from, near.path(QStringLiteral("no/folder"))), ENOENT);
    EXPECT_EQ(near.read(QStringLiteral("a")), "x");
}
