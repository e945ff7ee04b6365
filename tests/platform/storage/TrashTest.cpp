#include "platform/storage/Trash.h"

#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

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
        qputenv("XDG_DATA_HOME", sandbox.path(u"data"_s).toUtf8());
        QDir().mkpath(sandbox.path(u"data"_s));
    }
    ~TrashTest() override
    {
        if (m_wasSet)
            qputenv("XDG_DATA_HOME", m_before);
        else
            qunsetenv("XDG_DATA_HOME");
    }

    [[nodiscard]] QStringList trashed() const { return sandbox.files(u"data/Trash/files"_s); }

    fixtures::Sandbox sandbox;
    DesktopTrash trash;

private:
    QByteArray m_before;
    bool m_wasSet;
};

TEST_F(TrashTest, AFileGoesWithItsContents)
{
    const QString path = sandbox.write(u"x.zip"_s, "bytes");
    ASSERT_TRUE(trash.moveToTrash(path));
    EXPECT_FALSE(QFile::exists(path));
    ASSERT_EQ(trashed().size(), 1);
    EXPECT_EQ(sandbox.read(u"data/Trash/files/x.zip"_s), "bytes");
}

TEST_F(TrashTest, AFolderGoesWhole)
{
    sandbox.write(u"set/a.part1.rar"_s, "1");
    sandbox.write(u"set/sub/b"_s, "2");
    ASSERT_TRUE(trash.moveToTrash(sandbox.path(u"set"_s)));
    EXPECT_FALSE(sandbox.exists(u"set"_s));
    EXPECT_EQ(trashed().size(), 2);
}

TEST_F(TrashTest, AMissingFileIsRefused)
{
    EXPECT_FALSE(trash.moveToTrash(sandbox.path(u"nothing"_s)));
}

TEST_F(TrashTest, ALinkGoesItselfAndNotWhatItLeadsTo)
{
    sandbox.write(u"folder/file"_s, "bytes");
    const QString link = sandbox.path(u"link"_s);
    ASSERT_TRUE(QFile::link(sandbox.path(u"folder"_s), link));
    ASSERT_TRUE(trash.moveToTrash(link));
    EXPECT_FALSE(QFileInfo(link).isSymLink());
    EXPECT_TRUE(QFileInfo(sandbox.path(u"data/Trash/files/link"_s)).isSymLink());
    EXPECT_EQ(sandbox.read(u"folder/file"_s), "bytes");
}

} // namespace
} // namespace vormel
