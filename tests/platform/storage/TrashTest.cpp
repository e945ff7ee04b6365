#include "platform/storage/Trash.h"

#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace vormel {
namespace {

/// A Trash of the test's own instead of the user's.
class TrashTest : public ::testing::Test
{
protected:
    TrashTest()
        : m_before(qgetenv("XDG_DATA_HOME"))
        , m_wasSet(qEnvironmentVariableIsSet("XDG_DATA_HOME"))
    {
        qputenv("XDG_DATA_HOME", sandbox.path(QStringLiteral("data")).toUtf8());
        QDir().mkpath(sandbox.path(QStringLiteral("data")));
    }
    ~TrashTest() override
    {
        if (m_wasSet)
            qputenv("XDG_DATA_HOME", m_before);
        else
            qunsetenv("XDG_DATA_HOME");
    }

    [[nodiscard]] QStringList trashed() const { return sandbox.files(QStringLiteral("data/Trash/files")); }

    fixtures::Sandbox sandbox;
    DesktopTrash trash;

private:
    QByteArray m_before;
    bool m_wasSet;
};

TEST_F(TrashTest, AFileGoesWithItsContents)
{
    const QString path = sandbox.write(QStringLiteral("x.zip"), "bytes");
    ASSERT_TRUE(trash.moveToTrash(path));
    EXPECT_FALSE(QFile::exists(path));
    ASSERT_EQ(trashed().size(), 1);
    EXPECT_EQ(sandbox.read(QStringLiteral("data/Trash/files/x.zip")), "bytes");
}

TEST_F(TrashTest, AFolderGoesWhole)
{
    sandbox.write(QStringLiteral("set/a.part1.rar"), "1");
    sandbox.write(QStringLiteral("set/sub/b"), "2");
    ASSERT_TRUE(trash.moveToTrash(sandbox.path(QStringLiteral("set"))));
    EXPECT_FALSE(sandbox.exists(QStringLiteral("set")));
    EXPECT_EQ(trashed().size(), 2);
}

TEST_F(TrashTest, AMissingFileIsRefused)
{
    EXPECT_FALSE(trash.moveToTrash(sandbox.path(QStringLiteral("nothing"))));
}

TEST_F(TrashTest, ALinkGoesItselfAndNotWhatItLeadsTo)
{
    sandbox.write(QStringLiteral("folder/file"), "bytes");
    const QString link = sandbox.path(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(sandbox.path(QStringLiteral("folder")), link));
    ASSERT_TRUE(trash.moveToTrash(link));
    EXPECT_FALSE(QFileInfo(link).isSymLink());
    EXPECT_TRUE(QFileInfo(sandbox.path(QStringLiteral("data/Trash/files/link"))).isSymLink());
    EXPECT_EQ(sandbox.read(QStringLiteral("folder/file")), "bytes");
}

} // namespace
} // namespace vormel
