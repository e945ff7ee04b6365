#include "archive/workspace/FarMove.h"

#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>

using namespace Qt::StringLiterals;

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
    QTemporaryDir far{u"/dev/shm/vormel-far-XXXXXX"_s};
};

} // namespace

#define VORMEL_NEEDS_TWO_FILE_SYSTEMS()                                                                                \
    if (!areApart())                                                                                                   \
    GTEST_SKIP() << "there is only one file system to write to"

TEST_F(FarMoveTest, MovesWithinOneFileSystem)
{
    const QString from = near.write(u"a"_s, "x");
    EXPECT_EQ(moveFar(from, near.path(u"b"_s)), 0);
    EXPECT_EQ(near.files(), QStringList{u"b"_s});
}

TEST_F(FarMoveTest, CopiesToAnotherFileSystemAndRemovesTheFileOnlyThen)
{
    VORMEL_NEEDS_TWO_FILE_SYSTEMS();
    const QByteArray contents(3'000'000, 'x');
    const QString from = near.write(u"a"_s, contents);
    EXPECT_EQ(moveFar(from, far.filePath(u"b"_s)), 0);
    EXPECT_EQ(readFar(u"b"_s), contents);
    EXPECT_TRUE(near.files().isEmpty());
    EXPECT_EQ(QDir(far.path()).entryList(QDir::Files | QDir::Hidden), QStringList{u"b"_s});
}

TEST_F(FarMoveTest, ReplacesNothingAndKeepsTheFile)
{
    const QString from = near.write(u"a"_s, "new");
    const QString taken = near.write(u"b"_s, "old");
    EXPECT_EQ(moveFar(from, taken), EEXIST);
    EXPECT_EQ(near.read(u"b"_s), "old");
    VORMEL_NEEDS_TWO_FILE_SYSTEMS();
    QFile other(far.filePath(u"b"_s));
    ASSERT_TRUE(other.open(QFile::WriteOnly) && other.write("old") == 3);
    other.close();
    EXPECT_EQ(moveFar(from, other.fileName()), EEXIST);
    EXPECT_EQ(readFar(u"b"_s), "old");
    EXPECT_EQ(near.read(u"a"_s), "new");
    EXPECT_EQ(QDir(far.path()).entryList(QDir::Files | QDir::Hidden), QStringList{u"b"_s});
}

TEST_F(FarMoveTest, LeavesNothingOfACopyThatIsStopped)
{
    VORMEL_NEEDS_TWO_FILE_SYSTEMS();
    const QString from = near.write(u"a"_s, "x");
    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(moveFar(from, far.filePath(u"b"_s), stop.get_token()), ECANCELED);
    EXPECT_EQ(near.read(u"a"_s), "x");
    EXPECT_TRUE(QDir(far.path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

TEST_F(FarMoveTest, TellsWhatStandsInItsWay)
{
    EXPECT_EQ(moveFar(near.path(u"nothing"_s), near.path(u"b"_s)), ENOENT);
    const QString from = near.write(u"a"_s, "x");
    EXPECT_EQ(moveFar(from, near.path(u"no/folder"_s)), ENOENT);
    EXPECT_EQ(near.read(u"a"_s), "x");
}
