#include "platform/desktop/FileViewer.h"

#include "fixtures/DesktopBus.h"
#include "fixtures/EventLoop.h"
#include "fixtures/Sandbox.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

/// A desktop's file manager, which writes down what it is to show.
class FileManager final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    QStringList shown;

public Q_SLOTS:
    Q_SCRIPTABLE void ShowItems(const QStringList& addresses, const QString& /*startupId*/) { shown << addresses; }
};

/// A stand-in for the program that opens folders.
class FileViewerTest : public ::testing::Test
{
protected:
    FileViewerTest()
    {
        const QByteArray opened = sandbox.path(u"opened"_s).toUtf8();
        const QString tool = sandbox.write(u"bin/xdg-open"_s, "#!/bin/sh\nprintf %s \"$1\" > '" + opened +
                                                                  ".new'\nmv '" + opened + ".new' '" + opened + "'\n");
        QFile::setPermissions(tool, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("PATH", sandbox.path(u"bin"_s).toUtf8() + ':' + m_pathBefore);
    }
    ~FileViewerTest() override { qputenv("PATH", m_pathBefore); }
    void SetUp() override { requireBus(bus); }
    QString opened() const { return QString::fromUtf8(sandbox.read(u"opened"_s)); }

    fixtures::Sandbox sandbox;
    fixtures::DesktopBus bus;

private:
    QByteArray m_pathBefore = qgetenv("PATH");
};

TEST_F(FileViewerTest, AsksTheFileManagerToChooseTheFile)
{
    FileManager manager;
    QDBusConnection service = bus.services();
    ASSERT_TRUE(service.registerService(u"org.freedesktop.FileManager1"_s));
    ASSERT_TRUE(
        service.registerObject(u"/org/freedesktop/FileManager1"_s, &manager, QDBusConnection::ExportScriptableSlots));
    DesktopFileViewer viewer(bus.program());
    viewer.show(u"/srv/a folder/x #1.bin"_s);
    ASSERT_TRUE(fixtures::waitUntil([&manager] { return !manager.shown.isEmpty(); }));
    EXPECT_EQ(manager.shown, QStringList{u"file:///srv/a%20folder/x%20%231.bin"_s});
    EXPECT_FALSE(sandbox.exists(u"opened"_s));
}

TEST_F(FileViewerTest, OpensTheFolderWhereNoFileManagerAnswers)
{
    const QString file = sandbox.write(u"a folder/-x #1.bin"_s, "x");
    DesktopFileViewer viewer(bus.program());
    viewer.show(file);
    ASSERT_TRUE(fixtures::waitUntil([this] { return sandbox.exists(u"opened"_s); }));
    EXPECT_EQ(opened(), QFileInfo(file).absolutePath());
}

TEST_F(FileViewerTest, OpensTheFolderWhereThereIsNoBus)
{
    DesktopFileViewer viewer(QDBusConnection(u"a bus that nobody made"_s));
    viewer.show(sandbox.path(u"gone/x.bin"_s));
    ASSERT_TRUE(fixtures::waitUntil([this] { return sandbox.exists(u"opened"_s); }));
    EXPECT_EQ(opened(), sandbox.path(u"gone"_s));
}

} // namespace
} // namespace vormel

#include "FileViewerTest.moc"
