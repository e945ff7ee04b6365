#include "platform/desktop/UrlOpener.h"

#include "fixtures/EventLoop.h"
#include "fixtures/Sandbox.h"

#include <QFile>
#include <QUrl>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

/// With a stand-in for the program that opens things.
class UrlOpenerTest : public ::testing::Test
{
protected:
    UrlOpenerTest()
    {
        const QByteArray opened = sandbox.path(u"opened"_s).toUtf8();
        const QString tool = sandbox.write(u"bin/xdg-open"_s, "#!/bin/sh\nprintf %s \"$*\" > '" + opened +
                                                                  ".new'\nmv '" + opened + ".new' '" + opened + "'\n");
        QFile::setPermissions(tool, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("PATH", sandbox.path(u"bin"_s).toUtf8() + ':' + m_pathBefore);
    }
    ~UrlOpenerTest() override { qputenv("PATH", m_pathBefore); }

    QString open(const QUrl& url)
    {
        DesktopUrlOpener().open(url);
        EXPECT_TRUE(fixtures::waitUntil([this] { return sandbox.exists(u"opened"_s); }));
        return QString::fromUtf8(sandbox.read(u"opened"_s));
    }

    fixtures::Sandbox sandbox;

private:
    QByteArray m_pathBefore = qgetenv("PATH");
};

TEST_F(UrlOpenerTest, HandsOnTheAddressOfAPageAsItIsWritten)
{
    const QString address = u"https://h.example/a%20b?x=%26&y=1#c"_s;
    EXPECT_EQ(open(QUrl(address)), address);
}

TEST_F(UrlOpenerTest, HandsOnTheFolderOfALocalAddress)
{
    EXPECT_EQ(open(QUrl::fromLocalFile(u"/srv/a folder #1"_s)), u"/srv/a folder #1");
}

} // namespace
} // namespace vormel
